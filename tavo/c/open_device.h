#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <tavo/c/tavo_c.h>
#include <tavo/client.h>

/// What is behind a handle. Whoever holds `turn` may use the rest, except for the interrupter.
struct tavo_device {
    /// By full name; the three fixed objects come first.
    using Objects = std::map<std::string, std::shared_ptr<TAVO::Object_v1_0>, std::less<>>;

    std::mutex turn;
    const std::shared_ptr<TAVO::Interrupter> interrupter = std::make_shared<TAVO::Interrupter>();
    /// Empty while the device is closed.
    std::shared_ptr<TAVO::Device> device;
    Objects objects;
};

namespace TAVO::c {

/// Milliseconds as in tavo_options.
TimeLimit timeLimitOf(std::uint32_t given);

/// @throws Refusal for wrong options or if the device is open; what DeviceFactory::buildDevice throws.
void openDevice(tavo_device& handle, const tavo_options& given);
void closeDevice(tavo_device& handle) noexcept;

/// @throws Refusal if it is closed.
Device& requireOpen(const tavo_device& handle);

} // namespace TAVO::c
