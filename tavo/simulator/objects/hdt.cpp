#include <tavo/simulator/objects/hdt.h>

#include <chrono>
#include <span>
#include <utility>

#include <tavo/client/hwdebug/hdt.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

namespace hdt_v1_0 = TAVOXTranscode::hdt_v1_0;
namespace hdt_v1_1 = TAVOXTranscode::hdt_v1_1;
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
    on(isFirst ? hdt_v1_0::frequencyGet : hdt_v1_1::optionFrequencyGet,
       [] { return makeRecord<FrequencyGetReply>(referenceFrequency); });
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
    on(hdt_v1_0::ioDbreqGet, [this] { return makeRecord<iGetReply>(signals_.debugRequest()); });
    on(hdt_v1_0::ioResetGet, [this] { return makeRecord<iGetReply>(board_->inReset()); });
    on(hdt_v1_0::ioPwrokGet, [this] { return makeRecord<iGetReply>(board_->powerGood()); });
    on(hdt_v1_0::ioDbreqSet, [this](const iSetRequest& request) {
        requireEnabled(signals_);
        signals_.setDebugRequest(request.level);
    });
    on(hdt_v1_0::ioDbrdyGet, [this] { return makeRecord<ioDbrdyReply>(bytesOf(signals_.debugReady())); });
    on(hdt_v1_0::ioDbrdySnapshotGet,
       [this] { return makeRecord<ioDbrdySnapshotReply>(bytesOf(signals_.snapshot())); });
    on(hdt_v1_0::ioDbrdySnapshotClear, [this] { signals_.clearSnapshot(); });
}

template <class Request, class Change>
void Hdt::onOptionSet(const TAVOXTranscode::Call<Request>& call, Change change) {
    on(call, [this, change](const Request& request) {
        auto options = signals_.options();
        change(request, options);
        signals_.setOptions(options);
    });
}

void Hdt::serveOptions() {
    using Options = DebugSignals::Options;
    on(hdt_v1_0::optionDbreqOnDbrdyGet,
       [this] { return makeRecord<OptionDbreqOnDbrdyGetReply>(signals_.options().onDebugReady); });
    onOptionSet(hdt_v1_0::optionDbreqOnDbrdySet,
                [](const auto& request, Options& options) { options.onDebugReady = request.enable; });
    on(hdt_v1_0::optionDbreqOnResetGet,
       [this] { return makeRecord<OptionDbreqOnResetReply>(signals_.options().onReset); });
    onOptionSet(hdt_v1_0::optionDbreqOnResetSet,
                [](const auto& request, Options& options) { options.onReset = request.enable; });
    on(hdt_v1_0::optionDbreqPulseWidthGet,
       [this] { return makeRecord<OptionDbreqPulseWidthReply>(signals_.options().pulseWidth); });
    onOptionSet(hdt_v1_0::optionDbreqPulseWidthSet, [](const auto& request, Options& options) {
        if (request.pulseWidth < 0)
            throw Refusal(return_code::badArgument);
        options.pulseWidth = request.pulseWidth;
    });
}

void Hdt::serveTriggers() {
    using Options = DebugSignals::Options;
    on(hdt_v1_1::ioDbreqSourceSnapshotGet,
       [this] { return makeRecord<ioDbreqSourceSnapshotReply>(signals_.source()); });
    on(hdt_v1_1::ioDbreqSourceSnapshotClear, [this] { signals_.clearSource(); });
    on(hdt_v1_1::ioTriggerSet, [this](const ioTriggerSetRequest& request) {
        requireEnabled(signals_);
        signals_.setTrigger(triggerIndex(request.index), request.level);
    });
    on(hdt_v1_1::ioTriggerGet, [this](const ioTriggerGetRequest& request) {
        return makeRecord<ioTriggerGetReply>(signals_.trigger(triggerIndex(request.index)));
    });
    on(hdt_v1_1::optionDbreqOnTriggerGet, [this] {
        const auto& [one, other] = signals_.options().onTrigger;
        return makeRecord<OptionDbreqOnTriggerGetReply>(one.enabled, one.index, other.enabled, other.index);
    });
    onOptionSet(hdt_v1_1::optionDbreqOnTriggerSet, [](const auto& request, Options& options) {
        triggerIndex(request.value1);
        triggerIndex(request.value2);
        options.onTrigger = {{{request.flag1, request.value1}, {request.flag2, request.value2}}};
    });
    on(hdt_v1_1::optionTriggerSetupGet, [this](const OptionTriggerSetupGetRequest& request) {
        const auto& setup = signals_.setup(triggerIndex(request.index));
        return makeRecord<OptionTriggerSetupGetReply>(setup.mode, setup.edge, setup.pulseWidth, setup.count,
                                                      setup.delay, setup.invert, setup.source);
    });
    on(hdt_v1_1::optionTriggerSetupSet, [this](const OptionTriggerSetupSetRequest& request) {
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
    on(hdt_v1_1::optionDbrdyMaskGet,
       [this] { return makeRecord<OptionDbrdyMaskGetReply>(bytesOf(signals_.options().mask)); });
    onOptionSet(hdt_v1_1::optionDbrdyMaskSet,
                [](const auto& request, Options& options) { options.mask = linesOf(request.mask); });
    on(hdt_v1_1::ioDbrdyWait, [this](const ioDbrdyWaitRequest& request, CallContext& call) {
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
