"""Objects, methods, arguments and records."""

from __future__ import annotations

import dataclasses
import inspect
import pickle
from typing import Any

import pytest

import tavo

from conftest import open_on


def test_objects_are_attributes_and_items(tavo_device: tavo.Device) -> None:
    lamp = tavo_device.bench.lamp
    assert lamp.full_name == "bench.lamp"
    assert lamp == tavo_device["bench.lamp"] == tavo_device.bench["lamp"]
    assert lamp != tavo_device.bench.fan
    assert tavo_device["bench.drawer"]["left"] == tavo_device.bench.drawer.left
    assert "bench.lamp" in tavo_device and "bench.none" not in tavo_device
    assert "lamp" in tavo_device.bench and "none" not in tavo_device.bench
    assert list(tavo_device.bench) == ["drawer", "fan", "lamp"]
    assert {"power", "cpu0", "device", "system", "private"} <= set(tavo_device)
    assert repr(lamp) == "<Relay bench.lamp>"


def test_what_is_not_there_is_named(tavo_device: tavo.Device) -> None:
    with pytest.raises(AttributeError, match="'nothing'"):
        tavo_device.nothing
    with pytest.raises(AttributeError, match="bench has no method or member 'nothing'"):
        tavo_device.bench.nothing
    with pytest.raises(KeyError, match="bench.nothing"):
        tavo_device["bench.nothing"]
    with pytest.raises(tavo.SpecificationError, match="no object 'nothing'"):
        tavo_device.get("nothing", tavo.Relay)
    with pytest.raises(tavo.SpecificationError, match="'power' is a Relay, not a Jtag"):
        tavo_device.get("power", tavo.Jtag)


def test_methods_take_arguments_by_position_and_by_name(tavo_device: tavo.Device) -> None:
    power = tavo_device.get("power", tavo.Relay)
    power.set(True)
    assert power.get().state == 1
    power.set(state=False)
    assert power.get().state == 0
    data = tavo_device.cpu0.jtag.shiftDR(data=bytes(4), bits=32).data
    assert isinstance(data, bytes) and len(data) == 4


def test_signature_and_documentation(tavo_device: tavo.Device) -> None:
    method = tavo_device.cpu0.jtag.shiftDR
    assert list(inspect.signature(method).parameters) == ["bits", "data"]
    assert method.__name__ == "shiftDR"
    assert "bits: i32" in (inspect.getdoc(method) or "")
    assert str(inspect.signature(tavo.Relay.set)) == "(self, state: 'bool') -> 'None'"


def test_completion_shows_what_the_object_has(tavo_device: tavo.Device) -> None:
    assert {"power", "bench", "batch", "close", "system"} <= set(dir(tavo_device))
    assert {"drawer", "fan", "lamp", "type", "full_name"} <= set(dir(tavo_device.bench))
    assert {"get", "set", "toggle", "version"} <= set(dir(tavo_device.power))


@pytest.mark.tavo_simulator(topology="legacy")
def test_objects_of_older_versions_have_their_own_methods(tavo_device: tavo.Device) -> None:
    jtag = tavo_device.get("jtag", tavo.Jtag)
    assert isinstance(jtag, tavo.Jtag_v1_0)
    assert "retryGet" in dir(jtag) and "optionRetryGet" not in dir(jtag)
    assert jtag.retryGet() is not None
    with pytest.raises(tavo.SpecificationError, match="optionRetryGet"):
        jtag.optionRetryGet()


def test_objects_of_unknown_types_have_the_methods_of_every_object(tavo_device: tavo.Device) -> None:
    bench = tavo_device.bench
    assert type(bench) is tavo.Object
    assert bench.type().type == "rack"


