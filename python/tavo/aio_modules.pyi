# Written by "python -m tavo._stubs" from the tables of the library. Do not edit.
from collections.abc import Mapping, Sequence
from typing import Any

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
        type: str
    async def type(self) -> TypeReply: ...
    class VersionReplyVersion(Record):
        major: int
        minor: int
        bugfix: int
    class VersionReply(Record):
        version: Object.VersionReplyVersion
    async def version(self) -> VersionReply: ...
    class MembersReplyMembers(Record):
        name: str
        id: int
    class MembersReply(Record):
        members: tuple[Object.MembersReplyMembers, ...]
    async def members(self) -> MembersReply: ...
    class MethodsReplyMethods(Record):
        name: str
        id: int
    class MethodsReply(Record):
        methods: tuple[Object.MethodsReplyMethods, ...]
    async def methods(self) -> MethodsReply: ...
    class MethodsVerboseReplyMethods(Record):
        name: str
        id: int
        signature: str
    class MethodsVerboseReply(Record):
        methods: tuple[Object.MethodsVerboseReplyMethods, ...]
    async def methodsVerbose(self) -> MethodsVerboseReply: ...
    class AvailableReply(Record):
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

class Com(Object):
    async def open(self, value1: int, value2: int, flag1: bool, flag2: bool, value3: int, flag3: bool, flag4: bool, flag5: bool, flag6: bool) -> None: ...
    async def close(self) -> None: ...
    class RecvReply(Record):
        data: bytes
    async def recv(self, value: int) -> RecvReply: ...
    async def send(self, data: Buffer) -> None: ...

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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...

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
    async def info(self) -> InfoReply: ...
    class RootMembersReplyMembers(Record):
        name: str
        id: int
    class RootMembersReply(Record):
        members: tuple[DeviceObject.RootMembersReplyMembers, ...]
    async def rootMembers(self) -> RootMembersReply: ...
    class LockReply(Record):
        lockId: int
    async def lock(self, user: str, password: str) -> LockReply: ...
    async def unlock(self, user: str, password: str) -> None: ...
    class GetKeyReply(Record):
        key: bytes
    async def getKey(self) -> GetKeyReply: ...
    class LoginReply(Record):
        challenge: bytes
    async def login(self, user: str) -> LoginReply: ...
    class CHAPRespondReply(Record):
        text: str
    async def CHAPRespond(self, response: Buffer) -> CHAPRespondReply: ...

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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    class HeaderModeGetReply(Record):
        mode: int
    async def headerModeGet(self) -> HeaderModeGetReply: ...
    async def headerModeSet(self, mode: int) -> None: ...
    class IoPxEnGetReply(Record):
        level: bool
    async def ioPxEnGet(self) -> IoPxEnGetReply: ...

