#include <memory>
#include <stdexcept>

#include <tavo/client.h>
#include <tests/fuzz/opening_script.h>
#include <tests/fuzz/simulated_device.h>
#include <tests/support/allocation_meter.h>

// The opening of a device whose answers an input spoils (see opening_script.h), over memory instead of a
// connection. Covered: ObjectFactory and all factories, DeviceFactory::openDevice and authenticate, the
// proxies' search for their children. Not covered: the connection itself.

namespace {

using fuzz::require;

void checkNode(const TAVO::Container& node, const TAVO::Container* parent) {
    const auto prefix = parent ? parent->getFullName() + TAVO::Container::SEPARATOR : std::string();
    require(node.getFullName() == prefix + node.getName(), "a full name begins with the parent's");
    require(node.getParent().get() == parent, "a child has its parent");
    for (const auto& child : node.getChildren()) {
        require(node.getChild(child->getName()) == child, "a child is found by its name");
        checkNode(*child, &node);
    }
}

void checkOpen(const TAVO::Device& device) {
    require(device.getDevice() && device.getSystem() && device.getPrivate(), "the fixed objects are there");
    checkNode(*device.getDevice(), nullptr);
    checkNode(*device.getSystem(), nullptr);
    checkNode(*device.getPrivate(), nullptr);
    for (const auto& member : device.getChildren())
        checkNode(*member, nullptr);
}

void logIn(const std::shared_ptr<TAVO::Device>& device) {
    try {
        require(!TAVO::DeviceFactory::authenticate(device, "engineer", "tavo"), "a login yields false");
    } catch (const TAVO::TAVOLoginError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::OpeningScript script({bytes, length});
    const support::AllocationMeter meter;
    const auto device = std::make_shared<fuzz::MemoryDevice>(script);
    try {
        fuzz::open(device);
        checkOpen(*device);
        logIn(device);
    } catch (const TAVO::Error&) {
    }
    require(meter.largest() <= 128 * 1024 + 128 * device->received(), "memory follows the bytes that came");
    return 0;
}
