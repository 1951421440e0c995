#include <tavo/cli/serial_serve/rfc2217.h>

#include <limits>
#include <string>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

/// The commands of a client. Answers have a number that is higher by 100.
enum ComPortCommand : std::uint8_t {
    signature = 0,
    setBaudRate = 1,
    setDataSize = 2,
    setParityOf = 3,
    setStopSize = 4,
    setControlOf = 5,
    notifyLineState = 6,
    notifyModemState = 7,
    flowControlSuspend = 8,
    flowControlResume = 9,
    setLineStateMask = 10,
    setModemStateMask = 11,
    purgeData = 12,
};

constexpr std::uint8_t offsetOfAnswers = 100;

enum Control : std::uint8_t {
    askFlow = 0,
    noFlow = 1,
    xonXoffFlow = 2,
    hardwareFlow = 3,
    askBreak = 4,
    breakOn = 5,
    breakOff = 6,
    askDtr = 7,
    dtrOn = 8,
    dtrOff = 9,
    askRts = 10,
    rtsOn = 11,
    rtsOff = 12,
    askInboundFlow = 13,
    noInboundFlow = 14,
    xonXoffInbound = 15,
    hardwareInbound = 16,
    dcdFlow = 17,
    dtrInbound = 18,
    dsrFlow = 19,
};

std::uint8_t flowOf(const LineSettings& settings) {
    if (settings.rtsCts)
        return hardwareFlow;
    if (settings.dtrDsr)
        return dsrFlow;
    return settings.xonXoff ? xonXoffFlow : noFlow;
}

/// The port has no flow control of its own for what comes in.
std::uint8_t inboundFlowOf(const LineSettings& settings) {
    if (settings.rtsCts)
        return hardwareInbound;
    if (settings.dtrDsr)
        return dtrInbound;
    return settings.xonXoff ? xonXoffInbound : noInboundFlow;
}

telnet::Bytes numberBytes(std::uint32_t number) {
    telnet::Bytes bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    return bytes;
}

} // namespace

bool Rfc2217::receive(std::span<const std::uint8_t> bytes) {
    const bool isGood = reader_.take(bytes, *this);
    flush();
    if (!isGood)
        line().warn("the client sent a Telnet subnegotiation without an end");
    return isGood;
}

void Rfc2217::data(std::span<const std::uint8_t> bytes) {
    unsent_.insert(unsent_.end(), bytes.begin(), bytes.end());
}

void Rfc2217::flush() {
    forward(unsent_);
    unsent_.clear();
}

void Rfc2217::tell(std::string_view received) {
    if (isSuspended_)
        return held_.add(received);
    telnet::Bytes bytes;
    telnet::appendEscaped(bytes, {reinterpret_cast<const std::uint8_t*>(received.data()), received.size()});
    say(bytes);
}

void Rfc2217::negotiate(telnet::Command verb, std::uint8_t option) {
    say(options_.take(verb, option));
    if (!options_.isOn(telnet::comPort) || isIntroduced_)
        return;
    isIntroduced_ = true;
    say(options_.propose(telnet::binary));
    answer(notifyModemState, modemState);
}

void Rfc2217::command(std::uint8_t command) {
    if (command != telnet::brk)
        return;
    flush();
    // Nothing is answered.
    insistOnClient();
    line().sendBreak();
}

void Rfc2217::answer(std::uint8_t command, Value value) {
    say(telnet::subnegotiation(telnet::comPort, static_cast<std::uint8_t>(command + offsetOfAnswers), value));
}

void Rfc2217::subnegotiate(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 2 || bytes[0] != telnet::comPort)
        return;
    flush();
    control(bytes[1], bytes.subspan(2));
}

