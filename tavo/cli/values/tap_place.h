#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include <tavo/jtag/bit_string.h>
#include <tavo/jtag/step.h>

namespace TAVO::cli {

using jtag::BitString;

using JtagRegister = jtag::Register;

/// One TAP of a chain in which all others are in BYPASS. Adds what they need to a shift, and takes away what
/// they gave.
class TapPlace {
public:
    /// @param lengths of the instruction registers, starting next to TDO. @param tap counts from 0 there.
    /// @throws std::invalid_argument if the chain has no such TAP.
    TapPlace(std::vector<std::size_t> lengths, std::size_t tap);

    /// The bits for the whole chain: BYPASS (all ones) for the instruction registers of the others, one bit
    /// for each of their data registers.
    /// @throws std::invalid_argument if an instruction is not as long as the TAP's register.
    BitString around(JtagRegister target, const BitString& bits) const;
    /// The TAP's own `size` bits of what the whole chain gave.
    BitString inside(JtagRegister target, const BitString& captured, std::size_t size) const;

private:
    /// The bits of the other TAPs that are shifted before, and after, those of this one.
    std::size_t before(JtagRegister target) const;
    std::size_t after(JtagRegister target) const;

    std::vector<std::size_t> lengths_;
    std::size_t tap_;
};

/// Parses lengths of instruction registers, such as "8,5,10".
/// @throws std::invalid_argument
std::vector<std::size_t> parseLengths(std::string_view text);

} // namespace TAVO::cli
