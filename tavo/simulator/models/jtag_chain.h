#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/tap_state.h>

namespace TAVO::simulator {

/// The properties of one test access port. Instructions are numbers of `irLength` bits. All ones is BYPASS,
/// as the standard requires; so is every instruction not listed here.
struct TapDescription {
    std::string name;
    unsigned irLength = 0;
    /// Bit 0 is 1, as the standard requires.
    std::uint32_t idcode = 0;
    std::uint32_t idcodeInstruction = 0;
    std::uint32_t sampleInstruction = 0;
    /// Cells of the boundary register, which captures an alternating pattern starting with 1.
    unsigned boundaryLength = 0;
    /// Selects a 32-bit register that keeps its value.
    std::uint32_t userInstruction = 0;
};

/// The registers of one test access port (IEEE 1149.1).
class TAVO_SIMULATOR_API Tap {
public:
    explicit Tap(TapDescription description);

    const TapDescription& description() const noexcept { return description_; }
    std::uint32_t instruction() const noexcept { return instruction_; }
    /// The value of the user register.
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
    // The shift register as a ring; the bit next to TDO is at first_.
    std::vector<bool> shifting_;
    std::size_t first_ = 0;
};

/// Test access ports in series with a common clock. The first one is next to TDO.
///
/// TMS and TDI are sampled on the rising edge of TCK. TDO changes on the falling edge and is pulled up while
/// no register shifts.
class TAVO_SIMULATOR_API JtagChain {
public:
    explicit JtagChain(std::vector<TapDescription> taps);

    TapState state() const noexcept { return state_; }
    bool tdo() const noexcept { return tdo_; }
    std::vector<Tap>& taps() noexcept { return taps_; }

    void rise(bool tms, bool tdi);
    void fall();
    /// One full clock. Returns TDO at the rising edge.
    bool clock(bool tms, bool tdi);
    /// Enters Test-Logic-Reset at once, like TRST.
    void reset();
    /// Like reset(), and clears the user registers.
    void losePower();

private:
    std::vector<Tap> taps_;
    TapState state_ = TapState::testLogicReset;
    bool tdo_ = true;
};

} // namespace TAVO::simulator
