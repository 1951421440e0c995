#include <tavo/simulator/objects/hdt.h>

#include <chrono>
#include <span>
#include <utility>

#include <tavo/client/hwdebug/hdt_records.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

using namespace dto::hdt;
using namespace dto::Header;

constexpr std::uint64_t referenceFrequency = 100'000'000;

std::vector<std::uint8_t> bytesOf(const DebugSignals::Lines& lines) { return {lines.begin(), lines.end()}; }

DebugSignals::Lines linesOf(const std::vector<std::uint8_t>& bytes) {
    if (bytes.size() != DebugSignals::coreCount)
        throw Refusal(return_code::badArgument);
    DebugSignals::Lines lines;
    for (std::size_t line = 0; line < lines.size(); ++line)
        lines[line] = bytes[line] != 0;
    return lines;
}

std::size_t triggerIndex(std::int32_t index) {
    if (index < 0 || index >= static_cast<std::int32_t>(DebugSignals::triggerCount))
        throw Refusal(return_code::badArgument);
    return static_cast<std::size_t>(index);
}

void requireEnabled(const DebugSignals& signals) {
    if (!signals.enabled())
        throw Refusal(return_code::disabled);
}

} // namespace

Hdt::Hdt(const std::string& version, std::shared_ptr<Board> board)
    : SimulatedObject("hdt", version)
    , board_(std::move(board))
    , signals_(board_)
    , headerStatus_(board_, {"HDT"}, {"CPU0"}) {
    serveSignals();
    serveOptions();
    serveEnable(*this, signals_);
    const bool isFirst = version == "1.0";
    on<None, FrequencyGetReply>(isFirst ? "frequencyGet" : "optionFrequencyGet", [] {
        FrequencyGetReply reply;
        reply.frequency = referenceFrequency;
        return reply;
    });
    if (isFirst)
        return;
    serveTriggers();
    serveMaskAndWait();
    serveHeaderStatus(*this, headerStatus_);
}

void Hdt::reset() {
    signals_.reset();
    headerStatus_.clear();
}

void Hdt::serveSignals() {
    const auto onLevelGet = [this](const char* method, auto level) {
        on<None, iGetReply>(method, [level] {
            iGetReply reply;
            reply.level = level();
            return reply;
        });
    };
    onLevelGet("ioDbreqGet", [this] { return signals_.debugRequest(); });
    onLevelGet("ioResetGet", [this] { return board_->inReset(); });
    onLevelGet("ioPwrokGet", [this] { return board_->powerGood(); });
    on<iSetRequest, None>("ioDbreqSet", [this](const iSetRequest& request) {
        requireEnabled(signals_);
        signals_.setDebugRequest(request.level);
    });
    on<None, ioDbrdyReply>("ioDbrdyGet", [this] {
        ioDbrdyReply reply;
        reply.lines = bytesOf(signals_.debugReady());
        return reply;
    });
    on<None, ioDbrdySnapshotReply>("ioDbrdySnapshotGet", [this] {
        ioDbrdySnapshotReply reply;
        reply.lines = bytesOf(signals_.snapshot());
        return reply;
    });
    on<None, None>("ioDbrdySnapshotClear", [this] { signals_.clearSnapshot(); });
}

template <class Request, class Change>
void Hdt::onOptionSet(const std::string& method, Change change) {
    on<Request, None>(method, [this, change](const Request& request) {
        auto options = signals_.options();
        change(request, options);
        signals_.setOptions(options);
    });
}

void Hdt::serveOptions() {
    using Options = DebugSignals::Options;
    on<None, OptionDbreqOnDbrdyGetReply>("optionDbreqOnDbrdyGet", [this] {
        OptionDbreqOnDbrdyGetReply reply;
        reply.enable = signals_.options().onDebugReady;
        return reply;
    });
    using OnDbrdyRequest = OptionDbreqOnDbrdySetRequest;
    onOptionSet<OnDbrdyRequest>("optionDbreqOnDbrdySet", [](const OnDbrdyRequest& request, Options& options) {
        options.onDebugReady = request.enable;
    });
    on<None, OptionDbreqOnResetReply>("optionDbreqOnResetGet", [this] {
        OptionDbreqOnResetReply reply;
        reply.enable = signals_.options().onReset;
        return reply;
    });
    using OnResetRequest = OptionDbreqOnResetRequest;
    onOptionSet<OnResetRequest>("optionDbreqOnResetSet", [](const OnResetRequest& request, Options& options) {
        options.onReset = request.enable;
    });
    on<None, OptionDbreqPulseWidthReply>("optionDbreqPulseWidthGet", [this] {
        OptionDbreqPulseWidthReply reply;
        reply.pulseWidth = signals_.options().pulseWidth;
        return reply;
    });
    using WidthRequest = OptionDbreqPulseWidthRequest;
    onOptionSet<WidthRequest>("optionDbreqPulseWidthSet", [](const WidthRequest& request, Options& options) {
        if (request.pulseWidth < 0)
            throw Refusal(return_code::badArgument);
        options.pulseWidth = request.pulseWidth;
    });
}

