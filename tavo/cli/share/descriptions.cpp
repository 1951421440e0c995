#include <tavo/cli/share/descriptions.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/wire/input_stream.h>

namespace TAVO::cli {

namespace {

constexpr std::size_t mostHeldBytes = std::size_t{8} << 20;
constexpr std::size_t mostObjects = 16384;

struct Meaning {
    std::string_view method;
    CallMeaning meaning;
};

constexpr std::array ofEveryObject{
    Meaning{"type", CallMeaning::description},           Meaning{"version", CallMeaning::description},
    Meaning{"members", CallMeaning::description},        Meaning{"methods", CallMeaning::description},
    Meaning{"methodsVerbose", CallMeaning::description},
};

constexpr std::array ofDevice{
    Meaning{"info", CallMeaning::description},   Meaning{"rootMembers", CallMeaning::description},
    Meaning{"getKey", CallMeaning::description}, Meaning{"lock", CallMeaning::lock},
    Meaning{"unlock", CallMeaning::unlock},      Meaning{"login", CallMeaning::login},
};

constexpr std::array ofSystem{
    Meaning{"deviceReset", CallMeaning::change},
    Meaning{"firmwareUpdate", CallMeaning::change},
    // The update goes on after its call; who waits for its end asks this.
    Meaning{"firmwareStatus", CallMeaning::change},
};

const Meaning* findIn(std::span<const Meaning> meanings, std::string_view method) {
    const auto* found = std::find_if(meanings.data(), meanings.data() + meanings.size(),
                                     [&](const Meaning& one) { return one.method == method; });
    return found == meanings.data() + meanings.size() ? nullptr : found;
}

bool succeeded(const Descriptions::Bytes& result) {
    TAVOX::InputStream in(result.data(), result.size());
    return in.readInt32() == 0 && !in.failed();
}

/// The reply in a result; null if it cannot be read.
template <class Reply>
std::shared_ptr<Reply> replyIn(const Descriptions::Bytes& result, TAVOXTranscode::DecoderFunction& decoder) {
    TAVOX::InputStream in(result.data(), result.size());
    const auto outcome = decoder(in);
    return in.failed() ? nullptr : std::dynamic_pointer_cast<Reply>(outcome.reply);
}

} // namespace

void Descriptions::setFixedMethods(std::uint32_t instanceId, const std::string& name,
                                   const Methods& methods) {
    Object object{name, {}, {}};
    for (const auto& method : methods)
        object.methods[method.id] = method.name;
    objects_[instanceId] = object;
    fixed_[instanceId] = std::move(object);
}

const std::string* Descriptions::methodName(const server::CallFrame& call) const {
    static const std::string methods = "methods";
    const auto object = objects_.find(call.instanceId);
    if (object != objects_.end())
        if (const auto named = object->second.methods.find(call.methodId);
            named != object->second.methods.end())
            return &named->second;
    return call.methodId == Object_v1_0::MethodsStaticID ? &methods : nullptr;
}

CallMeaning Descriptions::meaningOf(const server::CallFrame& call) const {
    const auto* method = methodName(call);
    if (!method)
        return CallMeaning::work;
    const Meaning* meaning = findIn(ofEveryObject, *method);
    if (!meaning && call.instanceId == DeviceFactory::DeviceInstanceID)
        meaning = findIn(ofDevice, *method);
    if (!meaning && call.instanceId == DeviceFactory::SystemInstanceID)
        meaning = findIn(ofSystem, *method);
    if (!meaning || (meaning->meaning == CallMeaning::description && !call.parameters.empty()))
        return CallMeaning::work;
    return meaning->meaning;
}

const Descriptions::Bytes* Descriptions::find(const server::CallFrame& call) const {
    const auto object = objects_.find(call.instanceId);
    if (object == objects_.end())
        return nullptr;
    const auto result = object->second.results.find(call.methodId);
    return result == object->second.results.end() ? nullptr : &result->second;
}

void Descriptions::learn(const server::CallFrame& call, Bytes result) {
    const auto* method = methodName(call);
    if (!method || !succeeded(result) || heldBytes_ + result.size() > mostHeldBytes)
        return;
    const auto name = *method;
    if (name == "methods" || name == "methodsVerbose")
        learnMethods(call.instanceId, result);
    else if (name == "members" || name == "rootMembers")
        learnMembers(call.instanceId, name, result);
    auto& kept = objects_[call.instanceId].results[call.methodId];
    heldBytes_ += result.size() - kept.size();
    kept = std::move(result);
}

void Descriptions::learnMethods(std::uint32_t instanceId, const Bytes& result) {
    if (fixed_.contains(instanceId))
        return;
    const auto reply = replyIn<dto::Base::MethodsReply>(result, TAVOXTranscode::base_v1_0::decode_methods);
    if (!reply)
        return;
    auto& names = objects_[instanceId].methods;
    names.clear();
    for (auto& method : reply->methods)
        names[method.id] = std::move(method.name);
}

void Descriptions::learnMembers(std::uint32_t instanceId, const std::string& method, const Bytes& result) {
    const auto nameMembers = [&](const auto& reply, const std::string& above) {
        constexpr std::size_t longestPath = 1024;
        for (const auto& member : reply->members)
            if (!fixed_.contains(member.id) && objects_.size() < mostObjects &&
                above.size() + member.name.size() < longestPath)
                objects_[member.id].path = above + member.name;
    };
    using namespace TAVOXTranscode;
    if (method == "rootMembers") {
        if (const auto reply =
                replyIn<dto::Device::RootMembersReply>(result, device_v1_0::decode_rootMembers))
            nameMembers(reply, "");
    } else if (const auto reply = replyIn<dto::Base::MembersReply>(result, base_v1_0::decode_members)) {
        const auto path = objects_[instanceId].path;
        nameMembers(reply, path.empty() ? "" : path + ".");
    }
}

void Descriptions::forget() {
    objects_ = fixed_;
    heldBytes_ = 0;
}

std::string Descriptions::nameOf(const server::CallFrame& call) const {
    const auto object = objects_.find(call.instanceId);
    const bool isNamed = object != objects_.end() && !object->second.path.empty();
    const auto* method = methodName(call);
    return (isNamed ? object->second.path : fmt::format("#{}", call.instanceId)) + "." +
           (method ? *method : fmt::format("#{}", call.methodId));
}

} // namespace TAVO::cli
