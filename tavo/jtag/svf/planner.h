#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <tavo/jtag/step.h>
#include <tavo/jtag/svf/parser.h>
#include <tavo/jtag/svf/statement.h>

namespace TAVO::jtag::svf {

/// How far a file is played before captured bits are compared.
enum class StopAt {
    check, ///< nothing but checked scans comes behind a checked scan in its batch
    batch, ///< a batch has up to 100 checked scans
    end,   ///< nothing ends a batch but its size
};

struct PlanOptions {
    StopAt stopAt = StopAt::check;
    /// How often the device repeats a checked scan while it differs. Only one that neither begins nor ends in
    /// Pause of its register begins anew each time.
    std::int32_t retries = 0;
    /// Without it, nothing is read.
    bool compares = true;
    /// For totals alone: leaves out all bits.
    bool isMeasured = false;
    /// Is called before each statement. It may throw, to end a file that takes long.
    std::function<void()> checkpoint = [] {};
};

/// What a scan must have captured.
struct Check {
    /// Where the bits of a statement are among those of the scan.
    struct Part {
        std::size_t line = 0;
        std::size_t first = 0;
        ScanData data;
    };

    /// Of the shift among the steps of the batch.
    std::size_t step = 0;
    /// Where the scan is in the file.
    std::size_t line = 0;
    /// In order of shifting: header, the scan's own, trailer; those that compare something.
    std::vector<Part> parts;
};

/// What is executed in one go.
struct Batch {
    /// Instead of steps.
    std::optional<Frequency> frequency;
    Steps steps;
    std::vector<Check> checks;
    /// The statements, from the first to the last.
    std::size_t firstLine = 0, lastLine = 0;
    std::size_t statements = 0, scans = 0;
    std::uint64_t bits = 0;
    std::chrono::microseconds waits{0};
};

/// Turns the statements of a file into batches of steps. The first batch resets the controllers: a file
/// cannot know where it finds them.
class Planner {
public:
    static constexpr std::size_t checksPerBatch = 100;
    /// A batch ends behind a step with which it becomes larger, roughly, in both directions together.
    static constexpr std::size_t mostBytes = std::size_t{1} << 20;
    /// Longer waits are distributed, so that a batch ends soon.
    static constexpr std::chrono::microseconds longestWait{200'000};
    static constexpr std::chrono::hours mostClocked{24};
    /// Of one RUNTEST in RESET.
    static constexpr std::uint64_t mostResetClocks = 10'000;

    using TimeOf = std::function<std::chrono::microseconds(std::uint64_t clocks)>;

    /// @param parser must outlive the planner.
    /// @param timeOf tells how long up to 2^32 clocks take at the frequency that was set last.
    Planner(Parser& parser, PlanOptions options, TimeOf timeOf);

    /// @return nothing at the end. @throws SvfError for a file that cannot be played.
    std::optional<Batch> next();

private:
    struct Ends {
        TapState ir = TapState::runTestIdle, dr = TapState::runTestIdle;
        TapState& of(Register target) { return target == Register::instruction ? ir : dr; }
    };
    /// What is put around the scans of a register.
    struct Around {
        Check::Part header, trailer;
    };

    bool isFull(const Batch& batch) const;
    /// Whether the batch must end before this statement.
    bool stopsBefore(const Statement& statement, const Batch& batch) const;
    bool isChecked(const Scan& scan) const;
    bool compares(const ScanData& data) const;
    Around& around(Register target) { return around_[target == Register::instruction ? 0 : 1]; }
    const Around& around(Register target) const { return around_[target == Register::instruction ? 0 : 1]; }

    void take(const EndState& end, Batch& batch);
    void take(const Frequency& frequency, Batch& batch);
    void take(const Surround& surround, Batch& batch);
    void take(const Scan& scan, Batch& batch);
    void take(const RunTest& run, Batch& batch);
    void take(const StatePath& path, Batch& batch);
    void take(const TestReset& reset, Batch& batch);

    Poll pollOf(std::span<const Check::Part> parts) const;
    void add(Step step, std::size_t calls, Batch& batch);
    void moveTo(TapState state, Batch& batch);
    /// Clocks made by pins.
    void clock(const std::vector<bool>& tms, Batch& batch);
    void waitOn(Batch& batch);

    Parser& parser_;
    PlanOptions options_;
    TimeOf timeOf_;
    bool hasBegun_ = false;
    std::optional<Statement> pending_;
    std::size_t line_ = 0;
    std::size_t bytes_ = 0; ///< of the batch

    TapState state_ = TapState::testLogicReset;
    Ends ends_;
    Around around_[2];
    TapState runState_ = TapState::runTestIdle, runEnd_ = TapState::runTestIdle;
    bool isTrstOn_ = false;
    /// What a RUNTEST still has to do before its end.
    std::chrono::microseconds clocked_{0}, still_{0};
    std::optional<TapState> afterWait_;
};

} // namespace TAVO::jtag::svf
