"""gRPC's Python client at work: `grpc_client.py PORT`."""

from __future__ import annotations

import sys

import appliance_pb2 as messages
import grpc
from appliance_pb2_grpc import ApplianceStub
from worker import BLOCK, CALLS, serve


def main() -> None:
    options = [("grpc.max_receive_message_length", -1), ("grpc.max_send_message_length", -1)]
    channel = grpc.insecure_channel(f"127.0.0.1:{sys.argv[1]}", options=options)
    stub = ApplianceStub(channel)
    data = b"\xa5" * BLOCK

    def call() -> messages.Call:
        return messages.Call(object=16, method=4, on=True)

    def turn() -> None:
        assert stub.Turn(call()).state == 1

    def calls() -> None:
        started = [stub.Turn.future(call()) for _ in range(CALLS)]
        assert sum(one.result().state for one in started) == CALLS

    def several() -> None:
        results = stub.Batch(messages.Calls(calls=[call() for _ in range(CALLS)])).results
        assert sum(result.state for result in results) == CALLS

    serve(
        {
            "turn": turn,
            "calls": calls,
            "list": several,
            "download": lambda: len(stub.Fetch(messages.Length(length=BLOCK)).data) == BLOCK or sys.exit(1),
            "upload": lambda: stub.Store(messages.Block(data=data)),
        }
    )


main()
