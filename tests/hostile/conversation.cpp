#include <tests/hostile/conversation.h>

#include <algorithm>
#include <optional>
#include <stdexcept>

#include <tests/hostile/conversation_parts.h>
#include <tests/hostile/positions.h>

namespace hostile {

namespace parts {

using support::joined;
using support::u32;

Bytes callOf(std::uint32_t instance, std::uint32_t method, const Bytes& parameters) {
    return joined({u32(instance), u32(method), support::block(parameters)});
}

Bytes requestOf(std::uint32_t heldLock, std::initializer_list<Bytes> calls) {
    return joined({u32(heldLock), u32(static_cast<std::uint32_t>(calls.size())), joined(calls)});
}

Exchange single(std::uint32_t heldLock, std::uint32_t instance, std::uint32_t method, const Call& call,
                const Layout& content, const Bytes& parameters) {
    return {call.fullName,
            requestOf(heldLock, {callOf(instance, method, parameters)}),
            {call},
            reply({result(call.fullName, content)})};
}

Bytes credentials() { return joined({support::text("ann"), support::text("pw")}); }

std::vector<Exchange> building(std::uint32_t heldLock, const Described& object) {
    const auto ask = [&](MethodId method, const char* name, const char* form, const Layout& content) {
        return single(heldLock, object.instance, method, {object.name + "." + name, form}, content);
    };
    Names all{{"type", type}};
    if (object.asksVersion)
        all.push_back({"version", version});
    all.push_back({"members", members});
    all.insert(all.end(), object.methods.begin(), object.methods.end());

    std::vector<Exchange> exchanges{ask(methods, "methods", "[su]", names(all))};
    exchanges.back().neededNext = "type";
    exchanges.push_back(ask(type, "type", "s", text("type", object.type)));
    if (object.asksVersion)
        exchanges.push_back(ask(version, "version", "uuu", versionOf(1, 0, 0)));
    exchanges.push_back(ask(methods, "methods", "[su]", names(all)));
    exchanges.back().neededNext = "members";
    exchanges.push_back(ask(members, "members", "[su]", names(object.children)));
    exchanges.back().withoutNames = object.withoutChildren;
    return exchanges;
}

std::vector<Exchange> opening(const Names& methods, const Names& root) {
    Names all{{"rootMembers", rootMembers}, {"lock", lock}, {"unlock", unlock}, {"getKey", getKey}};
    all.insert(all.end(), methods.begin(), methods.end());
    auto exchanges = building(0, {.instance = device, .name = "device", .type = "device", .methods = all});
    append(exchanges,
           {single(0, device, getKey, {"device.getKey", "s"}, text("key", "tavo-dev-key-000")),
            single(0, device, lock, {"device.lock", "u"}, number("lock id", lockId), credentials())});
    append(
        exchanges,
        building(lockId, {.instance = private_, .name = "private", .type = "private", .asksVersion = false}));
    append(exchanges, building(lockId, {.instance = system, .name = "system", .type = "system"}));
    append(exchanges, {single(lockId, device, rootMembers, {"device.rootMembers", "[su]"}, names(root))});
    exchanges.back().withoutNames = {WithoutNames::Then::endOpening};
    return exchanges;
}

Exchange unlocking() { return single(lockId, device, unlock, {"device.unlock", ""}, {}, credentials()); }

} // namespace parts

Conversation::Conversation(std::string itsName, std::vector<Exchange> itsExchanges)
    : name(std::move(itsName))
    , exchanges(std::move(itsExchanges))
    , keyPlace(placeOf("device.getKey"))
    , lockPlace(placeOf("device.lock"))
    , rootMembersPlace(placeOf("device.rootMembers"))
    , lastOfOpening(rootMembersPlace)
    // It reads ahead into 128 KiB, keeps 64 KiB for what must lie together, and begins a long text in another
    // 64 KiB.
    , mostMemory(320 * 1024) {
    for (const auto& exchange : exchanges)
        if (exchange.reply.size() > smallReply)
            mostMemory += 6 * exchange.reply.size();
    // A text that is longer than 64 KiB makes room for 1 MiB.
    if (mostMemory > 320 * 1024)
        mostMemory += 1024 * 1024;
    for (auto place = rootMembersPlace; place < places(); ++place)
        if (exchanges[place].name.ends_with(".members"))
            lastOfOpening = place;
}

std::size_t Conversation::placeOf(const std::string& exchangeName) const {
    const auto found = std::find_if(exchanges.begin(), exchanges.end(),
                                    [&](const auto& exchange) { return exchange.name == exchangeName; });
    if (found == exchanges.end())
        throw std::invalid_argument("the conversation " + name + " has no " + exchangeName);
    return static_cast<std::size_t>(found - exchanges.begin());
}

const Conversation& conversation(std::size_t number) {
    static std::array<std::optional<Conversation>, makersOfConversations.size()> made;
    auto& wanted = made.at(number);
    if (!wanted)
        wanted = makersOfConversations[number]();
    return *wanted;
}

const Exchange& callAfterwards() {
    static const auto exchange =
        parts::single(lockId, parts::device, parts::type, {"device.type", "s"}, text("type", "device"));
    return exchange;
}

const Exchange& keyAfterwards() {
    static const auto exchange = parts::single(lockId, parts::device, parts::getKey, {"device.getKey", "s"},
                                               text("key", "tavo-dev-key-000"));
    return exchange;
}

} // namespace hostile
