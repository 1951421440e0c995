#include <tavo/simulator/objects/jtag.h>

#include <chrono>
#include <utility>

#include <tavo/client/hwdebug/jtag.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>
#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

namespace {

namespace jtag_v1_0 = TAVOXTranscode::jtag_v1_0;
namespace jtag_v1_1 = TAVOXTranscode::jtag_v1_1;
using namespace dto::Jtag;
using Register = JtagPort::Register;

/// SAMPLE with cells that capture an alternating pattern starting with 1, and a 32-bit register.
std::vector<TapRegister> boundaryAndUser(std::uint64_t sample, std::size_t cells, std::uint64_t user) {
    constexpr std::uint64_t alternating = 0x5555'5555'5555'5555;
    return {
        {.instruction = sample, .length = cells, .capture = PackedBits::ofNumber(cells, alternating)},
        {.instruction = user, .length = 32, .keeps = true},
    };
}

} // namespace

std::vector<TapDescription> standardTaps() {
    return {
        {"cpu", 8, 0x2A45D0C3, 0x02, 0b01, boundaryAndUser(0x01, 24, 0x20)},
        {"chipset", 5, 0x17B1E0C3, 0x06, 0b01, boundaryAndUser(0x02, 12, 0x0A)},
        {"cpld", 10, 0x0C0DE1D5, 0x159, 0b01, boundaryAndUser(0x055, 16, 0x203)},
    };
}

Jtag::Jtag(const std::string& version, std::shared_ptr<Board> board, std::vector<TapDescription> taps)
    : SimulatedObject("jtag", version)
    , port_(board, std::move(taps))
    , headerStatus_(std::move(board), {"JTAG"}, {"TAP"}) {
    serveShifts();
    servePins();
    if (version == "1.0") {
        serveFrequency(*this, jtag_v1_0::tckFrequencyGet, jtag_v1_0::tckFrequencySet, port_);
        serveOptions_v1_0();
    } else {
        serveFrequency(*this, jtag_v1_1::optionTckFrequencyGet, jtag_v1_1::optionTckFrequencySet, port_);
        serveOptions_v1_1();
        serveHeaderStatus(*this, headerStatus_);
    }
}

void Jtag::reset() {
    port_.reset();
    headerStatus_.clear();
}

void Jtag::serveShifts() {
    for (const auto& [call, target] :
         {std::pair{jtag_v1_0::shiftIR, Register::instruction}, {jtag_v1_0::shiftDR, Register::data}})
        on(call, [this, shifted = target](const ShiftRequest& request) {
            auto outcome = port_.shift(shifted, request.bits, request.data);
            return Answer<ShiftReply>{outcome.code, makeRecord<ShiftReply>(std::move(outcome.captured))};
        });
    on(jtag_v1_0::tapStateGet, [this] { return makeRecord<TapStateGetReply>(port_.state()); });
    on(jtag_v1_0::tapStateSet,
       [this](const TapStateSetRequest& request) { return port_.moveTo(request.state); });
    on(jtag_v1_0::sleep, [this](const SleepRequest& request, CallContext& call) {
        if (request.duration < 0)
            return return_code::badArgument;
        call.delay(std::chrono::microseconds(request.duration));
        return port_.sleep(request.flag);
    });
}

void Jtag::servePins() {
    using namespace dto::Header;
    using Pin = JtagPort::Pin;
    const auto servePin = [this](const auto& get, const auto& set, Pin pin) {
        on(get, [this, pin] {
            const auto drive = port_.pin(pin);
            return makeRecord<IoGetReply>(drive.driven, drive.level);
        });
        on(set, [this, pin](const IoSetRequest& request) {
            return port_.setPin(pin, {request.first, request.second});
        });
    };
    servePin(jtag_v1_0::ioTrstGet, jtag_v1_0::ioTrstSet, Pin::trst);
    servePin(jtag_v1_0::ioTckGet, jtag_v1_0::ioTckSet, Pin::tck);
    servePin(jtag_v1_0::ioTmsGet, jtag_v1_0::ioTmsSet, Pin::tms);
    servePin(jtag_v1_0::ioTdiGet, jtag_v1_0::ioTdiSet, Pin::tdi);
    on(jtag_v1_0::ioTdoGet, [this] { return makeRecord<oGetReply>(port_.tdo()); });
    serveEnable(*this, port_);
}

template <class Request, class Change>
void Jtag::onOptionsSet(const TAVOXTranscode::Call<Request>& call, Change change) {
    on(call, [this, change](const Request& request) {
        const auto before = port_.options(Register::instruction);
        auto ir = before;
        auto dr = port_.options(Register::data);
        change(request, ir, dr);
        auto code = port_.setOptions(Register::instruction, ir);
        if (code == return_code::done)
            code = port_.setOptions(Register::data, dr);
        if (code != return_code::done)
            port_.setOptions(Register::instruction, before);
        return code;
    });
}

