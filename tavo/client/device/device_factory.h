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
    /// The flags of the known server key that the device's key matched.
    bool firstKeyFlag = false;
    bool secondKeyFlag = false;
    /// The TCP port that was used; 0 when the connection was the application's own.
    int port = 0;
    bool operator==(const TavoDeviceDescriptor&) const = default;
};

} // namespace Device_Factory_Structs

/// Where an application starts: opens devices.
///
/// Call registerCoreObjects() of CoreObjects, HWDebug::HwdObjects and CommonModules::CommonModulesObjects
/// first, once. Different devices may be opened by different threads at once. When an opening fails the
/// half-built device is released, which unlocks it if the lock had been taken. All operations block for as
/// long as the device takes, each exchange of them no longer than the time limit of OpenOptions, and throw
/// NetworkError when the connection fails and what ObjectFactory::buildObject throws for an object tree that
/// cannot be built, which has at most 64 levels and 10000 objects besides the three fixed ones;
/// SpecificationError "device object not found.", "private object not found." or "system object not found."
/// when a fixed object is of another type; Error "Error executing " method "() method on device: " and a code
/// in lower-case hexadecimal when "lock", "getKey" or "rootMembers" answers another return code than 0.
///
/// An Interrupter that is handed over, alone or in OpenOptions, can end an opening from another thread or a
/// signal handler, with NetworkError "Call to device interrupted."; it can interrupt the device as long as it
/// lives.
class TAVO_API DeviceFactory {
public:
    static constexpr int DefaultPort = 6123;
    static constexpr int DefaultSecurePort = 6124;
    static constexpr std::uint32_t DeviceInstanceID = 0;
    static constexpr std::uint32_t SystemInstanceID = 1;
    static constexpr std::uint32_t PrivateInstanceID = 2;

    /// Connects, checks the device's key when `secure`, takes the lock for the user and builds the object
    /// tree.
    /// @throws TAVOKeyError "TAVO authentication key not matched!"; LockError when another user holds the
    /// lock.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure);
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const std::shared_ptr<Interrupter>& interrupter);
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same on DefaultSecurePort when `secure`, else on DefaultPort.
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure);
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same over a connection of the application's own, which the device owns from then on and closes at
    /// its end. Interrupting, time limits and reconnecting are the transport's: Device::interrupt() calls
    /// Transport::interrupt(), a limit in the options Transport::setTimeLimit().
    /// @throws std::invalid_argument for an empty pointer to the transport.
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure);
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);

    /// Connects and checks the device's key, without taking the lock; of the tree only the "device" object is
    /// built. A port below 1 stands for DefaultPort.
    /// @throws TAVOKeyError "Target is not a recognized TAVO server!"
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const std::shared_ptr<Interrupter>& interrupter);
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const OpenOptions& options);
    /// The same over a connection of the application's own, as buildDevice(). The descriptor's port is 0.
    static std::shared_ptr<Device> queryDevice(std::unique_ptr<Transport> transport,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
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
