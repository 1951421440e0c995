"""What the helpers of remote objects do and return, for blocking and awaited devices alike."""

from __future__ import annotations

import contextlib
import os
import secrets
import stat
from dataclasses import dataclass
from pathlib import Path
from typing import TYPE_CHECKING, Any

from . import _core

if TYPE_CHECKING:
    from collections.abc import Callable, Iterator

    Buffer = bytes | bytearray | memoryview
    #: A path, or the content itself.
    Source = str | os.PathLike[str] | Buffer
    #: Is told the phase, such as "writing", how far it is, and how far it goes, in bytes.
    Progress = Callable[[str, int, int], object]

#: Time between two looks at something that changes, in seconds.
INTERVAL = 0.1
#: The same for a serial port.
SERIAL_INTERVAL = 0.04
#: As many bytes are sent in one exchange.
SENT_AT_ONCE = 16 * 1024


@dataclass(frozen=True)
class Tap:
    """A TAP of a JTAG chain."""

    #: 0 is next to TDO.
    position: int
    #: The bits of its instruction register; None if the scan does not tell.
    ir_length: int | None
    #: None if the TAP has none.
    idcode: int | None

    @property
    def version(self) -> int | None:
        """The version in the IDCODE."""
        return None if self.idcode is None else self.idcode >> 28

    @property
    def part(self) -> int | None:
        """The part number in the IDCODE."""
        return None if self.idcode is None else self.idcode >> 12 & 0xFFFF

    @property
    def manufacturer(self) -> tuple[int, int] | None:
        """The bank in the list of JEDEC, counted from 1, and the number in it, without the parity bit."""
        return None if self.idcode is None else ((self.idcode >> 8 & 0xF) + 1, self.idcode >> 1 & 0x7F)


@dataclass(frozen=True)
class Chain:
    """What a scan found out about a JTAG chain."""

    #: The one next to TDO is the first.
    taps: tuple[Tap, ...]
    #: The bits of all instruction registers together.
    ir_length: int
    #: What they captured, as a number; the lowest bit came first.
    ir_capture: int
    #: Every set of instruction register lengths that fits, the one next to TDO first.
    ir_splits: tuple[tuple[int, ...], ...]
    #: Whether there are more of them.
    more_splits: bool

    @property
    def ambiguous(self) -> bool:
        """Whether the scan does not tell the lengths of the instruction registers."""
        return len(self.ir_splits) != 1


@dataclass(frozen=True)
class PostCode:
    """A POST code as a receiver has captured it."""

    code: int
    port: int
    #: Defined by the device.
    flags: int
    #: Defined by the device; microseconds since power-on on the simulated one.
    time: int


@dataclass(frozen=True)
class SvfResult:
    """What playing an SVF file took."""

    statements: int
    scans: int
    checked_scans: int
    bits: int
    #: What the file asks for.
    wait_seconds: float
    exchanges: int
    seconds: float
    #: TCK at the end, in Hz.
    frequency: int
    #: Where the device has another TCK than the file asks for: line, Hz asked for, Hz set.
    other_frequencies: tuple[tuple[int, int, int], ...]


def _whole(name: str, value: int, least: int, most: int) -> int:
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError(f"{name!r} must be an int, not {type(value).__name__}")
    if not least <= value <= most:
        raise ValueError(f"{name!r} must be from {least} to {most}, not {value}")
    return value


def seconds_of(name: str, value: float | None, least: float = 0.0) -> float | None:
    """A time that was given, in seconds; None for no end."""
    if value is None:
        return None
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise TypeError(f"{name!r} must be a number of seconds or None, not {type(value).__name__}")
    if not least <= value <= 1e9:
        raise ValueError(f"{name!r} must be from {least:g} to 1e9 seconds, not {value!r}")
    return float(value)


def scan(node: _core.Node, stop: _core.Stop | None) -> Chain:
    """Examines the chain of a jtag object."""
    idcodes, length, capture, splits, more = _core.scan_chain(node, stop)
    lengths = splits[0] if len(splits) == 1 else None
    taps = tuple(
        Tap(place, lengths[place] if lengths else None, idcode) for place, idcode in enumerate(idcodes)
    )
    return Chain(taps, length, int.from_bytes(capture, "little"), tuple(tuple(each) for each in splits), more)


def detect(node: _core.Node, first: int, last: int, stop: _core.Stop | None) -> list[int]:
    """The addresses that acknowledge."""
    return _core.detect(node, _whole("first", first, 0, 0x7F), _whole("last", last, 0, 0x7F), stop)


