#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/cli/serial_serve/served_line.h>

namespace tool_test {

/// A line in memory, which says what it is given to say, and notes what happens to it.
class FakeLine final : public TAVO::cli::ServedLine {
public:
    std::string exchange(std::string_view bytes) override {
        sent += bytes;
        if (!bytes.empty())
            events.push_back("send " + std::string(bytes));
        return isWorking ? std::exchange(toSay, {}) : "";
    }
    void dropReceived() override {
        events.emplace_back("drop");
        toSay.clear();
    }
    bool set(const TAVO::cli::LineSettings& settings) override {
        if (settings == settings_)
            return true;
        if (!isWorking || settings.baud > highestBaud)
            return false;
        settings_ = settings;
        events.push_back("open " + std::to_string(settings.baud));
        return true;
    }
    const TAVO::cli::LineSettings& settings() const override { return settings_; }
    bool sendBreak() override {
        if (isWorking)
            events.emplace_back("break");
        return isWorking;
    }
    bool works() const override { return isWorking; }
    std::string name() const override { return "com"; }
    void warn(const std::string& what) override { warnings.push_back(what); }

    static constexpr std::int32_t highestBaud = 115200;

    std::string sent;
    std::string toSay;
    bool isWorking = true;
    std::vector<std::string> events;
    std::vector<std::string> warnings;

private:
    TAVO::cli::LineSettings settings_;
};

} // namespace tool_test
