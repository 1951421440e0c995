#include <tavo/simulator/appliance.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/simulator/internal/scramble.h>
#include <tavo/simulator/objects/fixed_objects.h>

namespace TAVO::simulator {

Appliance::Appliance(std::map<std::string, std::string> accounts, std::vector<std::uint8_t> key)
    : lock_(std::move(accounts))
    , board_(std::make_shared<Board>([this] { return static_cast<std::uint64_t>(now()); }))
    , key_(std::move(key))
    , root_(std::make_unique<SimulatedObject>("root", "1.0")) {
    root_->appliance_ = this;
    addFixed("device", DeviceFactory::DeviceInstanceID, std::make_unique<DeviceObject>());
    addFixed("system", DeviceFactory::SystemInstanceID, std::make_unique<SystemObject>());
    addFixed("private", DeviceFactory::PrivateInstanceID,
             std::make_unique<SimulatedObject>("private", "1.0"));
}

Appliance::~Appliance() = default;

std::int64_t Appliance::now() const { return served_ ? served_->elapsed() : clock_.elapsed(); }

void Appliance::addFixed(const std::string& name, std::uint32_t instanceId,
                         std::unique_ptr<SimulatedObject> object) {
    object->requireHandlers();
    object->name_ = name;
    object->instanceId_ = instanceId;
    object->appliance_ = this;
    object->assignMethodIds();
    objects_[instanceId] = object.get();
    fixed_.push_back(std::move(object));
}

void Appliance::enter(SimulatedObject& object) {
    object.appliance_ = this;
    object.instanceId_ = idFor(object.fullName(), [&](std::uint32_t id) { return objects_.contains(id); });
    object.assignMethodIds();
    objects_[object.instanceId_] = &object;
    for (const auto& member : object.members_)
        enter(*member);
}

SimulatedObject* Appliance::find(std::uint32_t instanceId) const {
    const auto found = objects_.find(instanceId);
    return found == objects_.end() ? nullptr : found->second;
}

SimulatedObject* Appliance::find(std::string_view fullName) const {
    for (const auto& [id, object] : objects_)
        if (object->fullName() == fullName)
            return object;
    return nullptr;
}

void Appliance::reset() {
    lock_.drop();
    for (const auto& [id, object] : objects_) {
        object->setReservation(std::nullopt);
        object->reset();
    }
}

} // namespace TAVO::simulator
