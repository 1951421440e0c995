"""Switches a board off and on until a boot fails, and logs its POST codes.

python power_cycle.py HOST [--port PORT] [--user USER] [--boots N] [--plot FILE]
"""

from __future__ import annotations

import argparse
import sys
import time

import tavo

#: The last code of a good boot.
END_OF_BOOT = 0xAA


def boot(device: tavo.Device, longest: float) -> tuple[float, list[int]]:
    """Switches the board off and on; returns how long the boot took, and its codes."""
    power = device.get("power", tavo.Relay)
    receiver = device.get("lpc.lpcPostCode", tavo.LpcPostCode)
    with device.batch() as batch:
        batch.add(power.set, state=False)
        batch.add(receiver.fifoClear)
        batch.add(power.set, state=True)
    begin = time.monotonic()
    codes: list[int] = []
    try:
        for code in receiver.follow(until=END_OF_BOOT, timeout=longest):
            codes.append(code.code)
    except TimeoutError:
        pass
    return time.monotonic() - begin, codes


def plot(seconds: list[float], file: str) -> None:
    """Draws the times, if matplotlib is installed."""
    try:
        from matplotlib import pyplot
    except ImportError:
        print("matplotlib is not installed: no plot", file=sys.stderr)
        return
    pyplot.plot(range(1, len(seconds) + 1), seconds, marker="o")
    pyplot.xlabel("boot")
    pyplot.ylabel("seconds")
    pyplot.savefig(file)


def main(arguments: list[str] | None = None) -> int:
    """Runs the program; returns its exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host")
    parser.add_argument("--port", type=int)
    parser.add_argument("--user")
    parser.add_argument("--boots", type=int, default=100, help="give up after that many good boots")
    parser.add_argument("--longest", type=float, default=30.0, help="seconds after which a boot has failed")
    parser.add_argument("--plot", metavar="FILE", help="draw the boot times")
    wish = parser.parse_args(arguments)
    seconds: list[float] = []
    with tavo.open(wish.host, port=wish.port, user=wish.user, timeout=10) as device:
        for number in range(1, wish.boots + 1):
            took, codes = boot(device, wish.longest)
            last = f"0x{codes[-1]:02X}" if codes else "none"
            print(f"boot {number}: {len(codes)} codes, the last is {last}")
            if END_OF_BOOT not in codes:
                print(f"boot {number} failed")
                break
            seconds.append(took)
    if wish.plot:
        plot(seconds, wish.plot)
    return 0 if len(seconds) == wish.boots else 1


if __name__ == "__main__":
    sys.exit(main())
