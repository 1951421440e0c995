#include <tavo/simulator/models/jtag_chain.h>

#include <utility>

namespace TAVO::simulator {

namespace {

constexpr unsigned wordLength = 32;
// IEEE 1149.1 fixes the two captured bits next to TDO, so that a chain can be tested.
constexpr std::uint32_t capturedInstruction = 0b01;

} // namespace

Tap::Tap(TapDescription description)
    : description_(std::move(description))
    , instruction_(description_.idcodeInstruction) {}

void Tap::reset() { instruction_ = description_.idcodeInstruction; }

void Tap::load(std::uint32_t value, unsigned length) {
    shifting_.assign(length, false);
    first_ = 0;
    for (unsigned bit = 0; bit < length && bit < wordLength; ++bit)
        shifting_[bit] = (value >> bit & 1u) != 0;
}

std::uint32_t Tap::shifted() const {
    std::uint32_t value = 0;
    for (std::size_t bit = 0; bit < shifting_.size() && bit < wordLength; ++bit)
        value |= std::uint32_t{shifting_[(first_ + bit) % shifting_.size()]} << bit;
    return value;
}

void Tap::capture(bool instructionRegister) {
    if (instructionRegister) {
        load(capturedInstruction, description_.irLength);
    } else if (instruction_ == description_.idcodeInstruction) {
        load(description_.idcode, wordLength);
    } else if (instruction_ == description_.userInstruction) {
        load(user_, wordLength);
    } else if (instruction_ == description_.sampleInstruction) {
        shifting_.assign(description_.boundaryLength, false);
        first_ = 0;
        for (std::size_t cell = 0; cell < shifting_.size(); cell += 2)
            shifting_[cell] = true;
    } else {
        load(0, 1);
    }
}

void Tap::shift(bool input) {
    if (shifting_.empty())
        return;
    shifting_[first_] = input;
    first_ = (first_ + 1) % shifting_.size();
}

void Tap::update(bool instructionRegister) {
    if (instructionRegister)
        instruction_ = shifted();
    else if (instruction_ == description_.userInstruction)
        user_ = shifted();
}

JtagChain::JtagChain(std::vector<TapDescription> taps) {
    for (auto& description : taps)
        taps_.emplace_back(std::move(description));
}

void JtagChain::rise(bool tms, bool tdi) {
    using enum TapState;
    switch (state_) {
    case captureDr:
    case captureIr:
        for (auto& tap : taps_)
            tap.capture(state_ == captureIr);
        break;
    case shiftDr:
    case shiftIr:
        for (auto tap = taps_.rbegin(); tap != taps_.rend(); ++tap) {
            const bool leaving = tap->output();
            tap->shift(tdi);
            tdi = leaving;
        }
        break;
    default:
        break;
    }
    state_ = nextState(state_, tms);
}

void JtagChain::fall() {
    using enum TapState;
    tdo_ = true;
    switch (state_) {
    case testLogicReset:
        for (auto& tap : taps_)
            tap.reset();
        break;
    case shiftDr:
    case shiftIr:
        if (!taps_.empty())
            tdo_ = taps_.front().output();
        break;
    case updateDr:
    case updateIr:
        for (auto& tap : taps_)
            tap.update(state_ == updateIr);
        break;
    default:
        break;
    }
}

bool JtagChain::clock(bool tms, bool tdi) {
    const bool sampled = tdo_;
    rise(tms, tdi);
    fall();
    return sampled;
}

void JtagChain::reset() {
    state_ = TapState::testLogicReset;
    fall();
}

void JtagChain::losePower() {
    reset();
    for (auto& tap : taps_)
        tap.setUser(0);
}

} // namespace TAVO::simulator