void Hdt::serveTriggers() {
    using Options = DebugSignals::Options;
    on<None, ioDbreqSourceSnapshotReply>("ioDbreqSourceSnapshotGet", [this] {
        ioDbreqSourceSnapshotReply reply;
        reply.source = static_cast<std::int32_t>(signals_.source());
        return reply;
    });
    on<None, None>("ioDbreqSourceSnapshotClear", [this] { signals_.clearSource(); });
    on<ioTriggerSetRequest, None>("ioTriggerSet", [this](const ioTriggerSetRequest& request) {
        requireEnabled(signals_);
        signals_.setTrigger(triggerIndex(request.index), request.level);
    });
    on<ioTriggerGetRequest, ioTriggerGetReply>("ioTriggerGet", [this](const ioTriggerGetRequest& request) {
        ioTriggerGetReply reply;
        reply.level = signals_.trigger(triggerIndex(request.index));
        return reply;
    });
    on<None, OptionDbreqOnTriggerGetReply>("optionDbreqOnTriggerGet", [this] {
        const auto& [one, other] = signals_.options().onTrigger;
        OptionDbreqOnTriggerGetReply reply;
        reply.flag1 = one.enabled;
        reply.value1 = one.index;
        reply.flag2 = other.enabled;
        reply.value2 = other.index;
        return reply;
    });
    using OnTriggerRequest = OptionDbreqOnTriggerSetRequest;
    onOptionSet<OnTriggerRequest>(
        "optionDbreqOnTriggerSet", [](const OnTriggerRequest& request, Options& options) {
            triggerIndex(request.value1);
            triggerIndex(request.value2);
            options.onTrigger = {{{request.flag1, request.value1}, {request.flag2, request.value2}}};
        });
    using SetupGetRequest = OptionTriggerSetupGetRequest;
    on<SetupGetRequest, OptionTriggerSetupGetReply>(
        "optionTriggerSetupGet", [this](const SetupGetRequest& request) {
            const auto& setup = signals_.setup(triggerIndex(request.index));
            OptionTriggerSetupGetReply reply;
            reply.value1 = setup.mode;
            reply.value2 = setup.edge;
            reply.value3 = setup.pulseWidth;
            reply.value4 = setup.count;
            reply.value5 = setup.delay;
            reply.value6 = setup.invert;
            reply.value7 = setup.source;
            return reply;
        });
    using SetupSetRequest = OptionTriggerSetupSetRequest;
    on<SetupSetRequest, None>("optionTriggerSetupSet", [this](const SetupSetRequest& request) {
        const auto isUpTo = [](std::int32_t value, std::int32_t highest) {
            return value >= 0 && value <= highest;
        };
        const bool good = isUpTo(request.value1, 2) && isUpTo(request.value2, 2) && request.value3 >= 0 &&
                          request.value4 >= 0 && request.value5 >= 0 && isUpTo(request.value6, 1) &&
                          isUpTo(request.value7, 3);
        if (!good)
            throw Refusal(return_code::badArgument);
        signals_.setSetup(triggerIndex(request.index),
                          {request.value1, request.value2, request.value3, request.value4, request.value5,
                           request.value6, request.value7});
    });
}

void Hdt::serveMaskAndWait() {
    using Options = DebugSignals::Options;
    on<None, OptionDbrdyMaskGetReply>("optionDbrdyMaskGet", [this] {
        OptionDbrdyMaskGetReply reply;
        reply.mask = bytesOf(signals_.options().mask);
        return reply;
    });
    using MaskRequest = OptionDbrdyMaskSetRequest;
    onOptionSet<MaskRequest>("optionDbrdyMaskSet", [](const MaskRequest& request, Options& options) {
        options.mask = linesOf(request.mask);
    });
    on<ioDbrdyWaitRequest, None>("ioDbrdyWait", [this](const ioDbrdyWaitRequest& request, CallContext& call) {
        const auto lines = linesOf(request.lines);
        if (request.timeout < 0)
            throw Refusal(return_code::badArgument);
        const auto pass = [&](std::uint64_t duration) { call.delay(std::chrono::microseconds(duration)); };
        return signals_.waitForDebugReady(lines, static_cast<std::uint64_t>(request.timeout), pass)
                   ? return_code::done
                   : return_code::timedOut;
    });
}

CpuDebug::CpuDebug(const std::string& version, std::shared_ptr<Board> board)
    : SimulatedObject("cpuDebug", version)
    , headerStatus_(std::move(board), {"JTAG", "HDT"}, {"CPU0"}) {
    if (version != "1.0")
        serveHeaderStatusGet(*this, headerStatus_);
}

void CpuDebug::reset() { headerStatus_.clear(); }

} // namespace TAVO::simulator
