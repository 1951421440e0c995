"""Remote objects, as Python sees them."""

from __future__ import annotations

import functools
from typing import TYPE_CHECKING, Any, ClassVar

from . import _types
from ._helpers import HELPERS

if TYPE_CHECKING:
    from collections.abc import Callable, Iterator, Mapping

    from . import _core


class Remote:
    """A remote object: its methods and its members are attributes.

    A member whose name is not a Python name, or also that of a method, is `object["name"]`.
    """

    __module_of_classes__: ClassVar[str] = "tavo"
    __tavo_type__: ClassVar[str] = "base"
    #: What objects of a type can do beyond their methods.
    __helpers__: ClassVar[Mapping[str, type[Any]]] = {}

    def __init__(self, node: _core.Node, call: Callable[[Any, tuple[Any, ...]], Any]) -> None:
        self._node = node
        self._call = call

    def _member(self, node: _core.Node) -> Any:
        raise NotImplementedError

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(f"{type(self).__name__} has no attribute {name!r}", name=name, obj=self)
        node = self._node.child(name)
        if node is not None:
            member = self._member(node)
            self.__dict__[name] = member
            return member
        raise AttributeError(f"{self._node.full_name} has no method or member {name!r}", name=name, obj=self)

    def __getitem__(self, path: str) -> Any:
        node = self._node.child(path)
        if node is None:
            raise KeyError(path)
        return self._member(node)

    def __iter__(self) -> Iterator[str]:
        """The names of the members."""
        return iter(self._node.children())

    def __contains__(self, path: object) -> bool:
        return isinstance(path, str) and self._node.child(path) is not None

    def __dir__(self) -> list[str]:
        lacking = {name for name in _methods_of(type(self)) if not self._node.has_method(name.rstrip("_"))}
        return sorted({*super().__dir__(), *self._node.children()} - lacking)

    def __repr__(self) -> str:
        return f"<{type(self).__name__} {self._node.full_name}>"

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Remote):
            return NotImplemented
        return (
            type(self) is type(other)
            and self._node.connection is other._node.connection
            and self._node.instance_id == other._node.instance_id
        )

    def __hash__(self) -> int:
        return hash((self._node.instance_id, type(self).__name__))

    @property
    def full_name(self) -> str:
        """The names from the top of the device to this object, joined by dots."""
        return self._node.full_name

    @property
    def instance_id(self) -> int:
        """The number by which calls address the object."""
        return self._node.instance_id


def _methods_of(kind: type[Remote]) -> list[str]:
    kinds = [each.__tavo_type__ for each in kind.__mro__ if issubclass(each, Remote)]
    return [
        _types.safe(spec.name)
        for (name, _), specs in _types.TABLES.items()
        if name in kinds
        for spec in specs
    ]


class CallingObject(Remote):
    """An object of a type that this library does not know; base of all others."""

    __helpers__: ClassVar[Mapping[str, type[Any]]] = HELPERS

    def __init__(self, node: _core.Node) -> None:
        super().__init__(node, node.call)

    def _member(self, node: _core.Node) -> Any:
        return object_for(node)


class BatchedObject(Remote):
    """A remote object whose methods add calls to a batch."""

    def __init__(self, node: _core.Node, batch: _core.Batch) -> None:
        super().__init__(node, functools.partial(batch.add, node))
        self._batch = batch

    def _member(self, node: _core.Node) -> Any:
        return batched_object_for(node, self._batch)


def object_for(node: _core.Node) -> Any:
    """The object of the class for its type."""
    return _types.class_of(*node.table(), CallingObject)(node)


def batched_object_for(node: _core.Node, batch: _core.Batch) -> Any:
    """The same, for a batch."""
    return _types.class_of(*node.table(), BatchedObject)(node, batch)
