#include <tavo/client/device/device_factory.h>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/tavox_device.h>

namespace TAVO {

namespace {

template <class Proxy>
std::shared_ptr<Proxy> buildFixedObject(const std::shared_ptr<Device>& device, const std::string& name,
                                        std::uint32_t instanceId) {
    auto object =
        std::dynamic_pointer_cast<Proxy>(ObjectFactory::buildObject(device, name, instanceId, nullptr));
    if (!object)
        throw SpecificationError(name + " object not found.");
    return object;
}

bool keyIsKnown(Device& device, bool& first, bool& second) {
    device.getKey();
    return device.checkTavoKey(first, second);
}

} // namespace

void DeviceFactory::buildDeviceObject(const std::shared_ptr<Device>& device) {
    device->setDevice(buildFixedObject<Device_v1_0>(device, "device", DeviceInstanceID));
}

void DeviceFactory::buildTree(const std::shared_ptr<Device>& device) {
    device->setPrivate(buildFixedObject<Private_v1_0>(device, "private", PrivateInstanceID));
    device->setSystem(buildFixedObject<System_v1_0>(device, "system", SystemInstanceID));
    const auto rootMembers = device->getDevice()->getRootMembersMethod();
    device->call(rootMembers);
    for (const auto& member : rootMembers->value().members)
        device->addChild(ObjectFactory::buildObject(device, member.name, member.id, nullptr));
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, int port, const std::string& user,
                                                   const std::string& password, bool secure) {
    return buildDevice(host, port, user, password, secure, nullptr);
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, int port, const std::string& user,
                                                   const std::string& password, bool secure,
                                                   const std::shared_ptr<Interrupter>& interrupter) {
    const auto used = interrupter ? interrupter : std::make_shared<Interrupter>();
    std::shared_ptr<Device> device;
    // Ends before the device of a failed opening, which is still to be unlocked.
    const Interrupter::Operation opening(*used);
    device = std::make_shared<TAVOXDevice>(host, port, user, password, secure, used);
    buildDeviceObject(device);
    if (bool first = false, second = false; secure && !keyIsKnown(*device, first, second))
        throw TAVOKeyError("TAVO authentication key not matched!");
    device->lock();
    buildTree(device);
    return device;
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, const std::string& user,
                                                   const std::string& password, bool secure) {
    return buildDevice(host, secure ? DefaultSecurePort : DefaultPort, user, password, secure);
}

std::shared_ptr<Device> DeviceFactory::queryDevice(const std::string& host, int port,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor) {
    return queryDevice(host, port, descriptor, nullptr);
}

std::shared_ptr<Device> DeviceFactory::queryDevice(const std::string& host, int port,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                                   const std::shared_ptr<Interrupter>& interrupter) {
    const bool chosen = port >= 1 && port != DefaultPort;
    const int usedPort = chosen ? port : DefaultPort;
    const auto used = interrupter ? interrupter : std::make_shared<Interrupter>();
    const Interrupter::Operation opening(*used);
    std::shared_ptr<Device> device = std::make_shared<TAVOXDevice>(host, usedPort, "", "", chosen, used);
    buildDeviceObject(device);
    bool first = false, second = false;
    if (!keyIsKnown(*device, first, second))
        throw TAVOKeyError("Target is not a recognized TAVO server!");
    descriptor = {first, second, usedPort};
    return device;
}

std::shared_ptr<Device> DeviceFactory::openDevice(std::shared_ptr<Device> device, const std::string& user,
                                                  const std::string& password) {
    if (!device)
        return device;
    device->lock(user, password);
    buildTree(device);
    return device;
}

bool DeviceFactory::authenticate(std::shared_ptr<Device> device, std::string user, std::string password) {
    if (!device)
        return false;
    try {
        return device->login(user, password);
    } catch (const Error&) {
        throw TAVOLoginError("Server cannot authenticate user login!");
    }
}

} // namespace TAVO
