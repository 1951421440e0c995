"""Client for networked hardware-debug appliances.

import tavo

with tavo.open("lab1", user="alice") as device:
    device.power.set(state=True)
"""

from . import modules
from ._device import Batch, Call, Device, hosts, open
from ._errors import (
    ConfigurationError,
    Error,
    ExecutionError,
    LockError,
    NetworkError,
    Refused,
    SpecificationError,
    TAVOKeyError,
    TAVOLoginError,
)
from ._records import Record
from ._simulator import SimulatedCall, Simulator
from .modules import *

__all__ = [
    "Batch",
    "Call",
    "ConfigurationError",
    "Device",
    "Error",
    "ExecutionError",
    "LockError",
    "NetworkError",
    "Record",
    "Refused",
    "SimulatedCall",
    "Simulator",
    "SpecificationError",
    "TAVOKeyError",
    "TAVOLoginError",
    "hosts",
    "open",
]
__all__ += modules.__all__
for _error in (
    ConfigurationError, Error, ExecutionError, LockError, NetworkError,
    Refused, SpecificationError, TAVOKeyError, TAVOLoginError,
):  # fmt: skip
    _error.__module__ = "tavo"
