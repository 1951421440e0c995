#include <tests/support/fake_appliance.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace support {

namespace {

/// Takes a request apart.
class Cursor {
public:
    explicit Cursor(const Bytes& bytes)
        : bytes_(bytes) {}

    std::uint32_t number() {
        std::uint32_t value = 0;
        for (const auto byte : take(4))
            value = value << 8 | byte;
        return value;
    }

    Bytes take(std::size_t count) {
        if (bytes_.size() - at_ < count)
            throw std::runtime_error("the request is shorter than its numbers say");
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(at_);
        at_ += count;
        return {first, first + static_cast<std::ptrdiff_t>(count)};
    }

    bool atEnd() const { return at_ == bytes_.size(); }

private:
    const Bytes& bytes_;
    std::size_t at_ = 0;
};

} // namespace

FakeObject::FakeObject(std::uint32_t id, const std::string& type)
    : id_(id) {
    listed_.emplace_back("methods", 3);
    answered_["methods"] = {3, [this](const Bytes&) { return result(0, list(listed_)); }};
    method("members", [this](const Bytes&) { return result(0, list(members_)); });
    method("version", [this](const Bytes&) {
        return result(0, joined({u32(version_[0]), u32(version_[1]), u32(version_[2])}));
    });
    method("type", result(0, text(type)));
}

FakeObject& FakeObject::method(const std::string& name, Answer answer) {
    if (const auto known = answered_.find(name); known != answered_.end()) {
        known->second.answer = std::move(answer);
        return *this;
    }
    // Different on every object, so that an id taken from another object or from a list of names is noticed.
    const auto methodId = 1000 + 100 * id_ + 7 * static_cast<std::uint32_t>(answered_.size());
    answered_[name] = {methodId, std::move(answer)};
    return listedMethod(name, methodId);
}

FakeObject& FakeObject::method(const std::string& name, const Bytes& resultBlock) {
    return method(name, [resultBlock](const Bytes&) { return resultBlock; });
}

FakeObject& FakeObject::member(const std::string& name, std::uint32_t id) {
    members_.emplace_back(name, id);
    return *this;
}

FakeObject& FakeObject::version(std::uint32_t major, std::uint32_t minor, std::uint32_t bugfix) {
    version_ = {major, minor, bugfix};
    return *this;
}

FakeObject& FakeObject::listedMethod(const std::string& name, std::uint32_t methodId) {
    listed_.emplace_back(name, methodId);
    return *this;
}

FakeObject& FakeObject::withoutListedMethods() {
    listed_.clear();
    return *this;
}

Bytes FakeObject::list(const Pairs& pairs) {
    auto bytes = u32(static_cast<std::uint32_t>(pairs.size()));
    for (const auto& [name, id] : pairs)
        bytes = joined({bytes, text(name), u32(id)});
    return bytes;
}

void PrintTo(const FakeCall& call, std::ostream* out) {
    *out << "lock " << call.lockId << ", " << call.instanceId << "." << call.method << ", "
         << call.parameters.size() << " bytes";
}

FakeObject& FakeAppliance::add(std::uint32_t id, const std::string& type) {
    return objects_.emplace_back(id, type);
}

FakeObject& FakeAppliance::object(std::uint32_t id) {
    for (auto& candidate : objects_)
        if (candidate.id() == id)
            return candidate;
    throw DeviceFault{1002, "no object " + std::to_string(id)};
}

Bytes FakeAppliance::answer(const Bytes& request) {
    ++exchanges_;
    Cursor in(request);
    const auto lockId = in.number();
    const auto count = in.number();
    auto error = u32(0);
    Bytes results;
    std::uint32_t answered = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        FakeCall call;
        call.lockId = lockId;
        call.instanceId = in.number();
        const auto methodId = in.number();
        call.parameters = in.take(in.number());
        if (error != u32(0))
            continue;
        try {
            auto& target = object(call.instanceId);
            const auto method = std::find_if(target.answered_.begin(), target.answered_.end(),
                                             [&](const auto& entry) { return entry.second.id == methodId; });
            if (method == target.answered_.end())
                throw DeviceFault{1003, "no method " + std::to_string(methodId)};
            call.method = method->first;
            calls_.push_back(call);
            results = joined({results, block(method->second.answer(call.parameters))});
            ++answered;
        } catch (const DeviceFault& fault) {
            error = deviceError(fault.code, fault.message);
        }
    }
    if (!in.atEnd())
        throw std::runtime_error("the request is longer than its numbers say");
    return joined({u32(0), error, u32(answered), results});
}

std::vector<std::string> FakeAppliance::callNames() const {
    std::vector<std::string> names;
    for (const auto& call : calls_)
        names.push_back(std::to_string(call.instanceId) + "." + call.method);
    return names;
}

void FakeAppliance::forgetCalls() {
    calls_.clear();
    exchanges_ = 0;
}

void addFixedObjects(FakeAppliance& appliance) {
    appliance.add(2, "private");
    appliance.add(1, "system");
    appliance.add(0, "device")
        .method("unlock")
        .method("login", result(0, block({1, 2, 3})))
        .method("getKey", result(0, text("tavo-dev-key-000")))
        .method("lock", result(0, u32(0x51)))
        .method("rootMembers", result(0, u32(0)));
}

} // namespace support
