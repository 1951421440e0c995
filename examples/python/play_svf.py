"""Programs the parts of a JTAG chain by an SVF file.

python play_svf.py HOST FILE [--port PORT] [--user USER] [--object NAME]
"""

from __future__ import annotations

import argparse
import sys

import tavo


def show(phase: str, done: int, total: int) -> None:
    """Shows how far it is, if somebody watches."""
    if sys.stderr.isatty():
        end = "\n" if done == total else ""
        print(f"\r{phase}: {100 * done // max(total, 1)} %", end=end, file=sys.stderr, flush=True)


def main(arguments: list[str] | None = None) -> int:
    """Runs the program; returns its exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host")
    parser.add_argument("file")
    parser.add_argument("--port", type=int)
    parser.add_argument("--user")
    parser.add_argument("--object", default="cpu0.jtag")
    wish = parser.parse_args(arguments)
    with tavo.open(wish.host, port=wish.port, user=wish.user, timeout=10) as device:
        device.get("power", tavo.Relay).set(state=True)
        jtag = device.get(wish.object, tavo.Jtag)
        for tap in jtag.scan().taps:
            idcode = "no IDCODE" if tap.idcode is None else f"IDCODE 0x{tap.idcode:08X}"
            print(f"TAP {tap.position}: {idcode}")
        try:
            result = jtag.play_svf(wish.file, progress=show)
        except (OSError, ValueError, tavo.Mismatch) as error:
            print(error, file=sys.stderr)
            return 1
    print(f"{result.scans} scans, {result.checked_scans} of them checked")
    return 0


if __name__ == "__main__":
    sys.exit(main())
