"""What Wireshark's tshark shows of conversations with the plugin: PLUGIN TAVO TAVO-SIM."""

import os
import random
import re
import struct
import subprocess
import sys
import tempfile
import unittest

from capture import FROM_DEVICE, TO_DEVICE, Capture, Relay

PLUGIN, TAVO, TAVO_SIM = sys.argv[1:4]
DEVICE_PORT = 6123
LOCK_ID, PASSWORD = 0x5EC2E7, "tavo"


def words(*numbers):
    return struct.pack(f">{len(numbers)}I", *numbers)


def text(content):
    return words(len(content)) + content.encode()


def request(*calls, lock=0):
    """Calls are (instance, method, parameters)."""
    return words(lock, len(calls)) + b"".join(words(i, m, len(p)) + p for i, m, p in calls)


def reply(*results, status=b"", error=b""):
    return (words(len(status)) + status + words(len(error)) + error + words(len(results)) +
            b"".join(words(len(r)) + r for r in results))


def names(*pairs):
    return words(0, len(pairs)) + b"".join(text(name) + words(number) for name, number in pairs)


# A small conversation with all that messages consist of.
SMALL = [
    (TO_DEVICE, request((0, 3, b""))),
    (FROM_DEVICE, reply(names(("lock", 7), ("rootMembers", 8), ("methods", 3), ("info", 9)))),
    (TO_DEVICE, request((0, 7, text("ann") + text("hush-hush")), (0, 8, b""))),
    (FROM_DEVICE, reply(words(0, LOCK_ID), names(("lamp", 20), ("bus", 21)), status=b"ok")),
    (TO_DEVICE, request((20, 3, b""), (21, 3, b""), lock=LOCK_ID)),
    (FROM_DEVICE, reply(names(("type", 5), ("set", 6), ("get", 9)), names(("type", 5), ("odd", 6)))),
    (TO_DEVICE, request((20, 5, b""), (21, 5, b""), lock=LOCK_ID)),
    (FROM_DEVICE, reply(words(0) + text("relay"), words(0) + text("unheard-of"))),
    (TO_DEVICE, request(lock=LOCK_ID)),
    (FROM_DEVICE, reply()),
    (TO_DEVICE, request((20, 6, b"\1"), (20, 9, b""), (21, 6, b"12345"), (0, 9, b""), lock=LOCK_ID)),
    (FROM_DEVICE, reply(words(0), words(0xFFFFFFFF) + b"\1 more",
                        error=words(1, 1006) + text("it is broken"))),
    (TO_DEVICE, request((0, 9, b""))),
    (FROM_DEVICE, reply(words(0) + text("dev") + words(1, 2, 3) + words(1) + text("fpga") + words(4, 5, 6) +
                        words(1) + text("a") + text("b") + text("c") + text("d"))),
]


class Simulator:
    def __init__(self, folder):
        self._log = open(os.path.join(folder, "calls.log"), "w+")
        self._process = subprocess.Popen([TAVO_SIM, "--port", "0", "--log"], stdout=subprocess.PIPE,
                                         stderr=self._log, text=True)
        self.port = int(self._process.stdout.readline().rsplit(":", 1)[1])

    def calls(self):
        """Ends it, and returns the calls that it has logged."""
        self._process.terminate()
        self._process.wait(60)
        self._process.stdout.close()
        self._log.seek(0)
        found = [re.match(r"\d+ #\d+ (\S+)\(", line) for line in self._log]
        self._log.close()
        return [match[1] for match in found if match]


