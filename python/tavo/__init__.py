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
    Mismatch,
    NetworkError,
    Refused,
    SpecificationError,
    TAVOKeyError,
    TAVOLoginError,
)
from ._records import Record
from ._serial import SerialPort
from ._simulator import SimulatedCall, Simulator
from ._toolkit import Chain, PostCode, SvfResult, Tap
from .modules import *

__all__ = [
    "Batch",
    "Call",
    "Chain",
    "ConfigurationError",
    "Device",
    "Error",
    "ExecutionError",
    "LockError",
    "Mismatch",
    "NetworkError",
    "PostCode",
    "Record",
    "Refused",
    "SerialPort",
    "SimulatedCall",
    "Simulator",
    "SpecificationError",
    "SvfResult",
    "TAVOKeyError",
    "TAVOLoginError",
    "Tap",
    "hosts",
    "open",
]
__all__ += modules.__all__
for _class in (
    Chain, ConfigurationError, Error, ExecutionError, LockError, Mismatch, NetworkError, PostCode,
    Refused, SerialPort, SpecificationError, SvfResult, TAVOKeyError, TAVOLoginError, Tap,
):  # fmt: skip
    _class.__module__ = "tavo"
