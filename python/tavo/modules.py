"""The classes of all remote types: a class for each type and version. Their stub is modules.pyi."""

from __future__ import annotations

from . import _types
from ._object import CallingObject

__all__ = []
for _kind in _types.types():
    for _version in _types.versions_of(_kind):
        _class = _types.class_of(_kind, _version, CallingObject)
        globals()[_class.__name__] = _class
        __all__.append(_class.__name__)
