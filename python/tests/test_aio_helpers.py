"""The helpers of awaited remote objects."""

from __future__ import annotations

import asyncio
import os
import time
from collections.abc import Awaitable, Callable
from pathlib import Path

import pytest

import tavo
import tavo.aio

Work = Callable[[tavo.aio.Device], Awaitable[None]]


@pytest.fixture
def run(tavo_simulator: tavo.Simulator) -> Callable[[Work], None]:
    """Runs a coroutine with a device whose board has power."""

    def begin(work: Work) -> None:
        async def main() -> None:
            async with tavo.aio.open(
                tavo_simulator.host, port=tavo_simulator.port, user="engineer", password="tavo"
            ) as device:
                await device.power.set(state=True)
                await work(device)

        asyncio.run(asyncio.wait_for(main(), 120))

    return begin


def test_each_helper_is_awaited(
    run: Callable[[Work], None], tavo_simulator: tavo.Simulator, tmp_path: Path
) -> None:
    async def work(device: tavo.aio.Device) -> None:
        jtag = device.get("cpu0.jtag", tavo.aio.Jtag)
        assert len((await jtag.scan()).taps) == 3
        told: list[int] = []
        result = await jtag.play_svf(b"SDR 8 TDI(0);", progress=lambda _, done, __: told.append(done))
        assert result.scans == 1 and told[-1] == 13
        assert await device.get("i2c", tavo.aio.I2c).detect() == [0x48, 0x50, 0x54]
        tavo_simulator.advance(5)
        codes = [code.code async for code in device.post.follow(until=0xAA, timeout=60)]
        assert codes[-1] == 0xAA
        with pytest.raises(TimeoutError):
            async for code in device.post.follow(until=0x0B, timeout=0.1):
                raise AssertionError(code)
        image = os.urandom(100)
        await device.rom.load(image, offset=3)
        assert await device.rom.save(tmp_path / "saved", offset=3, length=100) == 100
        assert (tmp_path / "saved").read_bytes() == image
        with pytest.raises(tavo.Mismatch):
            await device.rom.verify(image)

    run(work)


def test_a_serial_port(run: Callable[[Work], None]) -> None:
    async def work(device: tavo.aio.Device) -> None:
        async with await device.console.open_serial(loopback=True) as port:
            await port.write(b"one\ntwo" * 3)
            assert await port.read_until(b"\n") == b"one\n"
            with pytest.raises(asyncio.TimeoutError):
                await asyncio.wait_for(port.read_until(b"never"), 0.3)
            assert await port.read(8) == b"twoone\nt"
            assert await port.read() == b"woone\ntwo"
            assert await port.read(0) == b""
            with pytest.raises(asyncio.TimeoutError):
                await asyncio.wait_for(port.read(), 0.2)
        with pytest.raises(ValueError, match="closed file"):
            await port.read()
        await port.close()

    run(work)


def test_cancelling_leaves_no_port_open(run: Callable[[Work], None], tavo_simulator: tavo.Simulator) -> None:
    async def work(device: tavo.aio.Device) -> None:
        def methods() -> list[str]:
            called = [call.method for call in tavo_simulator.calls() if call.object == "com"]
            return [method for method in called if method in ("open", "close")]

        port = await device.com.open_serial()
        running = asyncio.create_task(device.system.usleep(400_000))
        await asyncio.sleep(0.1)
        closing = asyncio.create_task(port.close())
        await asyncio.sleep(0.1)
        closing.cancel()
        with pytest.raises(asyncio.CancelledError):
            await closing
        await port.close()
        await running
        assert methods() == ["open", "close"]

        # The thread finishes while the loop has not looked yet.
        opening = asyncio.create_task(device.com.open_serial())
        await asyncio.sleep(0)
        end = time.monotonic() + 20
        while len(methods()) < 3 and time.monotonic() < end:
            time.sleep(0.01)
        time.sleep(0.1)
        opening.cancel()
        with pytest.raises(asyncio.CancelledError):
            await opening
        await device.power.get()
        assert methods() == ["open", "close"] * 2
        # One that nobody closes is closed with the device.
        await device.com.open_serial()

    run(work)
    assert [call.method for call in tavo_simulator.calls() if call.object == "com"][-2:] == ["open", "close"]


def test_cancelling_ends_a_helper_and_leaves_the_port_as_it_was(run: Callable[[Work], None]) -> None:
    async def work(device: tavo.aio.Device) -> None:
        jtag = device.cpu0.jtag
        before = await jtag.optionTckFrequencyGet()
        begin = time.monotonic()
        with pytest.raises(asyncio.TimeoutError):
            await asyncio.wait_for(jtag.play_svf(b"FREQUENCY 1E4 HZ; " + b"RUNTEST 0.1 SEC; " * 600), 0.5)
        assert time.monotonic() - begin < 40
        assert await jtag.optionTckFrequencyGet() == before

    run(work)


def test_cancelling_a_load_leaves_the_rom_off(
    run: Callable[[Work], None], tavo_simulator: tavo.Simulator
) -> None:
    async def work(device: tavo.aio.Device) -> None:
        await device.rom.enableSet(True)
        # Of the calls for the size, whether it is on, to switch it off and to write.
        tavo_simulator.fail_next("silent", ahead=4)
        with pytest.raises(asyncio.TimeoutError):
            await asyncio.wait_for(device.rom.load(bytes(4 << 20)), 1)
        assert not (await device.rom.enableGet()).enable

    run(work)


def test_following_can_be_left(run: Callable[[Work], None]) -> None:
    async def work(device: tavo.aio.Device) -> None:
        async def follow() -> None:
            async for _ in device.post.follow():
                pass

        with pytest.raises(asyncio.TimeoutError):
            await asyncio.wait_for(follow(), 0.3)
        assert (await device.power.get()).state == 1

    run(work)
