#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <tavo/jtag/step.h>

namespace jtag_test {

/// A chain of three TAPs, written down from the standard alone: its table of states and its registers are its
/// own. Tells everything that its registers do.
class ChainModel {
public:
    /// "capture", "update" or "reset" of all registers, with the states' numbers below and the values.
    struct Event {
        unsigned state = 0;
        std::uint64_t value = 0;
        bool operator==(const Event&) const = default;
    };

    // Rows of the table: the next state for TMS 0 and 1.
    enum : unsigned { TLR, RTI, SDR, CDR, SHD, E1D, PDR, E2D, UDR, SIR, CIR, SHI, E1I, PIR, E2I, UIR };

    unsigned state() const { return state_; }
    bool isShifting() const { return state_ == SHD || state_ == SHI; }
    /// TDO after the last falling edge.
    bool tdo() const { return !isShifting() || (ring_ >> 0 & 1) != 0; }

    /// TCK up and down. Returns TDO at the rising edge.
    bool clock(bool tms, bool tdi) {
        static constexpr unsigned next[16][2]{
            {RTI, TLR}, {RTI, SDR}, {CDR, SIR}, {SHD, E1D}, {SHD, E1D}, {PDR, UDR}, {PDR, E2D}, {SHD, UDR},
            {RTI, SDR}, {CIR, TLR}, {SHI, E1I}, {SHI, E1I}, {PIR, UIR}, {PIR, E2I}, {SHI, UIR}, {RTI, SDR}};
        const bool sampled = tdo();
        if (state_ == CDR || state_ == CIR) {
            length_ = state_ == CIR ? irLength : drLength();
            ring_ = state_ == CIR ? capturedIr : drValue();
            events.push_back({state_, ring_});
        } else if (isShifting()) {
            ring_ = ring_ >> 1 | std::uint64_t{tdi} << (length_ - 1);
            ++shiftedBits;
        } else if (state_ == RTI) {
            ++idleClocks;
        }
        const auto before = std::exchange(state_, next[state_][tms ? 1 : 0]);
        if (state_ == UDR || state_ == UIR) {
            events.push_back({state_, ring_});
            if (state_ == UIR)
                instruction = ring_;
            else if (instruction == userInstruction)
                user = ring_;
        } else if (state_ == TLR) {
            reset(before != TLR);
        }
        return sampled;
    }

    /// TRST.
    void reset(bool isTold = true) {
        state_ = TLR;
        instruction = resetInstruction;
        if (isTold)
            events.push_back({TLR, 0});
    }

    static constexpr std::uint64_t userInstruction = 0x0B;
    std::uint64_t instruction = resetInstruction;
    std::uint64_t user = 0;
    std::vector<Event> events;
    std::uint64_t shiftedBits = 0;
    std::uint64_t idleClocks = 0;

private:
    static constexpr std::uint64_t resetInstruction = 0x06;
    static constexpr std::uint64_t capturedIr = 0b10001;
    static constexpr unsigned irLength = 5;

    unsigned drLength() const {
        return instruction == userInstruction ? 37u : instruction % 2 != 0 ? 3u : 32u;
    }
    std::uint64_t drValue() const {
        return instruction == userInstruction ? user : instruction % 2 != 0 ? 0u : 0x1A2B3C4Du;
    }

    unsigned state_ = TLR;
    std::uint64_t ring_ = 0;
    unsigned length_ = 1;
};

/// A port that makes its steps clocks of the model, by paths of its own.
class ModelPort {
public:
    explicit ModelPort(ChainModel& chain)
        : chain_(chain) {}

    std::vector<TAVO::jtag::BitString> run(const TAVO::jtag::Steps& steps) {
        std::vector<TAVO::jtag::BitString> results;
        for (const auto& step : steps)
            results.push_back(std::visit([this](const auto& kind) { return apply(kind); }, step));
        return results;
    }
    bool usesPins() const { return usesPins_; }

private:
    using BitString = TAVO::jtag::BitString;

    void follow(std::string_view path) {
        for (const char tms : path)
            chain_.clock(tms == '1', true);
    }

    /// From a resting state to another, TMS by TMS.
    void move(unsigned to) {
        using M = ChainModel;
        const auto from = chain_.state();
        if (from == to)
            return;
        if (from == M::PDR || from == M::PIR)
            follow("11"); // Exit2, Update
        else if (from == M::TLR)
            follow("0");
        if (to == M::RTI && from != M::TLR)
            follow("0");
        else if (to == M::TLR)
            follow("111");
        else if (to == M::PDR)
            follow("1010");
        else if (to == M::PIR)
            follow("11010");
    }

    static unsigned stateOf(TAVO::jtag::TapState resting) {
        using enum TAVO::jtag::TapState;
        return resting == testLogicReset ? ChainModel::TLR
               : resting == pauseDr      ? ChainModel::PDR
               : resting == pauseIr      ? ChainModel::PIR
                                         : ChainModel::RTI;
    }

    BitString apply(const TAVO::jtag::Shift& shift) {
        using M = ChainModel;
        const bool isIr = shift.target == TAVO::jtag::Register::instruction;
        const auto pause = isIr ? M::PIR : M::PDR;
        if (chain_.state() == pause) {
            follow("10");
        } else {
            if (chain_.state() == M::PDR || chain_.state() == M::PIR)
                follow("11");
            else if (chain_.state() == M::TLR)
                follow("0");
            follow(isIr ? "1100" : "100");
        }
        BitString captured;
        for (std::size_t bit = 0; bit < shift.bits.size(); ++bit)
            captured.append(chain_.clock(bit + 1 == shift.bits.size(), shift.bits.at(bit)));
        follow(stateOf(shift.end) == pause ? "0" : "10");
        return captured;
    }
    BitString apply(const TAVO::jtag::Move& step) {
        move(stateOf(step.to));
        return {};
    }
    /// A microsecond is a clock.
    BitString apply(const TAVO::jtag::Idle& idle) {
        for (auto left = idle.duration.count(); left > 0; --left)
            chain_.clock(false, true);
        return {};
    }
    BitString apply(const TAVO::jtag::Trst& trst) {
        if (!trst.level)
            chain_.reset();
        return {};
    }
    BitString apply(const TAVO::jtag::PinClock& pins) {
        usesPins_ = true;
        return {1, chain_.clock(pins.tms, pins.tdi)};
    }
    BitString apply(const TAVO::jtag::ReleasePins&) {
        usesPins_ = false;
        return {};
    }
    BitString apply(const TAVO::jtag::ReadTdo&) { return {1, chain_.tdo()}; }

    ChainModel& chain_;
    bool usesPins_ = false;
};

} // namespace jtag_test
