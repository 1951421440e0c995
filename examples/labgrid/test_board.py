import re

import pytest

PROMPT = "target> "


@pytest.fixture(scope="module")
def console(target):
    return target.get_driver("ConsoleProtocol")


@pytest.fixture(scope="module")
def power(target):
    return target.get_driver("PowerProtocol")


def ask(console, line):
    """What the board prints for a command."""
    console.sendline(line)
    _, before, _, _ = console.expect(PROMPT, timeout=20)
    return before.decode()


def power_ons(console):
    return int(re.search(r"power-ons (\d+)", ask(console, "status")).group(1))


def test_boots_after_a_power_cycle(console, power):
    power.on()
    console.expect(PROMPT, timeout=30)
    before = power_ons(console)
    power.cycle()
    console.expect("Target firmware", timeout=30)
    console.expect(PROMPT, timeout=30)
    assert power_ons(console) == before + 1


def test_knows_its_version(console):
    assert "Target firmware 1.0" in ask(console, "version")
