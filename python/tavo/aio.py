"""The same with `await`: `async with tavo.aio.open(...) as device: await device.power.set(state=True)`.

Each device has a thread of its own, which makes its calls in turn. Cancelling a task interrupts its call.
"""

from . import aio_modules
from ._aio import Batch, Device, open
from ._aio_helpers import SerialPort
from .aio_modules import *

__all__ = ["Batch", "Device", "SerialPort", "open"]
__all__ += aio_modules.__all__
