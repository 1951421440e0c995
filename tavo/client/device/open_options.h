#pragma once

#include <memory>

#include <tavo/client/export.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Interrupter;

/// How DeviceFactory opens a device. Name the members that you set; more may come:
///
/// @code
/// auto device = DeviceFactory::buildDevice(host, port, user, password, false, {.timeLimit = 5s});
/// @endcode
struct TAVO_API OpenOptions {
    /// The limit for each exchange of the opening, and later of the device, as Device::setTimeLimit() sets
    /// it. An opening of 800 exchanges may take 800 times as long. Empty: no limit.
    TimeLimit timeLimit = {};
    /// Can interrupt the opening as a whole, and later the device. May be empty. Over a transport of the
    /// application's own, it must be the one that the transport obeys.
    std::shared_ptr<Interrupter> interrupter = {};
};

} // namespace TAVO
