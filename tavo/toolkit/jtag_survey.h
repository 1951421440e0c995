#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <tavo/jtag/bit_string.h>
#include <tavo/toolkit/errors.h>

/// Examines an unknown JTAG chain (IEEE 1149.1) without loading any instruction but BYPASS.
namespace TAVO::toolkit {

using jtag::BitString;

/// The parts of an IDCODE.
struct Idcode {
    std::uint32_t value = 0;

    unsigned version() const { return value >> 28; }
    unsigned part() const { return value >> 12 & 0xFFFF; }
    /// The manufacturer's bank in the JEDEC list, counted from 1.
    unsigned manufacturerBank() const { return (value >> 8 & 0xF) + 1; }
    /// The manufacturer's number in its bank, without the parity bit.
    unsigned manufacturer() const { return value >> 1 & 0x7F; }

    bool operator==(const Idcode&) const = default;
};

/// The bits to shift, in this order: through the data registers right after Test-Logic-Reset, through the
/// instruction registers, and through the data registers again. None depends on an earlier answer.
struct ChainProbes {
    BitString afterReset;
    BitString instruction;
    BitString bypass;
};

/// Enough for chains of 256 TAPs and 4096 instruction bits. Leaves BYPASS in every instruction register.
ChainProbes chainProbes();

/// Why a chain cannot be surveyed.
class ChainFault : public Fault {
public:
    using Fault::Fault;
};

struct ChainSurvey {
    /// One per TAP, starting next to TDO; empty for a TAP without IDCODE.
    std::vector<std::optional<Idcode>> taps;
    /// The captured bits of all instruction registers.
    BitString instructionCapture;
    /// Every set of instruction register lengths that fits the capture, starting next to TDO. Each register's
    /// part of the capture starts with 1, 0. Incomplete if there are very many.
    std::vector<std::vector<std::size_t>> splits;
    bool hasMoreSplits = false;
};

/// @param captured the bits that came back for each of chainProbes().
/// @throws ChainFault if no chain answers, if it is too long, or if its answers contradict each other.
ChainSurvey surveyChain(const ChainProbes& captured);

} // namespace TAVO::toolkit
