#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/cli/values/bit_string.h>

/// What an unknown JTAG chain (IEEE 1149.1) tells of itself when nothing but BYPASS is loaded.
namespace TAVO::cli {

/// The parts of an IDCODE.
struct Idcode {
    std::uint32_t value = 0;

    unsigned version() const { return value >> 28; }
    unsigned part() const { return value >> 12 & 0xFFFF; }
    /// The bank of the manufacturer's number in JEDEC's list, from 1 on.
    unsigned manufacturerBank() const { return (value >> 8 & 0xF) + 1; }
    /// The manufacturer's number in its bank, without the parity bit.
    unsigned manufacturer() const { return value >> 1 & 0x7F; }

    bool operator==(const Idcode&) const = default;
};

/// The bits to be shifted, in this order: through the data registers right after Test-Logic-Reset, through
/// the instruction registers, and through the data registers again. No answer is needed for the next one.
struct ChainProbes {
    BitString afterReset;
    BitString instruction;
    BitString bypass;
};

/// Enough for chains of 256 TAPs and 4096 bits of instruction. All instructions that it leaves are BYPASS.
ChainProbes chainProbes();

/// Why a chain cannot be surveyed.
class ChainFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ChainSurvey {
    /// One for each TAP, beginning next to TDO; empty for one without an IDCODE.
    std::vector<std::optional<Idcode>> taps;
    /// What all instruction registers together captured.
    BitString instructionCapture;
    /// The lengths of the instruction registers, beginning next to TDO, in each way that fits the capture, of
    /// which every register's part begins with 1, 0. Not all of them when there are very many.
    std::vector<std::vector<std::size_t>> splits;
    bool hasMoreSplits = false;
};

/// @param captured what came back for each of chainProbes().
/// @throws ChainFault when no chain answers, when it is too long, or when its answers contradict each
///         other.
ChainSurvey surveyChain(const ChainProbes& captured);

} // namespace TAVO::cli
