#include <tavo/simulator/models/jtag_port.h>

#include <utility>

#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

namespace {

constexpr std::int32_t mostCount = 1000;

std::size_t bytesFor(std::int32_t bits) { return PackedBits::bytesFor(static_cast<std::size_t>(bits)); }

bool isResting(std::int32_t state) {
    return state >= 0 && state <= static_cast<std::int32_t>(TapState::updateIr) &&
           simulator::isResting(static_cast<TapState>(state));
}

bool accepted(std::int32_t count) { return count >= 0 && count <= mostCount; }

bool accepted(const JtagPort::Expectation& expectation) {
    if (expectation.bits < 0 || expectation.bits > JtagPort::mostExpectedBits)
        return false;
    const auto bytes = bytesFor(expectation.bits);
    return expectation.expected.size() == bytes && expectation.mask.size() == bytes;
}

bool matches(const JtagPort::Expectation& expectation, std::span<const std::uint8_t> captured) {
    for (std::size_t bit = 0; bit < static_cast<std::size_t>(expectation.bits); ++bit)
        if (bitOf(expectation.mask, bit) && bitOf(expectation.expected, bit) != bitOf(captured, bit))
            return false;
    return true;
}

} // namespace

JtagPort::JtagPort(std::shared_ptr<Board> board, std::vector<TapDescription> taps)
    : board_(std::move(board))
    , chain_(std::move(taps)) {}

JtagChain& JtagPort::chain() {
    if (!board_->powered() || board_->powerOnCount() != powerOnCount_)
        chain_.losePower();
    powerOnCount_ = board_->powerOnCount();
    return chain_;
}

bool JtagPort::moves() {
    chain();
    if (!board_->powered())
        return false;
    const bool trst = level(Pin::trst);
    if (std::exchange(trst_, trst) != trst && observer_)
        observer_->trst(chain_.state(), trst);
    if (!trst)
        chain_.reset();
    return trst;
}

void JtagPort::tellClock(bool tms, bool tdi) {
    if (observer_)
        observer_->clock(chain_.state(), tms, tdi, chain_.tdo());
}

void JtagPort::tellEnd() {
    if (observer_)
        observer_->callEnded();
}

void JtagPort::clock(bool tms) {
    tellClock(tms, true);
    chain_.clock(tms, true);
}

void JtagPort::clockTo(TapState target) {
    for (const bool tms : shortestPath(chain_.state(), target))
        clock(tms);
}

void JtagPort::idle(std::int32_t clocks) {
    for (; clocks > 0; --clocks)
        clock(false);
}

PackedBits JtagPort::shiftBits(std::span<const std::uint8_t> data, std::size_t bits) {
    const auto state = chain_.state();
    auto captured = chain_.shift(data, bits);
    if (observer_)
        for (std::size_t bit = 0; bit < bits; ++bit)
            observer_->clock(state, bit + 1 == bits, bitOf(data, bit), captured.at(bit));
    return captured;
}

std::vector<std::uint8_t> JtagPort::shiftOnce(Register target, std::int32_t bits,
                                              std::span<const std::uint8_t> data) {
    const auto& options = this->options(target);
    const auto termination = static_cast<TapState>(options.terminationState);
    if (!moves())
        return PackedBits(static_cast<std::size_t>(bits), true).takeBytes();

    PackedBits captured;
    if (options.preTck > 0) {
        clockTo(TapState::runTestIdle);
        idle(options.preTck);
    }
    if (bits > 0) {
        clockTo(target == Register::instruction ? TapState::shiftIr : TapState::shiftDr);
        captured = shiftBits(data, static_cast<std::size_t>(bits));
    }
    clockTo(termination);
    if (termination == TapState::runTestIdle)
        idle(options.postTck);
    return captured.takeBytes();
}

JtagPort::Outcome JtagPort::shift(Register target, std::int32_t bits, std::span<const std::uint8_t> data) {
    if (!enabled_)
        return {return_code::disabled, {}};
    if (bits < 0 || data.size() != bytesFor(bits))
        return {return_code::badArgument, {}};
    const auto& options = this->options(target);
    const bool compared = bits > 0 && options.expectation.bits == bits;
    const auto rounds = [](const Count& more) { return 1 + (more.enable ? std::int64_t{more.count} : 0); };
    // Registers take time too, to be captured and updated.
    const auto length = chain().scanLength(target == Register::instruction);
    const auto clocks =
        std::int64_t{bits} + options.preTck + options.postTck + static_cast<std::int64_t>(length);
    const auto most = rounds(options.repeat) * (compared ? rounds(options.retry) : 1);
    if (most > 1 && most * clocks > mostClocks)
        return {return_code::badArgument, {}};
    Outcome outcome;
    for (auto round = rounds(options.repeat); round > 0; --round) {
        bool met = false;
        for (auto attempt = rounds(options.retry); !met && attempt > 0; --attempt) {
            outcome.captured = shiftOnce(target, bits, data);
            tellEnd();
            met = !compared || matches(options.expectation, outcome.captured);
        }
        if (!met) {
            outcome.code = return_code::mismatch;
            break;
        }
    }
    return outcome;
}

std::int32_t JtagPort::state() { return static_cast<std::int32_t>(chain().state()); }

std::int32_t JtagPort::moveTo(std::int32_t state) {
    if (!enabled_)
        return return_code::disabled;
    if (!isResting(state))
        return return_code::badArgument;
    if (moves())
        clockTo(static_cast<TapState>(state));
    tellEnd();
    return return_code::done;
}

std::int32_t JtagPort::sleep(bool clocked) {
    if (!enabled_)
        return return_code::disabled;
    // One clock is enough: with TMS 0 it leaves Test-Logic-Reset, and the other resting states never change.
    if (clocked && moves())
        idle(1);
    tellEnd();
    return return_code::done;
}

std::int32_t JtagPort::setOptions(Register target, const ShiftOptions& options) {
    const bool good = accepted(options.expectation) && accepted(options.retry.count) &&
                      accepted(options.repeat.count) && isResting(options.terminationState) &&
                      accepted(options.preTck) && accepted(options.postTck);
    if (good)
        options_[static_cast<std::size_t>(target)] = options;
    return return_code::badUnless(good);
}

bool JtagPort::setFrequency(std::int32_t frequency) {
    if (frequency < slowest || frequency > fastest)
        return false;
    // What is told, without its fraction, is not above it either.
    divider_ = static_cast<std::uint32_t>(fastest / (std::int64_t{frequency} + 1) + 1);
    return true;
}

bool JtagPort::level(Pin pin) const {
    const auto drive = this->pin(pin);
    return !drive.driven || drive.level;
}

std::int32_t JtagPort::setPin(Pin pin, Drive drive) {
    if (!enabled_)
        return return_code::disabled;
    const bool before = level(pin);
    pins_[static_cast<std::size_t>(pin)] = drive;
    if (moves() && pin == Pin::tck && level(Pin::tck) != before) {
        if (before) {
            chain_.fall();
        } else {
            tellClock(level(Pin::tms), level(Pin::tdi));
            chain_.rise(level(Pin::tms), level(Pin::tdi));
        }
    }
    tellEnd();
    return return_code::done;
}

bool JtagPort::tdo() { return chain().tdo(); }

void JtagPort::reset() {
    for (auto& options : options_)
        options = {};
    for (auto& pin : pins_)
        pin = {};
    divider_ = fastest / defaultFrequency;
    enabled_ = true;
}

} // namespace TAVO::simulator
