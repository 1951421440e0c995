#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/device/open_options.h>
#include <tavo/client/export.h>
#include <tavo/client/object/device.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class TAVOXDevice;

namespace Device_Factory_Structs {

/// What DeviceFactory::queryDevice learned about a device.
struct TAVO_API TavoDeviceDescriptor {
    /// The flags of the known server key that the device's key matched. What they mean is the application's
    /// to know.
    bool firstKeyFlag = false;
    bool secondKeyFlag = false;
    /// The TCP port that was used; 0 when the connection was the application's own.
    int port = 0;
    bool operator==(const TavoDeviceDescriptor&) const = default;
};

} // namespace Device_Factory_Structs

/// Where an application starts: opens devices.
///
/// @code
/// TAVO::CoreObjects::registerCoreObjects();
/// TAVO::HWDebug::HwdObjects::registerCoreObjects();
/// CommonModules::CommonModulesObjects::registerCoreObjects();
/// const auto device = TAVO::DeviceFactory::buildDevice("lab-tavo", 6123, "engineer", "password", false);
/// @endcode
///
/// Register the object types first, once, as above. buildDevice() does everything; queryDevice() and
/// openDevice() are its two halves, for applications that look at a device before they lock it. Different
/// devices may be opened by different threads at once. All operations block for as long as the device takes,
/// with a time limit in OpenOptions no longer than that for each exchange. When an opening fails the
/// half-built device is released, which unlocks it if the lock had been taken. An object tree has at most 64
/// levels and 10000 objects besides the three fixed ones; one that cannot be built throws what
/// ObjectFactory::buildObject throws.
///
/// An Interrupter that is handed over, alone or in OpenOptions, can end an opening from another thread or a
/// signal handler, with NetworkError "Call to device interrupted."; it can interrupt the device as long as it
/// lives.
///
/// @throws NetworkError when the connection fails; "Call to device timed out." beyond the time limit.
/// @throws SpecificationError "device object not found.", "private object not found." or "system object not
///        found." when a fixed object is of another type.
/// @throws Error "Error executing " method "() method on device: " and a code in lower-case hexadecimal when
///        "lock", "getKey" or "rootMembers" answers another return code than 0.
class TAVO_API DeviceFactory {
public:
    /// The TCP port of a device.
    static constexpr int DefaultPort = 6123;
    /// The TCP port of a device that is opened as `secure`.
    static constexpr int DefaultSecurePort = 6124;
    /// The ids of the three fixed objects.
    static constexpr std::uint32_t DeviceInstanceID = 0;
    static constexpr std::uint32_t SystemInstanceID = 1;
    static constexpr std::uint32_t PrivateInstanceID = 2;

    /// Connects, checks the device's key when `secure`, takes the lock for the user and builds the object
    /// tree.
    /// @throws TAVOKeyError "TAVO authentication key not matched!"; LockError when another user holds the
    /// lock.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same; the Interrupter can end the opening and interrupt the device later.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const std::shared_ptr<Interrupter>& interrupter);
    /// The same; the options hold for the opening and for the device.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same on DefaultSecurePort when `secure`, else on DefaultPort.
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same with options.
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same over a connection of the application's own, which the device owns from then on and closes at
    /// its end. Interrupting, time limits and reconnecting are the transport's: Device::interrupt() calls
    /// Transport::interrupt(), a limit in the options Transport::setTimeLimit().
    /// @throws std::invalid_argument for an empty pointer to the transport.
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same with options.
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);

    /// Connects and checks the device's key, without taking the lock; of the tree only the "device" object is
    /// built. A port below 1 stands for DefaultPort.
    /// @throws TAVOKeyError "Target is not a recognized TAVO server!"
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    /// The same; the Interrupter can end the opening and interrupt the device later.
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const std::shared_ptr<Interrupter>& interrupter);
    /// The same; the options hold for the opening and for the device.
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const OpenOptions& options);
    /// The same over a connection of the application's own, as buildDevice(). The descriptor's port is 0.
    static std::shared_ptr<Device> queryDevice(std::unique_ptr<Transport> transport,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    /// The same with options.
    static std::shared_ptr<Device> queryDevice(std::unique_ptr<Transport> transport,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const OpenOptions& options);
    /// Takes the lock of a device from queryDevice() and builds the rest of its tree. An empty pointer is
    /// returned as it is. An Interrupter in the options, which must be that of the device, makes the opening
    /// one operation, as an Interrupter::Operation around the call does. A time limit in them is the device's
    /// from then on; without one it keeps its own.
    ///
    /// When it fails, the device is again as queryDevice() gave it, unlocked if this call had taken the lock,
    /// and can be opened anew. A device that was open already keeps its lock and its tree. An unlocking that
    /// fails here, such as one that is interrupted, is tried once more when the device is released.
    static std::shared_ptr<Device> openDevice(std::shared_ptr<Device> device, const std::string& user,
                                              const std::string& password);
    /// The same with options.
    static std::shared_ptr<Device> openDevice(std::shared_ptr<Device> device, const std::string& user,
                                              const std::string& password, const OpenOptions& options);

    /// Logs the user in. Returns what the device class reports, which is false for a TAVOXDevice even when
    /// the login is accepted, and for an empty pointer.
    /// @throws TAVOLoginError "Server cannot authenticate user login!" for every Error of the login.
    static bool authenticate(std::shared_ptr<Device> device, std::string user, std::string password);

private:
    class Former;

    static void buildDeviceObject(const std::shared_ptr<Device>& device);
    static void open(const std::shared_ptr<TAVOXDevice>& device, bool secure);
    static void identify(const std::shared_ptr<TAVOXDevice>& device, int port,
                         Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    template <class Proxy>
    static std::shared_ptr<Proxy> buildFixedObject(const std::shared_ptr<Device>& device,
                                                   const std::string& name, std::uint32_t instanceId,
                                                   unsigned& room);
    static void buildTree(const std::shared_ptr<Device>& device);
};

} // namespace TAVO
