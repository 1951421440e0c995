# Written by "python -m tavo._stubs" from the tables of the library. Do not edit.
from collections.abc import Mapping, Sequence
from typing import Any

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
        type: str
    def type(self) -> TypeReply: ...
    class VersionReplyVersion(Record):
        major: int
        minor: int
        bugfix: int
    class VersionReply(Record):
        version: Object.VersionReplyVersion
    def version(self) -> VersionReply: ...
    class MembersReplyMembers(Record):
        name: str
        id: int
    class MembersReply(Record):
        members: tuple[Object.MembersReplyMembers, ...]
    def members(self) -> MembersReply: ...
    class MethodsReplyMethods(Record):
        name: str
        id: int
    class MethodsReply(Record):
        methods: tuple[Object.MethodsReplyMethods, ...]
    def methods(self) -> MethodsReply: ...
    class MethodsVerboseReplyMethods(Record):
        name: str
        id: int
        signature: str
    class MethodsVerboseReply(Record):
        methods: tuple[Object.MethodsVerboseReplyMethods, ...]
    def methodsVerbose(self) -> MethodsVerboseReply: ...
    class AvailableReply(Record):
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

class Com(Object):
    def open(self, value1: int, value2: int, flag1: bool, flag2: bool, value3: int, flag3: bool, flag4: bool, flag5: bool, flag6: bool) -> None: ...
    def close(self) -> None: ...
    class RecvReply(Record):
        data: bytes
    def recv(self, value: int) -> RecvReply: ...
    def send(self, data: Buffer) -> None: ...

