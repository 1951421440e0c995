#pragma once

#include <fstream>
#include <string>

#include <tavo/simulator/vcd_writer.h>

namespace TAVO::cli {

/// A value change dump of what a client clocks, in a file that it replaces.
class ClockDump {
public:
    /// @param scope what the pins belong to.
    /// @throws Failure (usage) if the file cannot be written.
    ClockDump(std::string path, const std::string& scope);

    void clock(bool tms, bool tdi, bool tdo) { writer_.clock(0, tms, tdi, tdo); }
    void setTrst(bool level) { writer_.trst(0, level); }
    /// Brings the file up to date.
    /// @throws Failure (usage) if anything could not be written.
    void flush();

private:
    std::string path_;
    std::ofstream file_;
    simulator::VcdWriter writer_;
};

} // namespace TAVO::cli
