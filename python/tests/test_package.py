"""Builds a source distribution and a wheel, and installs the wheel. Takes minutes: it compiles the library.

TAVO_TEST_PACKAGE in the environment asks for it; scripts/test --package sets it.
"""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path

import pytest

SOURCES = Path(__file__).resolve().parents[2]


def run(*command: str | Path, folder: Path) -> str:
    environment = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
    ended = subprocess.run(
        [str(word) for word in command], cwd=folder, env=environment, capture_output=True, text=True, timeout=1700
    )
    assert ended.returncode == 0, ended.stdout[-4000:] + ended.stderr[-4000:]
    return ended.stdout


@pytest.mark.skipif(
    "TAVO_TEST_PACKAGE" not in os.environ, reason="takes minutes: set TAVO_TEST_PACKAGE to build the wheel"
)
def test_the_wheel_installs_without_network(tmp_path: Path) -> None:
    build = ["-m", "build", "--no-isolation", "--outdir", str(tmp_path)]
    run(sys.executable, *build, "--sdist", SOURCES / "python", folder=tmp_path)
    (source,) = tmp_path.glob("*.tar.gz")
    run("tar", "-xf", source, folder=tmp_path)
    unpacked = tmp_path / source.name.removesuffix(".tar.gz")
    run(sys.executable, *build, "--wheel", unpacked, folder=tmp_path)
    (wheel,) = tmp_path.glob("*.whl")
    environment = tmp_path / "venv"
    run(sys.executable, "-m", "venv", environment, folder=tmp_path)
    python = environment / "bin" / "python"
    run(python, "-m", "pip", "install", "--no-index", "--disable-pip-version-check", wheel, folder=tmp_path)
    script = (
        "import importlib.metadata, tavo, tavo.aio\n"
        "with tavo.Simulator() as s, tavo.open(s.host, port=s.port, user=s.user, password=s.password) as d:\n"
        "    d.power.set(state=True)\n    print(d.power.get(), tavo.__file__)\n"
        "print(*importlib.metadata.entry_points(group='pytest11', name='tavo'))\n"
    )
    printed = run(python, "-c", script, folder=tmp_path)
    assert printed.startswith(f"Relay.GetReply(state=1) {environment}")
    assert "tavo.pytest_plugin" in printed
    assert (environment / "lib").exists()
