"""Prints what `tavo info` and `tavo tree` print: `python -m tavo HOST`."""

from __future__ import annotations

import argparse
import locale
import sys
from typing import Any

import tavo

from ._visible import visible


def _version(version: Any) -> str:
    parts = [version.major, version.minor, version.bugfix]
    while parts and parts[-1] == 0xFFFFFFFF:
        parts.pop()
    return ".".join(str(part) for part in parts)


def info_lines(device: tavo.Device) -> list[str]:
    """What the device says of itself, as `tavo info` prints it."""
    info = device.get("device", tavo.DeviceObject).info()
    lines = [f"name       {visible(info.name)}", f"version    {_version(info.version)}", f"port       {device.port}"]
    flags = device.key()
    lines.append("key        unknown" if flags is None else f"key flags  {flags[0]:d} {flags[1]:d}")
    lines += [f"firmware   {visible(part.name)} {_version(part.version)}" for part in info.firmware]
    for board in info.boards:
        fields = (board.field1, board.field2, board.field3, board.field4)
        lines.append("board      " + " | ".join(map(visible, fields)))
    return lines


def tree_lines(device: tavo.Device, utf8: bool) -> list[str]:
    """The objects of the device, as `tavo tree` draws them."""
    branch, last_branch, trunk = ("├── ", "└── ", "│   ") if utf8 else ("|-- ", "`-- ", "|   ")
    objects: dict[str, tavo.Object] = {}

    def collect(path: str, found: tavo.Object) -> None:
        objects[path] = found
        for name in found:
            collect(f"{path}.{name}", found[name])

    names = list(device)
    top = [name for name in names if name in ("device", "system", "private")]
    top += [name for name in names if name not in top]
    for name in top:
        collect(name, device[name])
    with device.batch() as batch:
        answers = {
            path: (batch.add(found.type), batch.add(found.version)) for path, found in objects.items()
        }
    lines = [f"{device.host}:{device.port}"]

    def draw(paths: list[str], margin: str) -> None:
        for path in paths:
            is_last = path == paths[-1]
            kind, version = answers[path]
            name = visible(objects[path]._node.name)
            stroke = last_branch if is_last else branch
            number = objects[path].instance_id
            what = f"{visible(kind.value.type)} {_version(version.value.version)}"
            lines.append(f"{margin}{stroke}{name}  {what}  #{number}")
            draw([f"{path}.{child}" for child in objects[path]], margin + ("    " if is_last else trunk))

    draw(top, "")
    return lines


def main(arguments: list[str] | None = None) -> int:
    """Runs the program; returns its exit status."""
    parser = argparse.ArgumentParser(prog="python -m tavo", description=__doc__)
    parser.add_argument("host")
    parser.add_argument("--port", type=int)
    parser.add_argument("--user")
    parser.add_argument("--password-file")
    parser.add_argument("--secure", action="store_true", help="check the device's key before the lock is taken")
    parser.add_argument("--timeout", type=float, default=10.0, help="seconds for each exchange")
    wish = parser.parse_args(arguments)
    if hasattr(sys.stdout, "reconfigure"):
        sys.stdout.reconfigure(encoding="utf-8")
    utf8 = locale.getpreferredencoding(False).upper().replace("-", "") == "UTF8"
    try:
        with tavo.open(
            wish.host,
            port=wish.port,
            user=wish.user,
            password_file=wish.password_file,
            secure=wish.secure or None,
            timeout=wish.timeout,
        ) as device:
            print(*info_lines(device), *tree_lines(device, utf8), sep="\n")
    except (tavo.Error, OSError, ValueError) as error:
        print(f"python -m tavo: {visible(str(error))}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
