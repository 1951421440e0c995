"""Devices whose calls are awaited."""

from __future__ import annotations

import asyncio
import gc
import threading
import time

import pytest

import tavo
import tavo.aio
from tavo._aio import _Opening


def wish(simulator: tavo.Simulator) -> dict[str, object]:
    return {"port": simulator.port, "user": "engineer", "password": "tavo"}


def opening(simulator: tavo.Simulator, **more: object) -> _Opening:
    return tavo.aio.open(simulator.host, **{**wish(simulator), **more})  # type: ignore[arg-type]


def test_calls_and_batches(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        async with opening(tavo_simulator) as device:
            assert await device.power.set(state=True) is None
            assert (await device["power"].get()).state == 1
            power = device.get("power", tavo.aio.Relay)
            assert (await power.get()).asdict() == {"state": 1}
            async with device.batch() as batch:
                state = batch.power.get()
                batch.bench.lamp.set(True)
            assert state.value.state == 1
            with pytest.raises(tavo.Refused):
                await power.toggle(-1)
            with pytest.raises(tavo.SpecificationError):
                device.get("power", tavo.aio.Jtag)
            with pytest.raises(ValueError, match="'value'"):
                await power.toggle(2**40)
            with pytest.raises(TypeError, match="async with"):
                with device.batch():
                    pass
            await device.unlock()
            await device.relock()
            assert "power" in dir(device) and "power" in device and "power" in list(device)
            assert {"get", "set"} <= set(dir(power))
        assert device.closed and "closed" in repr(device)

    asyncio.run(main())
    assert tavo_simulator.relay("bench.lamp") and tavo_simulator.lock_holder is None


def test_awaited_without_a_block(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        device = await opening(tavo_simulator)
        try:
            assert (await device.power.get()).state == 0
        finally:
            await device.close()

    asyncio.run(main())
    assert tavo_simulator.lock_holder is None


def test_the_loop_runs_on_during_a_call(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> int:
        async with opening(tavo_simulator) as device:
            sleep = asyncio.create_task(device.system.usleep(400_000))
            ticks = 0
            while not sleep.done():
                await asyncio.sleep(0.001)
                ticks += 1
            await sleep
        return ticks

    assert asyncio.run(main()) > 20


def test_cancelling_interrupts_the_call(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        async with opening(tavo_simulator) as device:
            begin = time.monotonic()
            with pytest.raises(asyncio.TimeoutError):
                await asyncio.wait_for(device.system.usleep(60_000_000), 0.2)
            assert time.monotonic() - begin < 20
            assert (await device.power.get()).state == 0

    asyncio.run(main())
    assert tavo_simulator.lock_holder is None


def test_cancelling_a_call_that_waits_leaves_the_running_one_alone(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        async with opening(tavo_simulator) as device:
            running = asyncio.create_task(device.system.usleep(500_000))
            await asyncio.sleep(0.1)
            waiting = asyncio.create_task(device.power.set(True))
            await asyncio.sleep(0.05)
            waiting.cancel()
            with pytest.raises(asyncio.CancelledError):
                await waiting
            assert not running.done()
            await running
            assert (await device.power.get()).state == 0
            assert device._connection.reconnects == 0

    asyncio.run(main())


def test_cancelling_an_opening() -> None:
    async def main(simulator: tavo.Simulator) -> None:
        with pytest.raises(asyncio.TimeoutError):
            await asyncio.wait_for(opening(simulator)._open(), 0.3)
        async with opening(simulator) as device:
            assert (await device.power.get()).state == 0

    with tavo.Simulator(faults=["2:silent"]) as simulator:
        asyncio.run(main(simulator))


def test_openings_that_fail_raise(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        async with opening(tavo_simulator, password="wrong"):
            pass

    with pytest.raises(tavo.TAVOLoginError):
        asyncio.run(main())


def test_time_limits(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        async with opening(tavo_simulator) as device:
            await device.set_timeout(0.2)
            with pytest.raises(tavo.NetworkError, match="timed out"):
                await device.system.usleep(60_000_000)

    asyncio.run(main())


def test_several_devices_at_once() -> None:
    async def one() -> int:
        with tavo.Simulator() as simulator:
            async with opening(simulator) as device:
                await device.power.set(True)
                state: int = (await device.power.get()).state
                return state

    async def main() -> list[int]:
        return await asyncio.gather(*(one() for _ in range(5)))

    assert asyncio.run(main()) == [1] * 5


def test_objects_keep_the_thread_and_then_it_ends(tavo_simulator: tavo.Simulator) -> None:
    async def main() -> None:
        device = await opening(tavo_simulator)
        power = device.power
        await device.batch().__aexit__(None, None, None)
        del device
        assert (await power.get()).state == 0

    def threads() -> list[threading.Thread]:
        return [thread for thread in threading.enumerate() if thread.name == "tavo.aio"]

    with pytest.warns(ResourceWarning, match="a device was not closed"):
        asyncio.run(main())
        end = time.monotonic() + 20
        while threads() and time.monotonic() < end:
            # Cancelled tasks of other tests may be garbage that still holds a thread.
            gc.collect()
            time.sleep(0.01)
    assert not threads()
    assert tavo_simulator.lock_holder is None
