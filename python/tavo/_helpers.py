"""What remote objects can do beyond their methods. A method of the device with the same name wins."""

from __future__ import annotations

import time
from typing import TYPE_CHECKING

from . import _toolkit
from ._serial import SerialPort

if TYPE_CHECKING:
    import os
    from collections.abc import Iterator

    from . import _core


class Helpers:
    """Base of the helpers of all types."""

    _node: _core.Node


class JtagHelpers(Helpers):
    """Helpers of JTAG ports."""

    def scan(self) -> _toolkit.Chain:
        """Resets the chain, finds its TAPs, IDCODEs and instruction register lengths, and resets it again.

        Raises tavo.Error if the chain does not answer, or contradicts itself.
        """
        return _toolkit.scan(self._node, None)

    def play_svf(
        self,
        source: _toolkit.Source,
        *,
        stop_at: str = "check",
        retry: int = 0,
        check: bool = True,
        progress: _toolkit.Progress | None = None,
    ) -> _toolkit.SvfResult:
        """Plays an SVF file, given by its path or its content; the port is given back as it was found.

        stop_at: how far to go before what came is compared: "check", after a checked scan nothing but more of them;
            "batch", 100 checked scans; "end", the whole file.
        retry: how often the device repeats a checked scan while it differs.
        check: whether to compare anything.
        progress: called with "playing", and how many bytes of the file are played, of how many.

        Raises ValueError for a file that cannot be played, before anything is sent of it, and tavo.Mismatch for a
        scan that captured something else.
        """
        return _toolkit.play_svf(self._node, source, stop_at, retry, check, progress, None)


class I2cHelpers(Helpers):
    """Helpers of I2C buses."""

    def detect(self, first: int = 0x08, last: int = 0x77) -> list[int]:
        """The addresses from `first` to `last` that acknowledge a read, in one exchange."""
        return _toolkit.detect(self._node, first, last, None)


class LpcPostCodeHelpers(Helpers):
    """Helpers of POST code receivers."""

    def follow(
        self, *, until: int | None = None, timeout: float | None = None, interval: float = _toolkit.INTERVAL
    ) -> Iterator[_toolkit.PostCode]:
        """Takes the codes from the device as they come, and yields them, the oldest first.

        until: ends after this code, and what came with it.
        timeout: ends after that many seconds; with TimeoutError if `until` has not come.
        interval: seconds between two looks.

        A code that comes after the device has given its codes and before it drops them, two calls of one exchange,
        is lost, and so is one that finds the FIFO full.
        """
        return _follow(_toolkit.Follower(self._node, until, timeout, interval))


def _follow(follower: _toolkit.Follower) -> Iterator[_toolkit.PostCode]:
    follower.begin(time.monotonic())
    while True:
        before = time.monotonic()
        yield from follower.take(None)
        pause = follower.pause(before, time.monotonic())
        if pause is None:
            return
        time.sleep(pause)


class LpcRomEmulationHelpers(Helpers):
    """Helpers of ROM emulations."""

    def load(
        self,
        image: _toolkit.Source,
        *,
        offset: int = 0,
        verify: bool = True,
        enable: bool = False,
        live: bool = False,
        progress: _toolkit.Progress | None = None,
    ) -> None:
        """Writes an image, given by its path or its content, and reads it back.

        The ROM is off from before the first byte until all is well, and then as it was, or on.

        verify: whether to read the image back and compare.
        enable: lets the board boot from it afterwards.
        live: does not switch an enabled ROM off meanwhile.
        progress: called with "writing" or "verifying", and how many bytes are done, of how many.

        Raises tavo.Mismatch for what reads back otherwise. What ends a transfer gets a note that tells how much was
        written and whether the ROM is on.
        """
        options = {"offset": offset, "verify": verify, "enable": enable, "live": live}
        _toolkit.load_rom(self._node, image, options, progress, None)

    def save(
        self,
        path: str | os.PathLike[str],
        *,
        offset: int = 0,
        length: int | None = None,
        progress: _toolkit.Progress | None = None,
    ) -> int:
        """Reads the memory, from `offset` to its end or `length` bytes, into a file; returns how many bytes.

        The file is replaced once everything was read.
        """
        return _toolkit.save_rom(self._node, path, offset, length, progress, None)

    def verify(
        self, image: _toolkit.Source, *, offset: int = 0, progress: _toolkit.Progress | None = None
    ) -> None:
        """Compares the memory with an image, given by its path or its content; raises tavo.Mismatch."""
        _toolkit.verify_rom(self._node, image, offset, progress, None)


class ComHelpers(Helpers):
    """Helpers of serial ports."""

    def open_serial(
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
        timeout: float | None = None,
        send_break: bool = False,
    ) -> SerialPort:
        """Opens the port as a file of bytes; close it, best by a `with` block.

        parity: "none", "even" or "odd".
        timeout: how many seconds a read waits for the first byte; None for any time.
        send_break: sends a break first.
        """
        settings = _toolkit.serial_settings(baud, bits, parity, stop_bits, rtscts, dsrdtr, xonxoff, loopback)
        return SerialPort(self._node, settings, timeout, send_break)


#: Of types, by name.
HELPERS: dict[str, type[Helpers]] = {
    "com": ComHelpers,
    "i2c": I2cHelpers,
    "jtag": JtagHelpers,
    "lpcPostCode": LpcPostCodeHelpers,
    "lpcRomEmulation": LpcRomEmulationHelpers,
}
