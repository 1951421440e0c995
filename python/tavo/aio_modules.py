"""The classes of all remote types: with methods that are awaited. Their stub is aio_modules.pyi."""

from __future__ import annotations

from . import _types
from ._aio import AwaitedObject

__all__ = []
for _kind in _types.types():
    for _version in _types.versions_of(_kind):
        _class = _types.class_of(_kind, _version, AwaitedObject)
        globals()[_class.__name__] = _class
        __all__.append(_class.__name__)
