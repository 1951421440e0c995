"""Devices and batches."""

from __future__ import annotations

import atexit
import os
import warnings
from typing import TYPE_CHECKING, Any, Generic, NamedTuple, TypeVar

from . import _core
from ._lookup import ObjectTree
from ._object import BatchedObject, CallingObject, Remote, batched_object_for, object_for
from ._password import find_password, find_user

if TYPE_CHECKING:
    from collections.abc import Callable, Iterable
    from types import TracebackType
    from typing import ParamSpec

    P = ParamSpec("P")

T = TypeVar("T")
ObjectType = TypeVar("ObjectType", bound=CallingObject)

atexit.register(_core.close_all)
os.register_at_fork(after_in_child=_core.forget_all)


def milliseconds_of(timeout: float | None) -> int | None:
    """A time limit in seconds as the library takes it."""
    if timeout is None:
        return None
    if isinstance(timeout, bool) or not isinstance(timeout, (int, float)):
        raise TypeError(f"'timeout' must be a number of seconds or None, not {type(timeout).__name__}")
    if not 0.001 <= timeout <= 1e9:
        raise ValueError(f"'timeout' must be from 0.001 to 1e9 seconds, not {timeout!r}")
    return round(timeout * 1000)


class Wish(NamedTuple):
    """What open() is asked for."""

    host: str | None
    port: int | None
    user: str | None
    password: str | None
    password_file: str | os.PathLike[str] | None
    secure: bool | None
    timeout: float | None
    only: Iterable[str]


class Opened(NamedTuple):
    """A connection, and where it leads."""

    connection: _core.Connection
    host: str
    port: int


def connect(wish: Wish, interrupter: _core.Interrupter) -> Opened:
    """Opens a device with what was given, what environment and file have, and what the user answers."""
    if wish.host is not None and not isinstance(wish.host, str):
        raise TypeError(f"'host' must be a str, not {type(wish.host).__name__}")
    if wish.port is not None:
        if isinstance(wish.port, bool) or not isinstance(wish.port, int):
            raise TypeError(f"'port' must be an int, not {type(wish.port).__name__}")
        if not 1 <= wish.port <= 65535:
            raise ValueError(f"'port' must be from 1 to 65535, not {wish.port}")
    if isinstance(wish.only, str):
        raise TypeError("'only' must be several names, not one str")
    milliseconds_of(wish.timeout)
    file = None if wish.password_file is None else os.fsdecode(wish.password_file)
    secure = None if wish.secure is None else bool(wish.secure)
    host, port, user, file, secure, timeout, warning = _core.settings(
        wish.host or "", wish.port, wish.user, file, secure, wish.timeout
    )
    if warning:
        warnings.warn(warning, stacklevel=3)
    user = find_user() if user is None else user
    password = find_password(user, file) if wish.password is None else wish.password
    connection = _core.open(
        host, port, user, password, secure, milliseconds_of(timeout), list(wish.only), interrupter
    )
    return Opened(connection, host, port)


def hosts(group: str | None = None) -> list[str]:
    """The names of the devices in the configuration file, in its order; those of one group, if given."""
    return _core.hosts(group or "")


class Call(Generic[T]):
    """A call of a batch; made by the batch. Only for annotations: `tavo.Call[tavo.Jtag.ShiftDRReply]`."""

    #: The return code; None if there is no result.
    code: int | None
    #: Why there is no value: an exception; None on success.
    error: Exception | None

    @property
    def value(self) -> T:
        """What the method returned. Raises `error` if there is no value."""
        raise NotImplementedError


class Batch(ObjectTree):
    """Calls that go to the device in one exchange, at the end of the `with` block.

    The objects of the device are attributes of the batch, as they are of the device. Their methods return a
    `Call` each. If the block raises, nothing is sent.
    """

    def __init__(self, connection: _core.Connection) -> None:
        self._connection = connection
        self._batch = _core.Batch(connection)

    def __enter__(self) -> Batch:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if kind is None:
            self._batch.run()
        else:
            self._batch.abandon()

    def __len__(self) -> int:
        return self._batch.size()

    def _object(self, node: _core.Node) -> Any:
        return batched_object_for(node, self._batch)

    def add(self, method: Callable[P, T], /, *args: P.args, **kwargs: P.kwargs) -> Call[T]:
        """Adds a call of a method of the device: `batch.add(device.power.set, state=True)`.

        The same as `batch.power.set(state=True)`, but type checkers know what comes back.
        """
        owner = getattr(method, "__self__", None)
        function = getattr(method, "__func__", None)
        if not isinstance(owner, Remote) or function is None:
            raise TypeError(f"{method!r} is not a method of a remote object")
        batched = batched_object_for(owner._node, self._batch)
        call: Call[T] = function(batched, *args, **kwargs)
        return call


