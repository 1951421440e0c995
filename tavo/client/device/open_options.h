#pragma once

#include <memory>

#include <tavo/client/export.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Interrupter;

/// How DeviceFactory opens a device. Members are named where they are given:
///
/// @code
/// auto device = DeviceFactory::buildDevice(host, port, user, password, false, {.timeLimit = 5s});
/// @endcode
struct TAVO_API OpenOptions {
    /// For each exchange of the opening, and of the device from then on, as Device::setTimeLimit() sets it:
    /// an opening of 800 exchanges has 800 times the limit. None when empty.
    TimeLimit timeLimit = {};
    /// Can interrupt the opening as a whole, and the device as long as it lives; may be empty. Over a
    /// transport of the application's own it must be the one that the transport itself goes by.
    std::shared_ptr<Interrupter> interrupter = {};
};

} // namespace TAVO
