#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/serial_console.h>

namespace TAVO::simulator {

/// The appliance's serial port, wired to the board's console. Receives only while open.
class TAVO_SIMULATOR_API SerialPort {
public:
    static constexpr std::size_t bufferSize = std::size_t{16} * 1024;
    static constexpr std::int32_t largestCount = 65536;
    static constexpr std::size_t largestSend = std::size_t{1024} * 1024;

    struct Settings {
        std::int32_t baud = 115200;
        std::int32_t dataBits = 8;
        bool parity = false;
        bool parityEven = false;
        std::int32_t stopBits = 1;
        bool rtsCts = false;
        bool dtrDsr = false;
        bool xonXoff = false;
        /// Sent bytes come back instead of going to the console.
        bool loopback = false;
        bool operator==(const Settings&) const = default;
    };

    explicit SerialPort(std::shared_ptr<SerialConsole> console);

    /// Opens or reopens the port with an empty buffer. Returns a return_code, like the others.
    std::int32_t open(const Settings& settings);
    std::int32_t close();
    std::int32_t send(std::span<const std::uint8_t> data);
    /// Takes up to `count` of the received bytes.
    std::int32_t receive(std::int32_t count, std::vector<std::uint8_t>& data);

    /// What the port is wired to.
    SerialConsole& console() const noexcept { return *console_; }
    /// Empty while closed.
    const std::optional<Settings>& settings() const noexcept { return settings_; }

private:
    std::shared_ptr<SerialConsole> console_;
    std::optional<Settings> settings_;
    std::string looped_;
};

} // namespace TAVO::simulator