void Rfc2217::control(std::uint8_t command, Value value) {
    switch (command) {
    case signature:
        if (value.empty()) {
            const auto text = fmt::format("tavo serial serve, {}", line().name());
            answer(signature, Value(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
        }
        return;
    case setBaudRate:
        return setRate(value);
    case notifyLineState:
        // The port tells of no errors of the line.
        return answer(notifyLineState, 0);
    case notifyModemState:
        return answer(notifyModemState, modemState & modemMask_);
    case flowControlSuspend:
        return suspend(true);
    case flowControlResume:
        return suspend(false);
    default:
        break;
    }
    if (value.size() != 1)
        return;
    switch (command) {
    case setDataSize:
        return setDataBits(value[0]);
    case setParityOf:
        return setParity(value[0]);
    case setStopSize:
        return setStopBits(value[0]);
    case setControlOf:
        return setControl(value[0]);
    case setLineStateMask:
        return answer(setLineStateMask, value[0]);
    case setModemStateMask:
        modemMask_ = value[0];
        return answer(setModemStateMask, modemMask_);
    case purgeData:
        return purge(value[0]);
    default:
        return;
    }
}

void Rfc2217::setRate(Value value) {
    if (value.size() != 4)
        return;
    std::uint32_t rate = 0;
    for (const auto byte : value)
        rate = rate << 8 | byte;
    if (rate > 0 && rate <= std::numeric_limits<std::int32_t>::max()) {
        auto settings = line().settings();
        settings.baud = static_cast<std::int32_t>(rate);
        line().set(settings);
    }
    answer(setBaudRate, numberBytes(static_cast<std::uint32_t>(line().settings().baud)));
}

void Rfc2217::setDataBits(std::uint8_t bits) {
    if (bits >= 5 && bits <= 8) {
        auto settings = line().settings();
        settings.dataBits = bits;
        line().set(settings);
    }
    answer(setDataSize, static_cast<std::uint8_t>(line().settings().dataBits));
}

void Rfc2217::setParity(std::uint8_t parity) {
    if (parity >= 1 && parity <= 3) {
        auto settings = line().settings();
        settings.parity = static_cast<Parity>(parity - 1);
        line().set(settings);
    }
    answer(setParityOf, static_cast<std::uint8_t>(1 + static_cast<int>(line().settings().parity)));
}

void Rfc2217::setStopBits(std::uint8_t bits) {
    if (bits == 1 || bits == 2) {
        auto settings = line().settings();
        settings.stopBits = bits;
        line().set(settings);
    }
    answer(setStopSize, static_cast<std::uint8_t>(line().settings().stopBits));
}

void Rfc2217::setControl(std::uint8_t value) {
    switch (value) {
    case noFlow:
    case xonXoffFlow:
    case hardwareFlow:
    case dsrFlow:
        setFlowControl(value);
        [[fallthrough]];
    case askFlow:
    case dcdFlow:
        return answer(setControlOf, flowOf(line().settings()));
    case breakOn:
    case breakOff:
        setBreak(value == breakOn);
        [[fallthrough]];
    case askBreak:
        return answer(setControlOf, isBreakOn_ ? breakOn : breakOff);
    case askDtr:
    case dtrOn:
    case dtrOff:
        return answer(setControlOf, dtrOn);
    case askRts:
    case rtsOn:
    case rtsOff:
        return answer(setControlOf, rtsOn);
    case askInboundFlow:
    case noInboundFlow:
    case xonXoffInbound:
    case hardwareInbound:
    case dtrInbound:
        return answer(setControlOf, inboundFlowOf(line().settings()));
    default:
        return;
    }
}

void Rfc2217::setFlowControl(std::uint8_t value) {
    auto settings = line().settings();
    settings.rtsCts = value == hardwareFlow;
    settings.dtrDsr = value == dsrFlow;
    settings.xonXoff = value == xonXoffFlow;
    line().set(settings);
}

void Rfc2217::setBreak(bool isOn) {
    if (isOn && !isBreakOn_)
        isBreakOn_ = line().sendBreak();
    else if (!isOn)
        isBreakOn_ = false;
}

void Rfc2217::suspend(bool isSuspended) {
    isSuspended_ = isSuspended;
    if (!isSuspended && !held_.isEmpty())
        tell(held_.take());
}

void Rfc2217::purge(std::uint8_t what) {
    constexpr std::uint8_t received = 1;
    constexpr std::uint8_t both = 3;
    if (what < received || what > both)
        return;
    // Nothing that is to be sent waits here.
    if (what == received || what == both) {
        held_.take();
        line().dropReceived();
    }
    answer(purgeData, what);
}

} // namespace TAVO::cli
