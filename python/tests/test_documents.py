"""Runs the blocks of the tutorial, and the examples."""

from __future__ import annotations

import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

import tavo

from conftest import Runner, source_folder

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def blocks() -> list[tuple[str, str]]:
    """The Python blocks of the tutorial, with the output that follows each."""
    text = (source_folder() / "docs" / "python.md").read_text(encoding="ascii")
    found = [(match[1], match[2]) for match in BLOCK.finditer(text)]
    return [
        (code, found[i + 1][1] if i + 1 < len(found) and found[i + 1][0] == "text" else "")
        for i, (language, code) in enumerate(found)
        if language == "python"
    ]


@pytest.mark.parametrize("number", range(len(blocks())))
def test_tutorial(
    number: int, tavo_simulator: tavo.Simulator, run_python: Runner, pytester: pytest.Pytester
) -> None:
    code, output = blocks()[number]
    if "def test_" in code:
        pytester.makepyfile(code)
        pytester.runpytest_subprocess("-p", "tavo.pytest_plugin").assert_outcomes(passed=1)
        return
    assert output
    begin = f"import tavo\nHOST, PORT = {tavo_simulator.host!r}, {tavo_simulator.port}\n"
    ended = run_python(begin + code)
    assert (ended.stdout, ended.stderr) == (output, "")


def run_example(name: str, simulator: tavo.Simulator, *more: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [
            sys.executable,
            str(source_folder() / "examples" / "python" / name),
            simulator.host,
            "--port",
            str(simulator.port),
            "--user",
            "engineer",
            *more,
        ],
        env={**os.environ, "TAVO_PASSWORD": "tavo"},
        capture_output=True,
        text=True,
        timeout=60,
    )


def test_power_cycle(tavo_simulator: tavo.Simulator, tmp_path: Path) -> None:
    plot = tmp_path / "boots.png"
    good = run_example("power_cycle.py", tavo_simulator, "--boots", "1", "--plot", str(plot))
    assert (good.returncode, good.stdout) == (0, "boot 1: 60 codes, the last is 0xAA\n"), good.stderr
    assert plot.exists() or "no plot" in good.stderr
    bad = run_example("power_cycle.py", tavo_simulator, "--longest", "0.5")
    assert bad.returncode == 1
    assert bad.stdout.endswith("boot 1 failed\n")


def test_read_spd(tavo_simulator: tavo.Simulator) -> None:
    read = run_example("read_spd.py", tavo_simulator)
    assert read.returncode == 0, read.stderr
    assert read.stdout.startswith("256 bytes, DDR")
    assert tavo_simulator.eeprom()[:16].hex(" ") in read.stdout
    missing = run_example("read_spd.py", tavo_simulator, "--address", "0x21")
    assert missing.returncode == 1 and "no memory module at 0x21" in missing.stderr


@pytest.mark.parametrize("name", ["cpu0.jtag", "gpu0.jtag"])
def test_jtag_idcode(tavo_simulator: tavo.Simulator, name: str) -> None:
    read = run_example("jtag_idcode.py", tavo_simulator, "--object", name)
    assert read.returncode == 0, read.stderr
    assert re.fullmatch(r"0x[0-9A-F]{8}: manufacturer 0x\w{3}, part 0x\w{4}, version \d+\n", read.stdout)


def test_play_svf(tavo_simulator: tavo.Simulator, tmp_path: Path) -> None:
    file = tmp_path / "chain.svf"
    file.write_text("STATE RESET;\nSDR 32 TDI(0) TDO(2A45D0C3);\n")
    good = run_example("play_svf.py", tavo_simulator, str(file))
    assert good.returncode == 0, good.stderr
    assert good.stdout.startswith("TAP 0: IDCODE 0x2A45D0C3\n")
    assert good.stdout.endswith("1 scans, 1 of them checked\n")
    file.write_text("STATE RESET;\nSDR 32 TDI(0) TDO(0);\n")
    bad = run_example("play_svf.py", tavo_simulator, str(file))
    assert bad.returncode == 1 and "chain.svf:2: TDO is (2A45D0C3)" in bad.stderr


def test_examples_have_a_test_each() -> None:
    examples = {path.stem for path in (source_folder() / "examples" / "python").glob("*.py")}
    assert examples == {"jtag_idcode", "play_svf", "power_cycle", "read_spd"}
