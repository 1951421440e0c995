"""Fixtures for pytest: `tavo_simulator`, and `tavo_device`, which is opened on it.

A test chooses what is simulated by a mark: `@pytest.mark.tavo_simulator(topology="bare", faults=["3:cut=17"])`.
"""

from __future__ import annotations

from collections.abc import Iterator

import pytest

import tavo


def pytest_configure(config: pytest.Config) -> None:
    """Makes the mark known."""
    config.addinivalue_line(
        "markers", "tavo_simulator(topology, faults): arguments for the tavo.Simulator of the fixtures"
    )


@pytest.fixture
def tavo_simulator(request: pytest.FixtureRequest) -> Iterator[tavo.Simulator]:
    """A simulated appliance that listens."""
    mark = request.node.get_closest_marker("tavo_simulator")
    simulator = tavo.Simulator(*mark.args, **mark.kwargs) if mark else tavo.Simulator()
    with simulator:
        yield simulator


@pytest.fixture
def tavo_device(tavo_simulator: tavo.Simulator) -> Iterator[tavo.Device]:
    """A device that is open on the simulated appliance."""
    with tavo.open(
        tavo_simulator.host,
        port=tavo_simulator.port,
        user=tavo_simulator.user,
        password=tavo_simulator.password,
        timeout=30,
    ) as device:
        yield device
