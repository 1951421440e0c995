#include <tests/fuzz/simulated_device.h>
#include <tests/support/all_types.h>

#include <algorithm>
#include <map>

#include <tavo/client.h>
#include <tavo/client/exchange/server_keys.h>
#include <tavo/simulator/objects/internal/object_description.h>
#include <tavo/simulator/simulator.h>
#include <tavo/simulator/topology.h>

namespace fuzz {

namespace {

std::vector<std::uint8_t> knownKey() {
    const auto& key = TAVO::serverKeys().front().key;
    return {key.begin(), key.end()};
}

void collect(const std::shared_ptr<TAVO::Container>& node,
             std::vector<std::shared_ptr<TAVO::Object_v1_0>>& objects) {
    if (auto object = std::dynamic_pointer_cast<TAVO::Object_v1_0>(node))
        objects.push_back(std::move(object));
    for (const auto& child : node->getChildren())
        collect(child, objects);
}

TAVO::simulator::Topology topologyOf(const TAVO::ObjectTable& table) {
    using TAVO::simulator::ObjectDescription;
    const std::vector<ObjectDescription> objects{
        {.name = "power", .type = "relay", .options = {{"drives", "power"}}},
        {.name = "object", .type = std::string(table.type), .version = std::string(table.version)}};
    return {std::string(table.type), "", [objects](auto& appliance) { addObjects(appliance, objects); }};
}

} // namespace

MemoryAppliance::MemoryAppliance(const TAVO::simulator::Topology& topology)
    : appliance_(TAVO::simulator::Options().accounts, knownKey()) {
    appliance_.clock().freeze();
    appliance_.clock().setTime(0);
    topology.build(appliance_);
}

TAVO::simulator::Response MemoryAppliance::respond(View request) {
    static const TAVO::simulator::CallRunner::Log log = [](const TAVO::simulator::CallRecord& record) {
        static_cast<void>(record.toString());
    };
    auto response = TAVO::simulator::CallRunner(appliance_, ++requests_, 1, {}, log).run(request);
    appliance_.clock().advance(response.delay);
    return response;
}

TAVO::simulator::Response MemoryAppliance::refuse() {
    static const TAVO::simulator::CallRunner::Log log = [](const auto&) {};
    return TAVO::simulator::CallRunner(appliance_, ++requests_, 1, {}, log).refuse();
}

std::uint32_t MemoryAppliance::lockId() {
    const auto& holder = appliance_.lock().holder();
    return holder ? holder->lockId : 0;
}

const std::vector<TAVO::simulator::Topology>& topologies() {
    static const auto all = [] {
        auto made = TAVO::simulator::topologies();
        for (const auto& table : support::allTables())
            made.push_back(topologyOf(table));
        return made;
    }();
    return all;
}

const TAVO::simulator::Topology& topologyNumber(std::size_t number) {
    return topologies()[number % topologies().size()];
}

void MemoryDevice::Transport::send(const TAVOX::OutputStream::Chunks& chunks) {
    Bytes request;
    for (const auto chunk : chunks)
        request.insert(request.end(), chunk.begin(), chunk.end());
    reply = peer.answer(request);
    taken = 0;
    total += reply.size();
}

void MemoryDevice::Transport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    // The whole run is touched, as the system would: the memory must be there.
    std::fill_n(buffer, length, std::uint8_t{0xEE});
    if (reply.size() - taken < length)
        throw TAVO::NetworkError("closed");
    std::copy_n(reply.begin() + static_cast<std::ptrdiff_t>(taken), length, buffer);
    taken += static_cast<std::size_t>(length);
}

MemoryDevice::~MemoryDevice() {
    try {
        MemoryDevice::unlock();
    } catch (const TAVO::Error&) { // as TAVOXDevice
    }
}

void MemoryDevice::call(std::shared_ptr<TAVO::Method> method) {
    exchange_.run(lockId_, std::span(&method, 1));
}

void MemoryDevice::multicall(std::shared_ptr<TAVO::MulticallQueue> queue) {
    const auto& methods = queue->getMethods();
    const std::vector<std::shared_ptr<TAVO::Method>> batch(methods.begin(), methods.end());
    exchange_.run(lockId_, batch);
}

void MemoryDevice::unlock() {
    if (lockId_ == 0)
        return;
    call(getDevice()->getUnlockMethod(user_, password_));
    lockId_ = 0;
}

void MemoryDevice::getKey() {
    const auto method = getDevice()->getGetKeyMethod();
    call(method);
    key_ = method->value().key;
}

bool MemoryDevice::checkTavoKey(bool& first, bool& second) const {
    first = second = false;
    return key_ == knownKey();
}

void MemoryDevice::lock(const std::string& user, const std::string& password) {
    user_ = user;
    password_ = password;
    lock();
}

void MemoryDevice::lock() {
    const auto method = getDevice()->getLockMethod(user_, password_);
    call(method);
    lockId_ = method->value().lockId;
}

bool MemoryDevice::login(const std::string& user, const std::string&) {
    call(getDevice()->getLoginMethod(user));
    return false;
}

void open(const std::shared_ptr<MemoryDevice>& device) {
    static const bool registered = [] {
        support::registerAllTypes();
        return true;
    }();
    static_cast<void>(registered);
    const auto object = std::dynamic_pointer_cast<TAVO::Device_v1_0>(
        TAVO::ObjectFactory::buildObject(device, "device", TAVO::DeviceFactory::DeviceInstanceID, nullptr));
    if (!object)
        throw TAVO::SpecificationError("device object not found.");
    device->setDevice(object);
    device->getKey();
    TAVO::DeviceFactory::openDevice(device, "engineer", "tavo");
}

std::vector<std::shared_ptr<TAVO::Object_v1_0>> objectsOf(TAVO::Device& device) {
    std::vector<std::shared_ptr<TAVO::Object_v1_0>> objects;
    collect(device.getDevice(), objects);
    collect(device.getSystem(), objects);
    collect(device.getPrivate(), objects);
    for (const auto& child : device.getChildren())
        collect(child, objects);
    return objects;
}

} // namespace fuzz
