#include <tavo/jtag/tap_tracker.h>

#include <utility>

namespace TAVO::jtag {

namespace {

using enum TapState;

bool isOneOf(TapState state, TapState dr, TapState ir) { return state == dr || state == ir; }
bool isShift(TapState state) { return isOneOf(state, shiftDr, shiftIr); }
bool isPause(TapState state) { return isOneOf(state, pauseDr, pauseIr); }

Register registerOf(TapState state) { return state >= captureIr ? Register::instruction : Register::data; }
TapState pauseOf(TapState state) { return registerOf(state) == Register::instruction ? pauseIr : pauseDr; }

} // namespace

BitString wantedLevels(const std::vector<TdoRun>& wanted, const std::vector<BitString>& results) {
    BitString levels;
    for (const auto& run : wanted)
        levels.append(run.step ? results.at(*run.step).part(run.first, run.count)
                               : BitString(run.count, true));
    return levels;
}

TapTracker::TapTracker(TapState state, TimeOf timeOf)
    : timeOf_(std::move(timeOf))
    , client_(state)
    , isCaptured_(isPause(state))
    , isParked_(isPause(state))
    , usesPins_(!HWDebug::isResting(state)) {}

void TapTracker::clock(bool tms, bool tdi, bool isRead) {
    if (trst_ == false) {
        if (isRead)
            want({}, 0);
        return;
    }
    if (usesPins_)
        return clockPins(tms, tdi, isRead);
    const auto before = client_;
    client_ = nextState(before, tms);
    if (isShift(before)) {
        // Nothing else becomes a step before these bits do.
        if (isRead)
            want(steps_.size(), bits_.size());
        bits_.append(tdi);
        ++heldBits_;
        return;
    }
    if (isRead)
        want({}, 0);
    if (client_ == before) {
        clocksOfStay_ += before != testLogicReset ? 1 : 0;
        return;
    }
    endStay();
    if (isOneOf(before, captureDr, captureIr))
        isCaptured_ = true;
    if (isOneOf(client_, updateDr, updateIr))
        closeScan();
    if (client_ == testLogicReset || before == testLogicReset)
        steps_.emplace_back(Move{client_});
}

void TapTracker::clockPins(bool tms, bool tdi, bool isRead) {
    const bool isShifting = isShift(client_);
    if (isRead)
        want(isShifting ? std::optional(steps_.size()) : std::nullopt, 0);
    steps_.emplace_back(PinClock{tms, tdi, isRead && isShifting});
    ++heldBits_;
    client_ = nextState(client_, tms);
    if (client_ != runTestIdle)
        return;
    releasePins();
    isCaptured_ = isParked_ = false;
}

void TapTracker::enterPins() {
    if (std::exchange(usesPins_, true))
        return;
    park();
    for (const bool tms : HWDebug::shortestPath(pauseOf(client_), client_))
        steps_.emplace_back(PinClock{tms, true, false});
}

void TapTracker::readTdo() {
    if (!isShift(client_))
        return want({}, 0);
    enterPins();
    want(steps_.size(), 0);
    steps_.emplace_back(ReadTdo{});
}

void TapTracker::setTrst(bool level) {
    if (std::exchange(trst_, level) == level)
        return;
    endStay();
    if (!usesPins_)
        park();
    steps_.emplace_back(Trst{true, level});
    if (level)
        return;
    client_ = testLogicReset;
    isCaptured_ = isParked_ = false;
    // A device that does not look at TRST shall know as well.
    if (!usesPins_)
        steps_.emplace_back(Move{testLogicReset});
}

void TapTracker::letGo() {
    releasePins();
    if (trst_ == false)
        setTrst(true);
}

void TapTracker::releasePins() {
    if (std::exchange(usesPins_, false))
        steps_.emplace_back(ReleasePins{});
}

void TapTracker::want(std::optional<std::size_t> step, std::size_t bit) {
    awaitsPort_ |= step.has_value();
    if (!wanted_.empty()) {
        auto& last = wanted_.back();
        if (last.step == step && (!step || last.first + last.count == bit)) {
            ++last.count;
            return;
        }
    }
    wanted_.push_back({step, bit, 1});
}

void TapTracker::endStay() {
    if (const auto clocks = std::exchange(clocksOfStay_, 0); clocks > 0) {
        park();
        steps_.emplace_back(Idle{timeOf_(clocks), true});
    }
}

void TapTracker::shiftTo(TapState end) {
    steps_.emplace_back(Shift{registerOf(client_), std::exchange(bits_, {}), end, true});
}

void TapTracker::park() {
    if (!isCaptured_)
        return;
    if (bits_.size() > 0)
        shiftTo(pauseOf(client_));
    else if (!isParked_)
        steps_.emplace_back(Move{pauseOf(client_)});
    isParked_ = true;
}

void TapTracker::closeScan() {
    if (bits_.size() > 0) {
        shiftTo(runTestIdle);
    } else {
        // Through Capture first, if nothing was shifted.
        park();
        steps_.emplace_back(Move{runTestIdle});
    }
    isCaptured_ = isParked_ = false;
}

TrackedClocks TapTracker::take() {
    if (!usesPins_) {
        endStay();
        park();
    } else if (isOneOf(client_, updateDr, updateIr)) {
        // The update comes with the falling edge of TCK.
        steps_.emplace_back(ReadTdo{});
    }
    heldBits_ = 0;
    awaitsPort_ = false;
    return {std::exchange(steps_, {}), std::exchange(wanted_, {})};
}

} // namespace TAVO::jtag
