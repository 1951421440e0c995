"""The Python package at work: `library.py PORT`."""

from __future__ import annotations

import sys

import tavo
from worker import BLOCK, CALLS, serve

DATA = b"\xa5" * 16


def main() -> None:
    with tavo.open("127.0.0.1", port=int(sys.argv[1]), user="engineer", password="tavo") as device:
        gauge = device.gauge0
        large = b"\xa5" * BLOCK

        def single() -> None:
            assert gauge.exchange(7, DATA).number == 42

        def batch() -> list[tavo.Call[tavo.Record]]:
            with device.batch() as calls:
                batched = calls.gauge0
                return [batched.exchange(7, DATA) for _ in range(CALLS)]

        def batch_with_values() -> None:
            for call in batch():
                assert call.value.number == 42

        def turn() -> None:
            assert gauge.turn(True).state == 1

        def turns() -> None:
            with device.batch() as calls:
                batched = calls.gauge0
                started = [batched.turn(True) for _ in range(CALLS)]
            assert sum(call.value.state for call in started) == CALLS

        def download() -> None:
            assert len(gauge.fetch(BLOCK).data) == BLOCK

        serve(
            {
                "single": single,
                "batch": batch,
                "values": batch_with_values,
                "turn": turn,
                "calls": turns,
                "download": download,
                "upload": lambda: gauge.store(large),
            }
        )


main()
