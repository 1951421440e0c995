#include <tavo/simulator/models/debug_signals.h>

#include <algorithm>
#include <utility>

namespace TAVO::simulator {

namespace {

constexpr std::uint64_t nanosecondsPerMicrosecond = 1000;

} // namespace

DebugSignals::DebugSignals(std::shared_ptr<Board> board)
    : BoardObserver(std::move(board)) {
    DebugSignals::boardChanged();
}

DebugSignals::~DebugSignals() = default;

std::uint64_t DebugSignals::present() {
    board().settle();
    const auto now = board().now();
    settle(now);
    return now;
}

std::optional<std::uint64_t> DebugSignals::nextEvent() const {
    auto next = resetRelease_;
    const auto earlier = [&](const std::optional<std::uint64_t>& time) {
        if (time && (!next || *time < *next))
            next = time;
    };
    earlier(requestEnd_);
    for (const auto& time : readyAt_)
        earlier(time);
    return next;
}

void DebugSignals::settle(std::uint64_t time) {
    for (auto next = nextEvent(); next && *next <= time; next = nextEvent())
        happen(*next);
}

void DebugSignals::happen(std::uint64_t time) {
    if (resetRelease_ == time) {
        resetRelease_.reset();
        running_ = true;
        if (options_.onReset)
            assertRequest(time, Source::reset);
        else if (request_)
            haltRunningCores(time);
    }
    for (std::size_t core = 0; core < coreCount; ++core)
        if (readyAt_[core] == time)
            becomeReady(core, time);
    if (requestEnd_ == time) {
        requestEnd_.reset();
        request_ = false;
    }
}

void DebugSignals::boardChanged() {
    ready_ = {};
    readyAt_ = {};
    running_ = false;
    resetRelease_.reset();
    if (const auto boot = board().bootTime())
        resetRelease_ = *boot + Board::resetDelay;
}

void DebugSignals::assertRequest(std::uint64_t time, Source source) {
    if (source_ == Source::none)
        source_ = source;
    request_ = true;
    requestEnd_.reset();
    if (options_.pulseWidth > 0)
        requestEnd_ =
            time + (static_cast<std::uint64_t>(options_.pulseWidth) + nanosecondsPerMicrosecond - 1) /
                       nanosecondsPerMicrosecond;
    haltRunningCores(time);
}

void DebugSignals::haltRunningCores(std::uint64_t time) {
    if (!running_)
        return;
    for (std::size_t core = 0; core < coreCount; ++core)
        if (options_.mask[core] && !ready_[core] && !readyAt_[core])
            readyAt_[core] = time + haltDelay;
}

void DebugSignals::becomeReady(std::size_t core, std::uint64_t time) {
    readyAt_[core].reset();
    ready_[core] = true;
    snapshot_[core] = true;
    if (options_.onDebugReady && !request_)
        assertRequest(time, Source::debugReady);
}

bool DebugSignals::debugRequest() {
    present();
    return request_;
}

void DebugSignals::setDebugRequest(bool level) {
    const auto now = present();
    if (level) {
        assertRequest(now, Source::command);
        return;
    }
    request_ = false;
    requestEnd_.reset();
    ready_ = {};
    readyAt_ = {};
}

DebugSignals::Lines DebugSignals::debugReady() {
    present();
    return ready_;
}

DebugSignals::Lines DebugSignals::snapshot() {
    present();
    return snapshot_;
}

void DebugSignals::clearSnapshot() {
    present();
    snapshot_ = ready_;
}

DebugSignals::Source DebugSignals::source() {
    present();
    return source_;
}

void DebugSignals::clearSource() {
    present();
    source_ = Source::none;
}

bool DebugSignals::waitForDebugReady(const Lines& lines, std::uint64_t timeout,
                                     const std::function<void(std::uint64_t)>& pass) {
    const auto isReady = [&] {
        const auto ready = debugReady();
        for (std::size_t core = 0; core < coreCount; ++core)
            if (lines[core] && ready[core])
                return true;
        return false;
    };
    while (!isReady()) {
        if (timeout == 0)
            return false;
        const auto now = present();
        const auto next = nextEvent();
        const auto step = next ? std::min(timeout, *next - now) : timeout;
        pass(step);
        timeout -= step;
    }
    return true;
}

void DebugSignals::setOptions(const Options& options) {
    present();
    options_ = options;
    for (std::size_t core = 0; core < coreCount; ++core)
        if (!options_.mask[core]) {
            ready_[core] = false;
            readyAt_[core].reset();
        }
}

bool DebugSignals::followed(const TriggerSetup& setup) {
    switch (setup.source) {
    case 1:
        return std::find(ready_.begin(), ready_.end(), true) != ready_.end();
    case 2:
        return request_;
    case 3:
        return !running_;
    default:
        return false;
    }
}

bool DebugSignals::trigger(std::size_t index) {
    present();
    const auto& setup = setups_.at(index);
    const bool isOutput = setup.mode == 2 && setup.source != 0;
    const bool level = isOutput ? followed(setup) : triggers_[index];
    return level != (setup.invert != 0);
}

void DebugSignals::setTrigger(std::size_t index, bool level) {
    const auto now = present();
    const auto& setup = setups_.at(index);
    const bool before = std::exchange(triggers_[index], level);
    if (setup.mode != 1 || before == level)
        return;
    const bool rises = level != (setup.invert != 0);
    if (setup.edge != 2 && rises != (setup.edge == 0))
        return;
    for (const auto& option : options_.onTrigger)
        if (option.enabled && option.index == static_cast<std::int32_t>(index))
            assertRequest(now, Source::trigger);
}

void DebugSignals::haltCore(std::size_t core) {
    const auto now = present();
    if (running_ && options_.mask.at(core) && !ready_[core])
        becomeReady(core, now);
}

void DebugSignals::reset() {
    setDebugRequest(false);
    enabled_ = true;
    options_ = {};
    setups_ = {};
    triggers_ = {};
    snapshot_ = {};
    source_ = Source::none;
}

} // namespace TAVO::simulator
