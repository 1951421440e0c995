#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/wire/trace.h>
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
    /// Ask for the descriptions of all objects of one level of the tree in two exchanges, instead of four or
    /// five exchanges for each object: over a network with 1 ms a round trip, 200 objects are open after 25
    /// ms instead of 900. The tree is the same, and so are the exceptions for what a device refuses. A
    /// connection that fails tells how much of a level it had answered, instead of how much of an object.
    /// Descriptions that change during the opening may be those of before.
    ///
    /// Does nothing for devices of an application's own class.
    bool byLevels = false;
    /// Leave the lock as it is at the end, if the user held it before this opening: another program of that
    /// user, which the device does not tell from this one, may be at work. Before the lock is taken,
    /// Device::lockHolder() asks who holds it. A device that does not tell is unlocked as ever; so is one
    /// where the other program came later. Device::unlock() always unlocks.
    bool keepHeldLock = false;
    /// Build only these objects, given by their full names, with what leads to them and what is below them,
    /// and the three fixed objects. An object whose type has a factory gets all its members, which its proxy
    /// may need. Names that the device does not have are ignored. All objects when empty.
    std::vector<std::string> only = {};
    /// Traces the opening, and later the device, as Device::setTrace() does. An opening over a host name has
    /// connected before. Empty: no trace; DeviceFactory::openDevice then leaves that of the device. If its
    /// opening fails, the device has the trace from before.
    TraceSink trace = {};
};

} // namespace TAVO
