#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include <tavo/jtag/step.h>

/// Serial Vector Format, revision E: files of scans, waits and moves.
namespace TAVO::jtag::svf {

/// Bits that statements share while they are carried over from one to the next.
using SharedBits = std::shared_ptr<const BitString>;

/// The data of a scan, or of what is put before or behind all scans, with what was carried over.
struct ScanData {
    std::size_t length = 0;
    /// Null if `length` is 0.
    SharedBits tdi;
    /// Null if nothing is compared.
    SharedBits tdo;
    /// Null if all bits are compared.
    SharedBits mask;
    /// Whether there is a bit to compare. Known once, for a mask may be large and stand around many scans.
    bool isCompared = false;
};

/// ENDIR, ENDDR: where scans end from now on.
struct EndState {
    Register target;
    TapState state;
};

/// FREQUENCY: the most that TCK may have from now on; empty for full speed.
struct Frequency {
    std::optional<std::int32_t> hertz;
};

/// HIR, HDR, TIR, TDR: what every scan from now on has before or behind its own bits.
struct Surround {
    Register target;
    bool isHeader;
    ScanData data;
};

/// SIR, SDR.
struct Scan {
    Register target;
    ScanData data;
};

/// RUNTEST: clocks, then a wait.
struct RunTest {
    std::optional<TapState> state;
    std::uint64_t clocks = 0;
    std::chrono::microseconds time{0};
    std::optional<TapState> end;
};

/// STATE: at least one state, the last of them a resting one.
struct StatePath {
    std::vector<TapState> states;
};

/// TRST.
struct TestReset {
    enum class Mode { on, off, highImpedance, absent };
    Mode mode;
};

struct Statement {
    /// Where it begins.
    std::size_t line = 0;
    std::variant<EndState, Frequency, Surround, Scan, RunTest, StatePath, TestReset> what;
};

} // namespace TAVO::jtag::svf
