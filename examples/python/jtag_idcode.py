"""Reads the IDCODE of the first part of a JTAG chain.

python jtag_idcode.py HOST [--port PORT] [--user USER] [--object NAME]
"""

from __future__ import annotations

import argparse
import sys

import tavo

#: States of the TAP controller by their numbers on the wire.
TEST_LOGIC_RESET, RUN_TEST_IDLE = 0, 1


def main(arguments: list[str] | None = None) -> int:
    """Runs the program; returns its exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host")
    parser.add_argument("--port", type=int)
    parser.add_argument("--user")
    parser.add_argument("--object", default="cpu0.jtag")
    wish = parser.parse_args(arguments)
    with tavo.open(wish.host, port=wish.port, user=wish.user, timeout=10) as device:
        device.get("power", tavo.Relay).set(state=True)
        jtag = device.get(wish.object, tavo.Jtag)
        with device.batch() as batch:
            batch.add(jtag.enableSet, True)
            batch.add(jtag.tapStateSet, TEST_LOGIC_RESET)
            batch.add(jtag.tapStateSet, RUN_TEST_IDLE)
            # After a reset every part selects its IDCODE, or a bypass bit of 0 if it has none.
            shifted = batch.add(jtag.shiftDR, bits=32, data=bytes(4))
    code = int.from_bytes(shifted.value.data, "little")
    if code & 1 == 0:
        print(f"the first part of {wish.object} has no IDCODE", file=sys.stderr)
        return 1
    print(f"0x{code:08X}: manufacturer 0x{code >> 1 & 0x7FF:03X}, part 0x{code >> 12 & 0xFFFF:04X}, "
          f"version {code >> 28}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
