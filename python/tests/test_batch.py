"""Batches."""

from __future__ import annotations

import gc
import weakref

import pytest

import tavo


def test_a_batch_is_one_exchange(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    before = tavo_simulator.request_count
    with tavo_device.batch() as batch:
        batch.power.set(state=True)
        state = batch.power.get()
        lamp = batch["bench.lamp"].get()
        left = batch.bench.drawer.left.get()
        assert len(batch) == 4
    assert tavo_simulator.request_count == before + 1
    assert (state.code, state.error, state.value.state) == (0, None, 1)
    assert lamp.value.state == left.value.state == 0
    assert state.value is state.value


def test_typed_calls(tavo_device: tavo.Device) -> None:
    power = tavo_device.get("power", tavo.Relay)
    with tavo_device.batch() as batch:
        call: tavo.Call[tavo.Relay.GetReply] = batch.add(power.get)
        nothing = batch.add(power.set, state=True)
    assert call.value.state == 0
    assert nothing.value is None and nothing.error is None
    with tavo_device.batch() as batch, pytest.raises(TypeError, match="not a method of a remote object"):
        batch.add(print)


def test_refused_calls_do_not_stop_the_others(tavo_device: tavo.Device) -> None:
    with tavo_device.batch() as batch:
        wrong = batch.power.toggle(-1)
        right = batch.power.get()
    assert wrong.code == 1 and right.error is None
    assert isinstance(wrong.error, tavo.Refused) and wrong.error.method == "power.toggle"
    with pytest.raises(tavo.Refused):
        wrong.value


def test_a_device_error_tells_which_calls_were_executed(
    tavo_device: tavo.Device, tavo_simulator: tavo.Simulator
) -> None:
    tavo_simulator.fail_next("error=1006:2:it broke")
    with pytest.raises(tavo.ExecutionError, match="it broke") as caught:
        with tavo_device.batch() as batch:
            calls = [batch.power.get() for _ in range(3)]
    assert caught.value.failed_index == 1
    assert caught.value.device_error_code == 1006
    assert caught.value.method == "power.get"
    assert calls[0].error is None and calls[0].value.state == 0
    assert calls[1].code is None and isinstance(calls[1].error, tavo.ExecutionError)
    assert isinstance(calls[2].error, tavo.ExecutionError)


def test_before_the_end_there_are_no_values(tavo_device: tavo.Device) -> None:
    with tavo_device.batch() as batch:
        call = batch.power.get()
        assert call.code is None
        with pytest.raises(tavo.Error, match="has not been executed"):
            call.value
    with pytest.raises(tavo.Error, match="the batch has ended"):
        batch.power.get()


def test_a_batch_that_raises_sends_nothing(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    before = tavo_simulator.request_count
    with pytest.raises(KeyError):
        with tavo_device.batch() as batch:
            call = batch.power.get()
            raise KeyError
    assert tavo_simulator.request_count == before
    assert "not sent" in str(call.error)


def test_an_empty_batch_sends_nothing(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    before = tavo_simulator.request_count
    with tavo_device.batch():
        pass
    assert tavo_simulator.request_count == before


def test_wrong_arguments_fail_at_the_call(tavo_device: tavo.Device) -> None:
    with tavo_device.batch() as batch:
        with pytest.raises(ValueError, match="'value'"):
            batch.power.toggle(2**40)
        with pytest.raises(AttributeError, match="'nothing'"):
            batch.nothing
        with pytest.raises(KeyError):
            batch["nothing"]
        state = batch.power.get()
    assert state.error is None
    assert "power" in dir(batch)


def test_objects_of_another_device_are_refused(
    tavo_device: tavo.Device, tavo_simulator: tavo.Simulator
) -> None:
    with tavo.Simulator() as other, tavo.open(
        other.host, port=other.port, user="engineer", password="tavo"
    ) as stranger:
        with tavo_device.batch() as batch, pytest.raises(ValueError, match="another device"):
            batch.add(stranger.power.get)


def test_a_thousand_calls(tavo_device: tavo.Device) -> None:
    with tavo_device.batch() as batch:
        calls = [batch.system.timeGet() for _ in range(1000)]
    times = [call.value.time for call in calls]
    assert times == sorted(times)


def test_calls_keep_no_batch_alive(tavo_device: tavo.Device) -> None:
    gc.disable()
    try:
        with tavo_device.batch() as batch:
            call = batch.power.get()
        gone = weakref.ref(batch)
        del batch
        assert gone() is None
        assert call.value.state == 0
    finally:
        gc.enable()
