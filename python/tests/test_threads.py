"""Threads that share a device."""

from __future__ import annotations

import threading
import time
from concurrent.futures import ThreadPoolExecutor

import tavo

from conftest import open_on


def test_calls_take_turns(tavo_device: tavo.Device) -> None:
    jtag = tavo_device.cpu0.jtag

    def work(number: int) -> bool:
        rom = tavo_device.lpc.lpcRomEmulation
        for step in range(50):
            content = bytes([number, step]) * 8
            with tavo_device.batch() as batch:
                batch.lpc.lpcRomEmulation.sramSet(number * 16, content)
                found = batch.lpc.lpcRomEmulation.sramGet(number * 16, 16)
            if found.value.data != content or rom.sramGet(number * 16, 16).data != content:
                return False
            jtag.tapStateGet()
        return True

    with ThreadPoolExecutor(8) as pool:
        assert all(pool.map(work, range(8)))
    assert tavo_device.reconnects == 0


def test_other_threads_run_during_a_call(tavo_device: tavo.Device) -> None:
    thread = threading.Thread(target=lambda: tavo_device.system.usleep(500_000))
    begin = time.monotonic()
    thread.start()
    steps = 0
    while thread.is_alive() and time.monotonic() - begin < 30:
        steps += 1
        time.sleep(0.001)
    thread.join()
    assert steps > 20


def test_closing_waits_for_the_running_call(tavo_simulator: tavo.Simulator) -> None:
    device = open_on(tavo_simulator)
    outcome: list[object] = []

    def work() -> None:
        begun.set()
        outcome.append(device.system.usleep(400_000))

    begun = threading.Event()
    thread = threading.Thread(target=work)
    thread.start()
    begun.wait(10)
    time.sleep(0.1)
    device.close()
    thread.join(30)
    assert outcome == [None]
    assert tavo_simulator.lock_holder is None


def test_interrupt_ends_the_call_of_another_thread(tavo_device: tavo.Device) -> None:
    caught: list[Exception] = []

    def work() -> None:
        try:
            tavo_device.system.usleep(60_000_000)
        except tavo.NetworkError as error:
            caught.append(error)

    thread = threading.Thread(target=work)
    thread.start()
    time.sleep(0.2)
    while thread.is_alive():
        tavo_device.interrupt()
        thread.join(0.1)
    assert "interrupted" in str(caught[0])
    assert tavo_device.power.get().state == 0
    assert tavo_device.reconnects >= 1


def test_calls_that_wait_for_their_turn_find_the_device_closed(tavo_simulator: tavo.Simulator) -> None:
    device = open_on(tavo_simulator)
    caught: list[str] = []

    def work() -> None:
        try:
            while True:
                device.power.get()
        except tavo.Error as error:
            caught.append(str(error))

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    device.close()
    for thread in threads:
        thread.join(30)
    assert caught == ["the device is closed"] * 4


def test_devices_open_in_parallel() -> None:
    def work(_: int) -> int:
        with tavo.Simulator() as simulator, open_on(simulator) as device:
            state: int = device.power.get().state
            return state

    with ThreadPoolExecutor(4) as pool:
        assert list(pool.map(work, range(12))) == [0] * 12


