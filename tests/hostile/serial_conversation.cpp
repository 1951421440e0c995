#include <tests/hostile/conversation_parts.h>

namespace hostile {

namespace serial {

namespace {

using namespace parts;

using support::joined;
using support::u32;

Bytes openParameters() { return joined({u32(115200), u32(8), {1, 0}, u32(1), {0, 0, 0, 0}}); }

Exchange batch() {
    return {
        "batch",
        requestOf(lockId, {callOf(uart, open, openParameters()),
                           callOf(uart, reserve, joined({{0}, support::text("ann"), support::text("pc")})),
                           callOf(uart, recv, u32(96)), callOf(uart, available), callOf(uart, close)}),
        {{"uart.open", ""},
         {"uart.reserve", ""},
         {"uart.recv", "s", 96},
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
        requestOf(lockId, {callOf(uart, recv, u32(2)), callOf(uart, available), callOf(uart, close)}),
        {{"uart.recv", "s", 2}, {"uart.available", "bss"}, {"uart.close", ""}},
        reply({}, deviceError(1006, "jam"),
              {result("recv", block("data", {0x0A, 0x0D})),
               result("available", together({flag("flag", false), text("user", ""), text("info", "")}))})};
}

Exchange deviceInfo() {
    return single(
        lockId, device, info, {"device.info", "suuu[suuu][ssss]"},
        together({text("name", "rack"), versionOf(1, 2, 3), announced("count of firmware", 1),
                  text("firmware", "fpga"), versionOf(4, 5, 6), announced("count of boards", 1),
                  text("field 1", "a"), text("field 2", ""), text("field 3", "b"), text("field 4", "")}));
}

} // namespace

Conversation make() {
    auto all = opening({{"info", info}}, {{"uart", uart}});
    append(all, building(lockId, {.instance = uart,
                                  .name = "uart",
                                  .type = "com",
                                  .methods = {{"open", open},
                                              {"close", close},
                                              {"recv", recv},
                                              {"reserve", reserve},
                                              {"available", available}}}));
    append(all, {batch(), faulty(), deviceInfo(), unlocking()});
    return {"serial", std::move(all)};
}

} // namespace serial

} // namespace hostile
