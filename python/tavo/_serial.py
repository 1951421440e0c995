"""The serial port of a device as a file."""

from __future__ import annotations

import io
import threading
import time
from typing import TYPE_CHECKING, Any, TypeVar

from . import _core, _toolkit
from ._errors import Error

if TYPE_CHECKING:
    from collections.abc import Callable

T = TypeVar("T")


class SerialPort(io.RawIOBase):
    """The serial port of a device, as an unbuffered file of bytes; made by `open_serial()`.

    `read()` waits for the first byte, for as long as `timeout` says; None then says that none came. Put it into
    io.BufferedRWPair or io.TextIOWrapper for lines. One thread may read while another one writes. The device can be
    used meanwhile: each look is a turn of its own. What arrives while a call fails or is interrupted may be lost.
    """

    def __init__(
        self, node: _core.Node, settings: _core.SerialSettings, timeout: float | None, send_break: bool
    ) -> None:
        self._link: _core.SerialLink | None = None
        super().__init__()
        self._name = node.full_name
        self._connection = node.connection
        self._received = bytearray()
        # Signal handlers run in the middle of what this guards: one that uses the port is to be told, not to wait.
        self._lock = threading.RLock()
        self._busy = False
        self._ends = False
        self.timeout = timeout
        if send_break:
            _core.send_break(node, settings, None)
        self._link = _core.SerialLink(node, settings, None)

    @property
    def name(self) -> str:
        """The full name of the remote object."""
        return self._name

    @property
    def timeout(self) -> float | None:
        """How many seconds a read waits for the first byte; None for any time, 0 for none."""
        return self._timeout

    @timeout.setter
    def timeout(self, seconds: float | None) -> None:
        self._timeout = _toolkit.seconds_of("timeout", seconds)

    @property
    def in_waiting(self) -> int:
        """How many bytes have arrived."""
        self._exchange(b"")
        return len(self._received)

    def __repr__(self) -> str:
        return f"<tavo.SerialPort {self._name}{' closed' if self.closed else ''}>"

    def readable(self) -> bool:
        """True."""
        return True

    def writable(self) -> bool:
        """True."""
        return True

    def _alone(self, action: Callable[[], T]) -> T:
        with self._lock:
            if self._busy:
                raise RuntimeError("the device is in the middle of a call of this thread")
            self._busy = True
            try:
                return action()
            finally:
                self._busy = False

    def _exchange(self, data: bytes) -> None:
        def exchange() -> None:
            if self._link is None or self._ends:
                raise ValueError("I/O operation on closed file")
            self._received += self._link.exchange(data, None)

        self._alone(exchange)

    def _take(self, view: memoryview) -> int:
        def take() -> int:
            count = min(len(view), len(self._received))
            view[:count] = self._received[:count]
            del self._received[:count]
            return count

        return self._alone(take)

    def readinto(self, buffer: Any, /) -> int | None:
        """Reads what has arrived, at least a byte; None if the time is over."""
        with memoryview(buffer).cast("B") as view:
            begin = time.monotonic()
            while True:
                before = time.monotonic()
                if not self._received:
                    self._exchange(b"")
                if (count := self._take(view)) or not len(view):
                    return count
                pause = _toolkit.SERIAL_INTERVAL
                if self._timeout is not None:
                    if before - begin >= self._timeout:
                        return None
                    pause = min(pause, max(begin + self._timeout - time.monotonic(), 0.0))
                time.sleep(pause)

    def write(self, data: Any, /) -> int:
        """Sends these bytes, or as many of them as go at once; returns how many."""
        with memoryview(data).cast("B") as view:
            part = bytes(view[: _toolkit.SENT_AT_ONCE])
        self._exchange(part)
        return len(part)

    def _end(self) -> None:
        if self._link is None:
            return
        try:
            self._link.close(None)
        except Error:
            self._link = None
            if not self._connection.closed:
                raise
        self._link = None

    def close(self) -> None:
        """Closes the port on the device, unless that is closed already. Open as before if Ctrl-C cuts that short."""
        if self.closed:
            return
        # Those who read in other threads are to end.
        self._ends = True
        try:
            self._alone(self._end)
        finally:
            self._ends = False
            if self._link is None:
                super().close()