void Jtag::serveOptions_v1_0() {
    using Options = JtagPort::ShiftOptions;
    on(jtag_v1_0::tdoExpectedGet, [this] {
        const auto& expectation = port_.options(Register::data).expectation;
        return makeRecord<TdoExpectedGetReply>(expectation.bits, expectation.expected, expectation.mask);
    });
    onOptionsSet(jtag_v1_0::tdoExpectedSet, [](const auto& request, Options& ir, Options& dr) {
        ir.expectation = dr.expectation = {request.bits, request.expected, request.mask};
    });
    on(jtag_v1_0::retryGet, [this] {
        const auto& retry = port_.options(Register::data).retry;
        return makeRecord<RetryGetReply>(retry.count, retry.enable);
    });
    onOptionsSet(jtag_v1_0::retrySet, [](const auto& request, Options& ir, Options& dr) {
        ir.retry = dr.retry = {request.first, request.second != 0};
    });
    on(jtag_v1_0::repeatGet, [this] {
        const auto& repeat = port_.options(Register::data).repeat;
        return makeRecord<RepeatGetReply>(repeat.count, repeat.enable);
    });
    onOptionsSet(jtag_v1_0::repeatSet, [](const auto& request, Options& ir, Options& dr) {
        ir.repeat = dr.repeat = {request.count, request.enable};
    });
    const auto serveTerminationState = [this](const auto& get, const auto& set, Register target) {
        on(get, [this, target] {
            return makeRecord<TerminationStateGetReply>(port_.options(target).terminationState);
        });
        on(set, [this, target](const TerminationStateSetRequest& request) {
            auto options = port_.options(target);
            options.terminationState = request.state;
            return port_.setOptions(target, options);
        });
    };
    serveTerminationState(jtag_v1_0::terminationStateIRGet, jtag_v1_0::terminationStateIRSet,
                          Register::instruction);
    serveTerminationState(jtag_v1_0::terminationStateDRGet, jtag_v1_0::terminationStateDRSet, Register::data);
}

void Jtag::serveOptions_v1_1() {
    using Options = JtagPort::ShiftOptions;
    on(jtag_v1_1::optionTdoExpectedGet, [this] {
        const auto& ir = port_.options(Register::instruction).expectation;
        const auto& dr = port_.options(Register::data).expectation;
        return makeRecord<OptionTdoExpectedGetReply>(ir.bits, ir.expected, ir.mask, dr.bits, dr.expected,
                                                     dr.mask);
    });
    onOptionsSet(jtag_v1_1::optionTdoExpectedSet, [](const auto& request, Options& ir, Options& dr) {
        ir.expectation = {request.irBits, request.irExpected, request.irMask};
        dr.expectation = {request.drBits, request.drExpected, request.drMask};
    });
    on(jtag_v1_1::optionRetryGet, [this] {
        const auto& ir = port_.options(Register::instruction).retry;
        const auto& dr = port_.options(Register::data).retry;
        return makeRecord<OptionRetryGetReply>(ir.count, ir.enable, dr.count, dr.enable);
    });
    onOptionsSet(jtag_v1_1::optionRetrySet, [](const auto& request, Options& ir, Options& dr) {
        ir.retry = {request.irCount, request.irEnable};
        dr.retry = {request.drCount, request.drEnable};
    });
    on(jtag_v1_1::optionRepeatGet, [this] {
        const auto& ir = port_.options(Register::instruction).repeat;
        const auto& dr = port_.options(Register::data).repeat;
        return makeRecord<OptionRepeatGetReply>(ir.count, ir.enable, dr.count, dr.enable);
    });
    onOptionsSet(jtag_v1_1::optionRepeatSet, [](const auto& request, Options& ir, Options& dr) {
        ir.repeat = {request.irCount, request.irEnable};
        dr.repeat = {request.drCount, request.drEnable};
    });
    on(jtag_v1_1::optionTerminationStateGet, [this] {
        return makeRecord<OptionTerminationStateGetReply>(
            port_.options(Register::instruction).terminationState,
            port_.options(Register::data).terminationState);
    });
    onOptionsSet(jtag_v1_1::optionTerminationStateSet, [](const auto& request, Options& ir, Options& dr) {
        ir.terminationState = request.irState;
        dr.terminationState = request.drState;
    });
    on(jtag_v1_1::optionPrePostTckGet, [this] {
        const auto& ir = port_.options(Register::instruction);
        const auto& dr = port_.options(Register::data);
        return makeRecord<OptionPrePostTckGetReply>(ir.preTck, ir.postTck, dr.preTck, dr.postTck);
    });
    onOptionsSet(jtag_v1_1::optionPrePostTckSet, [](const auto& request, Options& ir, Options& dr) {
        ir.preTck = request.value1;
        ir.postTck = request.value2;
        dr.preTck = request.value3;
        dr.postTck = request.value4;
    });
}

CsJtag::CsJtag()
    : SimulatedObject("csJtag", "1.0") {}

} // namespace TAVO::simulator
