#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/simulator/appliance.h>

/// The file of --tap-log: what arrives at the pins of every "jtag", in lines or, if its name ends in ".vcd",
/// as a value change dump. Up to date after each call.
class TapLogFile {
public:
    /// Replaces the file, and follows the chains of the appliance, which must not serve yet. Keep this object
    /// as long as the appliance serves.
    /// @throws std::runtime_error that names the file if it cannot be written.
    TapLogFile(std::string path, TAVO::simulator::Appliance& appliance);

    /// Call it when the appliance has ended. Returns false if something could not be written: that has been
    /// told on standard error.
    bool close();

private:
    void followInLines(TAVO::simulator::Appliance& appliance);
    void followAsDump(TAVO::simulator::Appliance& appliance);
    void write(std::string_view text);
    void flush();
    void check(bool written);
    std::string complaint(int error) const;

    std::string path_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
    bool isServing_ = false;
    bool hasFailed_ = false;
};
