"""Devices by the names of the configuration file."""

from __future__ import annotations

import warnings
from collections.abc import Callable
from pathlib import Path

import pytest

import tavo

Write = Callable[[str], Path]


@pytest.fixture
def write(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Write:
    """Writes the user's configuration file."""

    def to_file(content: str) -> Path:
        file = tmp_path / "tavo" / "config.toml"
        file.parent.mkdir(exist_ok=True)
        file.write_text(content)
        monkeypatch.delenv("TAVO_CONFIG", raising=False)
        monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path))
        return file

    return to_file


def lab1(simulator: tavo.Simulator, more: str = "") -> str:
    return f'[lab1]\nhost = "{simulator.host}:{simulator.port}"\nuser = "guest"\n{more}'


def test_a_name_stands_for_everything(tavo_simulator: tavo.Simulator, write: Write, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("TAVO_PASSWORD", raising=False)
    file = write(lab1(tavo_simulator, 'timeout = "2s"\npassword-file = "secret"\n'))
    secret = file.parent / "secret"
    secret.write_text("tavo\n")
    secret.chmod(0o600)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        with tavo.open("lab1") as device:
            assert (device.host, device.port, device.timeout) == (tavo_simulator.host, tavo_simulator.port, 2)
            assert tavo_simulator.lock_holder == "guest"
    secret.chmod(0o640)
    with pytest.warns(UserWarning, match="accessible to others: its mode is 0640"):
        tavo.open("lab1").close()
    file.chmod(0o666)
    secret.chmod(0o600)
    with pytest.warns(UserWarning, match="others may write the configuration file .*: its mode is 0666"):
        tavo.open("lab1").close()


def test_an_argument_beats_the_environment_beats_the_file(
    tavo_simulator: tavo.Simulator, write: Write, monkeypatch: pytest.MonkeyPatch
) -> None:
    write(lab1(tavo_simulator, "timeout = 3\n") + '[defaults]\nhost = "lab1"\n')
    monkeypatch.setenv("TAVO_PASSWORD", "tavo")
    with tavo.open() as device:
        assert device.timeout == 3
        assert tavo_simulator.lock_holder == "guest"
    monkeypatch.setenv("TAVO_USER", "engineer")
    with tavo.open("lab1"):
        assert tavo_simulator.lock_holder == "engineer"
    with tavo.open("lab1", user="guest", timeout=4) as device:
        assert device.timeout == 4
        assert tavo_simulator.lock_holder == "guest"
    monkeypatch.setenv("TAVO_HOST", "127.0.0.1:1")
    with pytest.raises(tavo.NetworkError):
        tavo.open()
    with tavo.open("lab1", port=tavo_simulator.port):
        pass
    monkeypatch.setenv("TAVO_PORT", "http")
    with pytest.raises(ValueError, match="TAVO_PORT: 'http' is not a number|TAVO_PORT: "):
        tavo.open("lab1")


def test_hosts_are_listed_by_group(write: Write, monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    write('[lab2]\ngroup = ["rack", "all"]\n[lab1]\ngroup = "rack"\n["b.example"]\n')
    assert tavo.hosts() == ["lab2", "lab1", "b.example"]
    assert tavo.hosts("all") == ["lab2"]
    assert tavo.hosts(group="rack") == ["lab2", "lab1"]
    with pytest.raises(ValueError, match="no group 'shelf'; there are: all, rack"):
        tavo.hosts("shelf")
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path / "nowhere"))
    assert tavo.hosts() == []


@pytest.mark.parametrize(
    ("content", "text"),
    [
        ("[lab1]\nport = 0\n", r"config.toml:2:8: port: Value 0 not in range"),
        ("[lab1]\npassword = 'tavo'\n", r"config.toml:2:1: a password must not stand here"),
        ("[lab1\n", r"config.toml:"),
        ("[lab1]\nvia = 'ssh gate'\n", r"config.toml:2:7: 'lab1' is reached through a command"),
    ],
)
def test_faults_name_their_place(write: Write, content: str, text: str) -> None:
    write(content)
    with pytest.raises(ValueError, match=text):
        tavo.open("lab1", user="guest", password="tavo")


def test_a_named_file_must_be_there(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    monkeypatch.setenv("TAVO_CONFIG", str(tmp_path / "none"))
    with pytest.raises(ValueError, match="cannot read '.*none': No such file"):
        tavo.hosts()


def test_what_names_no_host_is_refused() -> None:
    with pytest.raises(ValueError, match="'host' is missing"):
        tavo.open(user="guest", password="tavo")
    with pytest.raises(ValueError, match=r"^host: port: "):
        tavo.open("127.0.0.1:http", user="guest", password="tavo")
    with pytest.raises(ValueError, match="^port is 1, but host says port 2$"):
        tavo.open("127.0.0.1:2", port=1, user="guest", password="tavo")
