"""Conversations over TCP as files for Wireshark: recorded by a relay, or made of given bytes."""

import select
import socket
import struct
import threading

TO_DEVICE, FROM_DEVICE = 0, 1
LONGEST_SEGMENT = 60000


class Capture:
    """A pcap file of IP packets."""

    def __init__(self, path):
        self._file = open(path, "wb")
        self._file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 101))
        self._microseconds = 0

    def packet(self, ports, flags, seq, ack, data=b"", captured=None):
        header = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 40 + len(data), 0, 0, 64, 6, 0, b"\x7f\0\0\1", b"\x7f\0\0\1")
        header += struct.pack(">HHIIBBHHH", *ports, seq & 0xFFFFFFFF, ack & 0xFFFFFFFF, 0x50, flags, 65535, 0, 0)
        whole = header + data
        kept = whole if captured is None else whole[:40 + captured]
        self._microseconds += 100
        self._file.write(struct.pack("<IIII", 1000 + self._microseconds // 1000000, self._microseconds % 1000000,
                                     len(kept), len(whole)))
        self._file.write(kept)

    def conversation(self, pieces, client, device, begin=True, captured=None):
        """Writes pieces (direction, bytes), from a client's port to a device's."""
        ports = [(client, device), (device, client)]
        seq = [1, 1]
        if begin:
            self.packet(ports[TO_DEVICE], 2, 0, 0)
            self.packet(ports[FROM_DEVICE], 18, 0, 1)
        for direction, data in pieces:
            for at in range(0, len(data), LONGEST_SEGMENT):
                segment = data[at:at + LONGEST_SEGMENT]
                self.packet(ports[direction], 24, seq[direction], seq[1 - direction], segment, captured)
                seq[direction] += len(segment)

    def close(self):
        self._file.close()


class Relay:
    """Passes connections on to a port of this machine, and keeps what goes over each."""

    def __init__(self, port):
        self._target = port
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self.conversations = []
        self._done = threading.Event()
        self._thread = threading.Thread(target=self._run)
        self._thread.start()

    def _run(self):
        while not self._done.is_set():
            if select.select([self._listener], [], [], 0.05)[0]:
                client, _ = self._listener.accept()
                with client, socket.create_connection(("127.0.0.1", self._target)) as device:
                    pieces = []
                    self.conversations.append(pieces)
                    self._pass(client, device, pieces)

    def _pass(self, client, device, pieces):
        while not self._done.is_set():
            for source in select.select([client, device], [], [], 0.05)[0]:
                data = source.recv(1 << 16)
                if not data:
                    return
                pieces.append((TO_DEVICE if source is client else FROM_DEVICE, data))
                (device if source is client else client).sendall(data)

    def close(self):
        self._done.set()
        self._thread.join(30)
        self._listener.close()
