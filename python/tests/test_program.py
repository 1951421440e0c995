"""`python -m tavo`, the pytest plugin, and the stubs."""

from __future__ import annotations

import json
import keyword
import os
import subprocess
import sys
from pathlib import Path

import pytest

import tavo
import tavo.aio
from tavo import _stubs, _types
from tavo.__main__ import main
from tavo._visible import visible

from conftest import source_folder

TOOL = os.environ.get("TAVO_TOOL", "")


def run_module(simulator: tavo.Simulator, *more: str, **variables: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [sys.executable, "-m", "tavo", simulator.host, "--port", str(simulator.port), "--user", "engineer", *more],
        env={**os.environ, "TAVO_PASSWORD": "tavo", **variables},
        capture_output=True,
        text=True,
        timeout=60,
        encoding="utf-8",
    )


def test_it_prints_the_device(tavo_simulator: tavo.Simulator) -> None:
    printed = run_module(tavo_simulator)
    assert printed.returncode == 0, printed.stderr
    assert printed.stdout.startswith("name       tavo-sim\nversion    2.0.0\n")
    assert f"\n127.0.0.1:{tavo_simulator.port}\n" in printed.stdout
    assert "lamp  relay 1.0  #42683\n" in printed.stdout


@pytest.mark.skipif(not TOOL, reason="TAVO_TOOL does not name the tool")
@pytest.mark.parametrize("locale", ["C", "C.UTF-8"])
@pytest.mark.parametrize("topology", ["standard", "bare", "legacy"])
def test_it_prints_what_the_tool_prints(topology: str, locale: str) -> None:
    with tavo.Simulator(topology) as simulator:
        ours = run_module(simulator, LC_ALL=locale, PYTHONCOERCECLOCALE="0", PYTHONUTF8="0")
        theirs = ""
        for command in ("info", "tree"):
            theirs += subprocess.run(
                [TOOL, "--host", simulator.host, "--port", str(simulator.port), "--user", "engineer", command],
                env={**os.environ, "TAVO_PASSWORD": "tavo", "LC_ALL": locale, "TAVO_CONFIG": ""},
                check=True,
                capture_output=True,
                text=True,
                timeout=60,
                encoding="utf-8",
            ).stdout
    assert ours.stdout == theirs


#: What the tool escapes, with its neighbours, and what it leaves alone.
LETTERS = (
    "\x01\x1b[31m \x1f ~\x7f\x80\x9f\xa0\xac\xad\xae\u061b\u061c\u061d\u180d\u180e\u180f\u200a\u200b\u200f\u2010"
    "\u2027\u2028\u202e\u202f\u205f\u2060\u206f\u2070\ufefe\ufeff\uff00\ufff8\ufff9\ufffb\ufffc"
    "\U000dffff\U000e0000\U000e007f\U000e0080 \xe4 \u20ac \U0001f600 \\ \""
)


@pytest.mark.skipif(not TOOL, reason="TAVO_TOOL does not name the tool")
@pytest.mark.parametrize("locale", ["C", "C.UTF-8"])
def test_texts_of_a_device_do_not_control_the_terminal(tmp_path: Path, locale: str) -> None:
    file = tmp_path / "bench.json"
    objects = [{"name": f"a{letter}b", "type": "relay"} for letter in LETTERS]
    objects = list({entry["name"]: entry for entry in objects}.values())
    file.write_text(json.dumps({"name": "bench", "objects": objects}), encoding="ascii")
    test_it_prints_what_the_tool_prints(str(file), locale)


def test_bytes_that_are_not_text_are_shown() -> None:
    assert visible(b"a\xff\x1b\xe4b".decode(errors="surrogateescape")) == "a\\xff\\x1b\\xe4b"
    assert visible("\ud800\n") == "\\ud800\\x0a"


def test_failures_are_told(capsys: pytest.CaptureFixture[str], tmp_path: Path) -> None:
    with tavo.Simulator() as simulator:
        wish = [simulator.host, "--port", str(simulator.port), "--user", "nobody", "--password-file"]
        assert main([*wish, str(tmp_path / "none")]) == 1
        assert "none" in capsys.readouterr().err
        file = tmp_path / "password"
        file.write_text("wrong")
        file.chmod(0o600)
        assert main([*wish, str(file)]) == 1
        assert capsys.readouterr().err.startswith("python -m tavo: ")


def test_the_fixtures_work_in_tests_of_others(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        import pytest

        def test_device(tavo_device, tavo_simulator):
            tavo_device.power.set(True)
            assert tavo_simulator.relay()

        @pytest.mark.tavo_simulator(topology="bare", faults=["100:close"])
        def test_mark(tavo_device):
            assert list(tavo_device) == ["device", "system", "private"]
        """
    )
    outcome = pytester.runpytest_subprocess("-p", "tavo.pytest_plugin", "--strict-markers")
    outcome.assert_outcomes(passed=2)


@pytest.mark.parametrize(("file", "awaited"), [("modules.pyi", False), ("aio_modules.pyi", True)])
def test_the_stubs_are_current(file: str, awaited: bool) -> None:
    """If not, build the target tavo_python_stubs."""
    found = (source_folder() / "python" / "tavo" / file).read_text(encoding="ascii")
    assert found == _stubs.stub(awaited)


def test_names_are_free() -> None:
    own = {name for name in dir(tavo._object.CallingObject) if not name.startswith("__")}
    for (kind, version), methods in _types.TABLES.items():
        for method in methods:
            assert method.name.isidentifier() and not keyword.iskeyword(method.name), (kind, version)
            assert method.name not in own
            for name, _ in [*method.request, *(method.reply or [])]:
                assert name.isidentifier() and not keyword.iskeyword(name), (kind, method.name)


def test_all_public_names_exist() -> None:
    for module in (tavo, tavo.aio, tavo.modules):
        for name in module.__all__:
            assert getattr(module, name) is not None
            assert getattr(module, name).__doc__
    assert {_types.class_name(kind) for kind in _types.types()} <= set(tavo.__all__)


def test_the_types_are_right() -> None:
    mypy = pytest.importorskip("mypy.api")
    folder = source_folder()
    out, err, status = mypy.run(
        [
            "--strict",
            "--cache-dir", os.devnull,
            "--config-file", str(folder / "python" / "pyproject.toml"),
            str(folder / "python" / "tavo"),
            str(folder / "python" / "tests"),
            str(folder / "examples" / "python"),
        ]
    )  # fmt: skip
    assert (status, err) == (0, ""), out
