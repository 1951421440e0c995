"""The records that methods return."""

from __future__ import annotations

from collections.abc import Iterator
from dataclasses import FrozenInstanceError
from typing import Any, ClassVar, TypeVar

_R = TypeVar("_R", bound="Record")


def _plain(value: Any) -> Any:
    if isinstance(value, Record):
        return value.asdict()
    if isinstance(value, tuple):
        return [_plain(item) for item in value]
    return value


class Record:
    """What a method returns: named fields that do not change."""

    __slots__ = ()
    #: The names of the fields, in wire order.
    _fields: ClassVar[tuple[str, ...]] = ()

    def __init__(self, *values: Any, **named: Any) -> None:
        if len(values) > len(self._fields):
            raise TypeError(f"{type(self).__name__} has {len(self._fields)} fields, not {len(values)}")
        given = dict(zip(self._fields, values))
        for name, value in named.items():
            if name not in self._fields or name in given:
                raise TypeError(f"{type(self).__name__} has no field {name!r}, or it is given twice")
            given[name] = value
        for name in self._fields:
            if name not in given:
                raise TypeError(f"{type(self).__name__} lacks its field {name!r}")
            object.__setattr__(self, name, given[name])

    def __setattr__(self, name: str, value: object) -> None:
        raise FrozenInstanceError(f"cannot assign to field {name!r}")

    def __delattr__(self, name: str) -> None:
        raise FrozenInstanceError(f"cannot delete field {name!r}")

    def __iter__(self) -> Iterator[Any]:
        return (getattr(self, name) for name in self._fields)

    def __eq__(self, other: object) -> bool:
        if type(other) is not type(self):
            return NotImplemented
        return tuple(self) == tuple(getattr(other, name) for name in self._fields)

    def __hash__(self) -> int:
        return hash((type(self), *self))

    def __repr__(self) -> str:
        fields = ", ".join(f"{name}={getattr(self, name)!r}" for name in self._fields)
        return f"{type(self).__qualname__}({fields})"

    def __reduce__(self: _R) -> tuple[type[_R], tuple[Any, ...]]:
        return type(self), tuple(self)

    def asdict(self) -> dict[str, Any]:
        """The fields as a dict; records in it as dicts, and lists as lists, to their full depth."""
        return {name: _plain(getattr(self, name)) for name in self._fields}


def make_record_class(module: str, owner: str, name: str, fields: list[tuple[str, str]]) -> type[Record]:
    """A class of records with these fields, given with their types in words."""
    names = tuple(field for field, _ in fields)
    return type(
        name,
        (Record,),
        {
            "__slots__": names,
            "__module__": module,
            "__qualname__": f"{owner}.{name}",
            "__doc__": "\n".join([f"{name}:", *(f"    {field}: {words}" for field, words in fields)]),
            "__match_args__": names,
            "_fields": names,
        },
    )
