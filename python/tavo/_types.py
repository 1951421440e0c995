"""Makes the classes of all remote types from the tables of the library."""

from __future__ import annotations

import functools
import keyword
from typing import TYPE_CHECKING, Any

from . import _core
from ._records import Record, make_record_class

if TYPE_CHECKING:
    from collections.abc import Iterable

#: The fixed objects of a device, whose plain names would be misleading.
_CLASS_NAMES = {"base": "Object", "device": "DeviceObject", "system": "SystemObject", "private": "PrivateObject"}
#: The name of the type and the version, to its methods.
TABLES: dict[tuple[str, str], list[_core.RemoteMethod]] = {
    (kind, version): methods for kind, version, methods in _core.tables()
}


def versions_of(kind: str) -> list[str]:
    """The versions of a type, the latest first."""
    versions = [version for name, version in TABLES if name == kind]
    return sorted(versions, key=lambda version: [int(part) for part in version.split(".")], reverse=True)


def types() -> list[str]:
    """All types that objects have, by name; "base" first."""
    return ["base", *sorted({kind for kind, _ in TABLES} - {"base", "headerStatus"})]


def class_name(kind: str, version: str | None = None) -> str:
    """The name of the class of a type; of a version that is not the latest, if one is given."""
    name = _CLASS_NAMES.get(kind, kind[:1].upper() + kind[1:])
    if version is None or version == versions_of(kind)[0]:
        return name
    return f"{name}_v{version.replace('.', '_')}"


def safe(name: str) -> str:
    """The name as Python can have it."""
    return f"{name}_" if keyword.iskeyword(name) else name


_PLAIN_TYPES = {"bool": "bool", "text": "str", "bytes": "bytes"}


def annotation_of(words: str, of_request: bool, record: str = "Record") -> str:
    """The type of a field in Python, from its type in words."""
    if words == "bytes" and of_request:
        return "Buffer"
    if words in _PLAIN_TYPES:
        return _PLAIN_TYPES[words]
    if words.startswith("list of "):
        inner = annotation_of(words.removeprefix("list of "), of_request, record)
        return f"Sequence[{inner}]" if of_request else f"tuple[{inner}, ...]"
    if words.startswith("{"):
        return "Fields" if of_request else record
    return "int"


def reply_name(method: str) -> str:
    """The name of the class of a reply."""
    return method[:1].upper() + method[1:] + "Reply"


def documentation(kind: str, spec: _core.RemoteMethod) -> str:
    """What help() shows of a method."""
    lines = [f'The method "{spec.name}" of {"every object" if kind == "base" else f"a {kind} object"}.']
    if spec.request:
        lines += ["", "Parameters:", *(f"    {name}: {words}" for name, words in spec.request)]
    if spec.reply is not None:
        lines += ["", "Returns a record:", *(f"    {name}: {words}" for name, words in spec.reply)]
    lines += ["", "Raises tavo.Refused if the return code is not 0, and tavo.Error if the call fails."]
    return "\n".join(lines)


_classes: dict[tuple[str, str, type[Any]], type[Any]] = {}


def class_of(kind: str, version: str, base: type[Any]) -> type[Any]:
    """The class of that type and version which makes calls as `base` does."""
    key = (kind, version, base)
    if key not in _classes:
        _classes[key] = _make_class(kind, version, base)
    return _classes[key]


def _make_class(kind: str, version: str, base: type[Any]) -> type[Any]:
    latest = versions_of(kind)[0]
    if kind == "base":
        parent = base
    elif version == latest:
        parent = class_of("base", versions_of("base")[0], base)
    else:
        parent = class_of(kind, latest, base)
    name = class_name(kind, version)
    attributes: dict[str, Any] = {
        "__module__": base.__module_of_classes__,
        "__doc__": f"A remote object of the type {kind}, version {version}." if kind != "base" else base.__doc__,
        "__tavo_type__": kind,
    }
    attributes.update(_members(kind, version))
    # Behind the parent, so that a method of the device with the same name wins.
    helpers = base.__helpers__.get(kind) if version == latest else None
    return type(name, (parent, helpers) if helpers else (parent,), attributes)


@functools.cache
def _members(kind: str, version: str) -> dict[str, Any]:
    """The methods of a type, as functions that all classes of it share, and the classes of their replies."""
    name = class_name(kind, version)
    members: dict[str, Any] = {}
    for spec in TABLES[kind, version]:
        make = functools.partial(make_record_class, "tavo", name)
        made: list[type[Record]] = []

        def remember(class_: str, fields: list[tuple[str, str]]) -> type[Record]:
            made.append(make(class_, fields))
            return made[-1]

        spec.make_classes(reply_name(spec.name), remember)
        members.update((record.__name__, record) for record in made)
    members.update(_functions(kind, name, TABLES[kind, version]))
    return members


def _functions(kind: str, owner: str, specs: Iterable[_core.RemoteMethod]) -> dict[str, Any]:
    source = []
    scope: dict[str, Any] = {}
    for number, spec in enumerate(specs):
        scope[f"_{number}"] = spec
        names = [safe(field) for field, _ in spec.request]
        parameters = ", ".join(["self", *names])
        arguments = "".join(f"{name}, " for name in names)
        source.append(f"def {safe(spec.name)}({parameters}):\n    return self._call(_{number}, ({arguments}))\n")
    exec(compile("".join(source), f"<methods of {owner}>", "exec"), scope)
    functions = {}
    for spec in specs:
        function = scope[safe(spec.name)]
        function.__module__ = "tavo"
        function.__qualname__ = f"{owner}.{function.__name__}"
        function.__doc__ = documentation(kind, spec)
        function.__annotations__ = {safe(name): annotation_of(words, True) for name, words in spec.request}
        function.__annotations__["return"] = "None" if spec.reply is None else reply_name(spec.name)
        functions[function.__name__] = function
    return functions
