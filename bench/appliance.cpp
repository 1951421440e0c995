#include <bench/appliance.h>

#include <algorithm>
#include <string>

namespace bench {

namespace {

using support::block;
using support::joined;
using support::u32;

std::uint32_t numberAt(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

} // namespace

RequestKey RequestKey::of(const std::uint8_t* bytes) {
    RequestKey key{numberAt(bytes + 4), numberAt(bytes + 8), numberAt(bytes + 12), numberAt(bytes + 16)};
    if (key.parameterSize >= 4)
        key.firstParameter = numberAt(bytes + 20);
    return key;
}

std::uint64_t RequestKey::requestLength(const std::uint8_t* bytes) {
    return requestHeadSize + std::uint64_t{numberAt(bytes + 4)} * (callHeadSize + numberAt(bytes + 16));
}

Appliance::Appliance(std::size_t gauges)
    : gauges_(gauges) {
    support::addFixedObjects(objects_);
    auto roots = Bytes();
    for (std::uint32_t i = 0; i < gauges; ++i) {
        const auto id = firstGauge + i;
        auto& gauge = objects_.add(id, "gauge");
        for (const auto* name : {"exchange", "exchangeNumberAndAllData"})
            gauge.method(name, support::result(0, joined({u32(42), block(Bytes(16, 0x5A))})));
        gauge.method("turn", support::result(0, Bytes{1}));
        gauge.method("store");
        gauge.method("fetch", [](const Bytes& length) {
            return support::result(0, block(Bytes(numberAt(length.data()), 0x5A)));
        });
        const auto name = "gauge" + std::to_string(i);
        if (i % groupSize == 0)
            roots = joined({roots, support::text(name), u32(id)});
        else
            objects_.object(id - i % groupSize).member(name, id);
    }
    const auto rootCount = static_cast<std::uint32_t>((gauges + groupSize - 1) / groupSize);
    objects_.object(0).method("rootMembers", support::result(0, joined({u32(rootCount), roots})));
}

Bytes Appliance::request(std::uint32_t lock, std::uint32_t instanceId, const char* method,
                         const Bytes& parameters, std::uint32_t count) {
    const auto call = joined({u32(instanceId), u32(objects_.object(instanceId).methodId(method)),
                              u32(static_cast<std::uint32_t>(parameters.size())), parameters});
    auto request = joined({u32(lock), u32(count)});
    request.reserve(request.size() + count * call.size());
    for (std::uint32_t i = 0; i < count; ++i)
        request.insert(request.end(), call.begin(), call.end());
    return request;
}

void Appliance::addObjectRequests(std::vector<Bytes>& requests, std::uint32_t lock, std::uint32_t id,
                                  std::initializer_list<const char*> methods) {
    for (const auto* method : methods)
        requests.push_back(request(lock, id, method));
}

std::vector<Bytes> Appliance::openingRequests(const std::string& user, const std::string& password) {
    std::vector<Bytes> requests;
    addObjectRequests(requests, 0, 0, {"methods", "type", "version", "methods", "members"});
    requests.push_back(request(0, 0, "lock", joined({support::text(user), support::text(password)})));
    addObjectRequests(requests, lockId, 2, {"methods", "type", "methods", "members"});
    addObjectRequests(requests, lockId, 1, {"methods", "type", "version", "methods", "members"});
    addObjectRequests(requests, lockId, 0, {"rootMembers"});
    for (std::uint32_t i = 0; i < gauges_; ++i)
        addObjectRequests(requests, lockId, firstGauge + i, {"methods", "type", "methods", "members"});
    return requests;
}

const Bytes& Appliance::reply(const RequestKey& key) {
    const std::lock_guard lock(mutex_);
    auto& reply = replies_[key];
    if (reply.empty()) {
        const auto parameters = key.parameterSize >= 4 ? u32(key.firstParameter) : Bytes();
        const auto single = objects_.answer(
            joined({u32(0), u32(1), u32(key.instanceId), u32(key.methodId), block(parameters)}));
        reply = joined({u32(0), u32(0), u32(key.count)});
        reply.reserve(reply.size() + key.count * (single.size() - replyHeadSize));
        for (std::uint32_t i = 0; i < key.count; ++i)
            reply.insert(reply.end(), single.begin() + replyHeadSize, single.end());
    }
    return reply;
}

const Bytes& Appliance::replyToDifferentCalls(const Bytes& request) {
    const std::lock_guard lock(mutex_);
    auto& reply = repliesToDifferentCalls_[request];
    if (reply.empty())
        reply = objects_.answer(request);
    return reply;
}

const Bytes& Appliance::replyTo(const Bytes& request) { return reply(RequestKey::of(request.data())); }

} // namespace bench
