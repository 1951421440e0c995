#include <tavo/simulator/models/jtag_chain.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TAVO::simulator {

namespace {

constexpr unsigned idcodeLength = 32;

} // namespace

Tap::Tap(TapDescription description)
    : description_(std::move(description)) {
    const auto length = description_.irLength;
    if (length < TapDescription::shortestIr || length > TapDescription::longestIr)
        throw std::invalid_argument("an instruction register has 2 to 64 bits, not " +
                                    std::to_string(length));
    auto registers = description_.registers;
    if (description_.idcode)
        registers.insert(registers.begin(), {description_.idcodeInstruction, idcodeLength,
                                             PackedBits::ofNumber(idcodeLength, *description_.idcode)});
    for (auto& described : registers) {
        if (described.length == 0)
            throw std::invalid_argument("a data register has at least one bit");
        described.capture.resize(described.length);
        auto content = described.capture;
        registers_.push_back({std::move(described), std::move(content)});
    }
    reset();
}

const Tap::Register* Tap::selected(std::uint64_t instruction) const {
    if (instruction == description_.bypass())
        return nullptr;
    const auto found = std::ranges::find(registers_, instruction,
                                         [](const auto& one) { return one.description.instruction; });
    return found == registers_.end() ? nullptr : &*found;
}

Tap::Register* Tap::selected(std::uint64_t instruction) {
    return const_cast<Register*>(std::as_const(*this).selected(instruction));
}

PackedBits& Tap::content(std::uint64_t instruction) {
    if (auto* found = selected(instruction))
        return found->content;
    throw std::out_of_range("instruction " + std::to_string(instruction) + " selects BYPASS");
}

void Tap::reset() {
    instruction_ = description_.idcode ? description_.idcodeInstruction : description_.bypass();
}

void Tap::losePower() {
    reset();
    for (auto& one : registers_)
        one.content = one.description.capture;
}

void Tap::capture(bool instructionRegister) {
    if (instructionRegister)
        setShifting(PackedBits::ofNumber(description_.irLength, description_.irCapture));
    else if (const auto* found = selected(instruction_))
        setShifting(found->content);
    else
        setShifting(PackedBits(1));
}

void Tap::shift(bool input) {
    shifting_.set(first_, input);
    first_ = (first_ + 1) % shifting_.size();
}

void Tap::update(bool instructionRegister) {
    if (instructionRegister)
        instruction_ = shifting().number();
    else if (auto* found = selected(instruction_); found && found->description.keeps)
        found->content = shifting();
}

std::size_t Tap::scanLength(bool instructionRegister) const {
    if (instructionRegister)
        return description_.irLength;
    const auto* found = selected(instruction_);
    return found ? found->content.size() : 1;
}

PackedBits Tap::shifting() const {
    if (first_ == 0)
        return shifting_;
    const auto behind = shifting_.size() - first_;
    PackedBits bits(shifting_.size());
    bits.copy(0, shifting_.bytes(), first_, behind);
    bits.copy(behind, shifting_.bytes(), 0, first_);
    return bits;
}

void Tap::setShifting(PackedBits bits) {
    shifting_ = std::move(bits);
    first_ = 0;
}

JtagChain::JtagChain(std::vector<TapDescription> taps) {
    for (auto& description : taps)
        taps_.emplace_back(std::move(description));
}

std::size_t JtagChain::scanLength(bool instructionRegister) const {
    std::size_t length = 0;
    for (const auto& tap : taps_)
        length += tap.scanLength(instructionRegister);
    return length;
}

void JtagChain::rise(bool tms, bool tdi) {
    using enum TapState;
    fallIfHigh();
    isHigh_ = true;
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

void JtagChain::fallIfHigh() {
    if (isHigh_)
        fall();
}

void JtagChain::fall() {
    using enum TapState;
    isHigh_ = false;
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
    fallIfHigh();
    const bool sampled = tdo_;
    rise(tms, tdi);
    fall();
    return sampled;
}

PackedBits JtagChain::shift(std::span<const std::uint8_t> tdi, std::size_t bits) {
    if (bits == 0)
        return {};
    fallIfHigh();
    // All registers together are one queue: what comes out is their old content and then TDI, and the last
    // bits of that stay.
    std::size_t length = 0;
    for (const auto& tap : taps_)
        length += tap.shiftingLength();
    PackedBits held(length);
    std::size_t position = 0;
    for (const auto& tap : taps_) {
        held.copy(position, tap.shifting().bytes(), 0, tap.shiftingLength());
        position += tap.shiftingLength();
    }
    const auto leaving = std::min(bits, length);
    PackedBits captured(bits, taps_.empty());
    captured.copy(0, held.bytes(), 0, leaving);
    if (!taps_.empty())
        captured.copy(leaving, tdi, 0, bits - leaving);
    PackedBits staying(length);
    staying.copy(0, held.bytes(), leaving, length - leaving);
    staying.copy(length - leaving, tdi, bits - leaving, leaving);
    position = 0;
    for (auto& tap : taps_) {
        PackedBits part(tap.shiftingLength());
        part.copy(0, staying.bytes(), position, part.size());
        position += part.size();
        tap.setShifting(std::move(part));
    }
    state_ = nextState(state_, true);
    tdo_ = true;
    return captured;
}

void JtagChain::reset() {
    state_ = TapState::testLogicReset;
    fall();
}

void JtagChain::losePower() {
    reset();
    for (auto& tap : taps_)
        tap.losePower();
}

} // namespace TAVO::simulator
