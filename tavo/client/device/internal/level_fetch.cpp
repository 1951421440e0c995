#include <tavo/client/device/internal/level_fetch.h>

#include <algorithm>
#include <array>
#include <deque>
#include <utility>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/immortal.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

namespace base_v1_0 = TAVOXTranscode::base_v1_0;
namespace device_v1_0 = TAVOXTranscode::device_v1_0;

/// What an exchange should bring at most; how many calls that are is learned from those before.
constexpr std::size_t usualReply = std::size_t{2} * 1024 * 1024;
constexpr std::size_t mostCallsAtOnce = 1000;
constexpr std::size_t fewestToLearnFrom = 10;
constexpr std::size_t mostBytes = std::size_t{32} * 1024 * 1024;
/// What is longer is asked for again: a batch of such results would take memory without bounds.
constexpr std::size_t largestKept = std::size_t{256} * 1024;
constexpr unsigned mostRefusals = 8;

constexpr auto described = std::array{base_v1_0::type.name, base_v1_0::version.name, base_v1_0::members.name};

struct Kept : dto::reply_packet {
    KnownAnswers::Bytes bytes;
};

dto::result keepBytes(TAVOX::InputStream& in) {
    const auto reply = std::make_shared<Kept>();
    const auto size = static_cast<std::size_t>(in.remaining());
    if (size > largestKept)
        return {};
    if (const auto* bytes = in.readSpan(size))
        reply->bytes.assign(bytes, bytes + size);
    return {0, reply};
}

class Encoders : public base_v1_0::EncoderList {
public:
    Encoders() {
        insert_or_assign(std::string(device_v1_0::rootMembers.name), TAVOXTranscode::encodeNothing);
    }
};

class Decoders : public base_v1_0::DecoderList {
public:
    Decoders() {
        insert_or_assign(std::string(device_v1_0::rootMembers.name), keepBytes);
        for (auto& [name, decoder] : *this)
            decoder = keepBytes;
    }
};

/// Whether the device refused one call of a batch, and would answer another batch.
bool concernsOneCall(const Error& failure) {
    const auto& facts = failure.facts();
    return facts.origin == ErrorOrigin::device && facts.deviceErrorCode >= 1002u &&
           facts.deviceErrorCode <= 1006u;
}

} // namespace

/// An object that is asked for its descriptions without being asked for its methods first.
class LevelFetch::Asked : public Object_v1_0 {
public:
    Asked(const std::shared_ptr<Device>& device, const Node& node)
        : Object_v1_0(Unasked(), device, node.path, node.instanceId, nullptr, immortal<Encoders>(),
                      immortal<Decoders>())
        , whole_(node.whole) {}

    bool isWhole() const { return whole_; }

    void learn(const std::string& method, std::uint32_t id) { enter(method, id); }
    std::shared_ptr<Method> call(std::string_view name) const {
        return std::make_shared<Method>(*this, name, dto::Params());
    }

private:
    bool whole_;
};

LevelFetch::LevelFetch(std::shared_ptr<TAVOXDevice> device)
    : device_(std::move(device))
    , mostCalls_(mostCallsAtOnce) {
    for (auto& type : ObjectFactory::registeredTypes())
        typesWithFactory_.insert(std::move(type));
    device_->known_ = &answers_;
}

LevelFetch::~LevelFetch() { device_->known_ = nullptr; }

void LevelFetch::keep(const Calls& calls, std::size_t first, std::size_t count) {
    for (const auto& call : std::span(calls).subspan(first, count))
        if (const auto outcome = call->getResult(); outcome.reply)
            answers_.add(call->getObject()->getInstanceID(), call->getID(),
                         std::move(static_cast<Kept&>(*outcome.reply).bytes));
}

/// Returns how many of the calls are done with.
std::size_t LevelFetch::askSome(const Calls& calls, std::size_t first, std::size_t count) {
    const auto begin = calls.begin() + static_cast<std::ptrdiff_t>(first);
    try {
        device_->callMethods({begin, begin + static_cast<std::ptrdiff_t>(count)});
    } catch (const Error& failure) {
        if (failure.facts().origin != ErrorOrigin::device || !failure.facts().connectionUsable)
            throw;
        gaveUp_ = !concernsOneCall(failure) || ++refusals_ > mostRefusals;
        const auto answered =
            static_cast<std::size_t>(std::find_if_not(begin, begin + static_cast<std::ptrdiff_t>(count),
                                                      [](const auto& call) { return call->isResultSet(); }) -
                                     begin);
        // The last result may be that of the call at fault.
        keep(calls, first, answered - std::min<std::size_t>(answered, 1));
        return std::min(answered + 1, count);
    }
    keep(calls, first, count);
    return count;
}

