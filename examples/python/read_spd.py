"""Reads the SPD of a memory module over I2C, and tells what it is.

python read_spd.py HOST [--port PORT] [--user USER] [--address ADDRESS]
"""

from __future__ import annotations

import argparse
import sys

import tavo

KINDS = {0x0B: "DDR3", 0x0C: "DDR4", 0x12: "DDR5"}


def main(arguments: list[str] | None = None) -> int:
    """Runs the program; returns its exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host")
    parser.add_argument("--port", type=int)
    parser.add_argument("--user")
    parser.add_argument("--address", type=lambda text: int(text, 0), default=0x50)
    wish = parser.parse_args(arguments)
    with tavo.open(wish.host, port=wish.port, user=wish.user, timeout=10) as device:
        device.get("power", tavo.Relay).set(state=True)
        bus = device.get("i2c", tavo.I2c)
        try:
            spd = bus.transfer(wish.address, bytes([0]), 256).data
        except tavo.Refused as error:
            others = " ".join(f"0x{address:02X}" for address in bus.detect())
            print(f"no memory module at 0x{wish.address:02X}, there is something at {others}: {error}", file=sys.stderr)
            return 1
    print(f"{len(spd)} bytes, {KINDS.get(spd[2], 'unknown kind')}")
    for offset in range(0, len(spd), 16):
        row = spd[offset : offset + 16]
        text = "".join(chr(byte) if 0x20 <= byte < 0x7F else "." for byte in row)
        print(f"{offset:02x}  {row.hex(' ')}  {text}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
