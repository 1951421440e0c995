"""Devices whose calls are awaited; tavo.aio is their public module."""

from __future__ import annotations

import asyncio
import functools
import os
import queue
import threading
from typing import TYPE_CHECKING, Any, ClassVar, TypeVar

from . import _core, _types
from ._aio_helpers import HELPERS
from ._device import Batch as _Batch
from ._device import Opened, Wish, connect, milliseconds_of
from ._lookup import ObjectTree
from ._object import Remote

if TYPE_CHECKING:
    from collections.abc import Callable, Generator, Iterable
    from types import TracebackType

T = TypeVar("T")
ObjectType = TypeVar("ObjectType", bound=Remote)


class _Job:
    """A call that waits for the thread of its device, or runs there."""

    def __init__(
        self, work: Callable[[], Any], loop: asyncio.AbstractEventLoop, stop: _core.Stop | None = None
    ) -> None:
        self.work = work
        self.loop = loop
        self.stop = stop
        self.done: asyncio.Future[Any] = loop.create_future()
        self.cancelled = False

    def settle(self, result: Any, error: BaseException | None) -> None:
        def tell() -> None:
            if self.done.cancelled():
                return
            if error is None:
                self.done.set_result(result)
            else:
                self.done.set_exception(error)

        try:
            self.loop.call_soon_threadsafe(tell)
        except RuntimeError:
            pass  # The loop has been closed: nobody waits any more.


