"""Does pieces of work when told: a line "WORK PIECES" begins them, the line "done" answers."""

from __future__ import annotations

import sys
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from collections.abc import Callable, Mapping

#: The calls in a batch, and the bytes in a block.
CALLS = 1000
BLOCK = 16 * 1024 * 1024


def serve(works: Mapping[str, Callable[[], object]]) -> None:
    """Works until the input ends."""
    print("done", flush=True)
    for line in sys.stdin:
        work, pieces = line.split()
        run = works[work]
        for _ in range(int(pieces)):
            run()
        print("done", flush=True)
