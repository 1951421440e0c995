"""What awaited remote objects can do beyond their methods."""

from __future__ import annotations

import asyncio
import functools
import time
from typing import TYPE_CHECKING, Any

from . import _core, _toolkit
from ._errors import Error

if TYPE_CHECKING:
    import os
    from collections.abc import AsyncIterator
    from types import TracebackType

    from ._aio import _Job, _Worker


class AwaitedHelpers:
    """Base of the helpers of all types."""

    _node: _core.Node
    _worker: _Worker


class JtagHelpers(AwaitedHelpers):
    """Helpers of JTAG ports."""

    async def scan(self) -> _toolkit.Chain:
        """As `tavo.Jtag.scan`."""
        return await self._worker.help(_toolkit.scan, self._node)

    async def play_svf(
        self,
        source: _toolkit.Source,
        *,
        stop_at: str = "check",
        retry: int = 0,
        check: bool = True,
        progress: _toolkit.Progress | None = None,
    ) -> _toolkit.SvfResult:
        """As `tavo.Jtag.play_svf`. The thread of the device calls `progress`."""
        return await self._worker.help(
            _toolkit.play_svf, self._node, source, stop_at, retry, check, progress
        )


class I2cHelpers(AwaitedHelpers):
    """Helpers of I2C buses."""

    async def detect(self, first: int = 0x08, last: int = 0x77) -> list[int]:
        """As `tavo.I2c.detect`."""
        return await self._worker.help(_toolkit.detect, self._node, first, last)


class LpcPostCodeHelpers(AwaitedHelpers):
    """Helpers of POST code receivers."""

    def follow(
        self, *, until: int | None = None, timeout: float | None = None, interval: float = _toolkit.INTERVAL
    ) -> AsyncIterator[_toolkit.PostCode]:
        """As `tavo.LpcPostCode.follow`, for `async for`."""
        return _follow(self._worker, _toolkit.Follower(self._node, until, timeout, interval))


async def _follow(worker: _Worker, follower: _toolkit.Follower) -> AsyncIterator[_toolkit.PostCode]:
    follower.begin(time.monotonic())
    while True:
        before = time.monotonic()
        for code in await worker.help(follower.take):
            yield code
        pause = follower.pause(before, time.monotonic())
        if pause is None:
            return
        await asyncio.sleep(pause)


class LpcRomEmulationHelpers(AwaitedHelpers):
    """Helpers of ROM emulations. The thread of the device calls `progress`."""

    async def load(
        self,
        image: _toolkit.Source,
        *,
        offset: int = 0,
        verify: bool = True,
        enable: bool = False,
        live: bool = False,
        progress: _toolkit.Progress | None = None,
    ) -> None:
        """As `tavo.LpcRomEmulation.load`."""
        options = {"offset": offset, "verify": verify, "enable": enable, "live": live}
        await self._worker.help(_toolkit.load_rom, self._node, image, options, progress)

    async def save(
        self,
        path: str | os.PathLike[str],
        *,
        offset: int = 0,
        length: int | None = None,
        progress: _toolkit.Progress | None = None,
    ) -> int:
        """As `tavo.LpcRomEmulation.save`."""
        return await self._worker.help(_toolkit.save_rom, self._node, path, offset, length, progress)

    async def verify(
        self, image: _toolkit.Source, *, offset: int = 0, progress: _toolkit.Progress | None = None
    ) -> None:
        """As `tavo.LpcRomEmulation.verify`."""
        await self._worker.help(_toolkit.verify_rom, self._node, image, offset, progress)


class SerialPort:
    """The serial port of a device; made by `open_serial()`. Close it, best by an `async with` block."""

    def __init__(self, node: _core.Node, worker: _Worker, link: _core.SerialLink) -> None:
        self._node = node
        self._worker = worker
        self._link: _core.SerialLink | None = link
        self._closing: _Job | None = None
        self._received = bytearray()

    async def __aenter__(self) -> SerialPort:
        return self

    async def __aexit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        await self.close()

    async def _exchange(self, data: bytes) -> None:
        if self._link is None:
            raise ValueError("I/O operation on closed file")
        self._received += await self._worker.help(self._link.exchange, data)

    async def read(self, size: int = 65536) -> bytes:
        """What has arrived, up to `size` bytes; waits for the first. For a time limit use asyncio.timeout()."""
        while True:
            if not self._received:
                await self._exchange(b"")
            if self._received or size <= 0:
                data = bytes(self._received[: max(size, 0)])
                del self._received[: max(size, 0)]
                return data
            await asyncio.sleep(_toolkit.SERIAL_INTERVAL)

    async def read_until(self, end: bytes = b"\n") -> bytes:
        """What arrives up to and with `end`. What came before stays, if this is cancelled."""
        if not end:
            raise ValueError("'end' is empty")
        while (place := self._received.find(end)) < 0:
            before = len(self._received)
            await self._exchange(b"")
            if len(self._received) == before:
                await asyncio.sleep(_toolkit.SERIAL_INTERVAL)
        count = place + len(end)
        data = bytes(self._received[:count])
        del self._received[:count]
        return data

    async def write(self, data: _toolkit.Buffer) -> None:
        """Sends all these bytes."""
        whole = bytes(data)
        for begin in range(0, len(whole), _toolkit.SENT_AT_ONCE):
            await self._exchange(whole[begin : begin + _toolkit.SENT_AT_ONCE])

    async def close(self) -> None:
        """Closes the port on the device, unless that is closed already. Works any number of times.

        It is closed, after the calls that wait, even if this is cancelled.
        """
        link, self._link = self._link, None
        if link is not None and not self._node.connection.closed:
            self._closing = self._worker.begin(functools.partial(link.close, None))
        if self._closing is None or self._closing.loop is not asyncio.get_running_loop():
            return
        try:
            await asyncio.shield(self._closing.done)
        except Error:
            if link is not None and not self._node.connection.closed:
                raise


class ComHelpers(AwaitedHelpers):
    """Helpers of serial ports."""

    async def open_serial(
        self,
        *,
        baud: int = 115200,
        bits: int = 8,
        parity: str = "none",
        stop_bits: int = 1,
        rtscts: bool = False,
        dsrdtr: bool = False,
        xonxoff: bool = False,
        loopback: bool = False,
        send_break: bool = False,
    ) -> SerialPort:
        """Opens the port. The arguments are those of `tavo.Com.open_serial`."""
        settings = _toolkit.serial_settings(baud, bits, parity, stop_bits, rtscts, dsrdtr, xonxoff, loopback)
        if send_break:
            await self._worker.help(_core.send_break, self._node, settings)
        opened: list[_core.SerialLink] = []

        def work(stop: _core.Stop) -> None:
            opened.append(_core.SerialLink(self._node, settings, stop))

        try:
            await self._worker.help(work)
        except BaseException:
            # A cancelled opening may have come to its end all the same.
            for link in opened:
                self._worker.begin(functools.partial(link.close, None))
            raise
        return SerialPort(self._node, self._worker, opened[0])


#: Of types, by name.
HELPERS: dict[str, type[Any]] = {
    "com": ComHelpers,
    "i2c": I2cHelpers,
    "jtag": JtagHelpers,
    "lpcPostCode": LpcPostCodeHelpers,
    "lpcRomEmulation": LpcRomEmulationHelpers,
}
