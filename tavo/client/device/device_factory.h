#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/device/open_options.h>
#include <tavo/client/export.h>
#include <tavo/client/object/device.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class ChosenPaths;
class LevelFetch;

class TAVOXDevice;

namespace Device_Factory_Structs {

/// What DeviceFactory::queryDevice learned about a device.
struct TAVO_API TavoDeviceDescriptor {
    /// The first flag of the server key that the device has. What it means is the application's to know.
    bool firstKeyFlag = false;
    /// The second flag of that key.
    bool secondKeyFlag = false;
    /// The TCP port that was used; 0 over a transport of the application's own.
    int port = 0;
    bool operator==(const TavoDeviceDescriptor&) const = default;
};

} // namespace Device_Factory_Structs

/// Opens devices: an application starts here.
///
/// @code
/// TAVO::CoreObjects::registerCoreObjects();
/// TAVO::HWDebug::HwdObjects::registerCoreObjects();
/// CommonModules::CommonModulesObjects::registerCoreObjects();
/// const auto device = TAVO::DeviceFactory::buildDevice("lab-tavo", 6123, "engineer", "password", false);
/// @endcode
///
/// Register the object types first, once, as above. buildDevice() does everything. Use its two halves,
/// queryDevice() and openDevice(), to look at a device before you lock it.
///
/// All operations block for as long as the device takes; OpenOptions can limit each exchange. Several threads
/// may open different devices at once. An Interrupter, passed alone or in OpenOptions, can end an opening
/// from another thread or a signal handler, with NetworkError "Call to device interrupted."; later it can
/// interrupt the device.
///
/// If buildDevice() or queryDevice() fails, nothing is left behind: the half-built device is released, which
/// also gives the lock back. Besides what is listed here, openings throw what Device::call and
/// ObjectFactory::buildObject throw. The limits of the latter, 64 levels and 10000 objects, hold for the
/// whole device; the three fixed objects do not count.
///
/// @throws NetworkError when the connection fails; "Call to device timed out." beyond the time limit.
/// @throws SpecificationError "device object not found.", "private object not found." or "system object not
///         found." when a fixed object is of another type.
/// @throws Error "Error executing " method "() method on device: " and the return code in lower-case
///         hexadecimal, when "lock", "getKey" or "rootMembers" returns a code other than 0.
class TAVO_API DeviceFactory {
public:
    /// The usual TCP port of a device.
    static constexpr int DefaultPort = 6123;
    /// The usual TCP port of a device that is opened as `secure`. The connection is not encrypted either.
    static constexpr int DefaultSecurePort = 6124;
    /// The instance id of the "device" object, the same on every device.
    static constexpr std::uint32_t DeviceInstanceID = 0;
    /// The instance id of the "system" object, the same on every device.
    static constexpr std::uint32_t SystemInstanceID = 1;
    /// The instance id of the "private" object, the same on every device.
    static constexpr std::uint32_t PrivateInstanceID = 2;

    /// Connects, takes the lock and builds the object tree.
    /// @param host name or address of the device.
    /// @param port its TCP port.
    /// @param user, password the user who takes the lock. Both travel unencrypted.
    /// @param secure whether to check the device's key before the lock is taken.
    /// @return the open device, never empty. Releasing the last pointer to it gives the lock back.
    /// @throws TAVOKeyError "TAVO authentication key not matched!" when the key is none of serverKeys().
    /// @throws LockError when another user holds the lock.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same; `interrupter` can end the opening, and interrupt the device later.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const std::shared_ptr<Interrupter>& interrupter);
    /// The same; the options apply to the opening and to the device.
    static std::shared_ptr<Device> buildDevice(const std::string& host, int port, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same on DefaultSecurePort if `secure`, otherwise on DefaultPort.
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same with options.
    static std::shared_ptr<Device> buildDevice(const std::string& host, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);
    /// The same over a transport of the application's own, which the device takes over. What can be
    /// interrupted, limited and connected anew depends on the transport: Device::interrupt() calls
    /// Transport::interrupt(), and a limit in the options goes to Transport::setTimeLimit().
    /// @throws std::invalid_argument for an empty pointer to the transport.
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure);
    /// The same with options.
    static std::shared_ptr<Device> buildDevice(std::unique_ptr<Transport> transport, const std::string& user,
                                               const std::string& password, bool secure,
                                               const OpenOptions& options);

    /// Connects and checks the device's key. Takes no lock, and builds only the "device" object, not the
    /// tree.
    /// @param host name or address of the device.
    /// @param port its TCP port; below 1, DefaultPort.
    /// @param[out] descriptor what the key tells; unchanged when this throws.
    /// @return the device, for openDevice(); never empty.
    /// @throws TAVOKeyError "Target is not a recognized TAVO server!" when the key is none of serverKeys().
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    /// The same; `interrupter` can end the opening, and interrupt the device later.
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const std::shared_ptr<Interrupter>& interrupter);
    /// The same; the options apply to the opening and to the device.
    static std::shared_ptr<Device> queryDevice(const std::string& host, int port,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const OpenOptions& options);
    /// The same over a transport of the application's own, as in buildDevice(). The descriptor's port is 0.
    static std::shared_ptr<Device> queryDevice(std::unique_ptr<Transport> transport,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor);
    /// The same with options.
    static std::shared_ptr<Device> queryDevice(std::unique_ptr<Transport> transport,
                                               Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                               const OpenOptions& options);
    /// Takes the lock of a device from queryDevice() and builds the rest of its tree.
    ///
    /// If it fails, the device is as queryDevice() returned it, without the lock, and can be opened again. A
    /// device that was open already keeps its lock and its tree. If giving the lock back fails as well, for
    /// instance because it was interrupted, the release of the device tries once more.
    /// @return `device`, which may be empty: nothing is done then.
    /// @throws LockError when another user holds the lock.
    /// @throws TAVOKeyError "TAVO authentication key not matched!" when the key of a new connection does not
    ///         fit.
    static std::shared_ptr<Device> openDevice(std::shared_ptr<Device> device, const std::string& user,
                                              const std::string& password);
    /// The same with options. An Interrupter in them must be the one that the device has; it ends the opening
    /// as a whole. A time limit replaces that of the device; an empty one leaves it as it is.
    static std::shared_ptr<Device> openDevice(std::shared_ptr<Device> device, const std::string& user,
                                              const std::string& password, const OpenOptions& options);

    /// Logs the user in: sends the name, and ignores the challenge that the device answers with. Independent
    /// of the lock.
    /// @return what the login() of the device class returns: false for a TAVOXDevice, even on success. False
    ///         for an empty pointer.
    /// @throws TAVOLoginError "Server cannot authenticate user login!" for every Error of the login.
    static bool authenticate(std::shared_ptr<Device> device, std::string user, std::string password);

private:
    class Former;

    static void buildDeviceObject(const std::shared_ptr<Device>& device);
    static void open(const std::shared_ptr<TAVOXDevice>& device, bool secure, const OpenOptions& options);
    static void identify(const std::shared_ptr<TAVOXDevice>& device, int port,
                         Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                         const OpenOptions& options);
    template <class Proxy>
    static std::shared_ptr<Proxy> buildFixedObject(const std::shared_ptr<Device>& device,
                                                   const std::string& name, std::uint32_t instanceId,
                                                   unsigned& room);
    static void buildTree(const std::shared_ptr<Device>& device, LevelFetch* fetch, const ChosenPaths& paths);
};

} // namespace TAVO
