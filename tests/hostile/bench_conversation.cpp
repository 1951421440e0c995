#include <tests/hostile/conversation_parts.h>

namespace hostile {

namespace bench {

namespace {

using namespace parts;

enum Below : std::uint32_t { rig = 6, shelf = 7, port = 8, i2c = 9, lpc = 10, rom = 11, postCode = 12 };

Layout header(const std::string& name, std::uint8_t first) {
    return together({text("header", name), byte("flag 1", first), byte("flag 2", 0), byte("flag 3", 1)});
}

Layout texts(const std::string& name, const std::vector<std::string>& contents) {
    std::vector<Layout> elements;
    for (const auto& content : contents)
        elements.push_back(text(name, content));
    return list(name, elements);
}

Layout headers() { return list("headers", {header("J1", 1), header("", 0)}); }

Layout connections() {
    return list("connections", {together({texts("first", {"a", "bc"}), texts("second", {})}),
                                together({texts("first", {}), texts("second", {"", "d"})})});
}

Layout entry(std::uint8_t code, std::uint64_t moment) {
    return together(
        {byte("byte 1", code), byte("byte 2", 0x80), byte("byte 3", 0), longNumber("value", moment)});
}

Layout entries() { return list("entries", {entry(0x55, 1), entry(0xAA, 0x123456789ABCDEF0)}); }

Layout connected(const std::string& name, bool present) {
    return together({text("connection", name), flag("present", present)});
}

/// A list, a list of lists, texts, and a result without fields, from three levels of the tree.
Exchange survey() {
    return {"survey",
            requestOf(lockId, {callOf(lpc, headerConnectGet), callOf(i2c, headerStatusGet),
                               callOf(port, available), callOf(postCode, fifoClear)}),
            {{"lpc.headerConnectGet", "[sf]"},
             {"rig.shelf.i2c.headerStatusGet", "[sbbb][[s][s]]"},
             {"rig.shelf.port.available", "bss"},
             {"lpc.lpcPostCode.fifoClear", ""}},
            reply({result("headerConnectGet",
                          list("connections", {connected("left", true), connected("right", false)})),
                   result("headerStatusGet", together({headers(), connections()})),
                   result("available", together({byte("flag", 2), text("user", "eve"), text("info", "")})),
                   result("fifoClear")})};
}

/// The device reports that it has no such thing behind a result that holds a list of lists.
Exchange refused() {
    return {"refused",
            requestOf(lockId, {callOf(i2c, headerStatusGet), callOf(postCode, fifoGet)}),
            {{"rig.shelf.i2c.headerStatusGet", "[sbbb][[s][s]]"}, {"lpc.lpcPostCode.fifoGet", "[bbbl]"}},
            reply({9}, deviceError(1006, "no FIFO"),
                  {result("headerStatusGet", together({list("headers", {}), connections()})),
                   result("fifoGet", list("entries", {}))})};
}

} // namespace

Conversation make() {
    auto all = opening({}, {{"rig", rig}, {"lpc", lpc}});
    append(all, building(lockId, {.instance = rig,
                                  .name = "rig",
                                  .type = "rack",
                                  .children = {{"shelf", shelf}},
                                  .asksVersion = false}));
    append(all, building(lockId, {.instance = shelf,
                                  .name = "rig.shelf",
                                  .type = "",
                                  .children = {{"port", port}, {"i2c", i2c}},
                                  .asksVersion = false}));
    append(all, building(lockId, {.instance = port,
                                  .name = "rig.shelf.port",
                                  .type = "com",
                                  .methods = {{"available", available}}}));
    append(all, building(lockId, {.instance = i2c,
                                  .name = "rig.shelf.i2c",
                                  .type = "i2c",
                                  .methods = {{"headerStatusGet", headerStatusGet}}}));
    append(all, building(lockId, {.instance = lpc,
                                  .name = "lpc",
                                  .type = "lpc",
                                  .methods = {{"headerConnectGet", headerConnectGet}},
                                  .children = {{"lpcRomEmulation", rom}, {"lpcPostCode", postCode}},
                                  .withoutChildren = {WithoutNames::Then::fail,
                                                      "lpc rom emulation object not found."}}));
    append(all,
           building(lockId, {.instance = rom, .name = "lpc.lpcRomEmulation", .type = "lpcRomEmulation"}));
    append(all, building(lockId, {.instance = postCode,
                                  .name = "lpc.lpcPostCode",
                                  .type = "lpcPostCode",
                                  .methods = {{"fifoGet", fifoGet}, {"fifoClear", fifoClear}}}));
    append(all, {survey(), refused(),
                 single(lockId, postCode, fifoGet, {"lpc.lpcPostCode.fifoGet", "[bbbl]"}, entries()),
                 unlocking()});
    return {"bench", std::move(all)};
}

} // namespace bench

} // namespace hostile