@pytest.mark.parametrize(
    ("call", "kind", "text"),
    [
        (lambda d: d.power.set(), TypeError, "state"),
        (lambda d: d.power.set(True, True), TypeError, "2 positional arguments but 3"),
        (lambda d: d.power.set(status=True), TypeError, "status"),
        (lambda d: d.power.set("on"), TypeError, "'state' must be a bool, not str"),
        (lambda d: d.power.set(2), ValueError, "'state' must be True or False, not 2"),
        (lambda d: d.power.set(10**30), ValueError, "'state' must be True or False"),
        (lambda d: d.power.toggle(1.5), TypeError, "'value' must be an integer, not float"),
        (lambda d: d.power.toggle(2**31), ValueError, "'value' must be from -2147483648 to 2147483647"),
        (lambda d: d.power.toggle(-(2**31) - 1), ValueError, "not -2147483649"),
        (lambda d: d.power.toggle(2**100), ValueError, "'value' must be from"),
        (lambda d: d.power.reserve(256, "", ""), ValueError, "'flag' must be from 0 to 255, not 256"),
        (lambda d: d.power.reserve(-1, "", ""), ValueError, "'flag' must be from 0 to 255, not -1"),
        (lambda d: d.power.reserve(0, b"", ""), TypeError, "'first' must be a str, not bytes"),
        (lambda d: d.power.reserve(0, "\ud800", ""), ValueError, "'first' has surrogates"),
        (lambda d: d.cpu0.jtag.shiftDR(8, "x"), TypeError, "'data' must be bytes-like, not str"),
        (lambda d: d.cpu0.jtag.shiftDR(8, 5), TypeError, "'data' must be bytes-like, not int"),
        (lambda d: d.cpu0.jtag.shiftDR(8, memoryview(b"abcd")[::2]), ValueError, "'data' must be contiguous"),
    ],
)
def test_wrong_arguments_are_named(tavo_device: tavo.Device, call: Any, kind: type[Exception], text: str) -> None:
    with pytest.raises(kind, match=text):
        call(tavo_device)
    tavo_device.power.set(True)


def test_integers_reach_the_ends_of_their_ranges(
    tavo_device: tavo.Device, tavo_simulator: tavo.Simulator
) -> None:
    with pytest.raises(tavo.Refused):
        tavo_device.power.toggle(-(2**31))
    tavo_device.power.toggle(2**31 - 1)
    assert [call.parameters["value"] for call in tavo_simulator.calls()[-2:]] == [-(2**31), 2**31 - 1]
    tavo_device.system.timeSet(2**40)
    assert 2**40 <= tavo_device.system.timeGet().time < 2**40 + 60_000_000


def test_numbers_with_index_are_integers(tavo_device: tavo.Device) -> None:
    class Index:
        def __index__(self) -> int:
            return 1

    tavo_device.power.set(Index())
    assert tavo_device.power.get().state == 1


@pytest.mark.parametrize("kind", [bytes, bytearray, memoryview])
@pytest.mark.parametrize("size", [0, 1, 4095, 4096, 70_000, 500_000])
def test_blocks_of_all_sizes_go_and_come(tavo_device: tavo.Device, kind: Any, size: int) -> None:
    rom = tavo_device.lpc.lpcRomEmulation
    content = bytes(i * 7 % 251 for i in range(size))
    rom.sramSet(3, kind(content))
    found = rom.sramGet(offset=3, length=size).data
    assert type(found) is bytes
    assert found == content


def test_long_blocks_keep_their_place_among_the_fields(
    tavo_device: tavo.Device, tavo_simulator: tavo.Simulator
) -> None:
    image = bytes(range(256)) * 64
    tavo_device.i2c.transfer(0x54, b"\x00\x10" + image[:30], 0)
    with pytest.raises(tavo.Error):
        tavo_device.system.firmwareUpdate("nothing", image)
    assert tavo_simulator.calls()[-1].parameters == {"name": "nothing", "image": image}


def test_texts_that_are_not_utf8_survive(tavo_device: tavo.Device) -> None:
    text = "caf\udce9 \u20ac \U0001f600"
    tavo_device.power.reserve(0, text, "\udcff\udc80")
    available = tavo_device.power.available()
    assert text in (available.user, available.info)
    assert "\udcff\udc80" in (available.user, available.info)


def test_return_codes_raise(tavo_device: tavo.Device) -> None:
    with pytest.raises(tavo.Refused, match="power.toggle returned 1") as caught:
        tavo_device.power.toggle(-1)
    assert caught.value.code == 1
    assert caught.value.method == "power.toggle"
    assert caught.value.origin == "device"
    assert caught.value.connection_usable
    assert isinstance(caught.value, tavo.Error)


