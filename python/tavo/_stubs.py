"""Writes the stubs of all remote types: `python -m tavo._stubs FOLDER`."""

from __future__ import annotations

import sys
from pathlib import Path

from . import _types
from ._helpers import HELPERS

_HEAD = '''# Written by "python -m tavo._stubs" from the tables of the library. Do not edit.
from collections.abc import Mapping, Sequence
from typing import Any

from tavo._helpers import {helpers}
from tavo._object import {base}
from tavo._records import Record

Buffer = bytes | bytearray | memoryview
Fields = Mapping[str, Any] | Record

__all__ = [
{names}]
'''


def _record(owner: str, name: str, fields: list[tuple[str, str]]) -> list[str]:
    lines: list[str] = []
    members: list[str] = []
    for field, words in fields:
        inner = words
        while inner.startswith("list of "):
            inner = inner.removeprefix("list of ")
        record = name + field[:1].upper() + field[1:]
        if inner.startswith("{"):
            lines += _record(owner, record, _fields_in(inner))
        members.append(f"        {field}: " + _types.annotation_of(words, False, f"{owner}.{record}"))
    lines.append(f"    class {name}(Record):")
    names = "".join(f'"{field}", ' for field, _ in fields)
    lines.append(f"        __match_args__ = ({names.rstrip() if len(fields) == 1 else names[:-2]})")
    lines += members
    return lines


def _fields_in(words: str) -> list[tuple[str, str]]:
    fields = []
    depth = 0
    begin = 1
    for at, letter in enumerate(words[1:], 1):
        if letter == "{":
            depth += 1
        elif letter == "}" and depth:
            depth -= 1
        elif (letter == "," and depth == 0) or letter == "}":
            name, _, kind = words[begin:at].strip().partition(": ")
            fields.append((name, kind))
            begin = at + 1
    return fields


def _class(kind: str, version: str, awaited: bool) -> list[str]:
    name = _types.class_name(kind, version)
    latest = _types.versions_of(kind)[0]
    if kind == "base":
        parent = "AwaitedObject" if awaited else "CallingObject"
    elif version == latest:
        parent = "Object"
    else:
        parent = _types.class_name(kind)
    inherited = {spec.name: spec for spec in _types.TABLES[kind, latest]} if version != latest else {}
    helpers = f", {HELPERS[kind].__name__}" if kind in HELPERS and version == latest else ""
    lines = ["", f"class {name}({parent}{helpers}):"]
    for spec in _types.TABLES[kind, version]:
        former = inherited.get(spec.name)
        if former and former.request == spec.request and former.reply == spec.reply:
            continue
        if spec.reply is not None:
            lines += _record(name, _types.reply_name(spec.name), spec.reply)
        parameters = "".join(
            f", {_types.safe(field)}: {_types.annotation_of(words, True)}" for field, words in spec.request
        )
        result = "None" if spec.reply is None else _types.reply_name(spec.name)
        keyword = "async def" if awaited else "def"
        ignored = "  # type: ignore[override]" if former and former.request != spec.request else ""
        lines.append(f"    {keyword} {_types.safe(spec.name)}(self{parameters}) -> {result}: ...{ignored}")
    if len(lines) == 2:
        lines[1] += " ..."
    return lines


def stub(awaited: bool) -> str:
    """The text of a stub; of the awaited classes, if wanted."""
    pairs = [(kind, version) for kind in _types.types() for version in _types.versions_of(kind)]
    names = "".join(f'    "{_types.class_name(*pair)}",\n' for pair in pairs)
    base = "CallingObject"
    head = _HEAD.format(base=base, names=names, helpers=", ".join(sorted(each.__name__ for each in HELPERS.values())))
    if awaited:
        head = head.replace("from tavo._object import CallingObject", "from tavo._aio import AwaitedObject")
        head = head.replace("from tavo._helpers", "from tavo._aio_helpers")
    lines = [head.rstrip("\n")]
    for pair in pairs:
        lines += _class(*pair, awaited)
    return "\n".join(lines) + "\n"


def main() -> None:
    """Writes both stubs into the folder that is given."""
    folder = Path(sys.argv[1])
    (folder / "modules.pyi").write_text(stub(False), encoding="ascii")
    (folder / "aio_modules.pyi").write_text(stub(True), encoding="ascii")


if __name__ == "__main__":
    main()
