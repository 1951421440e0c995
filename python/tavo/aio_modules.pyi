# Written by "python -m tavo._stubs" from the tables of the library. Do not edit.
from collections.abc import Mapping, Sequence
from typing import Any

from tavo._aio_helpers import ComHelpers, I2cHelpers, JtagHelpers, LpcPostCodeHelpers, LpcRomEmulationHelpers
from tavo._aio import AwaitedObject
from tavo._records import Record

Buffer = bytes | bytearray | memoryview
Fields = Mapping[str, Any] | Record

__all__ = [
    "Object",
    "Cfa633",
    "CmosRelay",
    "Com",
    "CpuDebug",
    "CpuDebug_v1_0",
    "CsJtag",
    "DeviceObject",
    "GpuDebug",
    "GpuScan",
    "Hdt",
    "Hdt_v1_0",
    "I2c",
    "Jtag",
    "Jtag_v1_0",
    "KelvorGpuDebugMux",
    "KelvorUvdMux",
    "Lpc",
    "LpcPostCode",
    "LpcRomEmulation",
    "PrivateObject",
    "Relay",
    "SystemObject",
]

class Object(AwaitedObject):
    class TypeReply(Record):
        __match_args__ = ("type",)
        type: str
    async def type(self) -> TypeReply: ...
    class VersionReplyVersion(Record):
        __match_args__ = ("major", "minor", "bugfix")
        major: int
        minor: int
        bugfix: int
    class VersionReply(Record):
        __match_args__ = ("version",)
        version: Object.VersionReplyVersion
    async def version(self) -> VersionReply: ...
    class MembersReplyMembers(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class MembersReply(Record):
        __match_args__ = ("members",)
        members: tuple[Object.MembersReplyMembers, ...]
    async def members(self) -> MembersReply: ...
    class MethodsReplyMethods(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class MethodsReply(Record):
        __match_args__ = ("methods",)
        methods: tuple[Object.MethodsReplyMethods, ...]
    async def methods(self) -> MethodsReply: ...
    class MethodsVerboseReplyMethods(Record):
        __match_args__ = ("name", "id", "signature")
        name: str
        id: int
        signature: str
    class MethodsVerboseReply(Record):
        __match_args__ = ("methods",)
        methods: tuple[Object.MethodsVerboseReplyMethods, ...]
    async def methodsVerbose(self) -> MethodsVerboseReply: ...
    class AvailableReply(Record):
        __match_args__ = ("available", "user", "info")
        available: int
        user: str
        info: str
    async def available(self) -> AvailableReply: ...
    async def reserve(self, flag: int, first: str, second: str) -> None: ...
    async def unreserve(self) -> None: ...

class Cfa633(Object):
    async def lcdPrint(self, first: int, second: int, text: str) -> None: ...
    async def lcdClear(self) -> None: ...
    async def lcdBackLight(self, level: int) -> None: ...

class CmosRelay(Object):
    async def cmosClear(self, value: int) -> None: ...

class Com(Object, ComHelpers):
    async def open(self, value1: int, value2: int, flag1: bool, flag2: bool, value3: int, flag3: bool, flag4: bool, flag5: bool, flag6: bool) -> None: ...
    async def close(self) -> None: ...
    class RecvReply(Record):
        __match_args__ = ("data",)
        data: bytes
    async def recv(self, value: int) -> RecvReply: ...
    async def send(self, data: Buffer) -> None: ...

class CpuDebug(Object):
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[CpuDebug.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[CpuDebug.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...

class CpuDebug_v1_0(CpuDebug): ...

class CsJtag(Object): ...

class DeviceObject(Object):
    class InfoReplyVersion(Record):
        __match_args__ = ("major", "minor", "bugfix")
        major: int
        minor: int
        bugfix: int
    class InfoReplyFirmwareVersion(Record):
        __match_args__ = ("major", "minor", "bugfix")
        major: int
        minor: int
        bugfix: int
    class InfoReplyFirmware(Record):
        __match_args__ = ("name", "version")
        name: str
        version: DeviceObject.InfoReplyFirmwareVersion
    class InfoReplyBoards(Record):
        __match_args__ = ("field1", "field2", "field3", "field4")
        field1: str
        field2: str
        field3: str
        field4: str
    class InfoReply(Record):
        __match_args__ = ("name", "version", "firmware", "boards")
        name: str
        version: DeviceObject.InfoReplyVersion
        firmware: tuple[DeviceObject.InfoReplyFirmware, ...]
        boards: tuple[DeviceObject.InfoReplyBoards, ...]
    async def info(self) -> InfoReply: ...
    class RootMembersReplyMembers(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class RootMembersReply(Record):
        __match_args__ = ("members",)
        members: tuple[DeviceObject.RootMembersReplyMembers, ...]
    async def rootMembers(self) -> RootMembersReply: ...
    class LockReply(Record):
        __match_args__ = ("lockId",)
        lockId: int
    async def lock(self, user: str, password: str) -> LockReply: ...
    async def unlock(self, user: str, password: str) -> None: ...
    class GetKeyReply(Record):
        __match_args__ = ("key",)
        key: bytes
    async def getKey(self) -> GetKeyReply: ...
    class LoginReply(Record):
        __match_args__ = ("challenge",)
        challenge: bytes
    async def login(self, user: str) -> LoginReply: ...
    class CHAPRespondReply(Record):
        __match_args__ = ("text",)
        text: str
    async def CHAPRespond(self, response: Buffer) -> CHAPRespondReply: ...

class GpuDebug(Object):
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[GpuDebug.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[GpuDebug.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    class HeaderModeGetReply(Record):
        __match_args__ = ("mode",)
        mode: int
    async def headerModeGet(self) -> HeaderModeGetReply: ...
    async def headerModeSet(self, mode: int) -> None: ...
    class IoPxEnGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioPxEnGet(self) -> IoPxEnGetReply: ...

class GpuScan(Object):
    class ScanReply(Record):
        __match_args__ = ("data",)
        data: bytes
    async def scan(self, count: int) -> ScanReply: ...
    class OptionSckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    async def optionSckFrequencyGet(self) -> OptionSckFrequencyGetReply: ...
    async def optionSckFrequencySet(self, frequency: int) -> None: ...
    class IoSckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def ioSckGet(self) -> IoSckGetReply: ...
    async def ioSckSet(self, first: bool, second: bool) -> None: ...
    class IoSdoGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioSdoGet(self) -> IoSdoGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[GpuScan.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[GpuScan.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Hdt(Object):
    class IoDbreqGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioDbreqGet(self) -> IoDbreqGetReply: ...
    async def ioDbreqSet(self, level: bool) -> None: ...
    class IoDbrdyGetReply(Record):
        __match_args__ = ("lines",)
        lines: bytes
    async def ioDbrdyGet(self) -> IoDbrdyGetReply: ...
    async def ioDbrdyWait(self, lines: Buffer, timeout: int) -> None: ...
    class IoDbrdySnapshotGetReply(Record):
        __match_args__ = ("lines",)
        lines: bytes
    async def ioDbrdySnapshotGet(self) -> IoDbrdySnapshotGetReply: ...
    async def ioDbrdySnapshotClear(self) -> None: ...
    class IoDbreqSourceSnapshotGetReply(Record):
        __match_args__ = ("source",)
        source: int
    async def ioDbreqSourceSnapshotGet(self) -> IoDbreqSourceSnapshotGetReply: ...
    async def ioDbreqSourceSnapshotClear(self) -> None: ...
    class IoResetGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioResetGet(self) -> IoResetGetReply: ...
    class IoPwrokGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioPwrokGet(self) -> IoPwrokGetReply: ...
    async def ioTriggerSet(self, index: int, level: bool) -> None: ...
    class IoTriggerGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioTriggerGet(self, index: int) -> IoTriggerGetReply: ...
    async def optionDbreqOnDbrdySet(self, enable: bool) -> None: ...
    class OptionDbreqOnDbrdyGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def optionDbreqOnDbrdyGet(self) -> OptionDbreqOnDbrdyGetReply: ...
    async def optionDbreqOnResetSet(self, enable: bool) -> None: ...
    class OptionDbreqOnResetGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def optionDbreqOnResetGet(self) -> OptionDbreqOnResetGetReply: ...
    async def optionDbreqOnTriggerSet(self, flag1: bool, value1: int, flag2: bool, value2: int) -> None: ...
    class OptionDbreqOnTriggerGetReply(Record):
        __match_args__ = ("flag1", "value1", "flag2", "value2")
        flag1: bool
        value1: int
        flag2: bool
        value2: int
    async def optionDbreqOnTriggerGet(self) -> OptionDbreqOnTriggerGetReply: ...
    async def optionDbreqPulseWidthSet(self, pulseWidth: int) -> None: ...
    class OptionDbreqPulseWidthGetReply(Record):
        __match_args__ = ("pulseWidth",)
        pulseWidth: int
    async def optionDbreqPulseWidthGet(self) -> OptionDbreqPulseWidthGetReply: ...
    async def optionDbrdyMaskSet(self, mask: Buffer) -> None: ...
    class OptionDbrdyMaskGetReply(Record):
        __match_args__ = ("mask",)
        mask: bytes
    async def optionDbrdyMaskGet(self) -> OptionDbrdyMaskGetReply: ...
    class OptionFrequencyGetReply(Record):
        __match_args__ = ("frequency",)
        frequency: int
    async def optionFrequencyGet(self) -> OptionFrequencyGetReply: ...
    async def optionTriggerSetupSet(self, index: int, value1: int, value2: int, value3: int, value4: int, value5: int, value6: int, value7: int) -> None: ...
    class OptionTriggerSetupGetReply(Record):
        __match_args__ = ("value1", "value2", "value3", "value4", "value5", "value6", "value7")
        value1: int
        value2: int
        value3: int
        value4: int
        value5: int
        value6: int
        value7: int
    async def optionTriggerSetupGet(self, index: int) -> OptionTriggerSetupGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[Hdt.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[Hdt.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Hdt_v1_0(Hdt):
    class FrequencyGetReply(Record):
        __match_args__ = ("frequency",)
        frequency: int
    async def frequencyGet(self) -> FrequencyGetReply: ...

class I2c(Object, I2cHelpers):
    class TransferReply(Record):
        __match_args__ = ("first", "second", "data")
        first: int
        second: int
        data: bytes
    async def transfer(self, address: int, data: Buffer, count: int) -> TransferReply: ...
    class ReadReply(Record):
        __match_args__ = ("value", "data")
        value: int
        data: bytes
    async def read(self, address: int, first: bool, second: bool, count: int) -> ReadReply: ...
    class WriteReply(Record):
        __match_args__ = ("value",)
        value: int
    async def write(self, address: int, first: bool, second: bool, data: Buffer) -> WriteReply: ...
    class OptionSclFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    async def optionSclFrequencyGet(self) -> OptionSclFrequencyGetReply: ...
    async def optionSclFrequencySet(self, frequency: int) -> None: ...
    class OptionAddressRetryLimitGetReply(Record):
        __match_args__ = ("limit",)
        limit: int
    async def optionAddressRetryLimitGet(self) -> OptionAddressRetryLimitGetReply: ...
    async def optionAddressRetryLimitSet(self, limit: int) -> None: ...
    class OptionTimeoutGetReply(Record):
        __match_args__ = ("first", "second")
        first: int
        second: int
    async def optionTimeoutGet(self) -> OptionTimeoutGetReply: ...
    async def optionTimeoutSet(self, first: int, second: int) -> None: ...
    class OptionAckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def optionAckGet(self) -> OptionAckGetReply: ...
    async def optionAckSet(self, first: bool, second: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[I2c.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[I2c.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Jtag(Object, JtagHelpers):
    class ShiftIRReply(Record):
        __match_args__ = ("data",)
        data: bytes
    async def shiftIR(self, bits: int, data: Buffer) -> ShiftIRReply: ...
    class ShiftDRReply(Record):
        __match_args__ = ("data",)
        data: bytes
    async def shiftDR(self, bits: int, data: Buffer) -> ShiftDRReply: ...
    class TapStateGetReply(Record):
        __match_args__ = ("state",)
        state: int
    async def tapStateGet(self) -> TapStateGetReply: ...
    async def tapStateSet(self, state: int) -> None: ...
    async def sleep(self, duration: int, flag: bool) -> None: ...
    class OptionTdoExpectedGetReply(Record):
        __match_args__ = ("irBits", "irExpected", "irMask", "drBits", "drExpected", "drMask")
        irBits: int
        irExpected: bytes
        irMask: bytes
        drBits: int
        drExpected: bytes
        drMask: bytes
    async def optionTdoExpectedGet(self) -> OptionTdoExpectedGetReply: ...
    async def optionTdoExpectedSet(self, irBits: int, irExpected: Buffer, irMask: Buffer, drBits: int, drExpected: Buffer, drMask: Buffer) -> None: ...
    class OptionRetryGetReply(Record):
        __match_args__ = ("irCount", "irEnable", "drCount", "drEnable")
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    async def optionRetryGet(self) -> OptionRetryGetReply: ...
    async def optionRetrySet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionRepeatGetReply(Record):
        __match_args__ = ("irCount", "irEnable", "drCount", "drEnable")
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    async def optionRepeatGet(self) -> OptionRepeatGetReply: ...
    async def optionRepeatSet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionTckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    async def optionTckFrequencyGet(self) -> OptionTckFrequencyGetReply: ...
    async def optionTckFrequencySet(self, frequency: int) -> None: ...
    class OptionTerminationStateGetReply(Record):
        __match_args__ = ("irState", "drState")
        irState: int
        drState: int
    async def optionTerminationStateGet(self) -> OptionTerminationStateGetReply: ...
    async def optionTerminationStateSet(self, irState: int, drState: int) -> None: ...
    class OptionPrePostTckGetReply(Record):
        __match_args__ = ("value1", "value2", "value3", "value4")
        value1: int
        value2: int
        value3: int
        value4: int
    async def optionPrePostTckGet(self) -> OptionPrePostTckGetReply: ...
    async def optionPrePostTckSet(self, value1: int, value2: int, value3: int, value4: int) -> None: ...
    class IoTrstGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def ioTrstGet(self) -> IoTrstGetReply: ...
    async def ioTrstSet(self, first: bool, second: bool) -> None: ...
    class IoTckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def ioTckGet(self) -> IoTckGetReply: ...
    async def ioTckSet(self, first: bool, second: bool) -> None: ...
    class IoTmsGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def ioTmsGet(self) -> IoTmsGetReply: ...
    async def ioTmsSet(self, first: bool, second: bool) -> None: ...
    class IoTdiGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    async def ioTdiGet(self) -> IoTdiGetReply: ...
    async def ioTdiSet(self, first: bool, second: bool) -> None: ...
    class IoTdoGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    async def ioTdoGet(self) -> IoTdoGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        __match_args__ = ("name", "flag1", "flag2", "flag3")
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        __match_args__ = ("first", "second")
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        __match_args__ = ("headers", "connections")
        headers: tuple[Jtag.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[Jtag.HeaderStatusGetReplyConnections, ...]
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Jtag_v1_0(Jtag):
    class TdoExpectedGetReply(Record):
        __match_args__ = ("bits", "expected", "mask")
        bits: int
        expected: bytes
        mask: bytes
    async def tdoExpectedGet(self) -> TdoExpectedGetReply: ...
    async def tdoExpectedSet(self, bits: int, expected: Buffer, mask: Buffer) -> None: ...
    class RetryGetReply(Record):
        __match_args__ = ("count", "enable")
        count: int
        enable: bool
    async def retryGet(self) -> RetryGetReply: ...
    async def retrySet(self, first: int, second: int) -> None: ...
    class RepeatGetReply(Record):
        __match_args__ = ("count", "enable")
        count: int
        enable: bool
    async def repeatGet(self) -> RepeatGetReply: ...
    async def repeatSet(self, count: int, enable: bool) -> None: ...
    class TckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    async def tckFrequencyGet(self) -> TckFrequencyGetReply: ...
    async def tckFrequencySet(self, frequency: int) -> None: ...
    class TerminationStateIRGetReply(Record):
        __match_args__ = ("state",)
        state: int
    async def terminationStateIRGet(self) -> TerminationStateIRGetReply: ...
    async def terminationStateIRSet(self, state: int) -> None: ...
    class TerminationStateDRGetReply(Record):
        __match_args__ = ("state",)
        state: int
    async def terminationStateDRGet(self) -> TerminationStateDRGetReply: ...
    async def terminationStateDRSet(self, state: int) -> None: ...

class KelvorGpuDebugMux(Object):
    class HeaderModeGetReply(Record):
        __match_args__ = ("mode",)
        mode: int
    async def headerModeGet(self) -> HeaderModeGetReply: ...
    async def headerModeSet(self, mode: int) -> None: ...

class KelvorUvdMux(Object): ...

class Lpc(Object):
    class HeaderConnectGetReplyConnections(Record):
        __match_args__ = ("name", "connected")
        name: str
        connected: bool
    class HeaderConnectGetReply(Record):
        __match_args__ = ("connections",)
        connections: tuple[Lpc.HeaderConnectGetReplyConnections, ...]
    async def headerConnectGet(self) -> HeaderConnectGetReply: ...

class LpcPostCode(Object, LpcPostCodeHelpers):
    class PostCodeGetReply(Record):
        __match_args__ = ("postCode",)
        postCode: int
    async def postCodeGet(self) -> PostCodeGetReply: ...
    class FifoSizeGetReply(Record):
        __match_args__ = ("size",)
        size: int
    async def fifoSizeGet(self) -> FifoSizeGetReply: ...
    class FifoGetReplyEntries(Record):
        __match_args__ = ("byte1", "byte2", "byte3", "value")
        byte1: int
        byte2: int
        byte3: int
        value: int
    class FifoGetReply(Record):
        __match_args__ = ("entries",)
        entries: tuple[LpcPostCode.FifoGetReplyEntries, ...]
    async def fifoGet(self) -> FifoGetReply: ...
    async def fifoClear(self) -> None: ...
    class FifoStatusGetReply(Record):
        __match_args__ = ("value", "flag1", "flag2", "flag3", "flag4")
        value: int
        flag1: bool
        flag2: bool
        flag3: bool
        flag4: bool
    async def fifoStatusGet(self) -> FifoStatusGetReply: ...
    async def fifoStatusClear(self) -> None: ...
    async def optionPortSet(self, port: int) -> None: ...
    class OptionPortGetReply(Record):
        __match_args__ = ("port",)
        port: int
    async def optionPortGet(self) -> OptionPortGetReply: ...
    async def optionPassiveSet(self, passive: int) -> None: ...
    class OptionPassiveGetReply(Record):
        __match_args__ = ("passive",)
        passive: int
    async def optionPassiveGet(self) -> OptionPassiveGetReply: ...
    async def optionFifoCircularSet(self, circular: int) -> None: ...
    class OptionFifoCircularGetReply(Record):
        __match_args__ = ("circular",)
        circular: int
    async def optionFifoCircularGet(self) -> OptionFifoCircularGetReply: ...
    async def optionFifoDiscardSet(self, discard: int) -> None: ...
    class OptionFifoDiscardGetReply(Record):
        __match_args__ = ("discard",)
        discard: int
    async def optionFifoDiscardGet(self) -> OptionFifoDiscardGetReply: ...
    async def optionFifoAutoResetSet(self, autoReset: int) -> None: ...
    class OptionFifoAutoResetGetReply(Record):
        __match_args__ = ("autoReset",)
        autoReset: int
    async def optionFifoAutoResetGet(self) -> OptionFifoAutoResetGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...

class LpcRomEmulation(Object, LpcRomEmulationHelpers):
    class SramSizeGetReply(Record):
        __match_args__ = ("size",)
        size: int
    async def sramSizeGet(self) -> SramSizeGetReply: ...
    async def sramSet(self, offset: int, data: Buffer) -> None: ...
    class SramGetReply(Record):
        __match_args__ = ("data",)
        data: bytes
    async def sramGet(self, offset: int, length: int) -> SramGetReply: ...
    async def optionRomTypeSet(self, romType: int) -> None: ...
    class OptionRomTypeGetReply(Record):
        __match_args__ = ("romType",)
        romType: int
    async def optionRomTypeGet(self) -> OptionRomTypeGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...

class PrivateObject(Object): ...

class Relay(Object):
    class GetReply(Record):
        __match_args__ = ("state",)
        state: int
    async def get(self) -> GetReply: ...
    async def set(self, state: bool) -> None: ...
    async def toggle(self, value: int) -> None: ...

class SystemObject(Object):
    async def deviceReset(self) -> None: ...
    async def firmwareUpdate(self, name: str, image: Buffer) -> None: ...
    class FirmwareStatusReply(Record):
        __match_args__ = ("first", "second")
        first: int
        second: int
    async def firmwareStatus(self, name: str) -> FirmwareStatusReply: ...
    class TimeGetReply(Record):
        __match_args__ = ("time",)
        time: int
    async def timeGet(self) -> TimeGetReply: ...
    async def timeSet(self, time: int) -> None: ...
    async def usleep(self, microseconds: int) -> None: ...
    async def uwait(self, microseconds: int) -> None: ...