class Follower:
    """Takes POST codes until one comes, or time is over."""

    def __init__(self, node: _core.Node, until: int | None, timeout: float | None, interval: float) -> None:
        self._node = node
        self._until = until if until is None else _whole("until", until, 0, 0xFF)
        self._timeout = seconds_of("timeout", timeout)
        self._interval = seconds_of("interval", interval, 0.001) or INTERVAL
        self._end: float | None = None
        self._reached = False

    def begin(self, now: float) -> None:
        """Time counts from now on."""
        self._end = None if self._timeout is None else now + self._timeout

    def take(self, stop: _core.Stop | None) -> list[PostCode]:
        """What has come."""
        codes = [PostCode(*code) for code in _core.take_codes(self._node, stop)]
        self._reached = self._until is not None and any(code.code == self._until for code in codes)
        return codes

    def pause(self, before: float, now: float) -> float | None:
        """How long to wait for the next look; None if that which began at `before` was the last."""
        if self._reached:
            return None
        if self._end is None:
            return self._interval
        if before < self._end:
            return min(self._interval, max(self._end - now, 0.0))
        if self._until is not None:
            raise TimeoutError(f"POST code {self._until:02X} did not arrive within {self._timeout:g} s")
        return None


def content_of(source: Source) -> tuple[Buffer, str]:
    """What was given, or what is in the file of that name; and how messages call it."""
    if isinstance(source, (bytes, bytearray, memoryview)):
        return source, "the image"
    name = os.fspath(source)
    if not isinstance(name, str):
        raise TypeError("a path must be a str")
    return Path(name).read_bytes(), name


@contextlib.contextmanager
def _noted(notes: list[str]) -> Iterator[None]:
    try:
        yield
    except BaseException as error:
        for note in notes:
            error.add_note(note)
        raise


def load_rom(
    node: _core.Node,
    image: Source,
    options: dict[str, Any],
    progress: Progress | None,
    stop: _core.Stop | None,
) -> None:
    """Writes an image into the memory of a ROM emulation."""
    content, name = content_of(image)
    if memoryview(content).nbytes == 0:
        raise ValueError(f"{name!r} is empty")
    notes: list[str] = []
    offset = _whole("offset", options["offset"], 0, 0x7FFFFFFF)
    with _noted(notes):
        _core.load_rom(
            node, content, name, offset, options["verify"], options["enable"], options["live"], progress, stop, notes
        )  # fmt: skip


def verify_rom(
    node: _core.Node, image: Source, offset: int, progress: Progress | None, stop: _core.Stop | None
) -> None:
    """Compares the memory of a ROM emulation with an image."""
    content, name = content_of(image)
    _core.verify_rom(node, content, name, _whole("offset", offset, 0, 0x7FFFFFFF), progress, stop)


def save_rom(
    node: _core.Node,
    path: str | os.PathLike[str],
    offset: int,
    length: int | None,
    progress: Progress | None,
    stop: _core.Stop | None,
) -> int:
    """Reads the memory of a ROM emulation into a file, which is replaced once everything was read."""
    _whole("offset", offset, 0, 0x7FFFFFFF)
    if length is not None:
        _whole("length", length, 0, 0x7FFFFFFF)
    target = Path(path)
    mode = None
    if target.exists():
        target = target.resolve()
        if not target.is_file():
            # Such as a pipe, which cannot be replaced.
            with target.open("wb") as other:
                return _core.save_rom(node, other.write, offset, length, progress, stop)
        mode = stat.S_IMODE(target.stat().st_mode)
    part = target.with_name(f"{target.name}.{secrets.token_hex(8)}.part")
    # Nobody is to read before the end what only the owner could; a new file is for whom the umask says.
    descriptor = os.open(part, os.O_WRONLY | os.O_CREAT | os.O_EXCL | os.O_CLOEXEC, 0o666 if mode is None else 0o600)
    try:
        with open(descriptor, "wb") as file:
            count = _core.save_rom(node, file.write, offset, length, progress, stop)
            file.flush()
            if mode is not None:
                os.fchmod(descriptor, mode)
            os.fsync(descriptor)
        os.replace(part, target)
    except BaseException:
        part.unlink(missing_ok=True)
        raise
    return count


def play_svf(
    node: _core.Node,
    source: Source,
    stop_at: str,
    retry: int,
    check: bool,
    progress: Progress | None,
    stop: _core.Stop | None,
) -> SvfResult:
    """Plays an SVF file at a jtag object."""
    if stop_at not in ("check", "batch", "end"):
        raise ValueError(f"'stop_at' must be \"check\", \"batch\" or \"end\", not {stop_at!r}")
    _whole("retry", retry, 0, 0x7FFFFFFF)
    if retry and not check:
        raise ValueError("'retry' needs 'check'")
    text, name = content_of(source)
    if name == "the image":
        name = "svf"
    notes: list[str] = []
    with _noted(notes):
        return SvfResult(**_core.play_svf(node, text, name, stop_at, retry, check, progress, stop, notes))


def serial_settings(
    baud: int, bits: int, parity: str, stop_bits: int, rtscts: bool, dsrdtr: bool, xonxoff: bool, loopback: bool
) -> _core.SerialSettings:
    """The settings of a serial port, as the device takes them."""
    if parity not in ("none", "even", "odd"):
        raise ValueError(f"'parity' must be \"none\", \"even\" or \"odd\", not {parity!r}")
    most = 0x7FFFFFFF
    return (
        _whole("baud", baud, 1, most), _whole("bits", bits, 0, most), parity != "none", parity == "even",
        _whole("stop_bits", stop_bits, 0, most), bool(rtscts), bool(dsrdtr), bool(xonxoff), bool(loopback),
    )  # fmt: skip
