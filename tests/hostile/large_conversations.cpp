#include <tests/hostile/conversation_parts.h>

#include <tests/support/raw_server.h>

namespace hostile {

namespace large {

namespace {

using namespace parts;

constexpr std::uint32_t fifo = 6, i2c = 7, remote = 8;

/// `count` bytes that can be read.
std::string longText(std::size_t count) {
    std::string all(count, '-');
    for (std::size_t i = 0; i < count; ++i)
        all[i] = static_cast<char>('a' + i % 23);
    return all;
}

Layout availability(const std::string& user, const std::string& info) {
    return together({byte("flag", 1), text("user", user), text("info", info)});
}

Layout versioned(const std::string& name) { return together({text("firmware", name), versionOf(1, 2, 3)}); }

Layout board(std::size_t length) {
    return together({text("field 1", longText(length)), text("field 2", ""),
                     text("field 3", longText(length)), text("field 4", "x")});
}

Layout texts(const std::string& name, std::size_t count) {
    std::vector<Layout> elements;
    for (std::size_t i = 0; i < count; ++i)
        elements.push_back(text(name, longText(i % 64)));
    return list(name, elements);
}

Layout headers(std::size_t count) {
    std::vector<Layout> elements;
    for (std::size_t i = 0; i < count; ++i)
        elements.push_back(together(
            {text("header", longText(i % 7)), byte("flag 1", 1), byte("flag 2", 0), byte("flag 3", 0xFF)}));
    return list("headers", elements);
}

Layout connections(std::size_t count) {
    std::vector<Layout> elements;
    for (std::size_t i = 0; i < count; ++i)
        elements.push_back(together({texts("first", i % 2 ? 0 : 200), texts("second", 200)}));
    return list("connections", elements);
}

Layout entries(std::uint32_t count) {
    std::vector<Layout> elements;
    for (std::uint32_t i = 0; i < count; ++i)
        elements.push_back(together({byte("byte 1", static_cast<std::uint8_t>(i)), byte("byte 2", 0),
                                     byte("byte 3", 0x7F), longNumber("value", 0x100000000u + i)}));
    return list("entries", elements);
}

/// An opening, one call and the release.
Conversation withOneCall(const std::string& name, std::vector<Exchange> before, const Exchange& call) {
    before.push_back(call);
    before.push_back(unlocking());
    return {name, std::move(before)};
}

} // namespace

Conversation makeText() {
    return withOneCall("large_text", opening({{"available", available}}, {}),
                       single(lockId, device, available, {"device.available", "bss"},
                              availability(longText(70000), "behind it")));
}

Conversation makeBytes() {
    return withOneCall("large_bytes", opening({{"login", login}}, {}),
                       single(lockId, device, login, {"device.login", "s"},
                              block("challenge", support::pattern(70000)), support::text("ann")));
}

Conversation makeNumbers() {
    auto before = opening({}, {{"fifo", fifo}});
    append(before,
           building(
               lockId,
               {.instance = fifo, .name = "fifo", .type = "lpcPostCode", .methods = {{"fifoGet", fifoGet}}}));
    return withOneCall("large_numbers", std::move(before),
                       single(lockId, fifo, fifoGet, {"fifo.fifoGet", "[bbbl]"}, entries(6100)));
}

Conversation makeRecords() {
    const auto boards = list("boards", {board(9000), board(1), board(12000), board(0), board(13000)});
    return withOneCall("large_records", opening({{"info", info}}, {}),
                       single(lockId, device, info, {"device.info", "suuu[suuu][ssss]"},
                              together({text("name", "rack"), versionOf(1, 2, 3),
                                        list("firmware", {versioned("fpga"), versioned("")}), boards})));
}

Conversation makeNested() {
    auto before = opening({}, {{"i2c", i2c}});
    append(before, building(lockId, {.instance = i2c,
                                     .name = "i2c",
                                     .type = "i2c",
                                     .methods = {{"headerStatusGet", headerStatusGet}}}));
    return withOneCall("large_nested", std::move(before),
                       single(lockId, i2c, headerStatusGet, {"i2c.headerStatusGet", "[sbbb][[s][s]]"},
                              together({headers(100), connections(8)})));
}

/// Results just up to what is received whole before it is read, just above, and far above, in one reply.
Conversation makeBatch() {
    const auto large = [](std::size_t size) { return availability(longText(size - 4 - 9 - 2), "pc"); };
    return withOneCall(
        "large_batch", opening({{"available", available}, {"login", login}}, {}),
        {"batch",
         requestOf(lockId, {callOf(device, available), callOf(device, available), callOf(device, available),
                            callOf(device, login, support::text("ann")), callOf(device, type)}),
         {{"device.available", "bss"},
          {"device.available", "bss"},
          {"device.available", "bss"},
          {"device.login", "s"},
          {"device.type", "s"}},
         reply({result("available", availability("", "")), result("available", large(65536)),
                result("available", large(65537)), result("login", block("challenge", Bytes(140000, 0x5A))),
                result("type", text("type", "device"))})});
}

/// The root member's name, its type, and the list of its methods.
Conversation makeOpening() {
    const auto name = longText(66000);
    Names manyMethods;
    for (std::uint32_t i = 1000; i < 5000; ++i)
        manyMethods.push_back({"method" + std::to_string(i), i});
    auto all = opening({}, {{name, remote}});
    append(all, building(lockId, {.instance = remote,
                                  .name = name,
                                  .type = longText(67000),
                                  .methods = manyMethods,
                                  .asksVersion = false}));
    all.push_back(unlocking());
    return {"large_opening", std::move(all)};
}

} // namespace large

} // namespace hostile
