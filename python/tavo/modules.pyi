# Written by "python -m tavo._stubs" from the tables of the library. Do not edit.
from collections.abc import Mapping, Sequence
from typing import Any

from tavo._helpers import ComHelpers, I2cHelpers, JtagHelpers, LpcPostCodeHelpers, LpcRomEmulationHelpers
from tavo._object import CallingObject
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

class Object(CallingObject):
    class TypeReply(Record):
        __match_args__ = ("type",)
        type: str
    def type(self) -> TypeReply: ...
    class VersionReplyVersion(Record):
        __match_args__ = ("major", "minor", "bugfix")
        major: int
        minor: int
        bugfix: int
    class VersionReply(Record):
        __match_args__ = ("version",)
        version: Object.VersionReplyVersion
    def version(self) -> VersionReply: ...
    class MembersReplyMembers(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class MembersReply(Record):
        __match_args__ = ("members",)
        members: tuple[Object.MembersReplyMembers, ...]
    def members(self) -> MembersReply: ...
    class MethodsReplyMethods(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class MethodsReply(Record):
        __match_args__ = ("methods",)
        methods: tuple[Object.MethodsReplyMethods, ...]
    def methods(self) -> MethodsReply: ...
    class MethodsVerboseReplyMethods(Record):
        __match_args__ = ("name", "id", "signature")
        name: str
        id: int
        signature: str
    class MethodsVerboseReply(Record):
        __match_args__ = ("methods",)
        methods: tuple[Object.MethodsVerboseReplyMethods, ...]
    def methodsVerbose(self) -> MethodsVerboseReply: ...
    class AvailableReply(Record):
        __match_args__ = ("available", "user", "info")
        available: int
        user: str
        info: str
    def available(self) -> AvailableReply: ...
    def reserve(self, flag: int, first: str, second: str) -> None: ...
    def unreserve(self) -> None: ...

class Cfa633(Object):
    def lcdPrint(self, first: int, second: int, text: str) -> None: ...
    def lcdClear(self) -> None: ...
    def lcdBackLight(self, level: int) -> None: ...

class CmosRelay(Object):
    def cmosClear(self, value: int) -> None: ...

class Com(Object, ComHelpers):
    def open(self, value1: int, value2: int, flag1: bool, flag2: bool, value3: int, flag3: bool, flag4: bool, flag5: bool, flag6: bool) -> None: ...
    def close(self) -> None: ...
    class RecvReply(Record):
        __match_args__ = ("data",)
        data: bytes
    def recv(self, value: int) -> RecvReply: ...
    def send(self, data: Buffer) -> None: ...

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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...

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
    def info(self) -> InfoReply: ...
    class RootMembersReplyMembers(Record):
        __match_args__ = ("name", "id")
        name: str
        id: int
    class RootMembersReply(Record):
        __match_args__ = ("members",)
        members: tuple[DeviceObject.RootMembersReplyMembers, ...]
    def rootMembers(self) -> RootMembersReply: ...
    class LockReply(Record):
        __match_args__ = ("lockId",)
        lockId: int
    def lock(self, user: str, password: str) -> LockReply: ...
    def unlock(self, user: str, password: str) -> None: ...
    class GetKeyReply(Record):
        __match_args__ = ("key",)
        key: bytes
    def getKey(self) -> GetKeyReply: ...
    class LoginReply(Record):
        __match_args__ = ("challenge",)
        challenge: bytes
    def login(self, user: str) -> LoginReply: ...
    class CHAPRespondReply(Record):
        __match_args__ = ("text",)
        text: str
    def CHAPRespond(self, response: Buffer) -> CHAPRespondReply: ...

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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    class HeaderModeGetReply(Record):
        __match_args__ = ("mode",)
        mode: int
    def headerModeGet(self) -> HeaderModeGetReply: ...
    def headerModeSet(self, mode: int) -> None: ...
    class IoPxEnGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioPxEnGet(self) -> IoPxEnGetReply: ...

class GpuScan(Object):
    class ScanReply(Record):
        __match_args__ = ("data",)
        data: bytes
    def scan(self, count: int) -> ScanReply: ...
    class OptionSckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    def optionSckFrequencyGet(self) -> OptionSckFrequencyGetReply: ...
    def optionSckFrequencySet(self, frequency: int) -> None: ...
    class IoSckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def ioSckGet(self) -> IoSckGetReply: ...
    def ioSckSet(self, first: bool, second: bool) -> None: ...
    class IoSdoGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioSdoGet(self) -> IoSdoGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Hdt(Object):
    class IoDbreqGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioDbreqGet(self) -> IoDbreqGetReply: ...
    def ioDbreqSet(self, level: bool) -> None: ...
    class IoDbrdyGetReply(Record):
        __match_args__ = ("lines",)
        lines: bytes
    def ioDbrdyGet(self) -> IoDbrdyGetReply: ...
    def ioDbrdyWait(self, lines: Buffer, timeout: int) -> None: ...
    class IoDbrdySnapshotGetReply(Record):
        __match_args__ = ("lines",)
        lines: bytes
    def ioDbrdySnapshotGet(self) -> IoDbrdySnapshotGetReply: ...
    def ioDbrdySnapshotClear(self) -> None: ...
    class IoDbreqSourceSnapshotGetReply(Record):
        __match_args__ = ("source",)
        source: int
    def ioDbreqSourceSnapshotGet(self) -> IoDbreqSourceSnapshotGetReply: ...
    def ioDbreqSourceSnapshotClear(self) -> None: ...
    class IoResetGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioResetGet(self) -> IoResetGetReply: ...
    class IoPwrokGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioPwrokGet(self) -> IoPwrokGetReply: ...
    def ioTriggerSet(self, index: int, level: bool) -> None: ...
    class IoTriggerGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioTriggerGet(self, index: int) -> IoTriggerGetReply: ...
    def optionDbreqOnDbrdySet(self, enable: bool) -> None: ...
    class OptionDbreqOnDbrdyGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def optionDbreqOnDbrdyGet(self) -> OptionDbreqOnDbrdyGetReply: ...
    def optionDbreqOnResetSet(self, enable: bool) -> None: ...
    class OptionDbreqOnResetGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def optionDbreqOnResetGet(self) -> OptionDbreqOnResetGetReply: ...
    def optionDbreqOnTriggerSet(self, flag1: bool, value1: int, flag2: bool, value2: int) -> None: ...
    class OptionDbreqOnTriggerGetReply(Record):
        __match_args__ = ("flag1", "value1", "flag2", "value2")
        flag1: bool
        value1: int
        flag2: bool
        value2: int
    def optionDbreqOnTriggerGet(self) -> OptionDbreqOnTriggerGetReply: ...
    def optionDbreqPulseWidthSet(self, pulseWidth: int) -> None: ...
    class OptionDbreqPulseWidthGetReply(Record):
        __match_args__ = ("pulseWidth",)
        pulseWidth: int
    def optionDbreqPulseWidthGet(self) -> OptionDbreqPulseWidthGetReply: ...
    def optionDbrdyMaskSet(self, mask: Buffer) -> None: ...
    class OptionDbrdyMaskGetReply(Record):
        __match_args__ = ("mask",)
        mask: bytes
    def optionDbrdyMaskGet(self) -> OptionDbrdyMaskGetReply: ...
    class OptionFrequencyGetReply(Record):
        __match_args__ = ("frequency",)
        frequency: int
    def optionFrequencyGet(self) -> OptionFrequencyGetReply: ...
    def optionTriggerSetupSet(self, index: int, value1: int, value2: int, value3: int, value4: int, value5: int, value6: int, value7: int) -> None: ...
    class OptionTriggerSetupGetReply(Record):
        __match_args__ = ("value1", "value2", "value3", "value4", "value5", "value6", "value7")
        value1: int
        value2: int
        value3: int
        value4: int
        value5: int
        value6: int
        value7: int
    def optionTriggerSetupGet(self, index: int) -> OptionTriggerSetupGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Hdt_v1_0(Hdt):
    class FrequencyGetReply(Record):
        __match_args__ = ("frequency",)
        frequency: int
    def frequencyGet(self) -> FrequencyGetReply: ...

class I2c(Object, I2cHelpers):
    class TransferReply(Record):
        __match_args__ = ("first", "second", "data")
        first: int
        second: int
        data: bytes
    def transfer(self, address: int, data: Buffer, count: int) -> TransferReply: ...
    class ReadReply(Record):
        __match_args__ = ("value", "data")
        value: int
        data: bytes
    def read(self, address: int, first: bool, second: bool, count: int) -> ReadReply: ...
    class WriteReply(Record):
        __match_args__ = ("value",)
        value: int
    def write(self, address: int, first: bool, second: bool, data: Buffer) -> WriteReply: ...
    class OptionSclFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    def optionSclFrequencyGet(self) -> OptionSclFrequencyGetReply: ...
    def optionSclFrequencySet(self, frequency: int) -> None: ...
    class OptionAddressRetryLimitGetReply(Record):
        __match_args__ = ("limit",)
        limit: int
    def optionAddressRetryLimitGet(self) -> OptionAddressRetryLimitGetReply: ...
    def optionAddressRetryLimitSet(self, limit: int) -> None: ...
    class OptionTimeoutGetReply(Record):
        __match_args__ = ("first", "second")
        first: int
        second: int
    def optionTimeoutGet(self) -> OptionTimeoutGetReply: ...
    def optionTimeoutSet(self, first: int, second: int) -> None: ...
    class OptionAckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def optionAckGet(self) -> OptionAckGetReply: ...
    def optionAckSet(self, first: bool, second: bool) -> None: ...
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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Jtag(Object, JtagHelpers):
    class ShiftIRReply(Record):
        __match_args__ = ("data",)
        data: bytes
    def shiftIR(self, bits: int, data: Buffer) -> ShiftIRReply: ...
    class ShiftDRReply(Record):
        __match_args__ = ("data",)
        data: bytes
    def shiftDR(self, bits: int, data: Buffer) -> ShiftDRReply: ...
    class TapStateGetReply(Record):
        __match_args__ = ("state",)
        state: int
    def tapStateGet(self) -> TapStateGetReply: ...
    def tapStateSet(self, state: int) -> None: ...
    def sleep(self, duration: int, flag: bool) -> None: ...
    class OptionTdoExpectedGetReply(Record):
        __match_args__ = ("irBits", "irExpected", "irMask", "drBits", "drExpected", "drMask")
        irBits: int
        irExpected: bytes
        irMask: bytes
        drBits: int
        drExpected: bytes
        drMask: bytes
    def optionTdoExpectedGet(self) -> OptionTdoExpectedGetReply: ...
    def optionTdoExpectedSet(self, irBits: int, irExpected: Buffer, irMask: Buffer, drBits: int, drExpected: Buffer, drMask: Buffer) -> None: ...
    class OptionRetryGetReply(Record):
        __match_args__ = ("irCount", "irEnable", "drCount", "drEnable")
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    def optionRetryGet(self) -> OptionRetryGetReply: ...
    def optionRetrySet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionRepeatGetReply(Record):
        __match_args__ = ("irCount", "irEnable", "drCount", "drEnable")
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    def optionRepeatGet(self) -> OptionRepeatGetReply: ...
    def optionRepeatSet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionTckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    def optionTckFrequencyGet(self) -> OptionTckFrequencyGetReply: ...
    def optionTckFrequencySet(self, frequency: int) -> None: ...
    class OptionTerminationStateGetReply(Record):
        __match_args__ = ("irState", "drState")
        irState: int
        drState: int
    def optionTerminationStateGet(self) -> OptionTerminationStateGetReply: ...
    def optionTerminationStateSet(self, irState: int, drState: int) -> None: ...
    class OptionPrePostTckGetReply(Record):
        __match_args__ = ("value1", "value2", "value3", "value4")
        value1: int
        value2: int
        value3: int
        value4: int
    def optionPrePostTckGet(self) -> OptionPrePostTckGetReply: ...
    def optionPrePostTckSet(self, value1: int, value2: int, value3: int, value4: int) -> None: ...
    class IoTrstGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def ioTrstGet(self) -> IoTrstGetReply: ...
    def ioTrstSet(self, first: bool, second: bool) -> None: ...
    class IoTckGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def ioTckGet(self) -> IoTckGetReply: ...
    def ioTckSet(self, first: bool, second: bool) -> None: ...
    class IoTmsGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def ioTmsGet(self) -> IoTmsGetReply: ...
    def ioTmsSet(self, first: bool, second: bool) -> None: ...
    class IoTdiGetReply(Record):
        __match_args__ = ("first", "second")
        first: bool
        second: bool
    def ioTdiGet(self) -> IoTdiGetReply: ...
    def ioTdiSet(self, first: bool, second: bool) -> None: ...
    class IoTdoGetReply(Record):
        __match_args__ = ("level",)
        level: bool
    def ioTdoGet(self) -> IoTdoGetReply: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
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
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Jtag_v1_0(Jtag):
    class TdoExpectedGetReply(Record):
        __match_args__ = ("bits", "expected", "mask")
        bits: int
        expected: bytes
        mask: bytes
    def tdoExpectedGet(self) -> TdoExpectedGetReply: ...
    def tdoExpectedSet(self, bits: int, expected: Buffer, mask: Buffer) -> None: ...
    class RetryGetReply(Record):
        __match_args__ = ("count", "enable")
        count: int
        enable: bool
    def retryGet(self) -> RetryGetReply: ...
    def retrySet(self, first: int, second: int) -> None: ...
    class RepeatGetReply(Record):
        __match_args__ = ("count", "enable")
        count: int
        enable: bool
    def repeatGet(self) -> RepeatGetReply: ...
    def repeatSet(self, count: int, enable: bool) -> None: ...
    class TckFrequencyGetReply(Record):
        __match_args__ = ("frequency", "value")
        frequency: int
        value: int
    def tckFrequencyGet(self) -> TckFrequencyGetReply: ...
    def tckFrequencySet(self, frequency: int) -> None: ...
    class TerminationStateIRGetReply(Record):
        __match_args__ = ("state",)
        state: int
    def terminationStateIRGet(self) -> TerminationStateIRGetReply: ...
    def terminationStateIRSet(self, state: int) -> None: ...
    class TerminationStateDRGetReply(Record):
        __match_args__ = ("state",)
        state: int
    def terminationStateDRGet(self) -> TerminationStateDRGetReply: ...
    def terminationStateDRSet(self, state: int) -> None: ...

class KelvorGpuDebugMux(Object):
    class HeaderModeGetReply(Record):
        __match_args__ = ("mode",)
        mode: int
    def headerModeGet(self) -> HeaderModeGetReply: ...
    def headerModeSet(self, mode: int) -> None: ...

class KelvorUvdMux(Object): ...

class Lpc(Object):
    class HeaderConnectGetReplyConnections(Record):
        __match_args__ = ("name", "connected")
        name: str
        connected: bool
    class HeaderConnectGetReply(Record):
        __match_args__ = ("connections",)
        connections: tuple[Lpc.HeaderConnectGetReplyConnections, ...]
    def headerConnectGet(self) -> HeaderConnectGetReply: ...

class LpcPostCode(Object, LpcPostCodeHelpers):
    class PostCodeGetReply(Record):
        __match_args__ = ("postCode",)
        postCode: int
    def postCodeGet(self) -> PostCodeGetReply: ...
    class FifoSizeGetReply(Record):
        __match_args__ = ("size",)
        size: int
    def fifoSizeGet(self) -> FifoSizeGetReply: ...
    class FifoGetReplyEntries(Record):
        __match_args__ = ("byte1", "byte2", "byte3", "value")
        byte1: int
        byte2: int
        byte3: int
        value: int
    class FifoGetReply(Record):
        __match_args__ = ("entries",)
        entries: tuple[LpcPostCode.FifoGetReplyEntries, ...]
    def fifoGet(self) -> FifoGetReply: ...
    def fifoClear(self) -> None: ...
    class FifoStatusGetReply(Record):
        __match_args__ = ("value", "flag1", "flag2", "flag3", "flag4")
        value: int
        flag1: bool
        flag2: bool
        flag3: bool
        flag4: bool
    def fifoStatusGet(self) -> FifoStatusGetReply: ...
    def fifoStatusClear(self) -> None: ...
    def optionPortSet(self, port: int) -> None: ...
    class OptionPortGetReply(Record):
        __match_args__ = ("port",)
        port: int
    def optionPortGet(self) -> OptionPortGetReply: ...
    def optionPassiveSet(self, passive: int) -> None: ...
    class OptionPassiveGetReply(Record):
        __match_args__ = ("passive",)
        passive: int
    def optionPassiveGet(self) -> OptionPassiveGetReply: ...
    def optionFifoCircularSet(self, circular: int) -> None: ...
    class OptionFifoCircularGetReply(Record):
        __match_args__ = ("circular",)
        circular: int
    def optionFifoCircularGet(self) -> OptionFifoCircularGetReply: ...
    def optionFifoDiscardSet(self, discard: int) -> None: ...
    class OptionFifoDiscardGetReply(Record):
        __match_args__ = ("discard",)
        discard: int
    def optionFifoDiscardGet(self) -> OptionFifoDiscardGetReply: ...
    def optionFifoAutoResetSet(self, autoReset: int) -> None: ...
    class OptionFifoAutoResetGetReply(Record):
        __match_args__ = ("autoReset",)
        autoReset: int
    def optionFifoAutoResetGet(self) -> OptionFifoAutoResetGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def enableGet(self) -> EnableGetReply: ...

class LpcRomEmulation(Object, LpcRomEmulationHelpers):
    class SramSizeGetReply(Record):
        __match_args__ = ("size",)
        size: int
    def sramSizeGet(self) -> SramSizeGetReply: ...
    def sramSet(self, offset: int, data: Buffer) -> None: ...
    class SramGetReply(Record):
        __match_args__ = ("data",)
        data: bytes
    def sramGet(self, offset: int, length: int) -> SramGetReply: ...
    def optionRomTypeSet(self, romType: int) -> None: ...
    class OptionRomTypeGetReply(Record):
        __match_args__ = ("romType",)
        romType: int
    def optionRomTypeGet(self) -> OptionRomTypeGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        __match_args__ = ("enable",)
        enable: bool
    def enableGet(self) -> EnableGetReply: ...

class PrivateObject(Object): ...

class Relay(Object):
    class GetReply(Record):
        __match_args__ = ("state",)
        state: int
    def get(self) -> GetReply: ...
    def set(self, state: bool) -> None: ...
    def toggle(self, value: int) -> None: ...

class SystemObject(Object):
    def deviceReset(self) -> None: ...
    def firmwareUpdate(self, name: str, image: Buffer) -> None: ...
    class FirmwareStatusReply(Record):
        __match_args__ = ("first", "second")
        first: int
        second: int
    def firmwareStatus(self, name: str) -> FirmwareStatusReply: ...
    class TimeGetReply(Record):
        __match_args__ = ("time",)
        time: int
    def timeGet(self) -> TimeGetReply: ...
    def timeSet(self, time: int) -> None: ...
    def usleep(self, microseconds: int) -> None: ...
    def uwait(self, microseconds: int) -> None: ...
