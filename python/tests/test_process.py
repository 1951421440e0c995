"""Forks, the end of the interpreter, garbage collection, and many openings."""

from __future__ import annotations

import gc
import os
import time
import warnings

import pytest

import tavo

from conftest import Runner, open_on

OPEN = """
import gc, os, sys, threading, time, tavo
device = tavo.open("127.0.0.1", port=int(sys.argv[1]), user="engineer", password="tavo")
"""

# What the threads would say of the end may meet the end of stderr.
POLLING = """
other = tavo.Simulator()
other.start()
def poll(ask):
    try:
        while True:
            ask()
    except RuntimeError:
        pass
for ask in (lambda: other.request_count, other.calls, other.relay) * 3:
    threading.Thread(target=poll, args=(ask,), daemon=True).start()
time.sleep(0.2)
"""


# The device of a thread that is deep in Python cannot be closed: another one.
CALLING_BACK = """
other = tavo.Simulator()
other.start()
used = tavo.open(other.host, port=other.port, user="engineer", password="tavo")
begun = threading.Event()
def told(*_):
    begun.set()
    while True:
        pass
threading.Thread(target=lambda: used.rom.load(bytes(100), progress=told), daemon=True).start()
assert begun.wait(30)
"""


def wait_for_unlock(simulator: tavo.Simulator) -> bool:
    end = time.monotonic() + 20
    while simulator.lock_holder is not None and time.monotonic() < end:
        time.sleep(0.01)
    return simulator.lock_holder is None


@pytest.mark.parametrize(
    "ending",
    [
        "",
        "power = device.power; del device",
        "sys.exit(0)",
        "sys.modules['keep'] = device",
        "cycle = [device]; cycle.append(cycle); del device, cycle",
        "threading.Thread(target=lambda: device.system.usleep(300_000)).start()",
        "threading.Thread(target=lambda: device.system.usleep(60_000_000), daemon=True).start(); time.sleep(0.2)",
        "threading.Thread(target=lambda: [device.power.get() for _ in iter(int, 1)], daemon=True).start(); "
        "time.sleep(0.2)",
        "other = tavo.Simulator(); other.start()",
        POLLING,
        "batch = device.batch(); batch.power.get()",
        CALLING_BACK,
    ],
)
def test_the_end_of_the_interpreter_gives_the_lock_back(
    tavo_simulator: tavo.Simulator, run_python: Runner, ending: str
) -> None:
    ended = run_python(OPEN + ending, tavo_simulator.port)
    assert ended.returncode == 0, ended.stderr
    assert "Fatal" not in ended.stderr and "terminate" not in ended.stderr
    assert wait_for_unlock(tavo_simulator)


def test_the_end_does_not_wait_for_a_silent_device(run_python: Runner) -> None:
    script = """
import tavo
simulator = tavo.Simulator()
simulator.start()
device = tavo.open("127.0.0.1", port=simulator.port, user="engineer", password="tavo")
for ahead in range(1, 9):
    simulator.fail_next("silent", ahead=ahead)
"""
    ended = run_python(script)
    assert ended.returncode == 0, ended.stderr


def test_a_thread_may_drop_a_device_while_the_end_closes_it(run_python: Runner) -> None:
    script = """
import threading, time, tavo
simulator = tavo.Simulator()
simulator.start()
device = tavo.open("127.0.0.1", port=simulator.port, user="engineer", password="tavo")
for ahead in range(1, 9):
    simulator.fail_next("silent", ahead=ahead)
held = [device._connection]
del device
def drop():
    while not held[0].closed:
        time.sleep(0.01)
    held.clear()
threading.Thread(target=drop, daemon=True).start()
"""
    # What has been freed is overwritten.
    ended = run_python(script, MALLOC_PERTURB_="165", GLIBC_TUNABLES="glibc.malloc.tcache_count=0")
    assert (ended.returncode, ended.stderr) == (0, "")


