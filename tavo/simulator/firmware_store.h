#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <tavo/client/transcode/base_records.h>
#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// The appliance's firmware images, by name, and the progress of their updates.
///
/// An update takes one second of simulated time and one more for every 4 MiB, at most ten. An image that
/// starts with the bytes "BAD" fails half-way, an empty one at once. A successful update increments the last
/// part of the version.
class TAVO_SIMULATOR_API FirmwareStore {
public:
    enum class State : std::uint32_t { idle = 0, writing = 1, done = 2, failed = 3 };

    struct Firmware {
        dto::Base::Version version;
        /// The last image written; empty before the first update.
        std::vector<std::uint8_t> image;
        State state = State::idle;
        /// 0 to 100.
        std::uint32_t percent = 0;
    };

    /// Starts with firmware "main" and "fpga".
    FirmwareStore();

    /// Starts an update.
    /// @param now simulated microseconds, CallContext::elapsed().
    /// @throws DeviceFault (device_error::configuration) for an unknown name; Refusal (busy) while an update
    ///         of this firmware runs.
    void update(const std::string& name, std::vector<std::uint8_t> image, std::int64_t now);
    /// The firmware at that time.
    /// @throws DeviceFault as update().
    const Firmware& at(const std::string& name, std::int64_t now);
    /// All firmware at that time.
    const std::map<std::string, Firmware>& all(std::int64_t now);

private:
    struct Update {
        std::vector<std::uint8_t> image;
        std::int64_t begin;
        std::int64_t end;
    };

    void progress(std::int64_t now);

    std::map<std::string, Firmware> firmware_;
    std::map<std::string, Update> running_;
};

} // namespace TAVO::simulator
