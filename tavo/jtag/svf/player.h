#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/jtag/port.h>
#include <tavo/jtag/svf/comparison.h>
#include <tavo/jtag/svf/planner.h>

namespace TAVO::jtag::svf {

struct Totals {
    std::size_t statements = 0;
    std::size_t scans = 0;
    /// Those of them that are compared.
    std::size_t checkedScans = 0;
    std::uint64_t bits = 0;
    /// What RUNTEST asks for, clocks and times.
    std::chrono::microseconds waits{0};

    void add(const Batch& batch);
    bool operator==(const Totals&) const = default;
};

/// What playing the file takes.
/// @param hertz TCK until a FREQUENCY sets another.
/// @throws SvfError for a file that cannot be played; what the checkpoint of the options throws.
Totals measure(std::string_view text, const std::string& file, PlanOptions options, std::int32_t hertz);

/// Plays a file at a port. Have measure() accept it first: what stands before a fault is executed.
class Player {
public:
    /// A FREQUENCY that the device made something else of.
    struct OtherFrequency {
        std::size_t line;
        std::int32_t asked, set;
    };
    struct Hooks {
        /// Is told how many bytes of the text are behind.
        std::function<void(std::size_t)> showProgress = [](std::size_t) {};
        /// Sets the frequency of the port, and returns what the device has set; by default with the port
        /// alone.
        std::function<std::int32_t(std::int32_t)> setFrequency = {};
    };

    /// @param text and `port` must outlive the player.
    Player(std::string_view text, std::string file, PlanOptions options, Port& port, Hooks hooks);

    /// @throws Mismatch, at the end of the batch; what the port throws.
    void play();

    /// What has been played.
    const Totals& totals() const { return totals_; }
    std::size_t batches() const { return batches_; }
    const std::vector<OtherFrequency>& otherFrequencies() const { return otherFrequencies_; }
    /// The lines of the statements that are, or were last, played: "FILE:3" or "FILE:3-7".
    std::string place() const;

private:
    void play(const Batch& batch);
    void setFrequency(const Batch& batch);

    std::string file_;
    Port& port_;
    Hooks hooks_;
    Parser parser_;
    std::int32_t asked_; ///< the frequency
    Planner planner_;
    Totals totals_;
    std::size_t batches_ = 0;
    std::size_t firstLine_ = 1, lastLine_ = 1;
    std::vector<OtherFrequency> otherFrequencies_;
};

} // namespace TAVO::jtag::svf