def test_a_child_process_leaves_the_device_alone(tavo_simulator: tavo.Simulator, run_python: Runner) -> None:
    script = """
child = os.fork()
if child == 0:
    try:
        device.power.get()
    except tavo.Error as error:
        print(error, flush=True)
    device.interrupt()
    device.close()
    del device
    gc.collect()
    sys.exit(3)
print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), flush=True)
device.power.set(True)
print(device.power.get().state, device.reconnects)
device.close()
"""
    ended = run_python(OPEN + script, tavo_simulator.port)
    assert ended.stdout == "the device was opened by another process, before a fork\n3\n1 0\n", ended.stderr
    assert tavo_simulator.lock_holder is None


def test_a_child_process_opens_its_own_device(tavo_simulator: tavo.Simulator, run_python: Runner) -> None:
    script = """
simulator = tavo.Simulator()
simulator.start()
child = os.fork()
if child == 0:
    del simulator
    mine = tavo.open("127.0.0.1", port=int(sys.argv[1]), user="engineer", password="tavo")
    print(mine.power.get().state, flush=True)
    mine.close()
    os._exit(0)
print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
"""
    ended = run_python(OPEN + script, tavo_simulator.port)
    assert ended.stdout == "0\n0\n", ended.stderr


@pytest.mark.parametrize("host", ["127.0.0.1", "localhost", "0.0.0.0"])
def test_a_child_process_lets_go_of_the_simulator(run_python: Runner, host: str) -> None:
    script = """
import os, socket, sys, tavo
simulator = tavo.Simulator(host=sys.argv[1])
simulator.start()
other = socket.create_server(("127.0.0.1", 0))
device = tavo.open(sys.argv[1], port=simulator.port, user="engineer", password="tavo")
ends, begins = os.pipe()
ready, tells = os.pipe()
child = os.fork()
if child == 0:
    os.close(begins)
    os.write(tells, b"x")
    os.read(ends, 1)
    other.getsockname()
    try:
        simulator.start()
    except RuntimeError as error:
        print(error, flush=True)
    os._exit(3)
os.read(ready, 1)
simulator.stop()
simulator.start()
os.close(begins)
print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), device.power.get().state)
device.close()
"""
    ended = run_python(script, host)
    assert ended.stdout == "the simulator is in another process, before a fork\n3 0\n", ended.stderr


def test_objects_keep_the_device_open(tavo_simulator: tavo.Simulator) -> None:
    power = open_on(tavo_simulator).power
    gc.collect()
    assert power.get().state == 0
    assert tavo_simulator.lock_holder == "engineer"
    with pytest.warns(ResourceWarning, match="a device was not closed"):
        del power
        gc.collect()
    assert tavo_simulator.lock_holder is None


@pytest.mark.parametrize("order", ["device power call batch", "batch call power device", "call device batch power"])
def test_garbage_is_collected_in_any_order(tavo_simulator: tavo.Simulator, order: str) -> None:
    device = open_on(tavo_simulator)
    with device.batch() as batch:
        call = batch.power.get()
    things: dict[str, object] = {"device": device, "power": device.power, "call": call, "batch": batch}
    del device, call, batch
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", ResourceWarning)
        for name in order.split():
            del things[name]
            gc.collect()
    assert tavo_simulator.lock_holder is None


def resident_kilobytes() -> int:
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


def test_many_openings_take_no_more_memory() -> None:
    """TAVO_TEST_OPENINGS=10000 makes it thorough."""
    count = int(os.environ.get("TAVO_TEST_OPENINGS", "1000"))
    with tavo.Simulator() as simulator:

        def once() -> None:
            with open_on(simulator) as device:
                with device.batch() as batch:
                    batch.power.set(True)
                    batch.cpu0.jtag.tapStateGet()
                try:
                    device.power.toggle(-1)
                except tavo.Refused:
                    pass

        for _ in range(200):
            once()
        simulator.clear_calls()
        gc.collect()
        before = resident_kilobytes()
        descriptors = len(os.listdir("/proc/self/fd"))
        for number in range(count):
            once()
            if number % 100 == 0:
                simulator.clear_calls()
        simulator.clear_calls()
        gc.collect()
        assert len(os.listdir("/proc/self/fd")) <= descriptors + 2
        assert resident_kilobytes() - before < 8 * 1024
