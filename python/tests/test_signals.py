"""Ctrl-C and other signals, by real signals to processes of their own."""

from __future__ import annotations

import signal
import subprocess
import sys

import pytest

import tavo

# The script tells when it is about to wait; what follows it is the time from the signal to the exception.
PREAMBLE = """
import os, signal, sys, threading, time, tavo
simulator = tavo.Simulator().__enter__()
open_device = lambda: tavo.open(simulator.host, port=simulator.port, user="engineer", password="tavo")
def waiting(elsewhere=False):
    def shoot():
        # Give the call time to begin, then note the time and send the signal.
        time.sleep(0.3)
        global shot
        shot = time.monotonic()
        if elsewhere:
            # The wait of the main thread is not interrupted by the system.
            signal.pthread_kill(threading.get_ident(), number)
        else:
            os.kill(os.getpid(), number)
    number = signal.SIGINT
    threading.Thread(target=shoot).start()
def report():
    print(f"{time.monotonic() - shot:.3f}")
"""

WAITS = {
    "call": "device.system.usleep(60_000_000)",
    "silence": "simulator.fail_next('silent'); device.power.get()",
    # A byte every 10 ms.
    "dribble": "simulator.fail_next('dribble=10000'); device.cpu0.jtag.methodsVerbose()",
    "batch": """
with device.batch() as batch:
    batch.power.get()
    batch.system.usleep(60_000_000)
""",
    "time limit": "device.timeout = 50; device.system.usleep(60_000_000)",
    "turn": """
threading.Thread(target=lambda: device.system.usleep(3_000_000), daemon=True).start()
time.sleep(0.1)
device.power.get()
""",
    "SVF": "device.cpu0.jtag.play_svf(b'RUNTEST 0.1 SEC; ' * 600)",
    # No exchange runs while the file is looked at.
    "SVF that is read": "device.cpu0.jtag.play_svf(b'SDR 1 TDI(0);' + b'ENDDR IDLE; ' * 20_000_000)",
    "following": "list(device.post.follow())",
    "serial port": "device.console.open_serial().read(1)",
    "ROM": "while True: device.rom.load(bytes(8 << 20))",
}


def run(script: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [sys.executable, "-X", "faulthandler", "-c", PREAMBLE + script],
        capture_output=True,
        text=True,
        timeout=60,
    )


@pytest.mark.parametrize("elsewhere", [False, True])
@pytest.mark.parametrize("wait", WAITS)
def test_ctrl_c_ends_a_wait_and_the_device_works_on(wait: str, elsewhere: bool) -> None:
    indented = "\n".join(f"    {line}" for line in WAITS[wait].strip().splitlines())
    ended = run(
        "device = open_device()\n"
        "device.power.get()\n"
        f"waiting({elsewhere})\ntry:\n{indented}\n    print('no interrupt')\n"
        "except KeyboardInterrupt:\n    report()\n"
        "device.power.set(True)\n"
        "print(device.power.get().state, simulator.relay())\n"
        "device.close()\n"
        "print(simulator.lock_holder)\n"
    )
    assert ended.stderr == ""
    seconds, state, holder = ended.stdout.splitlines()
    assert float(seconds) < 20  # 0.2 on a machine at rest
    assert (state, holder) == ("1 True", "None")


def test_ctrl_c_ends_a_program_that_does_not_expect_it() -> None:
    ended = run("device = open_device()\nwaiting()\ndevice.system.usleep(60_000_000)\n")
    assert ended.returncode == -signal.SIGINT
    assert ended.stderr.rstrip().endswith("KeyboardInterrupt")


def test_ctrl_c_ends_an_opening() -> None:
    ended = run(
        "simulator.fail_next('silent', ahead=3)\nwaiting()\n"
        "try:\n    open_device()\nexcept KeyboardInterrupt:\n    report()\n"
        "with open_device() as device:\n    print(device.power.get().state)\n"
    )
    assert ended.stderr == ""
    assert float(ended.stdout.split()[0]) < 20 and ended.stdout.split()[1] == "0"


def test_a_handler_that_returns_lets_the_call_go_on() -> None:
    ended = run(
        "seen = []\nsignal.signal(signal.SIGINT, lambda *_: seen.append(1))\n"
        "device = open_device()\nwaiting()\n"
        "device.system.usleep(900_000)\n"
        "print(len(seen), device.reconnects)\ndevice.close()\n"
    )
    assert (ended.stdout, ended.stderr) == ("1 0\n", "")


def test_a_handler_that_calls_the_device_is_refused() -> None:
    ended = run(
        "device = open_device()\n"
        "signal.signal(signal.SIGINT, lambda *_: device.power.get())\nwaiting()\n"
        "try:\n    device.system.usleep(60_000_000)\n"
        "except RuntimeError as error:\n    print(error)\n"
        "print(device.power.get().state)\ndevice.close()\n"
    )
    assert ended.stdout == "the device is in the middle of a call of this thread\n0\n"


def test_a_handler_may_raise_what_it_likes() -> None:
    ended = run(
        "def handler(*_):\n    raise SystemExit(5)\n"
        "signal.signal(signal.SIGINT, handler)\n"
        "device = open_device()\nwaiting()\ndevice.system.usleep(60_000_000)\n"
    )
    assert (ended.returncode, ended.stderr) == (5, "")


def test_ctrl_c_does_not_end_calls_of_other_threads(tavo_simulator: tavo.Simulator) -> None:
    ended = run(
        "device = open_device()\n"
        "thread = threading.Thread(target=lambda: (device.system.usleep(900_000), print('done')))\n"
        "thread.start()\nwaiting()\n"
        "try:\n    time.sleep(30)\nexcept KeyboardInterrupt:\n    print('interrupted')\n"
        "thread.join()\nprint(device.reconnects)\ndevice.close()\n"
    )
    assert (ended.stdout, ended.stderr) == ("interrupted\ndone\n0\n", "")


def test_many_signals_lose_no_call() -> None:
    ended = run(
        "seen = []\nsignal.signal(signal.SIGALRM, lambda *_: seen.append(1))\n"
        "device = open_device()\n"
        "signal.setitimer(signal.ITIMER_REAL, 0.001, 0.001)\n"
        "end = time.monotonic() + 1\ncalls = 0\n"
        "while time.monotonic() < end:\n    device.power.get()\n    calls += 1\n"
        "signal.setitimer(signal.ITIMER_REAL, 0)\n"
        "print(calls > 10, len(seen) > 10, device.reconnects)\ndevice.close()\n"
    )
    assert (ended.stdout, ended.stderr) == ("True True 0\n", "")
