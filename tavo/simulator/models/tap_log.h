#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/packed_bits.h>
#include <tavo/simulator/models/tap_observer.h>

namespace TAVO::simulator {

/// Tells what arrives at a chain in lines: `NAME ir|dr BITS TDI TDO` when a scan reaches Update, and
/// `NAME reset` when Test-Logic-Reset is entered.
///
/// A scan is everything from Capture to Update, however often it pauses. TDI and TDO are hexadecimal numbers
/// of (BITS+3)/4 digits, whose lowest bit was shifted first. A scan without bits has no line, nor has one
/// that TRST or the loss of power ends.
class TAVO_SIMULATOR_API TapLog : public TapObserver {
public:
    using Sink = std::function<void(std::string_view)>;

    static constexpr std::size_t usualMostBits = std::size_t{1} << 28;

    /// @param name of the chain, such as that of its object. Characters that are not printable ASCII, and
    ///        blanks, become `\xNN`.
    /// @param sink takes the text, a line in one piece or several.
    /// @param mostBits bounds the memory for a scan. A longer one is told with `-` instead of TDI and TDO.
    TapLog(std::string_view name, Sink sink, std::size_t mostBits = usualMostBits);

    void clock(TapState state, bool tms, bool tdi, bool tdo) override;
    void trst(TapState state, bool level) override;

private:
    void forget();
    void writeScan(std::string_view target);
    void writeReset();

    std::string name_;
    Sink sink_;
    std::size_t mostBits_;
    std::size_t bits_ = 0;
    PackedBits tdi_;
    PackedBits tdo_;
};

} // namespace TAVO::simulator