void LevelFetch::ask(const Calls& calls) {
    for (std::size_t done = 0; done < calls.size() && !gaveUp_;) {
        const auto before = answers_.size();
        const auto asked = askSome(calls, done, std::min(calls.size() - done, mostCalls_));
        done += asked;
        if (asked >= fewestToLearnFrom) {
            const auto each = (answers_.size() - before) / asked + 1;
            mostCalls_ = std::clamp<std::size_t>(usualReply / each, 1, mostCallsAtOnce);
        }
        gaveUp_ = gaveUp_ || answers_.size() > mostBytes;
    }
}

template <class Reply>
std::shared_ptr<Reply> LevelFetch::answerOf(const Asked& object, std::string_view method,
                                            TAVOXTranscode::DecoderFunction& decoder) const {
    const std::string name(method);
    const auto* bytes =
        object.hasMethod(name) ? answers_.find(object.getInstanceID(), object.getMethodID(name)) : nullptr;
    if (!bytes)
        return nullptr;
    TAVOX::InputStream in(bytes->data(), bytes->size());
    auto reply = std::dynamic_pointer_cast<Reply>(decoder(in).reply);
    return in.failed() ? nullptr : reply;
}

std::vector<std::unique_ptr<LevelFetch::Asked>> LevelFetch::describe(const std::vector<Node>& level) {
    std::vector<std::unique_ptr<Asked>> objects;
    Calls calls;
    for (const auto& node : level) {
        if (known_.size() == ObjectFactory::mostObjects || !known_.insert(node.instanceId).second)
            continue;
        objects.push_back(std::make_unique<Asked>(device_, node));
        calls.push_back(objects.back()->call(base_v1_0::methods.name));
    }
    ask(calls);
    calls.clear();
    for (const auto& object : objects) {
        const auto listed =
            answerOf<dto::Base::MethodsReply>(*object, base_v1_0::methods.name, base_v1_0::decode_methods);
        if (!listed)
            continue;
        for (const auto& method : listed->methods)
            object->learn(method.name, method.id);
        for (const auto name : described)
            if (object->hasMethod(std::string(name)))
                calls.push_back(object->call(name));
    }
    ask(calls);
    return objects;
}

void LevelFetch::addChosen(std::string path, const dto::Base::Member& member, const ChosenPaths& paths,
                           std::vector<Node>& nodes) {
    if (paths.includeWhole(path))
        nodes.push_back({member.name, member.id, true});
    else if (paths.includes(path))
        nodes.push_back({std::move(path), member.id, false});
}

void LevelFetch::addMembers(const Asked& object, const ChosenPaths& paths, std::vector<Node>& nodes) const {
    const auto type = answerOf<dto::Base::TypeReply>(object, base_v1_0::type.name, base_v1_0::decode_type);
    const auto listed =
        answerOf<dto::Base::MembersReply>(object, base_v1_0::members.name, base_v1_0::decode_members);
    if (!listed)
        return;
    const bool whole = object.isWhole() || (type && typesWithFactory_.contains(type->type));
    for (const auto& member : listed->members) {
        if (nodes.size() == ObjectFactory::mostObjects)
            return;
        if (whole)
            nodes.push_back({member.name, member.id, true});
        else
            addChosen(object.getName() + Container::SEPARATOR + member.name, member, paths, nodes);
    }
}

void LevelFetch::fetchTrees(std::vector<Node> level, const ChosenPaths& paths) {
    while (!level.empty() && !gaveUp_) {
        const auto objects = describe(level);
        level.clear();
        for (const auto& object : objects)
            addMembers(*object, paths, level);
    }
}

void LevelFetch::fetchRootMembers(const Object_v1_0& deviceObject, std::vector<Node> others,
                                  const ChosenPaths& paths) {
    const std::string name(device_v1_0::rootMembers.name);
    if (!gaveUp_ && deviceObject.hasMethod(name)) {
        Asked asked(device_, {deviceObject.getFullName(), deviceObject.getInstanceID()});
        asked.learn(name, deviceObject.getMethodID(name));
        ask({asked.call(name)});
        if (const auto roots =
                answerOf<dto::Device::RootMembersReply>(asked, name, device_v1_0::decode_rootMembers))
            for (const auto& member : roots->members)
                if (others.size() < ObjectFactory::mostObjects)
                    addChosen(member.name, member, paths, others);
    }
    fetchTrees(std::move(others), paths);
}

} // namespace TAVO
