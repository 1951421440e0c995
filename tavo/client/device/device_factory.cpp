#include <tavo/client/device/device_factory.h>

#include <algorithm>
#include <utility>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/internal/level_fetch.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/object/internal/chosen_paths.h>
#include <tavo/client/object/internal/return_code.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>

namespace TAVO {

namespace {

bool keyIsKnown(Device& device, bool& first, bool& second) {
    device.getKey();
    return device.checkTavoKey(first, second);
}

/// Runs the action as one Operation of the interrupter, if there is one.
template <class Action>
void asOneOperation(const std::shared_ptr<Interrupter>& interrupter, Action action) {
    if (interrupter) {
        const Interrupter::Operation operation(*interrupter);
        action();
    } else {
        action();
    }
}

std::unique_ptr<LevelFetch> fetchFor(std::shared_ptr<TAVOXDevice> device, const OpenOptions& options) {
    return device && options.byLevels ? std::make_unique<LevelFetch>(std::move(device)) : nullptr;
}

void traceIfWanted(Device& device, const OpenOptions& options) {
    if (options.trace)
        device.setTrace(options.trace);
}

unsigned objectsBelow(const Container& node) {
    unsigned objects = 0;
    for (const auto& child : node.getChildren())
        objects += 1 + objectsBelow(*child);
    return objects;
}

} // namespace

/// The state of a device before its opening, to be restored if that fails.
class DeviceFactory::Former {
public:
    Former(Device& device, const OpenOptions& options)
        : device_(device)
        , connection_(dynamic_cast<TAVOXDevice*>(&device))
        , system_(device.system_)
        , private_(device.private_)
        , children_(device.children_)
        , limit_(device.timeLimit())
        , isTraced_(options.trace) {
        if (connection_) {
            lock_ = connection_->lock_;
            connection_->keepsHeldLock_ = options.keepHeldLock;
            if (options.trace)
                trace_ = connection_->trace();
        }
    }