class PluginTest(unittest.TestCase):
    def setUp(self):
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.folder = self._folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def capture(self, name, *conversations, **options):
        path = self.path(name)
        capture = Capture(path)
        for number, pieces in enumerate(conversations):
            capture.conversation(pieces, 10000 + number, DEVICE_PORT, **options)
        capture.close()
        return path

    def tshark(self, path, *arguments):
        """Its output and its errors. The user's own plugins and settings are not read."""
        environment = dict(os.environ, HOME=self.folder, XDG_CONFIG_HOME=self.folder, LC_ALL="C.UTF-8")
        done = subprocess.run(["tshark", "-n", "-X", "lua_script:" + PLUGIN, "-r", path, *arguments],
                              env=environment, capture_output=True, timeout=300, check=False)
        output, errors = done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace")
        self.assertEqual(done.returncode, 0, errors)
        self.assertNotRegex(output + errors, r"(?i)lua( error|: )|dissector bug|malformed")
        return output, errors

    def fields(self, path, *fields, arguments=()):
        """For each packet of the protocol its fields, each a list of its values."""
        chosen = [argument for field in fields for argument in ("-e", field)]
        output, _ = self.tshark(path, "-2", "-Y", "tavox", "-T", "fields", "-E", "separator=/t", "-E",
                                "aggregator=/s", *chosen, *arguments)
        return [[value.split(" ") if value else [] for value in line.split("\t")]
                for line in output.splitlines()]

    def run_tool(self, port, *arguments, **options):
        password = self.path("password")
        with open(os.open(password, os.O_CREAT | os.O_WRONLY | os.O_TRUNC, 0o600), "w") as file:
            file.write(PASSWORD)
        return subprocess.run([TAVO, "--host", "127.0.0.1", "--port", str(port), "--user", "engineer",
                               "--password-file", password, *arguments], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120, check=True, **options).stdout

    def test_shows_the_calls_that_the_device_has_had(self):
        simulator = Simulator(self.folder)
        relay = Relay(simulator.port)
        image = self.path("image")
        with open(image, "wb") as file:
            file.write(random.Random(1).randbytes(3 << 20))
        for command in ("info", "tree --methods", "relay list", "relay set power on", "relay get power",
                        f"rom load --yes {image}", "time get", "i2c detect --object i2c",
                        "jtag scan --object cpu0.jtag", "post list", "header status", "lcd print hello"):
            self.run_tool(relay.port, *command.split(" "))
        tree = self.run_tool(simulator.port, "--json", "tree", "--methods")
        relay.close()
        calls = simulator.calls()
        recorded = relay.conversations
        # What the relay has not seen, for it was made for the file of names.
        with open(self.path("names.json"), "w") as file:
            file.write(tree)

        packets = self.fields(
            self.capture("all.pcap", *recorded), "frame.number", "tavox.call", "tavox.result_of", "tavox.return_code",
            "tavox.request_in", "tavox.response_in", "tavox.time", "tavox.device.lock.request.password",
            "tavox.device.lock.reply.lockId", "tavox.lock_id", "tavox.relay.set.request.state",
            "tavox.relay.get.reply.state", "tavox.data", "tavox.note.cut", "tavox.note.unknown")
        shown = [call for packet in packets for call in packet[1]]
        self.assertGreater(len(shown), 300)
        self.assertEqual(shown, calls[:len(shown)])
        # All but those for the file.
        self.assertEqual(calls[len(shown)], "device.methods")
        self.assertEqual([c for c in calls[len(shown):] if c.endswith("unlock")], ["device.unlock"])
        self.assertEqual([result for packet in packets for result in packet[2]], shown)
        self.assertEqual(sum(len(packet[3]) for packet in packets), len(shown))
        self.assertEqual({value for packet in packets for value in packet[7] + packet[8]}, {"***"})
        self.assertEqual({value for packet in packets for value in packet[9]}, {"none", "***"})
        self.assertEqual([packet[10] for packet in packets if packet[10]], [["1"]])
        self.assertIn(["1"], [packet[11] for packet in packets])
        self.assertEqual([packet for packet in packets if packet[12] or packet[13] or packet[14]], [])

        # Request and reply name each other.
        answers = {}
        for packet in packets:
            for number in packet[5]:
                answers.setdefault(int(number), int(packet[0][0]))
        replies = [packet for packet in packets if packet[6]]
        self.assertGreater(len(replies), 50)
        for packet in replies:
            self.assertEqual(len(set(packet[4])), 1, packet)
            self.assertIn(int(packet[0][0]), answers)
            self.assertGreater(float(packet[6][0]), 0)

        self.check_names_of_file(recorded)

    def check_names_of_file(self, recorded):
        # The capture begins with the call that switches the relay.
        [[pieces, at]] = [[pieces, at] for pieces in recorded for at, (direction, data) in enumerate(pieces)
                          if direction == TO_DEVICE and len(data) == 21 and data[16:] == words(1) + b"\1"]
        late = self.path("late.pcap")
        capture = Capture(late)
        capture.conversation(pieces[at:at + 2], 10000, 7000, begin=False)
        capture.close()
        wanted = ("tavox.call", "tavox.relay.set.request.state", "tavox.parameters")
        decode = ("-d", "tcp.port==7000,tavox")
        [[call, state, parameters], _] = self.fields(late, *wanted, arguments=decode)
        self.assertRegex(call[0], r"^#\d+\.#\d+$")
        self.assertEqual((state, parameters), ([], ["01"]))
        [[call, state, parameters], _] = self.fields(
            late, *wanted, arguments=(*decode, "-o", "tavox.names_file:" + self.path("names.json")))
        self.assertEqual((call, state, parameters), (["power.set"], ["1"], []))
        # A file that is none is named, and spoils nothing.
        for content, fault in (('{"objects": [{"instanceId": 1,}]}', "a name is missing"), ("[1, 2]", "objects"),
                               ("[" * 1000, "nested"), ('{"a": "b', "does not end")):
            with open(self.path("bad.json"), "w") as file:
                file.write(content)
            output, errors = self.tshark(late, *decode, "-o", "tavox.names_file:" + self.path("bad.json"))
            self.assertIn(self.path("bad.json"), errors)
            self.assertIn(fault, errors)
            self.assertIn("Request: #", output)

    def test_shows_every_part_of_a_message(self):
        packets = self.fields(
            self.capture("small.pcap", SMALL), "tavox.call", "tavox.result_of", "tavox.return_code", "tavox.status",
            "tavox.error.code", "tavox.error.position", "tavox.error.message", "tavox.rest", "tavox.parameters",
            "tavox.device.info.reply.firmware.version.minor", "tavox.device.info.reply.boards.field4")
        self.assertEqual([packet[0] for packet in packets[::2]],
                         [["device.methods"], ["device.lock", "device.rootMembers"], ["lamp.methods", "bus.methods"],
                          ["lamp.type", "bus.type"], [], ["lamp.set", "lamp.get", "bus.odd", "device.info"],
                          ["device.info"]])
        self.assertEqual(packets[3][3], ["6f6b"])
        self.assertEqual(packets[10][8], ["3132333435"])
        self.assertEqual(packets[11][1:8], [["lamp.set", "lamp.get"], ["0", "-1"], [], ["1006"], ["1"],
                                            ["it", "is", "broken"], ["206d6f7265"]])
        self.assertEqual(packets[13][9:], [["5"], ["d"]])
        output, _ = self.tshark(self.path("small.pcap"), "-2", "-V", "-O", "tavox")
        self.assertIn("***", output)
        self.assertNotIn("hush-hush", output)
        self.assertNotIn(str(LOCK_ID), output)
        output, _ = self.tshark(self.path("small.pcap"), "-V", "-O", "tavox", "-o", "tavox.show_secrets:TRUE")
        self.assertIn("hush-hush", output)
        self.assertIn(str(LOCK_ID), output)

    def test_puts_large_batches_together(self):
        block = text("x" * 65536)
        longer = text("y" * 4000000)
        batch = [(TO_DEVICE, request(*[(0, 7, text("ann") + block)] * 40)),
                 (FROM_DEVICE, reply(*[words(0, LOCK_ID) + block] * 40))]
        batch += [(TO_DEVICE, request((0, 7, longer + block), (0, 8, b""))),
                  (FROM_DEVICE, reply(words(0, LOCK_ID) + longer, words(0) + words(0)))]
        pieces = SMALL[:2] + [(direction, data[at:at + 1460]) for direction, data in batch
                              for at in range(0, len(data), 1460)] + SMALL[2:4]
        path = self.capture("large.pcap", pieces)
        packets = self.fields(path, "tavox.call", "tavox.result_of", "tavox.device.rootMembers.reply.members.name")
        wanted = ["device.methods"] + ["device.lock"] * 40 + ["device.lock", "device.rootMembers"] * 2
        self.assertEqual([call for packet in packets for call in packet[0]], wanted)
        self.assertEqual([result for packet in packets for result in packet[1]], wanted)
        self.assertEqual(packets[-1][2], ["lamp", "bus"])
        # The same where nothing may be put together: each piece is shown as far as its first segment has it.
        output, _ = self.tshark(path, "-2", "-o", "tavox.desegment:FALSE", "-T", "fields", "-e", "tavox.result_of")
        self.assertGreater(output.count("device.lock"), 30)

    def test_endures_hostile_conversations(self):
        chance = random.Random(15)
        bytes_of = [[direction, data] for direction, data in SMALL]
        total = sum(len(data) for _, data in bytes_of)
        conversations = []
        for cut in range(total):  # every cut, with another conversation behind each
            pieces, left = [], cut
            for direction, data in bytes_of:
                pieces.append((direction, data[:left]))
                left = max(0, left - len(data))
            conversations.append(pieces)
        interesting = [words(number) for number in (0, 1, 0x7FFFFFFF, 0xFFFFFFFF, 0x00100001, 0x04000001)]
        for message, (_, data) in enumerate(bytes_of):  # every number spoilt, alone
            for at in range(0, len(data) - 3):
                pieces = [tuple(piece) for piece in bytes_of[:message + 2]]
                spoilt = data[:at] + chance.choice(interesting) + data[at + 4:]
                pieces[message] = (pieces[message][0], spoilt)
                conversations.append(pieces)
        for _ in range(100):  # many at once, in segments of any size
            pieces = []
            for direction, data in bytes_of:
                data = bytearray(data)
                if chance.random() < 0.4:
                    data[chance.randrange(len(data))] = chance.randrange(256)
                parts = sorted(chance.sample(range(len(data) + 1), chance.choice([0, 1, 2])))
                for begin, end in zip([0] + parts, parts + [len(data)]):
                    pieces.append((direction, bytes(data[begin:end])))
            if chance.random() < 0.2:
                chance.shuffle(pieces)
            conversations.append(pieces)
        conversations.append([(TO_DEVICE, chance.randbytes(70000)), (FROM_DEVICE, chance.randbytes(70000))])
        conversations.append([(TO_DEVICE, words(0, 5000) + bytes(12 * 5000)), (FROM_DEVICE, bytes(70000))])
        path = self.path("hostile.pcap")
        capture = Capture(path)
        for number, pieces in enumerate(conversations):
            capture.conversation(pieces, 10000 + number, DEVICE_PORT, begin=number % 3 > 0,
                                 captured=chance.randrange(60) if number % 5 == 0 else None)
        # Behind all of it a conversation is shown as ever.
        capture.conversation(SMALL, 60000, DEVICE_PORT)
        capture.close()
        # What goes wrong in the first of two passes is not shown in the second.
        for passes in ([], ["-2"]):
            output, _ = self.tshark(path, "-V", "-O", "tavox,_ws.lua", *passes)
            self.assertIn("Call: lamp.set", output[-20000:])
            self.assertGreater(output.count("Not all of it was captured or put together"), 100)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
