#include <tavo/trace/names.h>

#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/input_stream.h>

namespace TAVO::trace {

namespace base = TAVOXTranscode::base_v1_0;

namespace {

constexpr std::size_t mostHeldBytes = std::size_t{64} << 20;
constexpr std::size_t longestPath = 1024;
/// What an entry takes besides its text.
constexpr std::size_t entryBytes = 128;

/// The reply in a result; null if it cannot be read, or tells of a failure.
template <class Reply>
std::shared_ptr<Reply> replyIn(Bytes result, TAVOXTranscode::DecoderFunction& decoder) {
    TAVOX::InputStream in(result.data(), result.size());
    const auto outcome = decoder(in);
    return in.failed() || outcome.code != 0 ? nullptr : std::dynamic_pointer_cast<Reply>(outcome.reply);
}

Version anyVersion() {
    constexpr auto any = static_cast<std::uint32_t>(Version::DontCare);
    return Version(dto::Base::Version{any, any, any});
}

} // namespace

Names::Names() {
    objects_[DeviceFactory::DeviceInstanceID] = {"device", "device", anyVersion(), {}};
    objects_[DeviceFactory::SystemInstanceID] = {"system", "system", anyVersion(), {}};
    objects_[DeviceFactory::PrivateInstanceID] = {"private", "private", anyVersion(), {}};
}

bool Names::hasRoom(std::size_t bytes) {
    if (heldBytes_ + bytes > mostHeldBytes)
        return false;
    heldBytes_ += bytes;
    return true;
}

const std::string* Names::method(const CallId& call) const {
    static const std::string methods = "methods";
    if (const auto object = objects_.find(call.instanceId); object != objects_.end()) {
        const auto named = object->second.methods.find(call.methodId);
        if (named != object->second.methods.end())
            return &named->second;
    }
    return call.methodId == Object_v1_0::MethodsStaticID ? &methods : nullptr;
}

bool Names::knows(std::uint32_t instanceId) const {
    const auto object = objects_.find(instanceId);
    return object != objects_.end() && !object->second.methods.empty();
}

std::string Names::nameOf(const CallId& call) const {
    const auto object = objects_.find(call.instanceId);
    const auto* name = method(call);
    return (object == objects_.end() || object->second.path.empty() ? "#" + std::to_string(call.instanceId)
                                                                    : object->second.path) +
           "." + (name ? *name : "#" + std::to_string(call.methodId));
}

const TAVOXTranscode::MethodRow* Names::row(const CallId& call) const {
    const auto* name = method(call);
    if (!name)
        return nullptr;
    const auto find = [&](TAVOXTranscode::MethodRows rows) -> const TAVOXTranscode::MethodRow* {
        for (const auto& row : rows)
            if (row.name == *name)
                return &row;
        return nullptr;
    };
    if (const auto object = objects_.find(call.instanceId); object != objects_.end())
        if (const auto* table = findObjectTable(object->second.type, object->second.version))
            if (const auto* row = find(table->rows))
                return row;
    return find(base::rows());
}

bool Names::teaches(const CallId& call) const {
    const auto* name = method(call);
    return name && (*name == "methods" || *name == "methodsVerbose" || *name == "members" ||
                    *name == "rootMembers" || *name == "type" || *name == "version");
}

void Names::learnMembers(std::uint32_t instanceId, const std::string& method, Bytes result) {
    const auto name = [&](const auto& reply, const std::string& above) {
        if (!reply)
            return;
        for (const auto& member : reply->members)
            if (member.id > DeviceFactory::PrivateInstanceID &&
                above.size() + member.name.size() < longestPath &&
                hasRoom(entryBytes + above.size() + member.name.size())) {
                auto [object, isNew] = objects_.try_emplace(member.id);
                if (isNew)
                    object->second.version = anyVersion();
                object->second.path = above + member.name;
            }
    };
    if (method == "members")
        name(replyIn<dto::Base::MembersReply>(result, base::decode_members),
             objects_.contains(instanceId) ? objects_[instanceId].path + "." : "");
    else
        name(replyIn<dto::Device::RootMembersReply>(result, TAVOXTranscode::device_v1_0::decode_rootMembers),
             "");
}

void Names::learn(const CallId& call, Bytes result) {
    const auto* known = method(call);
    if (!known || !teaches(call) || !hasRoom(entryBytes))
        return;
    const auto name = *known;
    if (name == "members" || name == "rootMembers")
        return learnMembers(call.instanceId, name, result);
    auto [place, isNew] = objects_.try_emplace(call.instanceId);
    auto& object = place->second;
    if (isNew)
        object.version = anyVersion();
    const bool isFixed = call.instanceId <= DeviceFactory::PrivateInstanceID;
    if (name == "type") {
        const auto reply = replyIn<dto::Base::TypeReply>(result, base::decode_type);
        if (reply && !isFixed && hasRoom(reply->type.size()))
            object.type = reply->type;
    } else if (name == "version") {
        if (const auto reply = replyIn<dto::Base::VersionReply>(result, base::decode_version))
            object.version = Version(reply->version);
    } else if (const auto reply = replyIn<dto::Base::MethodsReply>(
                   result, name == "methods" ? base::decode_methods : base::decode_methodsVerbose)) {
        std::map<std::uint32_t, std::string> methods;
        std::set<std::uint32_t> ambiguous;
        for (auto& method : reply->methods)
            if (!hasRoom(entryBytes + method.name.size()))
                break;
            else if (!methods.try_emplace(method.id, std::move(method.name)).second)
                ambiguous.insert(method.id);
        for (const auto id : ambiguous)
            methods.erase(id);
        object.methods = std::move(methods);
    }
}

void Names::load(std::string_view document) {
    using Json = nlohmann::json;
    const auto refuse = [] {
        throw std::runtime_error("is no document of 'tavo --json tree --methods': its \"objects\" must have "
                                 "\"methods\"");
    };
    const auto root = Json::parse(document, nullptr, false);
    if (!root.is_object() || !root.contains("objects") || !root["objects"].is_array())
        refuse();
    // A list instead of recursion, because nobody bounds how deep it is.
    std::vector<const Json*> waiting{&root["objects"]};
    try {
        while (!waiting.empty()) {
            const auto* list = waiting.back();
            waiting.pop_back();
            for (const auto& entry : *list) {
                Object object{entry.at("fullName").get<std::string>(),
                              entry.at("type").get<std::string>(),
                              anyVersion(),
                              {}};
                try {
                    object.version = Version(entry.at("version").get<std::string>());
                } catch (const Error&) { // any version
                }
                for (const auto& method : entry.at("methods"))
                    object.methods[method.at("id").get<std::uint32_t>()] =
                        method.at("name").get<std::string>();
                objects_[entry.at("instanceId").get<std::uint32_t>()] = std::move(object);
                waiting.push_back(&entry.at("members"));
            }
        }
    } catch (const Json::exception&) {
        refuse();
    }
}

} // namespace TAVO::trace
