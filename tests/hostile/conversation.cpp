#include <tests/hostile/conversation.h>

namespace hostile {

namespace {

using support::joined;
using support::u32;

// Instance ids, and on each object the ids of its methods.
enum Instance : std::uint32_t { device = 0, system = 1, private_ = 2, uart = 5 };
enum MethodId : std::uint32_t {
    methods = 3,
    type = 0x11,
    version = 0x12,
    members = 0x13,
    rootMembers = 0x14,
    lock = 0x15,
    unlock = 0x16,
    getKey = 0x17,
    info = 0x18,
    open = 0x21,
    close = 0x22,
    recv = 0x23,
    reserve = 0x24,
    available = 0x25
};

Bytes call(Instance instance, MethodId method, const Bytes& parameters = {}) {
    return joined({u32(instance), u32(method), support::block(parameters)});
}

Bytes request(std::uint32_t lock, std::initializer_list<Bytes> calls) {
    return joined({u32(lock), u32(static_cast<std::uint32_t>(calls.size())), joined(calls)});
}

Exchange single(std::uint32_t heldLock, Instance instance, MethodId method, const std::string& name,
                const std::string& form, const Layout& content, const Bytes& parameters = {}) {
    return {name,
            request(heldLock, {call(instance, method, parameters)}),
            {{name, form}},
            reply({result(name, content)})};
}

const Layout deviceMethods = names({{"type", type},
                                    {"version", version},
                                    {"members", members},
                                    {"rootMembers", rootMembers},
                                    {"lock", lock},
                                    {"unlock", unlock},
                                    {"getKey", getKey},
                                    {"info", info}});
const Layout privateMethods = names({{"type", type}, {"members", members}});
const Layout systemMethods = names({{"type", type}, {"version", version}, {"members", members}});
const Layout uartMethods = names({{"type", type},
                                  {"version", version},
                                  {"members", members},
                                  {"open", open},
                                  {"close", close},
                                  {"recv", recv},
                                  {"reserve", reserve},
                                  {"available", available}});

/// What building one object takes; a type that is served in any version is not asked for it.
std::vector<Exchange> building(std::uint32_t heldLock, Instance instance, const std::string& name,
                               const std::string& typeName, const Layout& methodNames, bool asksVersion) {
    auto probed = single(heldLock, instance, methods, name + ".methods", "[su]", methodNames);
    probed.neededNext = "type";
    std::vector<Exchange> all{probed};
    all.push_back(single(heldLock, instance, type, name + ".type", "s", text("type", typeName)));
    if (asksVersion)
        all.push_back(
            single(heldLock, instance, version, name + ".version", "uuu", hostile::version(1, 0, 0)));
    all.push_back(single(heldLock, instance, methods, name + ".methods", "[su]", methodNames));
    all.back().neededNext = "members";
    all.push_back(single(heldLock, instance, members, name + ".members", "[su]", names({})));
    return all;
}

Bytes credentials() { return joined({support::text("ann"), support::text("pw")}); }

Bytes openParameters() { return joined({u32(115200), u32(8), {1, 0}, u32(1), {0, 0, 0, 0}}); }

Exchange batch() {
    return {
        "batch",
        request(lockId, {call(uart, open, openParameters()),
                         call(uart, reserve, joined({{0}, support::text("ann"), support::text("pc")})),
                         call(uart, recv, u32(96)), call(uart, available), call(uart, close)}),
        {{"uart.open", ""},
         {"uart.reserve", ""},
         {"uart.recv", "s"},
         {"uart.available", "bss"},
         {"uart.close", ""}},
        reply({7, 8}, announced("error size", 0),
              {result("open"), result("reserve"), result("recv", block("data", Bytes(96, 0x55))),
               result("available", together({flag("flag", true), text("user", "ann"), text("info", "pc")})),
               result("close")})};
}

/// The device reports that the second of three calls has failed.
Exchange faulty() {
    return {
        "faulty",
        request(lockId, {call(uart, recv, u32(2)), call(uart, available), call(uart, close)}),
        {{"uart.recv", "s"}, {"uart.available", "bss"}, {"uart.close", ""}},
        reply({}, deviceError(1006, "jam"),
              {result("recv", block("data", {0x0A, 0x0D})),
               result("available", together({flag("flag", false), text("user", ""), text("info", "")}))})};
}

Exchange deviceInfo() {
    return single(
        lockId, device, info, "device.info", "suuu[suuu][ssss]",
        together({text("name", "rack"), hostile::version(1, 2, 3), announced("count of firmware", 1),
                  text("firmware", "fpga"), hostile::version(4, 5, 6), announced("count of boards", 1),
                  text("field 1", "a"), text("field 2", ""), text("field 3", "b"), text("field 4", "")}));
}

std::vector<Exchange> wholeConversation() {
    std::vector<Exchange> all;
    const auto add = [&](const std::vector<Exchange>& more) {
        all.insert(all.end(), more.begin(), more.end());
    };
    add(building(0, device, "device", "device", deviceMethods, true));
    add({single(0, device, getKey, "device.getKey", "s", text("key", "tavo-dev-key-000")),
         single(0, device, lock, "device.lock", "u", number("lock id", lockId), credentials())});
    add(building(lockId, private_, "private", "private", privateMethods, false));
    add(building(lockId, system, "system", "system", systemMethods, true));
    add({single(lockId, device, rootMembers, "device.rootMembers", "[su]", names({{"uart", uart}}))});
    add(building(lockId, uart, "uart", "com", uartMethods, true));
    add({batch(), faulty(), deviceInfo(),
         single(lockId, device, unlock, "device.unlock", "", {}, credentials())});
    return all;
}

} // namespace

const std::vector<Exchange>& conversation() {
    static const auto all = wholeConversation();
    return all;
}

const Exchange& callAfterwards() {
    static const auto exchange = single(lockId, device, type, "device.type", "s", text("type", "device"));
    return exchange;
}

} // namespace hostile