class GpuScan(Object):
    class ScanReply(Record):
        data: bytes
    async def scan(self, count: int) -> ScanReply: ...
    class OptionSckFrequencyGetReply(Record):
        frequency: int
        value: int
    async def optionSckFrequencyGet(self) -> OptionSckFrequencyGetReply: ...
    async def optionSckFrequencySet(self, frequency: int) -> None: ...
    class IoSckGetReply(Record):
        first: bool
        second: bool
    async def ioSckGet(self) -> IoSckGetReply: ...
    async def ioSckSet(self, first: bool, second: bool) -> None: ...
    class IoSdoGetReply(Record):
        level: bool
    async def ioSdoGet(self) -> IoSdoGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Hdt(Object):
    class IoDbreqGetReply(Record):
        level: bool
    async def ioDbreqGet(self) -> IoDbreqGetReply: ...
    async def ioDbreqSet(self, level: bool) -> None: ...
    class IoDbrdyGetReply(Record):
        lines: bytes
    async def ioDbrdyGet(self) -> IoDbrdyGetReply: ...
    async def ioDbrdyWait(self, lines: Buffer, timeout: int) -> None: ...
    class IoDbrdySnapshotGetReply(Record):
        lines: bytes
    async def ioDbrdySnapshotGet(self) -> IoDbrdySnapshotGetReply: ...
    async def ioDbrdySnapshotClear(self) -> None: ...
    class IoDbreqSourceSnapshotGetReply(Record):
        source: int
    async def ioDbreqSourceSnapshotGet(self) -> IoDbreqSourceSnapshotGetReply: ...
    async def ioDbreqSourceSnapshotClear(self) -> None: ...
    class IoResetGetReply(Record):
        level: bool
    async def ioResetGet(self) -> IoResetGetReply: ...
    class IoPwrokGetReply(Record):
        level: bool
    async def ioPwrokGet(self) -> IoPwrokGetReply: ...
    async def ioTriggerSet(self, index: int, level: bool) -> None: ...
    class IoTriggerGetReply(Record):
        level: bool
    async def ioTriggerGet(self, index: int) -> IoTriggerGetReply: ...
    async def optionDbreqOnDbrdySet(self, enable: bool) -> None: ...
    class OptionDbreqOnDbrdyGetReply(Record):
        enable: bool
    async def optionDbreqOnDbrdyGet(self) -> OptionDbreqOnDbrdyGetReply: ...
    async def optionDbreqOnResetSet(self, enable: bool) -> None: ...
    class OptionDbreqOnResetGetReply(Record):
        enable: bool
    async def optionDbreqOnResetGet(self) -> OptionDbreqOnResetGetReply: ...
    async def optionDbreqOnTriggerSet(self, flag1: bool, value1: int, flag2: bool, value2: int) -> None: ...
    class OptionDbreqOnTriggerGetReply(Record):
        flag1: bool
        value1: int
        flag2: bool
        value2: int
    async def optionDbreqOnTriggerGet(self) -> OptionDbreqOnTriggerGetReply: ...
    async def optionDbreqPulseWidthSet(self, pulseWidth: int) -> None: ...
    class OptionDbreqPulseWidthGetReply(Record):
        pulseWidth: int
    async def optionDbreqPulseWidthGet(self) -> OptionDbreqPulseWidthGetReply: ...
    async def optionDbrdyMaskSet(self, mask: Buffer) -> None: ...
    class OptionDbrdyMaskGetReply(Record):
        mask: bytes
    async def optionDbrdyMaskGet(self) -> OptionDbrdyMaskGetReply: ...
    class OptionFrequencyGetReply(Record):
        frequency: int
    async def optionFrequencyGet(self) -> OptionFrequencyGetReply: ...
    async def optionTriggerSetupSet(self, index: int, value1: int, value2: int, value3: int, value4: int, value5: int, value6: int, value7: int) -> None: ...
    class OptionTriggerSetupGetReply(Record):
        value1: int
        value2: int
        value3: int
        value4: int
        value5: int
        value6: int
        value7: int
    async def optionTriggerSetupGet(self, index: int) -> OptionTriggerSetupGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Hdt_v1_0(Hdt):
    class FrequencyGetReply(Record):
        frequency: int
    async def frequencyGet(self) -> FrequencyGetReply: ...

