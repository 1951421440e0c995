"""Finds the objects of a device."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

from ._errors import SpecificationError

if TYPE_CHECKING:
    from collections.abc import Iterator

    from . import _core

#: Names for the only object of a type, where no object has that name.
_ONLY = {"console": "com", "post": "lpcPostCode", "rom": "lpcRomEmulation"}


def _all_of(connection: _core.Connection, kind: str) -> list[_core.Node]:
    found: list[_core.Node] = []

    def walk(node: _core.Node | None) -> None:
        if node is None:
            return
        if node.known_type == kind:
            found.append(node)
        for name in node.children():
            walk(node.child(name))

    for name in connection.top():
        walk(connection.find(name))
    return found


class ObjectTree:
    """The objects of a device as attributes and items."""

    _connection: _core.Connection

    def _object(self, node: _core.Node) -> Any:
        raise NotImplementedError

    def __getattr__(self, name: str) -> Any:
        node = None if name.startswith("_") else self._connection.find(name)
        if node is None and name in _ONLY:
            nodes = _all_of(self._connection, _ONLY[name])
            if len(nodes) > 1:
                names = ", ".join(each.full_name for each in nodes)
                raise AttributeError(f"there are several for {name!r}: {names}", name=name, obj=self)
            node = nodes[0] if nodes else None
        if node is None:
            raise AttributeError(f"the device has no object {name!r}", name=name, obj=self)
        found = self._object(node)
        self.__dict__[name] = found
        return found

    def __getitem__(self, path: str) -> Any:
        node = self._connection.find(path)
        if node is None:
            raise KeyError(path)
        return self._object(node)

    def __contains__(self, path: object) -> bool:
        return isinstance(path, str) and self._connection.find(path) is not None

    def __iter__(self) -> Iterator[str]:
        """The names of the objects at the top of the device, then those of the three fixed objects."""
        return iter(self._connection.top())

    def __dir__(self) -> list[str]:
        names: list[str] = []
        if not self._connection.closed:
            only = [name for name, kind in _ONLY.items() if len(_all_of(self._connection, kind)) == 1]
            names = [*self._connection.top(), *only]
        return sorted({*super().__dir__(), *names})

    def _get(self, path: str, kind: type[Any]) -> Any:
        node = self._connection.find(path)
        if node is None:
            raise SpecificationError(f"the device has no object {path!r}")
        found = self._object(node)
        if not isinstance(found, kind):
            raise SpecificationError(f"{path!r} is a {type(found).__name__}, not a {kind.__name__}")
        return found
