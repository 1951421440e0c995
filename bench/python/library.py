"""The Python package at work: `library.py PORT`."""

from __future__ import annotations

import sys

import tavo
from worker import serve

CALLS = 1000
BLOCK = 16 * 1024 * 1024
DATA = bytes([0xA5]) * 16


def main() -> None:
    with tavo.open("127.0.0.1", port=int(sys.argv[1]), user="engineer", password="tavo") as device:
        gauge = device.gauge0

        def single() -> None:
            assert gauge.exchange(7, DATA).number == 42

        def batch() -> list[tavo.Call[tavo.Record]]:
            with device.batch() as calls:
                batched = calls.gauge0
                return [batched.exchange(7, DATA) for _ in range(CALLS)]

        def batch_with_values() -> None:
            for call in batch():
                assert call.value.number == 42

        def download() -> None:
            assert len(gauge.fetch(BLOCK).data) == BLOCK

        serve({"single": single, "batch": batch, "values": batch_with_values, "download": download})


main()
