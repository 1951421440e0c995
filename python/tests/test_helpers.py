"""What remote objects can do beyond their methods."""

from __future__ import annotations

import inspect
import os
import threading
import time
from pathlib import Path

import pytest

import tavo
import tavo.aio

from conftest import open_on

SVF = b"TRST OFF; ENDIR IDLE; ENDDR IDLE; STATE RESET; STATE IDLE; "
#: Takes about a minute: the device sleeps.
LONG_SVF = SVF + b"RUNTEST 0.1 SEC; " * 600


@pytest.fixture
def powered(tavo_device: tavo.Device) -> tavo.Device:
    tavo_device.power.set(state=True)
    return tavo_device


def test_a_scan_finds_the_chain(powered: tavo.Device) -> None:
    chain = powered.get("cpu0.jtag", tavo.Jtag).scan()
    assert [tap.position for tap in chain.taps] == [0, 1, 2]
    assert [tap.ir_length for tap in chain.taps] == [8, 5, 10]
    assert chain.ir_splits == ((8, 5, 10),) and not chain.ambiguous and not chain.more_splits
    assert chain.ir_length == 23 and chain.ir_capture & 3 == 1
    first = chain.taps[0]
    assert first.idcode is not None and first.version is not None and first.part is not None
    assert first.version << 28 | first.part << 12 == first.idcode & 0xFFFFF000
    assert first.manufacturer is not None
    bank, number = first.manufacturer
    assert ((bank - 1) << 7 | number) << 1 | 1 == first.idcode & 0xFFF
    bypass = tavo.Tap(0, 2, None)
    assert (bypass.version, bypass.part, bypass.manufacturer) == (None, None, None)


def test_a_chain_without_power_does_not_answer(tavo_device: tavo.Device) -> None:
    tavo_device.power.set(state=False)
    with pytest.raises(tavo.Error):
        tavo_device.cpu0.jtag.scan()


def test_a_scan_of_an_older_object(powered: tavo.Device) -> None:
    assert len(powered.gpu0.jtag.scan().taps) >= 1


def test_addresses_are_detected(powered: tavo.Device) -> None:
    bus = powered.get("i2c", tavo.I2c)
    assert bus.detect() == [0x48, 0x50, 0x54]
    assert bus.detect(first=0x49, last=0x53) == [0x50]
    assert bus.detect(0x49, 0x4F) == []
    for wrong in ({"first": 0x50, "last": 0x4F}, {"last": 0x80}, {"first": -1}):
        with pytest.raises(ValueError):
            bus.detect(**wrong)
    with pytest.raises(TypeError):
        bus.detect("8")  # type: ignore[arg-type]