class _Turn:
    """Which call runs in a thread."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._current: _Job | None = None

    def begin(self, job: _Job) -> bool:
        """False if the job has been cancelled."""
        with self._lock:
            self._current = None if job.cancelled else job
            return not job.cancelled

    def end(self) -> None:
        """The call has ended: an interrupt would hit the next."""
        with self._lock:
            self._current = None

    def cancel(self, job: _Job, interrupter: _core.Interrupter) -> bool:
        """Interrupts the job if it runs: true then."""
        with self._lock:
            job.cancelled = True
            if self._current is not job:
                return False
            # A helper gives back to the device what it has taken, and is not to be interrupted in that.
            (job.stop or interrupter).interrupt()
            return True


class _Worker:
    """The thread of one device, which ends with the last object that uses it."""

    def __init__(self, interrupter: _core.Interrupter) -> None:
        self._interrupter = interrupter
        self._jobs: queue.SimpleQueue[_Job | None] = queue.SimpleQueue()
        self._turn = _Turn()
        threading.Thread(target=_work, args=(self._jobs, self._turn), name="tavo.aio", daemon=True).start()

    def __del__(self) -> None:
        self._jobs.put(None)

    def begin(self, work: Callable[[], Any], stop: _core.Stop | None = None) -> _Job:
        """Lets the thread do the work, after what came before."""
        job = _Job(work, asyncio.get_running_loop(), stop)
        self._jobs.put(job)
        return job

    async def help(self, work: Callable[..., T], *arguments: Any) -> T:
        """The result of a helper, which takes what ends it as its last argument."""
        stop = _core.Stop()
        return await self.run(functools.partial(work, *arguments, stop), stop)

    async def run(self, work: Callable[[], T], stop: _core.Stop | None = None) -> T:
        """The result of the work. Cancelling interrupts it, by `stop` if there is one."""
        job = self.begin(work, stop)
        try:
            result: T = await asyncio.shield(job.done)
            return result
        except asyncio.CancelledError:
            # Whoever comes next finds the device at rest. An interrupt that came too early for the exchange
            # ends nothing, so there may have to be another.
            while self._turn.cancel(job, self._interrupter):
                try:
                    await asyncio.wait([job.done], timeout=0.05)
                except asyncio.CancelledError:
                    continue
            if job.done.done() and not job.done.cancelled():
                job.done.exception()
            raise


def _work(jobs: queue.SimpleQueue[_Job | None], turn: _Turn) -> None:
    while (job := jobs.get()) is not None:
        result, error = None, None
        if turn.begin(job):
            try:
                result = job.work()
            except BaseException as caught:
                error = caught
            turn.end()
        if not job.cancelled:
            job.settle(result, error)
        del job, result, error


class AwaitedObject(Remote):
    """A remote object whose methods are awaited."""

    __module_of_classes__: ClassVar[str] = "tavo.aio"
    __helpers__ = HELPERS

    def __init__(self, node: _core.Node, worker: _Worker) -> None:
        super().__init__(node, functools.partial(_await_call, node, worker))
        self._worker = worker

    def _member(self, node: _core.Node) -> Any:
        return _awaited_object_for(node, self._worker)


def _await_call(node: _core.Node, worker: _Worker, spec: Any, arguments: tuple[Any, ...]) -> Any:
    return worker.run(functools.partial(node.call, spec, arguments))


def _awaited_object_for(node: _core.Node, worker: _Worker) -> Any:
    return _types.class_of(*node.table(), AwaitedObject)(node, worker)


class Batch(_Batch):
    """Calls that go to the device in one exchange, at the end of the `async with` block."""

    def __init__(self, connection: _core.Connection, worker: _Worker) -> None:
        super().__init__(connection)
        self._worker = worker

    def __enter__(self) -> Batch:
        raise TypeError("use 'async with'")

    async def __aenter__(self) -> Batch:
        return self

    async def __aexit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if kind is None:
            await self._worker.run(self._batch.run)
        else:
            self._batch.abandon()


class Device(ObjectTree):
    """An open device, as `tavo.Device`; what asks the device is awaited."""

    def __init__(self, connection: _core.Connection, worker: _Worker, host: str) -> None:
        self._connection = connection
        self._worker = worker
        self._host = host

    async def __aenter__(self) -> Device:
        return self

    async def __aexit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        await self.close()

    def _object(self, node: _core.Node) -> Any:
        return _awaited_object_for(node, self._worker)

    def __repr__(self) -> str:
        return f"<tavo.aio.Device {self._host}{' closed' if self._connection.closed else ''}>"

    def get(self, path: str, kind: type[ObjectType]) -> ObjectType:
        """The object of that full name, which must be of that class: `device.get("power", tavo.aio.Relay)`."""
        found: ObjectType = self._get(path, kind)
        return found

    def batch(self) -> Batch:
        """A batch of calls, for an `async with` block."""
        return Batch(self._connection, self._worker)

    async def close(self) -> None:
        """Gives the lock back and disconnects, after the calls that wait. Works any number of times."""
        await self._worker.run(self._connection.close)

    async def unlock(self) -> None:
        """Gives the lock back; the device stays open."""
        await self._worker.run(self._connection.unlock)

    async def relock(self) -> None:
        """Takes the lock again."""
        await self._worker.run(self._connection.relock)

    async def set_timeout(self, seconds: float | None) -> None:
        """Sets the longest time for each exchange, in seconds; None for no limit."""
        limit = milliseconds_of(seconds)
        await self._worker.run(lambda: setattr(self._connection, "milliseconds", limit))

    @property
    def closed(self) -> bool:
        """Whether the device has been closed."""
        return self._connection.closed


class _Opening:
    """What open() returns: await it, or enter it by `async with`."""

    def __init__(self, wish: Wish) -> None:
        self._wish = wish
        self._device: Device | None = None

    async def _open(self) -> Device:
        interrupter = _core.Interrupter()
        worker = _Worker(interrupter)
        opened: list[Opened] = []

        def work() -> None:
            opened.append(connect(self._wish, interrupter))

        try:
            await worker.run(work)
        except BaseException:
            # A cancelled opening may have come to its end all the same.
            for one in opened:
                worker.begin(one.connection.close)
            raise
        return Device(opened[0].connection, worker, opened[0].host)

    def __await__(self) -> Generator[Any, None, Device]:
        return self._open().__await__()

    async def __aenter__(self) -> Device:
        self._device = await self._open()
        return self._device

    async def __aexit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if self._device is not None:
            await self._device.close()


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
) -> _Opening:
    """Opens a device, as tavo.open() does: `async with tavo.aio.open(host) as device`, or `await` it."""
    return _Opening(Wish(host, port, user, password, password_file, secure, timeout, only))