class I2c(Object):
    class TransferReply(Record):
        first: int
        second: int
        data: bytes
    async def transfer(self, address: int, data: Buffer, count: int) -> TransferReply: ...
    class ReadReply(Record):
        value: int
        data: bytes
    async def read(self, address: int, first: bool, second: bool, count: int) -> ReadReply: ...
    class WriteReply(Record):
        value: int
    async def write(self, address: int, first: bool, second: bool, data: Buffer) -> WriteReply: ...
    class OptionSclFrequencyGetReply(Record):
        frequency: int
        value: int
    async def optionSclFrequencyGet(self) -> OptionSclFrequencyGetReply: ...
    async def optionSclFrequencySet(self, frequency: int) -> None: ...
    class OptionAddressRetryLimitGetReply(Record):
        limit: int
    async def optionAddressRetryLimitGet(self) -> OptionAddressRetryLimitGetReply: ...
    async def optionAddressRetryLimitSet(self, limit: int) -> None: ...
    class OptionTimeoutGetReply(Record):
        first: int
        second: int
    async def optionTimeoutGet(self) -> OptionTimeoutGetReply: ...
    async def optionTimeoutSet(self, first: int, second: int) -> None: ...
    class OptionAckGetReply(Record):
        first: bool
        second: bool
    async def optionAckGet(self) -> OptionAckGetReply: ...
    async def optionAckSet(self, first: bool, second: bool) -> None: ...
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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Jtag(Object):
    class ShiftIRReply(Record):
        data: bytes
    async def shiftIR(self, bits: int, data: Buffer) -> ShiftIRReply: ...
    class ShiftDRReply(Record):
        data: bytes
    async def shiftDR(self, bits: int, data: Buffer) -> ShiftDRReply: ...
    class TapStateGetReply(Record):
        state: int
    async def tapStateGet(self) -> TapStateGetReply: ...
    async def tapStateSet(self, state: int) -> None: ...
    async def sleep(self, duration: int, flag: bool) -> None: ...
    class OptionTdoExpectedGetReply(Record):
        irBits: int
        irExpected: bytes
        irMask: bytes
        drBits: int
        drExpected: bytes
        drMask: bytes
    async def optionTdoExpectedGet(self) -> OptionTdoExpectedGetReply: ...
    async def optionTdoExpectedSet(self, irBits: int, irExpected: Buffer, irMask: Buffer, drBits: int, drExpected: Buffer, drMask: Buffer) -> None: ...
    class OptionRetryGetReply(Record):
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    async def optionRetryGet(self) -> OptionRetryGetReply: ...
    async def optionRetrySet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionRepeatGetReply(Record):
        irCount: int
        irEnable: bool
        drCount: int
        drEnable: bool
    async def optionRepeatGet(self) -> OptionRepeatGetReply: ...
    async def optionRepeatSet(self, irCount: int, irEnable: bool, drCount: int, drEnable: bool) -> None: ...
    class OptionTckFrequencyGetReply(Record):
        frequency: int
        value: int
    async def optionTckFrequencyGet(self) -> OptionTckFrequencyGetReply: ...
    async def optionTckFrequencySet(self, frequency: int) -> None: ...
    class OptionTerminationStateGetReply(Record):
        irState: int
        drState: int
    async def optionTerminationStateGet(self) -> OptionTerminationStateGetReply: ...
    async def optionTerminationStateSet(self, irState: int, drState: int) -> None: ...
    class OptionPrePostTckGetReply(Record):
        value1: int
        value2: int
        value3: int
        value4: int
    async def optionPrePostTckGet(self) -> OptionPrePostTckGetReply: ...
    async def optionPrePostTckSet(self, value1: int, value2: int, value3: int, value4: int) -> None: ...
    class IoTrstGetReply(Record):
        first: bool
        second: bool
    async def ioTrstGet(self) -> IoTrstGetReply: ...
    async def ioTrstSet(self, first: bool, second: bool) -> None: ...
    class IoTckGetReply(Record):
        first: bool
        second: bool
    async def ioTckGet(self) -> IoTckGetReply: ...
    async def ioTckSet(self, first: bool, second: bool) -> None: ...
    class IoTmsGetReply(Record):
        first: bool
        second: bool
    async def ioTmsGet(self) -> IoTmsGetReply: ...
    async def ioTmsSet(self, first: bool, second: bool) -> None: ...
    class IoTdiGetReply(Record):
        first: bool
        second: bool
    async def ioTdiGet(self) -> IoTdiGetReply: ...
    async def ioTdiSet(self, first: bool, second: bool) -> None: ...
    class IoTdoGetReply(Record):
        level: bool
    async def ioTdoGet(self) -> IoTdoGetReply: ...
    class EnableGetReply(Record):
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
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
    async def headerStatusGet(self) -> HeaderStatusGetReply: ...
    async def headerStatusClear(self) -> None: ...

class Jtag_v1_0(Jtag):
    class TdoExpectedGetReply(Record):
        bits: int
        expected: bytes
        mask: bytes
    async def tdoExpectedGet(self) -> TdoExpectedGetReply: ...
    async def tdoExpectedSet(self, bits: int, expected: Buffer, mask: Buffer) -> None: ...
    class RetryGetReply(Record):
        count: int
        enable: bool
    async def retryGet(self) -> RetryGetReply: ...
    async def retrySet(self, first: int, second: int) -> None: ...
    class RepeatGetReply(Record):
        count: int
        enable: bool
    async def repeatGet(self) -> RepeatGetReply: ...
    async def repeatSet(self, count: int, enable: bool) -> None: ...
    class TckFrequencyGetReply(Record):
        frequency: int
        value: int
    async def tckFrequencyGet(self) -> TckFrequencyGetReply: ...
    async def tckFrequencySet(self, frequency: int) -> None: ...
    class TerminationStateIRGetReply(Record):
        state: int
    async def terminationStateIRGet(self) -> TerminationStateIRGetReply: ...
    async def terminationStateIRSet(self, state: int) -> None: ...
    class TerminationStateDRGetReply(Record):
        state: int
    async def terminationStateDRGet(self) -> TerminationStateDRGetReply: ...
    async def terminationStateDRSet(self, state: int) -> None: ...