def test_codes_are_followed_to_the_last(powered: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    threading.Timer(0.3, tavo_simulator.advance, [5]).start()
    codes = list(powered.post.follow(until=0xAA, timeout=60))
    assert codes[-1].code == 0xAA and codes[-1].port == 0x80 and codes[0].time < codes[-1].time
    assert tavo_simulator.post_codes() == []


def test_following_ends_with_the_time(powered: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    receiver = powered.get("lpc.lpcPostCode", tavo.LpcPostCode)
    tavo_simulator.advance(5)
    codes = list(receiver.follow(timeout=0.2, interval=0.01))
    assert len(codes) == 60
    with pytest.raises(TimeoutError, match="POST code 0B did not arrive within 0.2 s"):
        list(receiver.follow(until=0x0B, timeout=0.2))
    assert list(receiver.follow(timeout=0)) == []
    for wrong in ({"until": 256}, {"timeout": -1}, {"interval": 0}):
        with pytest.raises(ValueError):
            receiver.follow(**wrong)


def test_closing_ends_following(powered: tavo.Device) -> None:
    threading.Timer(0.3, powered.close).start()
    with pytest.raises(tavo.Error, match="closed"):
        list(powered.post.follow(until=0x0B))


def test_an_image_is_loaded_verified_and_saved(powered: tavo.Device, tmp_path: Path) -> None:
    rom = powered.get("lpc.lpcRomEmulation", tavo.LpcRomEmulation)
    image = os.urandom(3 * 1024 * 1024)
    source, target = tmp_path / "image", tmp_path / "saved"
    source.write_bytes(image)
    told: list[tuple[str, int, int]] = []
    rom.load(source, offset=5, enable=True, progress=lambda phase, done, total: told.append((phase, done, total)))
    assert told[0] == ("writing", 0, len(image)) and ("writing", len(image), len(image)) in told
    assert told[-1] == ("verifying", len(image), len(image))
    assert rom.enableGet().enable
    target.write_bytes(b"old")
    assert rom.save(target, offset=5, length=len(image)) == len(image)
    assert target.read_bytes() == image
    rom.verify(str(source), offset=5)
    rom.load(bytearray(b"\x01"), offset=6, verify=False)
    with pytest.raises(tavo.Mismatch, match="first difference at offset 0x6: the device has 0x01, '.*image' has"):
        rom.verify(source, offset=5)
    assert rom.enableGet().enable
    size = rom.sramSizeGet().size
    assert rom.save(tmp_path / "end", offset=size - 3) == 3
    target.chmod(0o600)
    assert rom.save(target, length=1) == 1
    assert target.stat().st_mode & 0o777 == 0o600
    before = os.umask(0o027)
    try:
        rom.save(tmp_path / "end", length=1)
        (tmp_path / "end").unlink()
        rom.save(tmp_path / "end", length=1)
    finally:
        os.umask(before)
    assert (tmp_path / "end").stat().st_mode & 0o777 == 0o640
    assert sorted(path.name for path in tmp_path.iterdir()) == ["end", "image", "saved"]


def test_what_does_not_fit_changes_nothing(
    powered: tavo.Device, tavo_simulator: tavo.Simulator, tmp_path: Path
) -> None:
    rom = powered.rom
    size = rom.sramSizeGet().size
    tavo_simulator.clear_calls()
    with pytest.raises(ValueError, match=f"2 bytes at offset {size - 1} do not fit in the ROM's {size} bytes"):
        rom.load(b"ab", offset=size - 1)
    with pytest.raises(ValueError, match="is empty"):
        rom.load(b"")
    with pytest.raises(FileNotFoundError):
        rom.load(tmp_path / "missing")
    with pytest.raises(ValueError):
        rom.save(tmp_path / "saved", length=size + 1)
    assert list(tmp_path.iterdir()) == []
    assert {call.method for call in tavo_simulator.calls()} <= {"sramSizeGet", "enableGet"}


def test_a_broken_load_tells_what_it_did(powered: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    powered.rom.enableSet(True)
    tavo_simulator.fail_next("close", ahead=5)  # size, enabled, off, first write, second write
    with pytest.raises(tavo.NetworkError) as raised:
        powered.rom.load(bytes(6 * 1024 * 1024))
    assert raised.value.__notes__ == ["at least 2097152 of 6291456 bytes were written; the ROM is off"]
    assert not powered.rom.enableGet().enable


def test_a_progress_that_raises_ends_the_load(powered: tavo.Device) -> None:
    def progress(phase: str, done: int, total: int) -> None:
        if done:
            raise KeyError(phase)

    with pytest.raises(KeyError, match="writing") as raised:
        powered.rom.load(bytes(6 * 1024 * 1024), progress=progress)
    assert raised.value.__notes__ == ["at least 2097152 of 6291456 bytes were written; the ROM is off"]
    with pytest.raises(RuntimeError, match="in the middle of a call"):
        powered.rom.load(b"a", progress=lambda *_: powered.power.get())
    assert powered.power.get().state == 1


def test_svf_plays(powered: tavo.Device, tmp_path: Path) -> None:
    jtag = powered.get("cpu0.jtag", tavo.Jtag)
    idcode = jtag.scan().taps[0].idcode
    file = tmp_path / "check.svf"
    file.write_bytes(SVF + f"SDR 32 TDI(0) TDO({idcode:X});".encode() * 200)
    told: list[tuple[str, int, int]] = []
    result = jtag.play_svf(file, stop_at="batch", progress=lambda phase, done, total: told.append((phase, done, total)))
    assert (result.scans, result.checked_scans, result.bits) == (200, 200, 6400)
    assert result.statements == 205 and result.frequency > 0 and result.exchanges > 2
    size = file.stat().st_size
    assert told[0] == ("playing", 0, size) and told[-1] == ("playing", size, size)
    with pytest.raises(tavo.Mismatch, match=r"check.svf:1: TDO is .* expected \(00000001\)"):
        file.write_bytes(SVF + b"SDR 32 TDI(0) TDO(1);")
        jtag.play_svf(str(file))
    assert jtag.play_svf(SVF + b"SDR 32 TDI(0) TDO(1);", check=False).checked_scans == 0


def test_svf_that_cannot_be_played_sends_nothing(powered: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_simulator.clear_calls()
    with pytest.raises(ValueError, match="svf:2: 'SCAN' is no command"):
        powered.cpu0.jtag.play_svf(SVF + b"\nSCAN;")
    with pytest.raises(ValueError, match="stop_at"):
        powered.cpu0.jtag.play_svf(SVF, stop_at="never")
    with pytest.raises(ValueError, match="retry"):
        powered.cpu0.jtag.play_svf(SVF, retry=1, check=False)
    assert tavo_simulator.calls() == []


@pytest.mark.parametrize("how", ["interrupt", "close"])
def test_a_helper_is_ended_by_another_thread(powered: tavo.Device, how: str) -> None:
    jtag = powered.cpu0.jtag
    before = jtag.optionTckFrequencyGet()
    threading.Timer(0.3, getattr(powered, how)).start()
    begin = time.monotonic()
    with pytest.raises(tavo.Error):
        jtag.play_svf(b"FREQUENCY 1E4 HZ; " + LONG_SVF)
    assert time.monotonic() - begin < 40
    if how == "interrupt":
        assert jtag.optionTckFrequencyGet() == before


def test_calls_of_other_threads_wait_for_a_helper(powered: tavo.Device) -> None:
    seen: list[int] = []
    thread = threading.Thread(target=lambda: seen.append(powered.power.get().state))
    powered.cpu0.jtag.play_svf(
        SVF + b"RUNTEST 0.3 SEC; " * 2,
        progress=lambda _, done, total: thread.start() if done == 0 else seen.append(-done),
    )
    thread.join()
    assert seen[-1] == 1 and len(seen) > 1


def test_time_limits_leave_slow_work_its_time(powered: tavo.Device) -> None:
    powered.timeout = 0.15
    powered.cpu0.jtag.play_svf(SVF + b"RUNTEST 1 SEC;")
    assert powered.timeout == 0.15


def test_short_names_mean_the_only_object_of_a_type(tavo_device: tavo.Device) -> None:
    assert tavo_device.post == tavo_device.lpc.lpcPostCode
    assert tavo_device.rom == tavo_device["lpc.lpcRomEmulation"]
    assert tavo_device.console == tavo_device.com
    assert {"post", "rom", "console"} <= set(dir(tavo_device))
    assert "post" not in tavo_device


@pytest.mark.tavo_simulator(topology="bare")
def test_a_device_without_such_an_object(tavo_device: tavo.Device) -> None:
    with pytest.raises(AttributeError, match="no object 'post'"):
        tavo_device.post
    assert "post" not in dir(tavo_device)


def test_helpers_are_documented_and_complete() -> None:
    for kind, names in {
        "Jtag": ["scan", "play_svf"],
        "I2c": ["detect"],
        "LpcPostCode": ["follow"],
        "LpcRomEmulation": ["load", "save", "verify"],
        "Com": ["open_serial"],
    }.items():
        for name in names:
            for module in (tavo, tavo.aio):
                assert inspect.getdoc(getattr(getattr(module, kind), name)), (module, kind, name)
            blocking = inspect.signature(getattr(getattr(tavo, kind), name)).parameters
            awaited = inspect.signature(getattr(getattr(tavo.aio, kind), name)).parameters
            assert set(blocking) - set(awaited) <= {"timeout"}
    assert {"scan", "play_svf"} <= set(dir(tavo.Jtag_v1_0))


def test_a_method_of_the_device_wins() -> None:
    from tavo import _types
    from tavo._helpers import HELPERS

    class Base(tavo.Object):
        __helpers__ = {**HELPERS, "relay": type("RelayHelpers", (), {"get": None, "extra": 7})}

    relay = _types.class_of("relay", _types.versions_of("relay")[0], Base)
    assert relay.get is tavo.Relay.get and relay.extra == 7


def test_a_batch_has_no_helpers(tavo_device: tavo.Device) -> None:
    with pytest.raises(AttributeError), tavo_device.batch() as batch:
        batch.i2c.detect()


def test_helpers_of_a_closed_device(tavo_simulator: tavo.Simulator) -> None:
    device = open_on(tavo_simulator)
    bus = device.i2c
    device.close()
    with pytest.raises(tavo.Error, match="closed"):
        bus.detect()