    /// @param locked whether the opening had taken the lock.
    void comeBack(bool locked) noexcept {
        const bool wasOpen = system_ || private_ || !children_.empty();
        device_.system_.swap(system_);
        device_.private_.swap(private_);
        device_.children_.swap(children_);
        if (connection_)
            connection_->returnTo(lock_);
        else if (locked && !wasOpen)
            try {
                device_.unlock();
            } catch (...) { // the exception of the opening is on its way
            }
        if (isTraced_)
            device_.setTrace(std::move(trace_));
        if (device_.timeLimit() != limit_)
            try {
                device_.setTimeLimit(limit_);
            } catch (...) { // the new limit stays
            }
    }

private:
    Device& device_;
    TAVOXDevice* connection_;
    std::shared_ptr<System_v1_0> system_;
    std::shared_ptr<Private_v1_0> private_;
    decltype(Container::children_) children_;
    TimeLimit limit_;
    bool isTraced_;
    TraceSink trace_;
    TAVOXDevice::Lock lock_;
};

template <class Proxy>
std::shared_ptr<Proxy> DeviceFactory::buildFixedObject(const std::shared_ptr<Device>& device,
                                                       const std::string& name, std::uint32_t instanceId,
                                                       unsigned& room) {
    ++room; // the fixed object itself does not count
    auto object = std::dynamic_pointer_cast<Proxy>(
        ObjectFactory::buildSubtree(device, name, instanceId, nullptr, 1, room, {}));
    if (!object)
        throw SpecificationError(name + " object not found.");
    return object;
}

void DeviceFactory::buildDeviceObject(const std::shared_ptr<Device>& device) {
    auto room = ObjectFactory::mostObjects;
    device->setDevice(buildFixedObject<Device_v1_0>(device, "device", DeviceInstanceID, room));
}

void DeviceFactory::buildTree(const std::shared_ptr<Device>& device, LevelFetch* fetch,
                              const ChosenPaths& paths) {
    const auto object = device->getDevice();
    if (!object)
        throw SpecificationError("device object not found.");
    if (fetch)
        fetch->fetchRootMembers(
            *object, {{"private", PrivateInstanceID, true}, {"system", SystemInstanceID, true}}, paths);
    auto room = ObjectFactory::mostObjects - std::min(ObjectFactory::mostObjects, objectsBelow(*object));
    device->setPrivate(buildFixedObject<Private_v1_0>(device, "private", PrivateInstanceID, room));
    device->setSystem(buildFixedObject<System_v1_0>(device, "system", SystemInstanceID, room));
    const auto rootMembers = object->getRootMembersMethod();
    device->call(rootMembers);
    requireSuccess(*rootMembers, "device");
    for (const auto& member : rootMembers->value().members)
        if (paths.includes(member.name))
            device->addChild(
                ObjectFactory::buildSubtree(device, member.name, member.id, nullptr, 1, room, paths));
}

void DeviceFactory::open(const std::shared_ptr<TAVOXDevice>& device, bool secure,
                         const OpenOptions& options) {
    device->keepsHeldLock_ = options.keepHeldLock;
    const auto fetch = fetchFor(device, options);
    if (fetch && options.keepHeldLock)
        fetch->fetchTrees({{"device", DeviceInstanceID, true}, {"system", SystemInstanceID, true}});
    else if (fetch)
        fetch->fetchTrees({{"device", DeviceInstanceID, true}});
    buildDeviceObject(device);
    if (bool first = false, second = false; secure && !keyIsKnown(*device, first, second))
        throw TAVOKeyError("TAVO authentication key not matched!");
    device->keyMustFit_ = secure;
    device->lock();
    buildTree(device, fetch.get(), ChosenPaths(options.only));
}

void DeviceFactory::identify(const std::shared_ptr<TAVOXDevice>& device, int port,
                             Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                             const OpenOptions& options) {
    const auto fetch = fetchFor(device, options);
    if (fetch)
        fetch->fetchTrees({{"device", DeviceInstanceID, true}});
    buildDeviceObject(device);
    bool first = false, second = false;
    if (!keyIsKnown(*device, first, second))
        throw TAVOKeyError("Target is not a recognized TAVO server!");
    device->keyMustFit_ = true;
    descriptor = {first, second, port};
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, int port, const std::string& user,
                                                   const std::string& password, bool secure) {
    return buildDevice(host, port, user, password, secure, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, int port, const std::string& user,
                                                   const std::string& password, bool secure,
                                                   const std::shared_ptr<Interrupter>& interrupter) {
    return buildDevice(host, port, user, password, secure, OpenOptions{.interrupter = interrupter});
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, int port, const std::string& user,
                                                   const std::string& password, bool secure,
                                                   const OpenOptions& options) {
    // Outlives the operation: a device whose opening failed is unlocked after it.
    std::shared_ptr<TAVOXDevice> device;
    asOneOperation(options.interrupter, [&] {
        device = std::make_shared<TAVOXDevice>(host, port, user, password, secure, options.interrupter,
                                               options.timeLimit);
        traceIfWanted(*device, options);
        open(device, secure, options);
    });
    return device;
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, const std::string& user,
                                                   const std::string& password, bool secure) {
    return buildDevice(host, user, password, secure, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::buildDevice(const std::string& host, const std::string& user,
                                                   const std::string& password, bool secure,
                                                   const OpenOptions& options) {
    return buildDevice(host, secure ? DefaultSecurePort : DefaultPort, user, password, secure, options);
}

std::shared_ptr<Device> DeviceFactory::buildDevice(std::unique_ptr<Transport> transport,
                                                   const std::string& user, const std::string& password,
                                                   bool secure) {
    return buildDevice(std::move(transport), user, password, secure, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::buildDevice(std::unique_ptr<Transport> transport,
                                                   const std::string& user, const std::string& password,
                                                   bool secure, const OpenOptions& options) {
    const auto device = std::make_shared<TAVOXDevice>(std::move(transport), user, password, secure);
    if (options.timeLimit)
        device->setTimeLimit(options.timeLimit);
    traceIfWanted(*device, options);
    asOneOperation(options.interrupter, [&] { open(device, secure, options); });
    return device;
}

std::shared_ptr<Device> DeviceFactory::queryDevice(const std::string& host, int port,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor) {
    return queryDevice(host, port, descriptor, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::queryDevice(const std::string& host, int port,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                                   const std::shared_ptr<Interrupter>& interrupter) {
    return queryDevice(host, port, descriptor, OpenOptions{.interrupter = interrupter});
}

std::shared_ptr<Device> DeviceFactory::queryDevice(const std::string& host, int port,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                                   const OpenOptions& options) {
    const bool chosen = port >= 1 && port != DefaultPort;
    const int usedPort = chosen ? port : DefaultPort;
    std::shared_ptr<TAVOXDevice> device;
    asOneOperation(options.interrupter, [&] {
        device = std::make_shared<TAVOXDevice>(host, usedPort, "", "", chosen, options.interrupter,
                                               options.timeLimit);
        traceIfWanted(*device, options);
        identify(device, usedPort, descriptor, options);
    });
    return device;
}

std::shared_ptr<Device> DeviceFactory::queryDevice(std::unique_ptr<Transport> transport,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor) {
    return queryDevice(std::move(transport), descriptor, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::queryDevice(std::unique_ptr<Transport> transport,
                                                   Device_Factory_Structs::TavoDeviceDescriptor& descriptor,
                                                   const OpenOptions& options) {
    const auto device = std::make_shared<TAVOXDevice>(std::move(transport), "", "", false);
    if (options.timeLimit)
        device->setTimeLimit(options.timeLimit);
    traceIfWanted(*device, options);
    asOneOperation(options.interrupter, [&] { identify(device, 0, descriptor, options); });
    return device;
}

std::shared_ptr<Device> DeviceFactory::openDevice(std::shared_ptr<Device> device, const std::string& user,
                                                  const std::string& password) {
    return openDevice(std::move(device), user, password, OpenOptions());
}

std::shared_ptr<Device> DeviceFactory::openDevice(std::shared_ptr<Device> device, const std::string& user,
                                                  const std::string& password, const OpenOptions& options) {
    if (!device)
        return device;
    Former former(*device, options);
    bool locked = false;
    try {
        if (options.timeLimit)
            device->setTimeLimit(options.timeLimit);
        traceIfWanted(*device, options);
        asOneOperation(options.interrupter, [&] {
            device->lock(user, password);
            locked = true;
            const auto fetch = fetchFor(std::dynamic_pointer_cast<TAVOXDevice>(device), options);
            buildTree(device, fetch.get(), ChosenPaths(options.only));
        });
    } catch (...) {
        former.comeBack(locked);
        throw;
    }
    return device;
}

bool DeviceFactory::authenticate(std::shared_ptr<Device> device, std::string user, std::string password) {
    if (!device)
        return false;
    try {
        return device->login(user, password);
    } catch (const Error& failure) {
        throw withFacts(TAVOLoginError("Server cannot authenticate user login!"), failure.facts());
    }
}

} // namespace TAVO
