"""Exceptions, time limits, and devices that misbehave."""

from __future__ import annotations

import os
import pwd
import socket
import threading
import time
import warnings
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

import pytest

import tavo

from conftest import Runner, open_on


def test_the_exceptions_are_one_family() -> None:
    for kind in (
        tavo.ConfigurationError, tavo.ExecutionError, tavo.LockError, tavo.NetworkError, tavo.Refused,
        tavo.SpecificationError, tavo.TAVOKeyError, tavo.TAVOLoginError,
    ):  # fmt: skip
        assert issubclass(kind, tavo.Error)
        assert kind.__module__ == "tavo"


def test_nobody_listens() -> None:
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        with pytest.raises(tavo.NetworkError, match="Could not connect") as caught:
            tavo.open("127.0.0.1", port=taken.getsockname()[1], user="engineer", password="tavo")
    assert caught.value.origin == "connection"
    assert not caught.value.connection_usable


def test_the_lock_is_taken(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    with pytest.raises(tavo.LockError) as caught:
        open_on(tavo_simulator, user="guest")
    assert caught.value.locking_user == "engineer"
    assert caught.value.origin == "device" and caught.value.device_error_code == 1001
    tavo_device.power.get()


def test_the_password_is_wrong(tavo_simulator: tavo.Simulator) -> None:
    with pytest.raises(tavo.TAVOLoginError) as caught:
        open_on(tavo_simulator, password="wrong")
    assert caught.value.device_error_code == 1013


def test_the_key_is_unknown() -> None:
    with tavo.Simulator(key=-1) as simulator:
        with pytest.raises(tavo.TAVOKeyError):
            open_on(simulator, secure=True)
        with open_on(simulator) as device:
            assert device.key() is None


@pytest.mark.parametrize(
    ("fault", "kind"),
    [
        ("cut=0", tavo.NetworkError),
        ("cut=9", tavo.NetworkError),
        ("close", tavo.NetworkError),
        ("reset", tavo.NetworkError),
        ("silent", tavo.NetworkError),
        ("count=5", tavo.Error),
        ("size=result:0xFFFFFFFF", tavo.Error),
        ("size=status:0xFFFFFFFF", tavo.Error),
        ("error=1000:0:set me up", tavo.ConfigurationError),
        ("error=1002:0:who", tavo.SpecificationError),
        ("error=4711:0:odd \u00e9", tavo.Error),
        ("return=7", tavo.Refused),
    ],
)
def test_faults_raise_and_the_device_can_be_opened_again(
    tavo_simulator: tavo.Simulator, fault: str, kind: type[tavo.Error]
) -> None:
    with open_on(tavo_simulator, timeout=0.3) as device:
        tavo_simulator.fail_next(fault)
        with pytest.raises(kind) as caught:
            device.power.get()
        assert str(caught.value)
        assert caught.value.origin in ("connection", "device", "library")
    with open_on(tavo_simulator) as device:
        assert device.power.get().state == 0


@pytest.mark.parametrize("request_number", range(1, 12))
def test_openings_that_fail_leave_nothing_behind(request_number: int) -> None:
    with tavo.Simulator(faults=[f"{request_number}:cut=6"]) as simulator:
        try:
            open_on(simulator, timeout=5).close()
        except tavo.Error:
            pass
        # The same user, because a lock whose reply is lost stays.
        with open_on(simulator) as device:
            assert device.power.get().state == 0


@contextmanager
def garbage_server(answer: bytes) -> Iterator[int]:
    """Answers every connection with these bytes, and closes it."""
    with socket.create_server(("127.0.0.1", 0)) as listener:

        def serve() -> None:
            while True:
                try:
                    connection, _ = listener.accept()
                except OSError:
                    return
                with connection:
                    connection.settimeout(5)
                    try:
                        connection.recv(1)
                        connection.sendall(answer)
                    except OSError:
                        pass

        thread = threading.Thread(target=serve)
        thread.start()
        try:
            yield listener.getsockname()[1]
        finally:
            listener.shutdown(socket.SHUT_RDWR)
            thread.join(10)


@pytest.mark.parametrize("answer", [b"", b"\xff" * 100, b"\x00" * 4096, b"HTTP/1.0 400 Bad Request\r\n\r\n"])
def test_garbage_is_an_error(answer: bytes) -> None:
    with garbage_server(answer) as port, pytest.raises(tavo.Error):
        tavo.open("127.0.0.1", port=port, user="engineer", password="tavo", timeout=5)


def test_time_limits(tavo_simulator: tavo.Simulator) -> None:
    with open_on(tavo_simulator, timeout=0.2) as device:
        assert device.timeout == 0.2
        with pytest.raises(tavo.NetworkError, match="timed out"):
            device.system.usleep(5_000_000)
        assert device.power.get().state == 0
        device.timeout = None
        assert device.timeout is None
        device.timeout = 2
        device.system.usleep(300_000)
        for wrong in (0, -1, float("nan"), 1e10):
            with pytest.raises(ValueError, match="'timeout'"):
                device.timeout = wrong
        with pytest.raises(TypeError, match="'timeout'"):
            device.timeout = "soon"  # type: ignore[assignment]


@pytest.mark.parametrize(
    ("wish", "kind", "text"),
    [
        ({"port": 0}, ValueError, "'port'"),
        ({"port": 65536}, ValueError, "'port'"),
        ({"port": "http"}, TypeError, "'port'"),
        ({"timeout": 0}, ValueError, "'timeout'"),
        ({"only": "power"}, TypeError, "'only'"),
        ({"user": 5}, TypeError, ""),
    ],
)
def test_wrong_wishes(wish: dict[str, object], kind: type[Exception], text: str) -> None:
    arguments: dict[str, object] = {"user": "engineer", "password": "tavo", **wish}
    with pytest.raises(kind, match=text):
        tavo.open("127.0.0.1", **arguments)  # type: ignore[arg-type]
    with pytest.raises(TypeError, match="'host'"):
        tavo.open(5, password="x")  # type: ignore[arg-type]


def test_only_some_objects(tavo_simulator: tavo.Simulator) -> None:
    with open_on(tavo_simulator, only=["power", "bench.lamp"]) as device:
        assert set(device) == {"power", "bench", "device", "system", "private"}
        assert list(device.bench) == ["lamp"]


def test_the_password_comes_from_the_environment(
    tavo_simulator: tavo.Simulator, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setenv("TAVO_PASSWORD", "tavo")
    monkeypatch.setenv("TAVO_USER", "guest")
    with tavo.open(tavo_simulator.host, port=tavo_simulator.port):
        assert tavo_simulator.lock_holder == "guest"


def test_a_login_without_a_name(monkeypatch: pytest.MonkeyPatch) -> None:
    def no_entry(*_: object) -> None:
        raise KeyError("getpwuid(): uid not found: 4711")

    for name in ("TAVO_USER", "LOGNAME", "USER", "LNAME", "USERNAME"):
        monkeypatch.delenv(name, raising=False)
    monkeypatch.setattr(pwd, "getpwuid", no_entry)
    with pytest.raises(ValueError, match="'user' is missing; use user= or TAVO_USER"):
        tavo.open("127.0.0.1", password="tavo")


def test_the_password_comes_from_a_file(
    tavo_simulator: tavo.Simulator, monkeypatch: pytest.MonkeyPatch, tmp_path: Path
) -> None:
    monkeypatch.setenv("TAVO_PASSWORD", "wrong")
    file = tmp_path / "password"
    file.write_text("tavo\r\nmore\n")
    file.chmod(0o644)
    with pytest.warns(UserWarning, match="accessible to others: its mode is 0644"):
        open_on(tavo_simulator, password=None, password_file=file).close()
    os.chmod(file, 0o600)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        open_on(tavo_simulator, password=None, password_file=file).close()
    with pytest.raises(FileNotFoundError):
        open_on(tavo_simulator, password=None, password_file=tmp_path / "none")


def test_without_a_terminal_the_password_is_missing(tavo_simulator: tavo.Simulator, run_python: Runner) -> None:
    script = (
        "import os, sys, tavo\n"
        "os.environ.pop('TAVO_PASSWORD', None)\n"
        "os.setsid() if os.getpid() != os.getsid(0) else None\n"
        "tavo.open('127.0.0.1', port=int(sys.argv[1]), user='engineer')\n"
    )
    ended = run_python(script, tavo_simulator.port)
    assert ended.returncode == 1
    assert "ValueError: 'password' is missing, and there is no terminal to ask at" in ended.stderr


def test_a_stalled_opening_ends_in_time() -> None:
    with tavo.Simulator(faults=["2:silent"]) as simulator:
        begin = time.monotonic()
        with pytest.raises(tavo.NetworkError, match="timed out"):
            open_on(simulator, timeout=0.2)
        assert time.monotonic() - begin < 20


def test_the_extension_refuses_objects_without_content(run_python: Runner) -> None:
    ended = run_python(
        "import tavo\n"
        "from tavo import _core as core\n"
        "simulator = tavo.Simulator().__enter__()\n"
        "device = tavo.open(simulator.host, port=simulator.port, user='engineer', password='tavo')\n"
        "device.power.set(True)\n"
        "connection, node = device._connection, device.com._node\n"
        "settings = (9600, 8, False, False, 1, False, False, False, False)\n"
        "new = lambda kind: kind.__new__(kind)\n"
        "for attempt in (\n"
        "    lambda: core.scan_chain(None, None),\n"
        "    lambda: core.send_break(None, settings, None),\n"
        "    lambda: core.SerialLink(None, settings, None),\n"
        "    lambda: core.SerialLink(new(core.Node), settings, None),\n"
        "    lambda: new(core.SerialLink).exchange(b'', None),\n"
        "    lambda: new(core.SerialLink).close(None),\n"
        "    lambda: core.Batch(None),\n"
        "    lambda: core.Batch(connection).add(None, None, ()),\n"
        "    lambda: core.Batch(connection).add(node, None, ()),\n"
        "    lambda: new(core.Batch).run(),\n"
        "    lambda: core.open('127.0.0.1', 1, 'a', 'b', False, None, [], None),\n"
        "    lambda: core.open('127.0.0.1', 1, 'a', 'b', False, None, [], new(core.Interrupter)),\n"
        "    lambda: new(core.Interrupter).interrupt(),\n"
        "    lambda: new(core.Stop).interrupt(),\n"
        "    lambda: new(core.Connection).closed,\n"
        "    lambda: new(core.Connection).close(),\n"
        "    lambda: core.Connection.find(None, 'power'),\n"
        "    lambda: new(core.Node).children(),\n"
        "    lambda: new(core.Node).connection,\n"
        "    lambda: new(core.Call).value,\n"
        "):\n"
        "    try:\n        attempt()\n        print('nothing')\n"
        "    except (TypeError, RuntimeError):\n        pass\n"
        "print(core.detect(device.i2c._node, 0x48, 0x48, None))\n"
        "device.close()\n"
    )
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "[72]\n", "")
