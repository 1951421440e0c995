#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/tap_state.h>

namespace TAVO::simulator {

/// What distinguishes one test access port of a chain from another. Instructions are numbers of `irLength`
/// bits; all ones is BYPASS, as the standard demands, and so is every instruction that is not named here.
struct TapDescription {
    std::string name;
    unsigned irLength = 0;
    /// Bit 0 is 1, as the standard demands.
    std::uint32_t idcode = 0;
    std::uint32_t idcodeInstruction = 0;
    std::uint32_t sampleInstruction = 0;
    /// Cells of the boundary register; they capture an alternating pattern that begins with 1.
    unsigned boundaryLength = 0;
    /// Selects a register of 32 bits that keeps what is written to it.
    std::uint32_t userInstruction = 0;
};

/// The registers of one test access port (IEEE 1149.1).
class TAVO_SIMULATOR_API Tap {
public:
    explicit Tap(TapDescription description);

    const TapDescription& description() const noexcept { return description_; }
    std::uint32_t instruction() const noexcept { return instruction_; }
    /// What the user register keeps.
    std::uint32_t user() const noexcept { return user_; }
    void setUser(std::uint32_t value) noexcept { user_ = value; }

    /// Selects IDCODE, as Test-Logic-Reset does.
    void reset();
    void capture(bool instructionRegister);
    /// The bit next to TDO.
    bool output() const noexcept { return shifting_.empty() || shifting_[first_]; }
    /// Takes a bit from TDI; the bit next to TDO leaves.
    void shift(bool input);
    void update(bool instructionRegister);

private:
    void load(std::uint32_t value, unsigned length);
    std::uint32_t shifted() const;

    TapDescription description_;
    std::uint32_t instruction_;
    std::uint32_t user_ = 0;
    // The bits on their way, a ring: the one next to TDO is at first_.
    std::vector<bool> shifting_;
    std::size_t first_ = 0;
};

/// Test access ports in series, clocked together. The first one is next to TDO.
///
/// TMS and TDI are taken at the rising edge of TCK, TDO changes at the falling edge and is pulled up to 1
/// where no register is shifted.
class TAVO_SIMULATOR_API JtagChain {
public:
    explicit JtagChain(std::vector<TapDescription> taps);

    TapState state() const noexcept { return state_; }
    bool tdo() const noexcept { return tdo_; }
    std::vector<Tap>& taps() noexcept { return taps_; }

    void rise(bool tms, bool tdi);
    void fall();
    /// A whole clock. Returns TDO as it was at the rising edge.
    bool clock(bool tms, bool tdi);
    /// Test-Logic-Reset at once, as by TRST.
    void reset();
    /// As reset(), and the user registers are cleared.
    void losePower();

private:
    std::vector<Tap> taps_;
    TapState state_ = TapState::testLogicReset;
    bool tdo_ = true;
};

} // namespace TAVO::simulator
