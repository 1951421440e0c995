#include <tavo/c/open_device.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include <tavo/c/refusal.h>

namespace TAVO::c {

namespace {

using std::chrono::milliseconds;

void collect(const std::shared_ptr<Container>& node, tavo_device::Objects& objects) {
    if (auto object = std::dynamic_pointer_cast<Object_v1_0>(node)) {
        auto name = object->getFullName();
        objects.emplace(std::move(name), std::move(object));
    }
    for (const auto& child : node->getChildren())
        collect(child, objects);
}

tavo_device::Objects objectsOf(const Device& device) {
    tavo_device::Objects objects;
    collect(device.getDevice(), objects);
    collect(device.getSystem(), objects);
    collect(device.getPrivate(), objects);
    for (const auto& member : device.getChildren())
        collect(member, objects);
    return objects;
}

[[noreturn]] void refuse(const std::string& reason) { throw Refusal(TAVO_ERROR_ARGUMENT, reason); }

/// The options as this version knows them, from a caller of an earlier or later one.
tavo_options known(const tavo_options& given) {
    constexpr std::size_t smallest = offsetof(tavo_options, only_count) + sizeof(given.only_count);
    if (given.size < smallest)
        refuse("'options.size' is " + std::to_string(given.size) + ", which is less than " +
               std::to_string(smallest));
    const auto* bytes = reinterpret_cast<const unsigned char*>(&given);
    const auto isSet = [](unsigned char byte) { return byte != 0; };
    if (given.size > sizeof(tavo_options) &&
        std::any_of(bytes + sizeof(tavo_options), bytes + given.size, isSet))
        refuse("'options' sets members that this version of the library does not know");
    tavo_options options{};
    std::memcpy(&options, bytes, std::min(given.size, sizeof(options)));
    return options;
}

std::vector<std::string> namesIn(const tavo_options& options) {
    if (!options.only && options.only_count > 0)
        refuse("'options.only' is NULL, but 'options.only_count' is not 0");
    std::vector<std::string> names;
    for (std::size_t i = 0; i < options.only_count; ++i) {
        require(options.only[i], ("options.only[" + std::to_string(i) + "]").c_str());
        names.emplace_back(options.only[i]);
    }
    return names;
}

int portIn(const tavo_options& options) {
    constexpr int highest = 65535;
    if (options.port < 0 || options.port > highest)
        refuse("'options.port' is " + std::to_string(options.port) + ", which is no port");
    if (options.port > 0)
        return options.port;
    return options.secure ? DeviceFactory::DefaultSecurePort : DeviceFactory::DefaultPort;
}

} // namespace

TimeLimit timeLimitOf(std::uint32_t given) {
    constexpr milliseconds usual(10000);
    if (given == TAVO_NO_TIMEOUT)
        return {};
    return given == 0 ? usual : milliseconds(given);
}

void openDevice(tavo_device& handle, const tavo_options& given) {
    if (handle.device)
        refuse("the device is open already");
    const auto options = known(given);
    require(options.host, "options.host");
    if (*options.host == '\0')
        refuse("'options.host' is empty");
    require(options.user, "options.user");
    const auto port = portIn(options);
    const OpenOptions how{.timeLimit = timeLimitOf(options.timeout_ms),
                          .interrupter = handle.interrupter,
                          .byLevels = true,
                          .keepHeldLock = options.keep_held_lock != 0,
                          .only = namesIn(options)};
    CoreObjects::registerCoreObjects();
    HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    auto device = DeviceFactory::buildDevice(
        options.host, port, options.user, options.password ? options.password : "", options.secure != 0, how);
    handle.objects = objectsOf(*device);
    handle.device = std::move(device);
}

void closeDevice(tavo_device& handle) noexcept {
    handle.objects.clear();
    if (!handle.device)
        return;
    try {
        constexpr milliseconds longest(2000);
        const auto limit = handle.device->timeLimit();
        handle.device->setTimeLimit(limit ? std::min(*limit, longest) : longest);
    } catch (...) {
        // The limit of the opening holds.
    }
    handle.device.reset();
}

Device& requireOpen(const tavo_device& handle) {
    if (!handle.device)
        throw Refusal(TAVO_ERROR_CLOSED, "the device is not open");
    return *handle.device;
}

} // namespace TAVO::c
