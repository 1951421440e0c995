"""What the tests share."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable
from pathlib import Path

import pytest

import tavo

pytest_plugins = ["tavo.pytest_plugin", "pytester"]

# The tests know nothing of the devices of whoever runs them.
for _name in [name for name in os.environ if name in ("TAVO_HOST", "TAVO_PORT", "TAVO_USER")]:
    del os.environ[_name]
os.environ["TAVO_CONFIG"] = os.devnull

Runner = Callable[..., "subprocess.CompletedProcess[str]"]


@pytest.fixture
def run_python() -> Runner:
    """Runs a script by an interpreter of its own, with the same package."""

    def run(script: str, *arguments: object, **variables: str) -> subprocess.CompletedProcess[str]:
        return subprocess.run(
            [sys.executable, "-X", "faulthandler", "-c", script, *map(str, arguments)],
            env={**os.environ, **variables},
            capture_output=True,
            text=True,
            timeout=60,
        )

    return run


def open_on(simulator: tavo.Simulator, **wish: object) -> tavo.Device:
    """Opens a device on a simulated appliance."""
    arguments: dict[str, object] = {"port": simulator.port, "user": "engineer", "password": "tavo", **wish}
    return tavo.open(simulator.host, **arguments)  # type: ignore[arg-type]


def source_folder() -> Path:
    """The top of the source tree."""
    return Path(__file__).resolve().parents[2]
