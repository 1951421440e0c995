#include <tavo/simulator/objects/jtag.h>

#include <chrono>
#include <utility>

#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>
#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

namespace {

using namespace dto::Jtag;
using Register = JtagPort::Register;

} // namespace

std::vector<TapDescription> standardTaps() {
    return {
        {"cpu", 8, 0x2A45D0C3, 0x02, 0x01, 24, 0x20},
        {"chipset", 5, 0x17B1E0C3, 0x06, 0x02, 12, 0x0A},
        {"cpld", 10, 0x0C0DE1D5, 0x159, 0x055, 16, 0x203},
    };
}

Jtag::Jtag(const std::string& version, std::shared_ptr<Board> board, std::vector<TapDescription> taps)
    : SimulatedObject("jtag", version)
    , port_(board, std::move(taps))
    , headerStatus_(std::move(board), {"JTAG"}, {"TAP"}) {
    serveShifts();
    servePins();
    if (version == "1.0") {
        serveFrequency(*this, "tckFrequencyGet", "tckFrequencySet", port_);
        serveOptions_v1_0();
    } else {
        serveFrequency(*this, "optionTckFrequencyGet", "optionTckFrequencySet", port_);
        serveOptions_v1_1();
        serveHeaderStatus(*this, headerStatus_);
    }
}

void Jtag::reset() {
    port_.reset();
    headerStatus_.clear();
}

void Jtag::serveShifts() {
    for (const auto& [method, target] :
         {std::pair{"shiftIR", Register::instruction}, {"shiftDR", Register::data}})
        on<ShiftRequest, ShiftReply>(method, [this, shifted = target](const ShiftRequest& request) {
            auto outcome = port_.shift(shifted, request.bits, request.data);
            Answer<ShiftReply> answer{outcome.code, {}};
            answer.reply.data = std::move(outcome.captured);
            return answer;
        });
    on<None, TapStateGetReply>("tapStateGet", [this] {
        TapStateGetReply reply;
        reply.state = port_.state();
        return reply;
    });
    on<TapStateSetRequest, None>(
        "tapStateSet", [this](const TapStateSetRequest& request) { return port_.moveTo(request.state); });
    on<SleepRequest, None>("sleep", [this](const SleepRequest& request, CallContext& call) {
        if (request.duration < 0)
            return return_code::badArgument;
        call.delay(std::chrono::microseconds(request.duration));
        return port_.sleep(request.flag);
    });
}

void Jtag::servePins() {
    using namespace dto::Header;
    using Pin = JtagPort::Pin;
    for (const auto& [name, pin] :
         {std::pair{"Trst", Pin::trst}, {"Tck", Pin::tck}, {"Tms", Pin::tms}, {"Tdi", Pin::tdi}}) {
        const auto prefix = std::string("io") + name;
        on<None, IoGetReply>(prefix + "Get", [this, asked = pin] {
            const auto drive = port_.pin(asked);
            IoGetReply reply;
            reply.first = drive.driven;
            reply.second = drive.level;
            return reply;
        });
        on<IoSetRequest, None>(prefix + "Set", [this, driven = pin](const IoSetRequest& request) {
            return port_.setPin(driven, {request.first, request.second});
        });
    }
    on<None, oGetReply>("ioTdoGet", [this] {
        oGetReply reply;
        reply.level = port_.tdo();
        return reply;
    });
    serveEnable(*this, port_);
}

