"""The serial port of a device as a file."""

from __future__ import annotations

import io
import threading
import time
from typing import Any

import pytest

import tavo

from conftest import Runner


@pytest.fixture
def port(tavo_device: tavo.Device) -> tavo.SerialPort:
    tavo_device.power.set(state=True)
    return tavo_device.get("com", tavo.Com).open_serial(loopback=True, timeout=20)


def test_bytes_go_there_and_back(port: tavo.SerialPort) -> None:
    data = bytes(range(256))
    with port:
        assert isinstance(port, io.RawIOBase) and port.readable() and port.writable() and not port.seekable()
        assert port.name == "com"
        assert port.write(data) == 256
        assert port.write(memoryview(b"more")) == 4
        got = b""
        while len(got) < 260:
            got += port.read(100) or b""
        assert got == data + b"more"
        assert port.in_waiting == 0
    assert port.closed
    with pytest.raises(ValueError, match="closed file"):
        port.read(1)
    with pytest.raises(ValueError, match="closed file"):
        port.write(b"x")
    port.close()


def test_a_large_write_goes_in_parts(port: tavo.SerialPort) -> None:
    data = bytes(range(256)) * 256
    with port, io.BufferedRWPair(port, port) as pair:
        def write() -> None:
            pair.write(data)
            pair.flush()

        writer = threading.Thread(target=write)
        writer.start()
        got = b""
        while len(got) < len(data):
            got += pair.read1(4096)
        writer.join()
    assert got == data


def test_a_time_out_is_told_from_data(port: tavo.SerialPort) -> None:
    with port:
        port.timeout = 0.2
        begin = time.monotonic()
        assert port.read(10) is None
        assert time.monotonic() - begin >= 0.2
        port.timeout = 0
        assert port.read(10) is None
        for wrong in (-1, float("nan")):
            with pytest.raises(ValueError):
                port.timeout = wrong
        assert port.timeout == 0


def test_lines_of_text(port: tavo.SerialPort) -> None:
    pair: Any = io.BufferedRWPair(port, port)
    with port, io.TextIOWrapper(pair, newline="\n", line_buffering=True) as text:
        text.write("one\ntwo\n")
        assert text.readline() == "one\n"
        assert text.readline() == "two\n"


