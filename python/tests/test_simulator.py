"""The simulator as Python sees it."""

from __future__ import annotations

import time
from pathlib import Path

import pytest

import tavo

from conftest import open_on


def start_again(simulator: tavo.Simulator) -> None:
    for _ in range(300):
        try:
            simulator.start()
            return
        except RuntimeError as error:
            assert "in use" in str(error)
            time.sleep(0.1)
    pytest.skip("another program keeps the port")


def test_it_listens_within_its_block() -> None:
    simulator = tavo.Simulator()
    assert simulator.port == 0
    with simulator:
        assert simulator.host == "127.0.0.1" and simulator.port > 0
        with open_on(simulator):
            assert simulator.open_connections == 1
    with pytest.raises(tavo.NetworkError):
        open_on(simulator)
    # Any program may have got the port meanwhile.
    start_again(simulator)
    with simulator, open_on(simulator):
        assert simulator.connection_count >= 2


def test_relays_are_read_and_set(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_simulator.set_relay("bench.lamp", True)
    assert tavo_device.bench.lamp.get().state == 1
    tavo_device.bench.lamp.set(False)
    assert tavo_simulator.relay("bench.lamp") is False
    for wrong in ("cpu0", "nothing"):
        with pytest.raises(IndexError, match=wrong):
            tavo_simulator.relay(wrong)


def test_post_codes(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_simulator.write_post_code(0x55)
    assert tavo_simulator.post_codes() == []
    tavo_device.power.set(True)
    tavo_simulator.advance(5)
    codes = tavo_simulator.post_codes()
    assert codes[0] == 0x01 and codes[-1] == 0xAA
    tavo_simulator.write_post_code(0x55)
    assert tavo_device.lpc.lpcPostCode.postCodeGet().postCode == 0x55
    assert [entry.byte1 for entry in tavo_device.lpc.lpcPostCode.fifoGet().entries][-1] == 0x55


def test_eeproms_are_read_and_set(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_device.power.set(True)
    tavo_simulator.set_eeprom(b"\x01\x02\x03", address=0x54)
    assert tavo_device.i2c.transfer(0x54, b"\x00\x00", 4).data == tavo_simulator.eeprom(address=0x54)[:4]
    assert tavo_simulator.eeprom(address=0x54)[:3] == b"\x01\x02\x03"
    assert len(tavo_simulator.eeprom()) == 256
    with pytest.raises(IndexError, match="80|84|85"):
        tavo_simulator.eeprom(address=0x55)


def test_console(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    com = tavo_device.com
    com.open(115200, 8, False, False, 1, False, False, False, False)
    tavo_device.power.set(True)
    tavo_simulator.advance(5)
    com.recv(65536)
    tavo_simulator.type_at_console(b"help\r")
    assert com.recv(65536).data.startswith(b"help")


def test_calls_are_logged(tavo_device: tavo.Device, tavo_simulator: tavo.Simulator) -> None:
    tavo_simulator.clear_calls()
    with tavo_device.batch() as batch:
        batch.power.set(True)
        batch.power.toggle(-1)
    first, second = tavo_simulator.calls()
    assert (first.object, first.method, first.parameters, first.code) == ("power", "set", {"state": True}, 0)
    assert second.code == 1 and second.request == first.request


def test_faults_and_topologies(tmp_path: Path) -> None:
    with tavo.Simulator(topology="bare") as simulator, open_on(simulator) as device:
        assert list(device) == ["device", "system", "private"]
    file = tmp_path / "bench.json"
    file.write_text('{"name": "bench", "objects": [{"name": "class", "type": "relay"}, {"name": "a b", "type": "x"}]}')
    with tavo.Simulator(file) as simulator, open_on(simulator) as device:
        assert device["class"].get().state == 0
        assert getattr(device, "class") == device["class"]
        assert device["a b"].type().type == "x"
    for wrong in ({"topology": "none"}, {"faults": "1:boom"}, {"faults": ["0:close"]}, {"key": 9}):
        with pytest.raises(ValueError):
            tavo.Simulator(**wrong)  # type: ignore[arg-type]
    with tavo.Simulator(faults="1:close\n\n2:close") as simulator, pytest.raises(tavo.NetworkError):
        open_on(simulator)
    with pytest.raises(ValueError):
        tavo.Simulator().fail_next("boom")


def test_a_port_that_is_taken(tavo_simulator: tavo.Simulator) -> None:
    with pytest.raises(RuntimeError, match=str(tavo_simulator.port)):
        tavo.Simulator(port=tavo_simulator.port).start()