class CpuDebug(Object):
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[CpuDebug.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[CpuDebug.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...

class CpuDebug_v1_0(CpuDebug): ...

class CsJtag(Object): ...

class DeviceObject(Object):
    class InfoReplyVersion(Record):
        major: int
        minor: int
        bugfix: int
    class InfoReplyFirmwareVersion(Record):
        major: int
        minor: int
        bugfix: int
    class InfoReplyFirmware(Record):
        name: str
        version: DeviceObject.InfoReplyFirmwareVersion
    class InfoReplyBoards(Record):
        field1: str
        field2: str
        field3: str
        field4: str
    class InfoReply(Record):
        name: str
        version: DeviceObject.InfoReplyVersion
        firmware: tuple[DeviceObject.InfoReplyFirmware, ...]
        boards: tuple[DeviceObject.InfoReplyBoards, ...]
    def info(self) -> InfoReply: ...
    class RootMembersReplyMembers(Record):
        name: str
        id: int
    class RootMembersReply(Record):
        members: tuple[DeviceObject.RootMembersReplyMembers, ...]
    def rootMembers(self) -> RootMembersReply: ...
    class LockReply(Record):
        lockId: int
    def lock(self, user: str, password: str) -> LockReply: ...
    def unlock(self, user: str, password: str) -> None: ...
    class GetKeyReply(Record):
        key: bytes
    def getKey(self) -> GetKeyReply: ...
    class LoginReply(Record):
        challenge: bytes
    def login(self, user: str) -> LoginReply: ...
    class CHAPRespondReply(Record):
        text: str
    def CHAPRespond(self, response: Buffer) -> CHAPRespondReply: ...

class GpuDebug(Object):
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[GpuDebug.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[GpuDebug.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    class HeaderModeGetReply(Record):
        mode: int
    def headerModeGet(self) -> HeaderModeGetReply: ...
    def headerModeSet(self, mode: int) -> None: ...
    class IoPxEnGetReply(Record):
        level: bool
    def ioPxEnGet(self) -> IoPxEnGetReply: ...

class GpuScan(Object):
    class ScanReply(Record):
        data: bytes
    def scan(self, count: int) -> ScanReply: ...
    class OptionSckFrequencyGetReply(Record):
        frequency: int
        value: int
    def optionSckFrequencyGet(self) -> OptionSckFrequencyGetReply: ...
    def optionSckFrequencySet(self, frequency: int) -> None: ...
    class IoSckGetReply(Record):
        first: bool
        second: bool
    def ioSckGet(self) -> IoSckGetReply: ...
    def ioSckSet(self, first: bool, second: bool) -> None: ...
    class IoSdoGetReply(Record):
        level: bool
    def ioSdoGet(self) -> IoSdoGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[GpuScan.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[GpuScan.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Hdt(Object):
    class IoDbreqGetReply(Record):
        level: bool
    def ioDbreqGet(self) -> IoDbreqGetReply: ...
    def ioDbreqSet(self, level: bool) -> None: ...
    class IoDbrdyGetReply(Record):
        lines: bytes
    def ioDbrdyGet(self) -> IoDbrdyGetReply: ...
    def ioDbrdyWait(self, lines: Buffer, timeout: int) -> None: ...
    class IoDbrdySnapshotGetReply(Record):
        lines: bytes
    def ioDbrdySnapshotGet(self) -> IoDbrdySnapshotGetReply: ...
    def ioDbrdySnapshotClear(self) -> None: ...
    class IoDbreqSourceSnapshotGetReply(Record):
        source: int
    def ioDbreqSourceSnapshotGet(self) -> IoDbreqSourceSnapshotGetReply: ...
    def ioDbreqSourceSnapshotClear(self) -> None: ...
    class IoResetGetReply(Record):
        level: bool
    def ioResetGet(self) -> IoResetGetReply: ...
    class IoPwrokGetReply(Record):
        level: bool
    def ioPwrokGet(self) -> IoPwrokGetReply: ...
    def ioTriggerSet(self, index: int, level: bool) -> None: ...
    class IoTriggerGetReply(Record):
        level: bool
    def ioTriggerGet(self, index: int) -> IoTriggerGetReply: ...
    def optionDbreqOnDbrdySet(self, enable: bool) -> None: ...
    class OptionDbreqOnDbrdyGetReply(Record):
        enable: bool
    def optionDbreqOnDbrdyGet(self) -> OptionDbreqOnDbrdyGetReply: ...
    def optionDbreqOnResetSet(self, enable: bool) -> None: ...
    class OptionDbreqOnResetGetReply(Record):
        enable: bool
    def optionDbreqOnResetGet(self) -> OptionDbreqOnResetGetReply: ...
    def optionDbreqOnTriggerSet(self, flag1: bool, value1: int, flag2: bool, value2: int) -> None: ...
    class OptionDbreqOnTriggerGetReply(Record):
        flag1: bool
        value1: int
        flag2: bool
        value2: int
    def optionDbreqOnTriggerGet(self) -> OptionDbreqOnTriggerGetReply: ...
    def optionDbreqPulseWidthSet(self, pulseWidth: int) -> None: ...
    class OptionDbreqPulseWidthGetReply(Record):
        pulseWidth: int
    def optionDbreqPulseWidthGet(self) -> OptionDbreqPulseWidthGetReply: ...
    def optionDbrdyMaskSet(self, mask: Buffer) -> None: ...
    class OptionDbrdyMaskGetReply(Record):
        mask: bytes
    def optionDbrdyMaskGet(self) -> OptionDbrdyMaskGetReply: ...
    class OptionFrequencyGetReply(Record):
        frequency: int
    def optionFrequencyGet(self) -> OptionFrequencyGetReply: ...
    def optionTriggerSetupSet(self, index: int, value1: int, value2: int, value3: int, value4: int, value5: int, value6: int, value7: int) -> None: ...
    class OptionTriggerSetupGetReply(Record):
        value1: int
        value2: int
        value3: int
        value4: int
        value5: int
        value6: int
        value7: int
    def optionTriggerSetupGet(self, index: int) -> OptionTriggerSetupGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[Hdt.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[Hdt.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Hdt_v1_0(Hdt):
    class FrequencyGetReply(Record):
        frequency: int
    def frequencyGet(self) -> FrequencyGetReply: ...

class I2c(Object):
    class TransferReply(Record):
        first: int
        second: int
        data: bytes
    def transfer(self, address: int, data: Buffer, count: int) -> TransferReply: ...
    class ReadReply(Record):
        value: int
        data: bytes
    def read(self, address: int, first: bool, second: bool, count: int) -> ReadReply: ...
    class WriteReply(Record):
        value: int
    def write(self, address: int, first: bool, second: bool, data: Buffer) -> WriteReply: ...
    class OptionSclFrequencyGetReply(Record):
        frequency: int
        value: int
    def optionSclFrequencyGet(self) -> OptionSclFrequencyGetReply: ...
    def optionSclFrequencySet(self, frequency: int) -> None: ...
    class OptionAddressRetryLimitGetReply(Record):
        limit: int
    def optionAddressRetryLimitGet(self) -> OptionAddressRetryLimitGetReply: ...
    def optionAddressRetryLimitSet(self, limit: int) -> None: ...
    class OptionTimeoutGetReply(Record):
        first: int
        second: int
    def optionTimeoutGet(self) -> OptionTimeoutGetReply: ...
    def optionTimeoutSet(self, first: int, second: int) -> None: ...
    class OptionAckGetReply(Record):
        first: bool
        second: bool
    def optionAckGet(self) -> OptionAckGetReply: ...
    def optionAckSet(self, first: bool, second: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[I2c.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[I2c.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Jtag(Object):
    class ShiftIRReply(Record):
        data: bytes
    def shiftIR(self, bits: int, data: Buffer) -> ShiftIRReply: ...
    class ShiftDRReply(Record):
        data: bytes
    def shiftDR(self, bits: int, data: Buffer) -> ShiftDRReply: ...
    class TapStateGetReply(Record):
        state: int
    def tapStateGet(self) -> TapStateGetReply: ...
    def tapStateSet(self, state: int) -> None: ...
    def sleep(self, duration: int, flag: bool) -> None: ...
    class OptionTdoExpectedGetReply(Record):
        irBits: int
        irExpected: bytes
        irMask: bytes
        drBits: int
        drExpected: bytes
        drMask: bytes
    def optionTdoExpectedGet(self) -> OptionTdoExpectedGetReply: ...
    def optionTdoExpectedSet(self, irBits: int, irExpected: Buffer, irMask: Buffer, drBits: int, drExpected: Buffer, drMask: Buffer) -> None: ...
    class OptionRetryGetReply(Record):
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    def optionRetryGet(self) -> OptionRetryGetReply: ...
    def optionRetrySet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionRepeatGetReply(Record):
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    def optionRepeatGet(self) -> OptionRepeatGetReply: ...
    def optionRepeatSet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionTckFrequencyGetReply(Record):
        frequency: int
        value: int
    def optionTckFrequencyGet(self) -> OptionTckFrequencyGetReply: ...
    def optionTckFrequencySet(self, frequency: int) -> None: ...
    class OptionTerminationStateGetReply(Record):
        irState: int
        drState: int
    def optionTerminationStateGet(self) -> OptionTerminationStateGetReply: ...
    def optionTerminationStateSet(self, irState: int, drState: int) -> None: ...
    class OptionPrePostTckGetReply(Record):
        value1: int
        value2: int
        value3: int
        value4: int
    def optionPrePostTckGet(self) -> OptionPrePostTckGetReply: ...
    def optionPrePostTckSet(self, value1: int, value2: int, value3: int, value4: int) -> None: ...
    class IoTrstGetReply(Record):
        first: bool
        second: bool
    def ioTrstGet(self) -> IoTrstGetReply: ...
    def ioTrstSet(self, first: bool, second: bool) -> None: ...
    class IoTckGetReply(Record):
        first: bool
        second: bool
    def ioTckGet(self) -> IoTckGetReply: ...
    def ioTckSet(self, first: bool, second: bool) -> None: ...
    class IoTmsGetReply(Record):
        first: bool
        second: bool
    def ioTmsGet(self) -> IoTmsGetReply: ...
    def ioTmsSet(self, first: bool, second: bool) -> None: ...
    class IoTdiGetReply(Record):
        first: bool
        second: bool
    def ioTdiGet(self) -> IoTdiGetReply: ...
    def ioTdiSet(self, first: bool, second: bool) -> None: ...
    class IoTdoGetReply(Record):
        level: bool
    def ioTdoGet(self) -> IoTdoGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    def enableGet(self) -> EnableGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class HeaderStatusGetReplyHeaders(Record):
        name: str
        flag1: int
        flag2: int
        flag3: int
    class HeaderStatusGetReplyConnections(Record):
        first: tuple[str, ...]
        second: tuple[str, ...]
    class HeaderStatusGetReply(Record):
        headers: tuple[Jtag.HeaderStatusGetReplyHeaders, ...]
        connections: tuple[Jtag.HeaderStatusGetReplyConnections, ...]
    def headerStatusGet(self) -> HeaderStatusGetReply: ...
    def headerStatusClear(self) -> None: ...

class Jtag_v1_0(Jtag):
    class TdoExpectedGetReply(Record):
        bits: int
        expected: bytes
        mask: bytes
    def tdoExpectedGet(self) -> TdoExpectedGetReply: ...
    def tdoExpectedSet(self, bits: int, expected: Buffer, mask: Buffer) -> None: ...
    class RetryGetReply(Record):
        count: int
        enable: bool
    def retryGet(self) -> RetryGetReply: ...
    def retrySet(self, first: int, second: int) -> None: ...
    class RepeatGetReply(Record):
        count: int
        enable: bool
    def repeatGet(self) -> RepeatGetReply: ...
    def repeatSet(self, count: int, enable: bool) -> None: ...
    class TckFrequencyGetReply(Record):
        frequency: int
        value: int
    def tckFrequencyGet(self) -> TckFrequencyGetReply: ...
    def tckFrequencySet(self, frequency: int) -> None: ...
    class TerminationStateIRGetReply(Record):
        state: int
    def terminationStateIRGet(self) -> TerminationStateIRGetReply: ...
    def terminationStateIRSet(self, state: int) -> None: ...
    class TerminationStateDRGetReply(Record):
        state: int
    def terminationStateDRGet(self) -> TerminationStateDRGetReply: ...
    def terminationStateDRSet(self, state: int) -> None: ...

class KelvorGpuDebugMux(Object):
    class HeaderModeGetReply(Record):
        mode: int
    def headerModeGet(self) -> HeaderModeGetReply: ...
    def headerModeSet(self, mode: int) -> None: ...

class KelvorUvdMux(Object): ...

class Lpc(Object):
    class HeaderConnectGetReplyConnections(Record):
        name: str
        connected: bool
    class HeaderConnectGetReply(Record):
        connections: tuple[Lpc.HeaderConnectGetReplyConnections, ...]
    def headerConnectGet(self) -> HeaderConnectGetReply: ...

class LpcPostCode(Object):
    class PostCodeGetReply(Record):
        postCode: int
    def postCodeGet(self) -> PostCodeGetReply: ...
    class FifoSizeGetReply(Record):
        size: int
    def fifoSizeGet(self) -> FifoSizeGetReply: ...
    class FifoGetReplyEntries(Record):
        byte1: int
        byte2: int
        byte3: int
        value: int
    class FifoGetReply(Record):
        entries: tuple[LpcPostCode.FifoGetReplyEntries, ...]
    def fifoGet(self) -> FifoGetReply: ...
    def fifoClear(self) -> None: ...
    class FifoStatusGetReply(Record):
        value: int
        flag1: bool
        flag2: bool
        flag3: bool
        flag4: bool
    def fifoStatusGet(self) -> FifoStatusGetReply: ...
    def fifoStatusClear(self) -> None: ...
    def optionPortSet(self, port: int) -> None: ...
    class OptionPortGetReply(Record):
        port: int
    def optionPortGet(self) -> OptionPortGetReply: ...
    def optionPassiveSet(self, passive: int) -> None: ...
    class OptionPassiveGetReply(Record):
        passive: int
    def optionPassiveGet(self) -> OptionPassiveGetReply: ...
    def optionFifoCircularSet(self, circular: int) -> None: ...
    class OptionFifoCircularGetReply(Record):
        circular: int
    def optionFifoCircularGet(self) -> OptionFifoCircularGetReply: ...
    def optionFifoDiscardSet(self, discard: int) -> None: ...
    class OptionFifoDiscardGetReply(Record):
        discard: int
    def optionFifoDiscardGet(self) -> OptionFifoDiscardGetReply: ...
    def optionFifoAutoResetSet(self, autoReset: int) -> None: ...
    class OptionFifoAutoResetGetReply(Record):
        autoReset: int
    def optionFifoAutoResetGet(self) -> OptionFifoAutoResetGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        enable: bool
    def enableGet(self) -> EnableGetReply: ...

class LpcRomEmulation(Object):
    class SramSizeGetReply(Record):
        size: int
    def sramSizeGet(self) -> SramSizeGetReply: ...
    def sramSet(self, offset: int, data: Buffer) -> None: ...
    class SramGetReply(Record):
        data: bytes
    def sramGet(self, offset: int, length: int) -> SramGetReply: ...
    def optionRomTypeSet(self, romType: int) -> None: ...
    class OptionRomTypeGetReply(Record):
        romType: int
    def optionRomTypeGet(self) -> OptionRomTypeGetReply: ...
    def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        enable: bool
    def enableGet(self) -> EnableGetReply: ...

class PrivateObject(Object): ...

class Relay(Object):
    class GetReply(Record):
        state: int
    def get(self) -> GetReply: ...
    def set(self, state: bool) -> None: ...
    def toggle(self, value: int) -> None: ...

class SystemObject(Object):
    def deviceReset(self) -> None: ...
    def firmwareUpdate(self, name: str, image: Buffer) -> None: ...
    class FirmwareStatusReply(Record):
        first: int
        second: int
    def firmwareStatus(self, name: str) -> FirmwareStatusReply: ...
    class TimeGetReply(Record):
        time: int
    def timeGet(self) -> TimeGetReply: ...
    def timeSet(self, time: int) -> None: ...
    def usleep(self, microseconds: int) -> None: ...
    def uwait(self, microseconds: int) -> None: ...
