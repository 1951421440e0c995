#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/cli/door/device_guard.h>
#include <tavo/cli/output.h>
#include <tavo/cli/serial_link.h>
#include <tavo/cli/serial_serve/backlog.h>
#include <tavo/cli/serial_serve/served_line.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// The serial port of a device, as far as it works; open while this exists.
class GuardedLine final : public ServedLine {
public:
    /// @throws Failure (refused) if the device does not accept the settings.
    GuardedLine(Session& session, Output& output, std::shared_ptr<CommonModules::Com_v1_0> port,
                const LineSettings& settings);

    std::string exchange(std::string_view bytes) override;
    void dropReceived() override;
    bool set(const LineSettings& settings) override;
    const LineSettings& settings() const override { return settings_; }
    bool sendBreak() override;
    bool works() const override { return !guard_.hasFailed(); }
    std::string name() const override;
    void warn(const std::string& what) override { output_.warn(what); }

    /// Gives the line the settings again with which it was opened first.
    void restore() { set(first_); }
    /// @throws what the device failed with, if it has.
    void throwIfFailed() const { guard_.throwIfFailed(); }
    /// Waits until what was sent has had its time on the line, but not for long. @throws Interrupted.
    void drain() const;
    /// Closes the port at once. @throws Failure, if the device has not failed before.
    void close();

private:
    using Clock = std::chrono::steady_clock;

    void open(const LineSettings& settings);
    /// Takes what has come, and closes the port as soon as what was sent has had its time on the line.
    void leave();
    /// What has come, as far as it comes to an end.
    std::string receiveAll();
    void noteSent(std::size_t bytes);

    Session& session_;
    Output& output_;
    std::shared_ptr<CommonModules::Com_v1_0> port_;
    const LineSettings first_;
    LineSettings settings_;
    DeviceGuard guard_;
    std::optional<SerialLink> link_;
    /// What came before the port was opened again.
    Backlog kept_;
    Clock::time_point sentAt_;
};

} // namespace TAVO::cli