class KelvorGpuDebugMux(Object):
    class HeaderModeGetReply(Record):
        mode: int
    async def headerModeGet(self) -> HeaderModeGetReply: ...
    async def headerModeSet(self, mode: int) -> None: ...

class KelvorUvdMux(Object): ...

class Lpc(Object):
    class HeaderConnectGetReplyConnections(Record):
        name: str
        connected: bool
    class HeaderConnectGetReply(Record):
        connections: tuple[Lpc.HeaderConnectGetReplyConnections, ...]
    async def headerConnectGet(self) -> HeaderConnectGetReply: ...

class LpcPostCode(Object):
    class PostCodeGetReply(Record):
        postCode: int
    async def postCodeGet(self) -> PostCodeGetReply: ...
    class FifoSizeGetReply(Record):
        size: int
    async def fifoSizeGet(self) -> FifoSizeGetReply: ...
    class FifoGetReplyEntries(Record):
        byte1: int
        byte2: int
        byte3: int
        value: int
    class FifoGetReply(Record):
        entries: tuple[LpcPostCode.FifoGetReplyEntries, ...]
    async def fifoGet(self) -> FifoGetReply: ...
    async def fifoClear(self) -> None: ...
    class FifoStatusGetReply(Record):
        value: int
        flag1: bool
        flag2: bool
        flag3: bool
        flag4: bool
    async def fifoStatusGet(self) -> FifoStatusGetReply: ...
    async def fifoStatusClear(self) -> None: ...
    async def optionPortSet(self, port: int) -> None: ...
    class OptionPortGetReply(Record):
        port: int
    async def optionPortGet(self) -> OptionPortGetReply: ...
    async def optionPassiveSet(self, passive: int) -> None: ...
    class OptionPassiveGetReply(Record):
        passive: int
    async def optionPassiveGet(self) -> OptionPassiveGetReply: ...
    async def optionFifoCircularSet(self, circular: int) -> None: ...
    class OptionFifoCircularGetReply(Record):
        circular: int
    async def optionFifoCircularGet(self) -> OptionFifoCircularGetReply: ...
    async def optionFifoDiscardSet(self, discard: int) -> None: ...
    class OptionFifoDiscardGetReply(Record):
        discard: int
    async def optionFifoDiscardGet(self) -> OptionFifoDiscardGetReply: ...
    async def optionFifoAutoResetSet(self, autoReset: int) -> None: ...
    class OptionFifoAutoResetGetReply(Record):
        autoReset: int
    async def optionFifoAutoResetGet(self) -> OptionFifoAutoResetGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...

class LpcRomEmulation(Object):
    class SramSizeGetReply(Record):
        size: int
    async def sramSizeGet(self) -> SramSizeGetReply: ...
    async def sramSet(self, offset: int, data: Buffer) -> None: ...
    class SramGetReply(Record):
        data: bytes
    async def sramGet(self, offset: int, length: int) -> SramGetReply: ...
    async def optionRomTypeSet(self, romType: int) -> None: ...
    class OptionRomTypeGetReply(Record):
        romType: int
    async def optionRomTypeGet(self) -> OptionRomTypeGetReply: ...
    async def enableSet(self, enable: bool) -> None: ...
    class EnableGetReply(Record):
        enable: bool
    async def enableGet(self) -> EnableGetReply: ...

class PrivateObject(Object): ...

class Relay(Object):
    class GetReply(Record):
        state: int
    async def get(self) -> GetReply: ...
    async def set(self, state: bool) -> None: ...
    async def toggle(self, value: int) -> None: ...

class SystemObject(Object):
    async def deviceReset(self) -> None: ...
    async def firmwareUpdate(self, name: str, image: Buffer) -> None: ...
    class FirmwareStatusReply(Record):
        first: int
        second: int
    async def firmwareStatus(self, name: str) -> FirmwareStatusReply: ...
    class TimeGetReply(Record):
        time: int
    async def timeGet(self) -> TimeGetReply: ...
    async def timeSet(self, time: int) -> None: ...
    async def usleep(self, microseconds: int) -> None: ...
    async def uwait(self, microseconds: int) -> None: ...