def test_records_are_frozen_values(tavo_device: tavo.Device) -> None:
    reply = tavo_device.power.get()
    assert repr(reply) == "Relay.GetReply(state=0)"
    assert reply == tavo.Relay.GetReply(0) == tavo.Relay.GetReply(state=0)
    assert reply != tavo.Relay.GetReply(1) and reply != (0,)
    assert hash(reply) == hash(tavo.Relay.GetReply(0))
    with pytest.raises(dataclasses.FrozenInstanceError):
        reply.state = 1
    with pytest.raises(dataclasses.FrozenInstanceError):
        del reply.state
    assert isinstance(reply, tavo.Record)
    match reply:
        case tavo.Relay.GetReply(state):
            assert state == 0
        case _:
            pytest.fail("the record does not match its own class")


def test_records_within_records(tavo_device: tavo.Device) -> None:
    info = tavo_device.device.info()
    assert info.firmware[0].version.major == info.asdict()["firmware"][0]["version"]["major"]
    assert isinstance(info.firmware, tuple)
    assert pickle.loads(pickle.dumps(info)) == info
    assert hash(info) == hash(tavo_device.device.info())


@pytest.mark.parametrize(
    ("arguments", "named"), [((1, 2), {}), ((), {}), ((1,), {"state": 1}), ((), {"status": 1})]
)
def test_records_are_made_of_their_fields(arguments: Any, named: Any) -> None:
    with pytest.raises(TypeError):
        tavo.Relay.GetReply(*arguments, **named)


def test_devices_and_objects_are_not_copied(tavo_device: tavo.Device) -> None:
    things: list[Any] = [tavo_device, tavo_device.power, tavo_device.batch()]
    for thing in things:
        with pytest.raises(TypeError):
            pickle.dumps(thing)
        with pytest.raises(AttributeError):
            object.__new__(type(thing))._something


def test_closed_devices_say_so(tavo_device: tavo.Device) -> None:
    power = tavo_device.power
    assert not tavo_device.closed and tavo_device.locked and tavo_device.connected
    tavo_device.close()
    tavo_device.close()
    assert tavo_device.closed and "closed" in repr(tavo_device)
    for use in (power.get, tavo_device.unlock, lambda: tavo_device.cpu0, lambda: tavo_device["power"]):
        with pytest.raises(tavo.Error, match="the device is closed"):
            use()
    assert power.full_name == "power" and "closed" in repr(tavo_device)
    assert "close" in dir(tavo_device)


def test_lock_and_key(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    assert tavo_simulator.lock_holder == "engineer"
    assert tavo_device.lock_holder() == "engineer"
    tavo_device.unlock()
    assert tavo_simulator.lock_holder is None and not tavo_device.locked
    tavo_device.relock()
    assert tavo_device.locked
    assert tavo_device.key() == (False, False)
    assert tavo_device.reconnects == 0


def test_long_blocks_come_whole_and_unmixed(tavo_device: tavo.Device) -> None:
    tavo_device.power.set(state=True)
    jtag = tavo_device.get("cpu0.jtag", tavo.Jtag)
    # Around the sizes at which the memory of a result grows.
    sizes = [0xFFF0, 0x10000, 0x10001, 0x100000 + 1, 3]
    sent = [bytes((index + at) % 256 for at in range(size)) for index, size in enumerate(sizes)]
    single = [jtag.shiftDR(bits=8 * len(data), data=data).data for data in sent]
    with tavo_device.batch() as batch:
        calls = [batch.add(jtag.shiftDR, 8 * len(data), data) for data in sent]
    for data, alone, call in zip(sent, single, calls):
        assert type(alone) is bytes
        assert alone[12:] == data[:-12], "what was shifted through the 96 bits of the chain"
        assert len(alone) == len(data)
        assert call.value.data == alone
        assert call.value.data is call.value.data


def test_a_long_block_that_is_cut_leaks_nothing(tavo_simulator: tavo.Simulator) -> None:
    with open_on(tavo_simulator) as device:
        device.power.set(state=True)
        jtag = device.get("cpu0.jtag", tavo.Jtag)
        for _ in range(3):
            tavo_simulator.fail_next("cut=200000")
            with pytest.raises(tavo.NetworkError):
                jtag.shiftDR(bits=8 * 0x100000, data=bytes(0x100000))
            assert len(jtag.shiftDR(bits=8 * 0x100000, data=bytes(0x100000)).data) == 0x100000