class Device(ObjectTree):
    """An open device: its objects are attributes, and `device["bench.lamp"]` finds one by its full name.

    Threads may share a device; their calls take turns. Close it, best by a `with` block: that gives the lock
    back. The objects keep the connection open as well.
    """

    def __init__(self, connection: _core.Connection, host: str, port: int) -> None:
        self._connection = connection
        self._host = host
        self._port = port

    def __enter__(self) -> Device:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.close()

    def _object(self, node: _core.Node) -> Any:
        return object_for(node)

    def __repr__(self) -> str:
        state = " closed" if self._connection.closed else ""
        return f"<tavo.Device {self._host}:{self._port}{state}>"

    def get(self, path: str, kind: type[ObjectType]) -> ObjectType:
        """The object of that full name, which must be of that class: `device.get("power", tavo.Relay)`."""
        found: ObjectType = self._get(path, kind)
        return found

    def batch(self) -> Batch:
        """A batch of calls, for a `with` block."""
        return Batch(self._connection)

    def close(self) -> None:
        """Waits for a call that is running, gives the lock back and disconnects. Works any number of times."""
        self._connection.close()

    def interrupt(self) -> None:
        """Ends the call of another thread that is running, with NetworkError. The device can be used again."""
        self._connection.interrupt()

    def unlock(self) -> None:
        """Gives the lock back; the device stays open."""
        self._connection.unlock()

    def relock(self) -> None:
        """Takes the lock again."""
        self._connection.relock()

    def lock_holder(self) -> str | None:
        """Who holds the lock, as far as the device tells."""
        return self._connection.lock_holder()

    def key(self) -> tuple[bool, bool] | None:
        """Asks the device for its key: the two flags of the known key; None if it is not known."""
        return self._connection.key()

    @property
    def host(self) -> str:
        """The host: that of the configuration file, if a device there was named."""
        return self._host

    @property
    def port(self) -> int:
        """The TCP port."""
        return self._port

    @property
    def closed(self) -> bool:
        """Whether the device has been closed."""
        return self._connection.closed

    @property
    def locked(self) -> bool:
        """Whether this device holds the lock, as far as this side knows."""
        return self._connection.locked

    @property
    def connected(self) -> bool:
        """Whether there is a connection, as far as this side knows."""
        return self._connection.connected

    @property
    def reconnects(self) -> int:
        """How often the connection has been replaced since the device was opened."""
        return self._connection.reconnects

    @property
    def timeout(self) -> float | None:
        """The longest time for each exchange, in seconds; None for no limit."""
        limit = self._connection.milliseconds
        return None if limit is None else limit / 1000

    @timeout.setter
    def timeout(self, seconds: float | None) -> None:
        self._connection.milliseconds = milliseconds_of(seconds)


def open(
    host: str | None = None,
    *,
    port: int | None = None,
    user: str | None = None,
    password: str | None = None,
    password_file: str | os.PathLike[str] | None = None,
    secure: bool | None = None,
    timeout: float | None = None,
    only: Iterable[str] = (),
) -> Device:
    """Connects to a device, takes its lock and learns its objects.

    What is not given comes from TAVO_HOST, TAVO_PORT and TAVO_USER of the environment, else from the section of the
    device in the configuration file, else from its [defaults]. It is the file of the tool `tavo`: TAVO_CONFIG, or
    tavo/config.toml in XDG_CONFIG_HOME or ~/.config.

    host: name of a device in the configuration file, or a host name or address, also as HOST:PORT.
    port: its TCP port; 6123 if nothing says another, or 6124 if `secure`.
    user: who takes the lock; if nothing says, the name of the login.
    password: by default the first line of `password_file`, else TAVO_PASSWORD of the environment, else the first line
        of the file that the configuration names, else the user is asked. It travels unencrypted.
    secure: whether to check the device's key before the lock is taken.
    timeout: the longest time for each exchange, in seconds; no limit if nothing says one.
    only: full names of the objects to learn; by default all.
    """
    wish = Wish(host, port, user, password, password_file, secure, timeout, only)
    return Device(*connect(wish, _core.Interrupter()))
