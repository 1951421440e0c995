"""Thrift's Python client at work: `thrift_client.py PORT`. Its protocol is the fast one, in C."""

from __future__ import annotations

import sys

from appliance import Appliance
from appliance.ttypes import Call
from thrift.protocol.TBinaryProtocol import TBinaryProtocolAccelerated
from thrift.transport.TSocket import TSocket
from thrift.transport.TTransport import TBufferedTransport
from worker import BLOCK, CALLS, serve


def main() -> None:
    transport = TBufferedTransport(TSocket("127.0.0.1", int(sys.argv[1])), 64 * 1024)
    client = Appliance.Client(TBinaryProtocolAccelerated(transport, fallback=False))
    transport.open()
    data = b"\xa5" * BLOCK

    def turn() -> None:
        assert client.turn(Call(object=16, method=4, on=True)).state == 1

    def calls() -> None:
        for _ in range(CALLS):
            client.send_turn(Call(object=16, method=4, on=True))
        for _ in range(CALLS):
            assert client.recv_turn().state == 1

    def several() -> None:
        results = client.batch([Call(object=16, method=4, on=True) for _ in range(CALLS)])
        assert sum(result.state for result in results) == CALLS

    serve(
        {
            "turn": turn,
            "calls": calls,
            "list": several,
            "download": lambda: len(client.fetch(BLOCK)) == BLOCK or sys.exit(1),
            "upload": lambda: client.store(data),
        }
    )


main()
