"""What `tavo metrics` prints of devices of all kinds: TAVO TAVO-SIM."""

import json
import os
import re
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

TAVO, TAVO_SIM = sys.argv[1:3]


class Simulator:
    def __init__(self, folder, *arguments):
        self._log = open(os.path.join(folder, "calls.log"), "w+")
        self._process = subprocess.Popen([TAVO_SIM, "--port", "0", "--log", *arguments], stdout=subprocess.PIPE,
                                         stderr=self._log, text=True)
        self.port = int(self._process.stdout.readline().rsplit(":", 1)[1])

    def calls(self):
        self._log.seek(0)
        found = [re.match(r"\d+ #\d+ (\S+)\(", line) for line in self._log]
        return [match[1] for match in found if match]

    def close(self):
        self._process.terminate()
        self._process.wait(60)
        self._process.stdout.close()
        self._log.close()


class Peer:
    """Answers every connection with the same bytes, or with none, and keeps it open."""

    def __init__(self, answer):
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self._answer = answer
        self._connections = []
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def _run(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            self._connections.append(connection)
            try:
                connection.recv(1)
                connection.sendall(self._answer)
            except OSError:
                pass

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        self._thread.join(10)
        for connection in self._connections:
            connection.close()


class MetricsTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = place.name
        self.environment = {"PATH": os.environ["PATH"], "HOME": self.folder, "XDG_CONFIG_HOME": self.folder,
                            "XDG_RUNTIME_DIR": self.folder, "TAVO_PASSWORD": "tavo", "LC_ALL": "C.UTF-8"}

    def simulator(self, *arguments):
        simulator = Simulator(self.folder, *arguments)
        self.addCleanup(simulator.close)
        return simulator

    def start(self, *arguments):
        """A command of the tool that goes on, and the line that it prints first."""
        process = subprocess.Popen([TAVO, *arguments], env=self.environment, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True)

        def end():
            process.stdin.close()
            process.terminate()
            process.wait(60)
            process.stdout.close()

        self.addCleanup(end)
        return process.stdout.readline()

    def tool(self, *arguments, status=0):
        done = subprocess.run([TAVO, *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=100, check=False)
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout, done.stderr

    def metrics(self, port, *arguments):
        return self.tool("--host", f"127.0.0.1:{port}", *arguments, "metrics")

    def values(self, text, port):
        """Name and labels, without that of the device, to value. Each metric has its comments."""
        found = {}
        for line in text.splitlines():
            if line.startswith("#"):
                continue
            name, labels, value = re.fullmatch(r"(\w+)\{(.*)\} (\S+)", line).groups()
            common = f'device="127.0.0.1:{port}"'
            self.assertTrue(labels.startswith(common), line)
            key = name + labels[len(common):]
            self.assertNotIn(key, found)
            found[key] = float(value)
            self.assertEqual(len(re.findall(rf"^# HELP {name} \S.*\n# TYPE {name} gauge$", text, re.M)), 1, text)
        return found

    def test_free_device_tells_all_and_is_not_locked(self):
        simulator = self.simulator()
        address = ("--host", f"127.0.0.1:{simulator.port}")
        self.tool(*address, "--user", "engineer", "relay", "set", "power", "on")
        locks = simulator.calls().count("device.lock")
        text, errors = self.metrics(simulator.port)
        self.assertEqual(errors, "")
        values = self.values(text, simulator.port)
        self.assertEqual(values["tavo_up"], 1)
        self.assertEqual(values["tavo_lock_held"], 0)
        self.assertEqual(values['tavo_relay_on,relay="power"'], 1)
        self.assertEqual(values['tavo_relay_on,relay="bench.fan"'], 0)
        self.assertEqual(values['tavo_device_info,name="tavo-sim",version="2.0.0"'], 1)
        self.assertEqual(values['tavo_firmware_info,name="fpga",version="1.12.0"'], 1)
        self.assertGreater(values["tavo_exchange_seconds"], 0)
        self.assertLess(values["tavo_exchange_seconds"], 60)
        self.assertNotIn("tavo_lock_holder_info", text)
        self.assertEqual(simulator.calls().count("device.lock"), locks)

        # The last code of the board, which has booted meanwhile.
        listed, _ = self.tool(*address, "--user", "engineer", "--json", "post", "list")
        text, _ = self.metrics(simulator.port)
        code = self.values(text, simulator.port)['tavo_post_code,object="lpc.lpcPostCode"']
        self.assertIn(code, [json.loads(listed)["last"]] + [float(number) for number in range(256)])

        document = json.loads(self.metrics(simulator.port, "--json")[0])["metrics"]
        self.assertIn({"name": "tavo_up", "labels": {"device": f"127.0.0.1:{simulator.port}"}, "value": 1.0},
                      document)

    def test_works_while_another_user_holds_the_lock(self):
        simulator = self.simulator()
        self.start("--host", f"127.0.0.1:{simulator.port}", "--user", "guest", "lock", "hold", "--", "sh", "-c",
                   "echo held; exec cat")
        for arguments in ((), ("--user", "engineer")):
            text, errors = self.metrics(simulator.port, *arguments)
            self.assertEqual(errors, "")
            values = self.values(text, simulator.port)
            self.assertEqual((values["tavo_up"], values["tavo_lock_held"]), (1, 1))
            self.assertEqual(values['tavo_lock_holder_info,user="guest"'], 1)
            self.assertNotIn("tavo_relay_on", text)
            self.assertNotIn("tavo_post_code", text)
        self.assertEqual(simulator.calls().count("device.lock"), 1)
        self.assertNotIn("device.unlock", simulator.calls())

    def test_share_is_a_device_whose_user_holds_the_lock(self):
        simulator = self.simulator()
        said = self.start("--host", f"127.0.0.1:{simulator.port}", "--user", "engineer", "share")
        for port in (simulator.port, int(said.rsplit(":", 1)[1])):
            text, _ = self.metrics(port, "--user", "engineer")
            values = self.values(text, port)
            self.assertEqual((values["tavo_up"], values['tavo_lock_holder_info,user="engineer"']), (1, 1))

    def test_named_device(self):
        simulator = self.simulator()
        os.makedirs(os.path.join(self.folder, "tavo"))
        with open(os.path.join(self.folder, "tavo", "config.toml"), "w") as file:
            file.write(f'[lab1]\nhost = "127.0.0.1:{simulator.port}"\nsecure = true\n')
        text, _ = self.tool("--host", "lab1", "metrics")
        self.assertEqual(self.values(text, simulator.port)["tavo_up"], 1)
        self.tool("--host", "lab1", "--port", "99999", "metrics", status=2)

    def test_device_that_is_none_is_down(self):
        with socket.create_server(("127.0.0.1", 0)) as listener:
            closed = listener.getsockname()[1]
        unknown = self.simulator("--key", "-1")
        peers = [Peer(answer) for answer in (b"", b"HTTP/1.1 400 Bad Request\r\n\r\n", b"\xff" * 4096, bytes(4096))]
        for peer in peers:
            self.addCleanup(peer.close)
        for port, arguments in [(closed, ()), (unknown.port, ("--secure",)), *((peer.port, ()) for peer in peers)]:
            text, errors = self.metrics(port, "--timeout", "500ms", *arguments)
            self.assertEqual(text, "# HELP tavo_up Whether the device could be asked.\n# TYPE tavo_up gauge\n"
                                   f'tavo_up{{device="127.0.0.1:{port}"}} 0\n')
            self.assertIn(f"127.0.0.1:{port} counts as gone: ", errors)
        self.assertEqual(self.values(self.metrics(unknown.port)[0], unknown.port)["tavo_up"], 1)
        self.assertEqual(self.tool("metrics", status=2)[0], "")

    def test_hostile_names_are_one_label_each(self):
        names = ['a"} 1\nb', "c\\", "d\x1b[2J\t", "e{x='y'}", "\u00fc\u202e", "c\\"[:1]]
        topology = os.path.join(self.folder, "hostile.json")
        with open(topology, "w") as file:
            json.dump({"name": "hostile", "objects": [{"name": name, "type": "relay"} for name in names]}, file)
        simulator = self.simulator("--topology", topology)
        text, _ = self.metrics(simulator.port)
        self.assertNotIn("\x1b", text)
        self.assertEqual(len(re.findall(r"^tavo_relay_on\{", text, re.M)), len(names))
        self.assertIn(r'relay="a\"} 1\\x0Ab"', text.replace("x0a", "x0A"))
        self.assertIn(r'relay="c\\"', text)
        # promtool reads this text, and that of a device that has everything.
        for output in (text, self.tool("--sim", "metrics")[0]):
            checked = subprocess.run(["promtool", "check", "metrics"], input=output, capture_output=True, text=True,
                                     timeout=100, check=False)
            self.assertEqual((checked.returncode, checked.stdout + checked.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