template <class Request, class Change>
void Jtag::onOptionsSet(const std::string& method, Change change) {
    on<Request, None>(method, [this, change](const Request& request) {
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
    on<None, TdoExpectedGetReply>("tdoExpectedGet", [this] {
        const auto& expectation = port_.options(Register::data).expectation;
        TdoExpectedGetReply reply;
        reply.bits = expectation.bits;
        reply.expected = expectation.expected;
        reply.mask = expectation.mask;
        return reply;
    });
    onOptionsSet<TdoExpectedSetRequest>(
        "tdoExpectedSet", [](const TdoExpectedSetRequest& request, Options& ir, Options& dr) {
            ir.expectation = dr.expectation = {request.bits, request.expected, request.mask};
        });
    on<None, RetryGetReply>("retryGet", [this] {
        const auto& retry = port_.options(Register::data).retry;
        RetryGetReply reply;
        reply.count = retry.count;
        reply.enable = retry.enable;
        return reply;
    });
    onOptionsSet<RetrySetRequest>("retrySet", [](const RetrySetRequest& request, Options& ir, Options& dr) {
        ir.retry = dr.retry = {request.first, request.second != 0};
    });
    on<None, RepeatGetReply>("repeatGet", [this] {
        const auto& repeat = port_.options(Register::data).repeat;
        RepeatGetReply reply;
        reply.count = repeat.count;
        reply.enable = repeat.enable;
        return reply;
    });
    onOptionsSet<RepeatSetRequest>("repeatSet",
                                   [](const RepeatSetRequest& request, Options& ir, Options& dr) {
                                       ir.repeat = dr.repeat = {request.count, request.enable};
                                   });
    for (const auto& [name, target] : {std::pair{"IR", Register::instruction}, {"DR", Register::data}}) {
        const auto prefix = std::string("terminationState") + name;
        on<None, TerminationStateGetReply>(prefix + "Get", [this, asked = target] {
            TerminationStateGetReply reply;
            reply.state = port_.options(asked).terminationState;
            return reply;
        });
        on<TerminationStateSetRequest, None>(
            prefix + "Set", [this, changed = target](const TerminationStateSetRequest& request) {
                auto options = port_.options(changed);
                options.terminationState = request.state;
                return port_.setOptions(changed, options);
            });
    }
}

void Jtag::serveOptions_v1_1() {
    using Options = JtagPort::ShiftOptions;
    on<None, OptionTdoExpectedGetReply>("optionTdoExpectedGet", [this] {
        const auto& ir = port_.options(Register::instruction).expectation;
        const auto& dr = port_.options(Register::data).expectation;
        OptionTdoExpectedGetReply reply;
        reply.irBits = ir.bits;
        reply.irExpected = ir.expected;
        reply.irMask = ir.mask;
        reply.drBits = dr.bits;
        reply.drExpected = dr.expected;
        reply.drMask = dr.mask;
        return reply;
    });
    onOptionsSet<OptionTdoExpectedSetRequest>(
        "optionTdoExpectedSet", [](const OptionTdoExpectedSetRequest& request, Options& ir, Options& dr) {
            ir.expectation = {request.irBits, request.irExpected, request.irMask};
            dr.expectation = {request.drBits, request.drExpected, request.drMask};
        });
    on<None, OptionRetryGetReply>("optionRetryGet", [this] {
        const auto& ir = port_.options(Register::instruction).retry;
        const auto& dr = port_.options(Register::data).retry;
        OptionRetryGetReply reply;
        reply.irCount = ir.count;
        reply.irEnable = ir.enable;
        reply.drCount = dr.count;
        reply.drEnable = dr.enable;
        return reply;
    });
    onOptionsSet<OptionRetrySetRequest>("optionRetrySet",
                                        [](const OptionRetrySetRequest& request, Options& ir, Options& dr) {
                                            ir.retry = {request.irCount, request.irEnable};
                                            dr.retry = {request.drCount, request.drEnable};
                                        });
    on<None, OptionRepeatGetReply>("optionRepeatGet", [this] {
        const auto& ir = port_.options(Register::instruction).repeat;
        const auto& dr = port_.options(Register::data).repeat;
        OptionRepeatGetReply reply;
        reply.irCount = ir.count;
        reply.irEnable = ir.enable;
        reply.drCount = dr.count;
        reply.drEnable = dr.enable;
        return reply;
    });
    onOptionsSet<OptionRepeatSetRequest>("optionRepeatSet",
                                         [](const OptionRepeatSetRequest& request, Options& ir, Options& dr) {
                                             ir.repeat = {request.irCount, request.irEnable};
                                             dr.repeat = {request.drCount, request.drEnable};
                                         });
    on<None, OptionTerminationStateGetReply>("optionTerminationStateGet", [this] {
        OptionTerminationStateGetReply reply;
        reply.irState = port_.options(Register::instruction).terminationState;
        reply.drState = port_.options(Register::data).terminationState;
        return reply;
    });
    onOptionsSet<OptionTerminationStateSetRequest>(
        "optionTerminationStateSet",
        [](const OptionTerminationStateSetRequest& request, Options& ir, Options& dr) {
            ir.terminationState = request.irState;
            dr.terminationState = request.drState;
        });
    on<None, OptionPrePostTckGetReply>("optionPrePostTckGet", [this] {
        const auto& ir = port_.options(Register::instruction);
        const auto& dr = port_.options(Register::data);
        OptionPrePostTckGetReply reply;
        auto& [irPre, irPost, drPre, drPost] = reply;
        irPre = ir.preTck;
        irPost = ir.postTck;
        drPre = dr.preTck;
        drPost = dr.postTck;
        return reply;
    });
    onOptionsSet<OptionPrePostTckSetRequest>(
        "optionPrePostTckSet", [](const OptionPrePostTckSetRequest& request, Options& ir, Options& dr) {
            const auto& [irPre, irPost, drPre, drPost] = request;
            ir.preTck = irPre;
            ir.postTck = irPost;
            dr.preTck = drPre;
            dr.postTck = drPost;
        });
}

CsJtag::CsJtag()
    : SimulatedObject("csJtag", "1.0") {}

} // namespace TAVO::simulator
