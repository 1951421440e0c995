"""A simulated appliance in this process."""

from __future__ import annotations

import os
from typing import TYPE_CHECKING, Any, NamedTuple

from . import _core

if TYPE_CHECKING:
    from collections.abc import Iterable
    from types import TracebackType

    Buffer = bytes | bytearray | memoryview

os.register_at_fork(after_in_child=_core.forget_simulators)


class SimulatedCall(NamedTuple):
    """A call that reached a simulated appliance."""

    object: str
    method: str
    parameters: dict[str, Any]
    code: int
    #: Counted from 1; the calls of a batch share it.
    request: int


class Simulator:
    """A simulated appliance, for tests. Listens within a `with` block, or from start() to stop().

    topology: the name of a set of objects, such as "standard", or the path of a JSON file that describes one.
    faults: what goes wrong, such as "3:cut=17": the reply to the third request ends after 17 bytes.
    Users are "engineer" and "guest", both with the password "tavo".
    """

    #: Who may take the lock.
    user = "engineer"
    password = "tavo"

    def __init__(
        self,
        topology: str | os.PathLike[str] = "standard",
        faults: str | Iterable[str] = (),
        *,
        host: str = "127.0.0.1",
        port: int = 0,
        key: int = 0,
    ) -> None:
        script = faults.split("\n") if isinstance(faults, str) else list(faults)
        script = [fault.strip() for fault in script if fault.strip()]
        self._host = host
        self._simulator = _core.Simulator(os.fspath(topology), script, host, port, key)

    def __enter__(self) -> Simulator:
        self.start()
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.stop()

    def __repr__(self) -> str:
        return f"<tavo.Simulator {self.host}:{self.port}>"

    @property
    def host(self) -> str:
        """The address that it listens on."""
        return self._host

    @property
    def port(self) -> int:
        """The port that it listens on; 0 before the first start()."""
        return self._simulator.port()

    def start(self) -> None:
        """Begins to listen; after stop() on the same port again."""
        self._simulator.start()

    def stop(self) -> None:
        """Closes all connections. What the appliance knows stays."""
        self._simulator.stop()

    def fail_next(self, fault: str, *, ahead: int = 1) -> None:
        """Lets a request go wrong: `ahead` requests from now; 1 is the next. The fault is such as "cut=17"."""
        self._simulator.fail_next(fault, ahead)

    def calls(self) -> list[SimulatedCall]:
        """The last calls, in the order they were carried out."""
        return [SimulatedCall(*call) for call in self._simulator.calls()]

    def clear_calls(self) -> None:
        """Forgets the calls."""
        self._simulator.clear_calls()

    @property
    def request_count(self) -> int:
        """How many requests have come."""
        return self._simulator.counts()[0]

    @property
    def connection_count(self) -> int:
        """How many connections have been accepted."""
        return self._simulator.counts()[1]

    @property
    def open_connections(self) -> int:
        """How many connections are open."""
        return self._simulator.counts()[2]

    @property
    def lock_holder(self) -> str | None:
        """The user who holds the lock."""
        return self._simulator.lock_holder()

    def advance(self, seconds: float) -> None:
        """Lets simulated time pass at once: a board boots in 3 seconds."""
        self._simulator.advance(seconds)

    def relay(self, name: str = "power") -> bool:
        """Whether the relay is on."""
        return self._simulator.relay(name)

    def set_relay(self, name: str, state: bool) -> None:
        """Switches the relay."""
        self._simulator.set_relay(name, state)

    def post_codes(self, name: str = "lpc.lpcPostCode") -> list[int]:
        """The POST codes that the receiver holds, the oldest first."""
        return self._simulator.post_codes(name)

    def write_post_code(self, code: int, name: str = "lpc.lpcPostCode") -> None:
        """Lets the board write a POST code now, if it has power."""
        self._simulator.write_post_code(name, code)

    def eeprom(self, bus: str = "i2c", address: int = 0x50) -> bytes:
        """The content of the EEPROM at that address of an I2C bus."""
        return self._simulator.eeprom(bus, address)

    def set_eeprom(self, content: Buffer, bus: str = "i2c", address: int = 0x50) -> None:
        """Replaces the first bytes of the EEPROM."""
        self._simulator.set_eeprom(bus, address, content)

    def type_at_console(self, typed: Buffer, name: str = "com") -> None:
        """Types at the console of the board, to which the serial port is wired."""
        self._simulator.type_at_console(name, typed)