def test_the_console_answers(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_device.power.set(state=True)
    tavo_simulator.advance(5)
    with tavo_device.console.open_serial(timeout=20, send_break=True) as port:
        port.write(b"hello\r")
        got = b""
        while b"hello\r" not in got:
            part = port.read(100)
            assert part, got
            got += part


def test_the_port_is_open_and_closed_on_the_device(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_device.power.set(state=True)
    tavo_simulator.clear_calls()
    port = tavo_device.com.open_serial(baud=9600, bits=7, parity="even", stop_bits=2, rtscts=True)
    port.close()
    opened, *_, closed = tavo_simulator.calls()
    assert (opened.method, list(opened.parameters.values())) == (
        "open", [9600, 7, True, True, 2, True, False, False, False],
    )  # fmt: skip
    assert closed.method == "close"
    with pytest.raises(ValueError, match="parity"):
        tavo_device.com.open_serial(parity="mark")
    with pytest.raises(tavo.Refused):
        tavo_device.com.open_serial(baud=1)


def test_an_opening_that_is_cut_short_leaves_no_port_open(
    tavo_device: tavo.Device, tavo_simulator: tavo.Simulator
) -> None:
    tavo_device.power.set(state=True)
    tavo_simulator.clear_calls()
    tavo_device.timeout = 1
    tavo_simulator.fail_next("silent")
    with pytest.raises(tavo.NetworkError):
        tavo_device.com.open_serial()
    methods = [call.method for call in tavo_simulator.calls()]
    assert [method for method in methods if method in ("open", "close")] == ["open", "close"]
    tavo_simulator.clear_calls()
    with pytest.raises(tavo.Refused):
        tavo_device.com.open_serial(baud=1)
    assert [call.method for call in tavo_simulator.calls()] == ["open"]


def test_the_device_closes_its_ports(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_device.power.set(state=True)
    port = tavo_device.com.open_serial()
    tavo_simulator.clear_calls()
    tavo_device.close()
    port.close()
    assert [call.method for call in tavo_simulator.calls()] == ["close", "unlock"]


def test_reading_ends_with_the_device(port: tavo.SerialPort, tavo_device: tavo.Device) -> None:
    port.timeout = None
    threading.Timer(0.3, tavo_device.close).start()
    with pytest.raises(tavo.Error, match="closed"):
        port.read(1)
    port.close()


def test_reading_ends_with_the_port(port: tavo.SerialPort) -> None:
    port.timeout = None
    threading.Timer(0.3, port.close).start()
    with pytest.raises(ValueError, match="closed file"):
        port.read(1)


def test_a_signal_handler_cannot_use_a_busy_port(run_python: Runner) -> None:
    ended = run_python(
        "import signal, tavo\n"
        "simulator = tavo.Simulator().__enter__()\n"
        "device = tavo.open(simulator.host, port=simulator.port, user='engineer', password='tavo')\n"
        "device.power.set(True)\n"
        "port = device.com.open_serial()\n"
        "for use in (port.close, lambda: port.write(b'x'), lambda: port.read(1)):\n"
        "    signal.signal(signal.SIGALRM, lambda *_: use())\n"
        "    simulator.fail_next('silent')\n"
        "    signal.setitimer(signal.ITIMER_REAL, 0.3)\n"
        "    try:\n        port.write(b'')\n"
        "    except RuntimeError as error:\n        print(error)\n"
        "port.close()\n"
        "print([call.method for call in simulator.calls()][-1])\n"
        "device.close()\n"
    )
    told = "the device is in the middle of a call of this thread\n" * 3
    assert (ended.stdout, ended.stderr) == (told + "close\n", "")


def test_a_close_that_is_cut_short_can_be_repeated(run_python: Runner) -> None:
    ended = run_python(
        "import signal, threading, time, tavo\n"
        "simulator = tavo.Simulator().__enter__()\n"
        "device = tavo.open(simulator.host, port=simulator.port, user='engineer', password='tavo')\n"
        "device.power.set(True)\n"
        "port = device.com.open_serial()\n"
        "other = threading.Thread(target=lambda: device.system.usleep(1_500_000))\n"
        "other.start()\n"
        "time.sleep(0.2)\n"
        "signal.signal(signal.SIGALRM, signal.default_int_handler)\n"
        "signal.setitimer(signal.ITIMER_REAL, 0.3)\n"
        "try:\n    port.close()\n"
        "except KeyboardInterrupt:\n    print(port.closed)\n"
        "other.join()\n"
        "port.close()\n"
        "print(port.closed, [call.method for call in simulator.calls()][-1])\n"
        "device.close()\n"
    )
    assert (ended.stdout, ended.stderr) == ("False\nTrue close\n", "")


def test_a_port_that_nobody_closes(run_python: Runner) -> None:
    ended = run_python(
        "import tavo\n"
        "simulator = tavo.Simulator().__enter__()\n"
        "device = tavo.open(simulator.host, port=simulator.port, user='engineer', password='tavo')\n"
        "device.power.set(True)\n"
        "port = device.com.open_serial()\n"
        "port = None\n"
        "print([call.method for call in simulator.calls()][-1])\n"
        "port = device.com.open_serial()\n"
        "import atexit\n"
        "atexit.unregister(tavo._core.close_all)\n"
        "atexit.register(lambda: print([call.method for call in simulator.calls()][-2]))\n"
        "atexit.register(tavo._core.close_all)\n"
    )
    assert (ended.stdout, ended.stderr) == ("close\nclose\n", "")
