#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/packed_bits.h>
#include <tavo/simulator/models/tap_state.h>

namespace TAVO::simulator {

/// A data register of a test access port, from TDI to TDO.
struct TapRegister {
    /// The instruction that selects it.
    std::uint64_t instruction = 0;
    /// In bits, at least 1. A longer shift pushes the bits that went in first out at TDO.
    std::size_t length = 0;
    /// What Capture-DR loads; missing bits are 0.
    PackedBits capture = {};
    /// Captures what Update-DR wrote last, and `capture` only after power-on.
    bool keeps = false;
};

/// The properties of one test access port. Instructions are numbers of `irLength` bits. All ones is BYPASS,
/// as the standard requires; so is every instruction not listed here.
struct TapDescription {
    static constexpr unsigned shortestIr = 2;
    static constexpr unsigned longestIr = 64;

    std::string name = {};
    unsigned irLength = 0;
    /// Bit 0 is 1, as the standard requires. Without an identification Test-Logic-Reset selects BYPASS.
    std::optional<std::uint32_t> idcode = {};
    std::uint64_t idcodeInstruction = 0;
    /// What Capture-IR loads. The standard fixes the two bits next to TDO, so that a chain can be tested.
    std::uint64_t irCapture = 0b01;
    std::vector<TapRegister> registers = {};

    /// All ones.
    std::uint64_t bypass() const { return ~std::uint64_t{0} >> (longestIr - irLength); }
};

/// The registers of one test access port (IEEE 1149.1).
class TAVO_SIMULATOR_API Tap {
public:
    /// @throws std::invalid_argument for an instruction register of another length than from
    ///         TapDescription::shortestIr to longestIr, or a data register without bits.
    explicit Tap(TapDescription description);

    const TapDescription& description() const noexcept { return description_; }
    std::uint64_t instruction() const noexcept { return instruction_; }
    /// What the register that this instruction selects captures next. May be changed, but not its size.
    /// @throws std::out_of_range if the instruction selects BYPASS.
    PackedBits& content(std::uint64_t instruction);

    /// Selects IDCODE, as Test-Logic-Reset does.
    void reset();
    /// Like reset(), and forgets what registers keep.
    void losePower();
    void capture(bool instructionRegister);
    /// The bit next to TDO.
    bool output() const { return shifting_.at(first_); }
    /// Takes a bit from TDI; the bit next to TDO leaves.
    void shift(bool input);
    void update(bool instructionRegister);

    /// Bits of the register that the next scan goes through.
    std::size_t scanLength(bool instructionRegister) const;
    /// Bits of the register that shifts now.
    std::size_t shiftingLength() const noexcept { return shifting_.size(); }
    /// What is in it, the bit next to TDO first.
    PackedBits shifting() const;
    /// @param bits shiftingLength() of them.
    void setShifting(PackedBits bits);

private:
    struct Register {
        TapRegister description;
        // What it captures next.
        PackedBits content;
    };
    /// Null for BYPASS.
    const Register* selected(std::uint64_t instruction) const;
    Register* selected(std::uint64_t instruction);

    TapDescription description_;
    std::uint64_t instruction_ = 0;
    std::vector<Register> registers_;
    // The shift register as a ring; the bit next to TDO is at first_.
    PackedBits shifting_{1};
    std::size_t first_ = 0;
};

/// Test access ports in series with a common clock. The first one is next to TDO.
///
/// TMS and TDI are sampled on the rising edge of TCK. TDO changes on the falling edge and is pulled up while
/// no register shifts.
class TAVO_SIMULATOR_API JtagChain {
public:
    /// @throws std::invalid_argument as Tap.
    explicit JtagChain(std::vector<TapDescription> taps);

    TapState state() const noexcept { return state_; }
    bool tdo() const noexcept { return tdo_; }
    std::vector<Tap>& taps() noexcept { return taps_; }
    /// Bits of the registers that the next scan goes through.
    std::size_t scanLength(bool instructionRegister) const;

    void rise(bool tms, bool tdi);
    void fall();
    /// One full clock. Returns TDO at the rising edge.
    bool clock(bool tms, bool tdi);
    /// As many clocks in Shift-DR or Shift-IR, where the chain must be, with TMS low until the last, which
    /// leaves for Exit1. The same as so many clock(), but takes time for bytes instead of bits.
    /// @param tdi at least as many bits, packed.
    /// @return TDO at the rising edges.
    PackedBits shift(std::span<const std::uint8_t> tdi, std::size_t bits);
    /// Enters Test-Logic-Reset at once, like TRST.
    void reset();
    /// Like reset(), and forgets what registers keep.
    void losePower();

private:
    /// What pins left undone.
    void fallIfHigh();

    std::vector<Tap> taps_;
    TapState state_ = TapState::testLogicReset;
    bool tdo_ = true;
    bool isHigh_ = false; ///< TCK
};

} // namespace TAVO::simulator
