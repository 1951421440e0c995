#include <tavo/jtag/svf/planner.h>

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace TAVO::jtag::svf {

namespace {

using enum TapState;
using HWDebug::nextState, HWDebug::shortestPath;

/// What a call takes besides its bits, roughly.
constexpr std::size_t bytesOfCall = 64;
constexpr std::size_t callsOfShift = 2;
constexpr std::size_t callsOfPoll = 4;
constexpr std::size_t callsOfClock = 4;

TapState pauseOf(Register target) { return target == Register::instruction ? pauseIr : pauseDr; }

/// From a resting state along Update and Capture, or one clock, back to it.
std::vector<bool> pathBack(TapState state) {
    if (state == testLogicReset)
        return {true};
    if (state == pauseDr)
        return {true, true, true, false, true, false};
    return {true, true, true, true, false, true, false};
}

void put(BitString& all, const BitString* bits, std::size_t length, bool otherwise) {
    all.append(bits != nullptr ? *bits : BitString(length, otherwise));
}

} // namespace

Planner::Planner(Parser& parser, PlanOptions options, TimeOf timeOf)
    : parser_(parser)
    , options_(std::move(options))
    , timeOf_(std::move(timeOf)) {}

std::optional<Batch> Planner::next() {
    Batch batch;
    bytes_ = 0;
    while (true) {
        waitOn(batch);
        if (!pending_)
            pending_ = parser_.next();
        if (!pending_ || afterWait_ || isFull(batch) || stopsBefore(*pending_, batch))
            break;
        options_.checkpoint();
        const auto statement = std::move(*pending_);
        pending_.reset();
        line_ = statement.line;
        if (batch.statements++ == 0)
            batch.firstLine = line_;
        batch.lastLine = line_;
        std::visit([&](const auto& what) { take(what, batch); }, statement.what);
        if (batch.frequency)
            break;
    }
    if (batch.statements == 0 && batch.steps.empty())
        return std::nullopt;
    if (batch.firstLine == 0)
        batch.firstLine = batch.lastLine = line_;
    return batch;
}

bool Planner::isFull(const Batch& batch) const {
    return bytes_ >= mostBytes || (!options_.isMeasured && batch.waits >= longestWait);
}

bool Planner::compares(const ScanData& data) const { return options_.compares && data.isCompared; }

bool Planner::isChecked(const Scan& scan) const {
    const auto& more = around(scan.target);
    return compares(scan.data) || compares(more.header.data) || compares(more.trailer.data);
}

bool Planner::stopsBefore(const Statement& statement, const Batch& batch) const {
    // What sends nothing stops nothing.
    if (std::holds_alternative<EndState>(statement.what) || std::holds_alternative<Surround>(statement.what))
        return false;
    if (std::holds_alternative<Frequency>(statement.what))
        return !batch.steps.empty();
    if (options_.stopAt == StopAt::batch)
        return batch.checks.size() >= checksPerBatch;
    if (options_.stopAt == StopAt::end || batch.checks.empty())
        return false;
    const auto* scan = std::get_if<Scan>(&statement.what);
    return scan == nullptr || !isChecked(*scan);
}

void Planner::add(Step step, std::size_t calls, Batch& batch) {
    if (!std::exchange(hasBegun_, true))
        batch.steps.emplace_back(Move{testLogicReset});
    batch.steps.push_back(std::move(step));
    bytes_ += calls * bytesOfCall;
}

void Planner::moveTo(TapState state, Batch& batch) {
    if (std::exchange(state_, state) != state)
        add(Move{state}, 1, batch);
}

void Planner::clock(const std::vector<bool>& tms, Batch& batch) {
    for (const bool level : tms) {
        if (!options_.isMeasured)
            add(PinClock{.tms = level}, callsOfClock, batch);
        state_ = nextState(state_, level);
    }
    add(ReleasePins{}, callsOfClock, batch);
}

void Planner::waitOn(Batch& batch) {
    for (const bool isClocked : {true, false}) {
        auto& left = isClocked ? clocked_ : still_;
        const auto now =
            options_.isMeasured ? left : std::min(left, longestWait - std::min(batch.waits, longestWait));
        if (now.count() == 0)
            continue;
        add(Idle{now, isClocked}, 1, batch);
        batch.waits += now;
        left -= now;
    }
    if (afterWait_ && clocked_.count() == 0 && still_.count() == 0) {
        moveTo(*afterWait_, batch);
        afterWait_.reset();
    }
}

void Planner::take(const EndState& end, Batch&) { ends_.of(end.target) = end.state; }

void Planner::take(const Frequency& frequency, Batch& batch) { batch.frequency = frequency; }

void Planner::take(const Surround& surround, Batch&) {
    auto& around = this->around(surround.target);
    (surround.isHeader ? around.header : around.trailer) = {line_, 0, surround.data};
}

void Planner::take(const Scan& scan, Batch& batch) {
    const auto& more = around(scan.target);
    const auto headerLength = more.header.data.length;
    const auto total = std::uint64_t{headerLength} + scan.data.length + more.trailer.data.length;
    if (total > Parser::mostBits)
        parser_.refuse(line_, fmt::format("a scan of {} bits, with what stands around it, is longer than {}",
                                          total, Parser::mostBits));
    const auto length = static_cast<std::size_t>(total);
    const auto end = ends_.of(scan.target);
    const Check::Part parts[] = {{more.header.line, 0, more.header.data},
                                 {line_, headerLength, scan.data},
                                 {more.trailer.line, headerLength + scan.data.length, more.trailer.data}};
    Shift shift{.target = scan.target, .bits = {}, .end = end};
    Check check{.step = 0, .line = line_, .parts = {}};
    for (const auto& part : parts) {
        if (!options_.isMeasured && part.data.length > 0)
            put(shift.bits, part.data.tdi.get(), part.data.length, false);
        if (compares(part.data))
            check.parts.push_back(part);
    }
    shift.isRead = !check.parts.empty();
    // Retried, a scan that pauses would go on instead of beginning anew, and one that ends in a reset would
    // go through other registers.
    const bool isWhole =
        state_ != pauseOf(scan.target) && end != pauseOf(scan.target) && end != TapState::testLogicReset;
    if (shift.isRead && options_.retries > 0 && isWhole && !options_.isMeasured)
        shift.poll = pollOf(parts);
    add(std::move(shift), callsOfShift + (check.parts.empty() ? 0 : callsOfPoll), batch);
    bytes_ += 2 * BitString::bytesFor(length);
    if (!check.parts.empty()) {
        check.step = batch.steps.size() - 1;
        batch.checks.push_back(std::move(check));
    }
    ++batch.scans;
    batch.bits += length;
    state_ = end;
}

Poll Planner::pollOf(std::span<const Check::Part> parts) const {
    Poll poll{.expected = {}, .mask = {}, .retries = options_.retries};
    for (const auto& part : parts) {
        const bool isCompared = compares(part.data);
        put(poll.expected, part.data.tdo.get(), part.data.length, false);
        put(poll.mask, isCompared ? part.data.mask.get() : nullptr, part.data.length, isCompared);
    }
    return poll;
}

void Planner::take(const RunTest& run, Batch& batch) {
    if (run.state)
        runState_ = runEnd_ = *run.state;
    if (run.end)
        runEnd_ = *run.end;
    moveTo(runState_, batch);
    if (runState_ == testLogicReset) {
        if (run.clocks > mostResetClocks)
            parser_.refuse(line_, fmt::format("RUNTEST: {} clocks in RESET are more than {}", run.clocks,
                                              mostResetClocks));
        if (run.clocks > 0)
            clock(std::vector<bool>(static_cast<std::size_t>(run.clocks), true), batch);
    } else {
        clocked_ = timeOf_(run.clocks);
        if (clocked_ > mostClocked)
            parser_.refuse(line_, fmt::format("RUNTEST: {} clocks take more than a day", run.clocks));
    }
    still_ = run.time;
    afterWait_ = runEnd_;
}

void Planner::take(const StatePath& path, Batch& batch) {
    const auto last = path.states.back();
    if (path.states.size() == 1) {
        if (last != state_)
            moveTo(last, batch);
        else if (last == runTestIdle)
            add(Idle{timeOf_(1), true}, 1, batch);
        else
            clock(pathBack(last), batch);
        return;
    }
    std::vector<bool> tms;
    auto from = state_;
    for (const auto to : path.states) {
        if (nextState(from, false) != to && nextState(from, true) != to)
            parser_.refuse(
                line_, fmt::format("STATE: no clock leads from {} to {}", stateName(from), stateName(to)));
        tms.push_back(nextState(from, true) == to);
        from = to;
    }
    if (last != state_ && tms == shortestPath(state_, last))
        moveTo(last, batch);
    else
        clock(tms, batch);
}

void Planner::take(const TestReset& reset, Batch& batch) {
    using enum TestReset::Mode;
    if (reset.mode == absent)
        return;
    const bool isOn = reset.mode == on;
    add(Trst{.isDriven = reset.mode != highImpedance, .level = !isOn}, 1, batch);
    // Whatever the controllers were told meanwhile, TRST has held them there.
    if (std::exchange(isTrstOn_, isOn) || isOn) {
        state_ = testLogicReset;
        add(Move{testLogicReset}, 1, batch);
    }
}

} // namespace TAVO::jtag::svf
