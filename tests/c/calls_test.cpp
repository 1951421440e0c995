#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/c/c_device.h>

namespace {

using c_test::Outcome;
using nlohmann::json;
using Names = std::vector<std::string>;

class CCalls : public c_test::OpenHandle {
protected:
    /// The outcome of a call that must not be sent.
    Outcome refused(const std::string& call, const std::vector<tavo_bytes>& blocks = {}) {
        const auto before = simulator.requestCount();
        auto outcome = device.call(call, blocks);
        EXPECT_EQ(simulator.requestCount(), before) << call;
        EXPECT_FALSE(outcome.replied) << call;
        return outcome;
    }
};

TEST_F(CCalls, YieldCodeAndValue) {
    auto outcome = device.call(R"({"object": "power", "method": "set", "arguments": {"state": true}})");
    EXPECT_EQ(outcome.status, TAVO_OK);
    EXPECT_EQ(outcome.json, json::parse(R"({"code": 0, "value": null})"));
    outcome = device.call(R"({"object": "power", "method": "get"})");
    EXPECT_EQ(outcome.json, json::parse(R"({"code": 0, "value": {"state": 1}})"));
    outcome = device.call(R"({"object": "device", "method": "type", "arguments": {}})");
    EXPECT_EQ(outcome.json, json::parse(R"({"code": 0, "value": {"type": "device"}})"));
}

TEST_F(CCalls, PassAReturnCodeOtherThanZeroOn) {
    simulator.failNext(TAVO::simulator::faults::ReturnCode{.code = 7});
    const auto outcome = device.call(R"({"object": "power", "method": "get"})");
    EXPECT_EQ(outcome.status, TAVO_OK);
    EXPECT_EQ(outcome.json["code"], 7);
}

TEST_F(CCalls, TakeAndGiveBytesAsDigitsOrAsBlocks) {
    const std::string digits = R"({"object": "cpu0.jtag", "method": "shiftDR",
                                   "arguments": {"bits": 16, "data": {"hex": "a55a"}}})";
    const std::string block = R"({"object": "cpu0.jtag", "method": "shiftDR",
                                  "arguments": {"bits": 16, "data": {"block": 1}}})";
    const auto asDigits = device.call(digits);
    ASSERT_EQ(asDigits.status, TAVO_OK) << asDigits.message;
    EXPECT_TRUE(asDigits.blocks.empty());
    const auto data = asDigits.json["value"]["data"]["hex"].get<std::string>();
    EXPECT_EQ(data.size(), 4u);

    const auto asBlocks = device.call(block, {{nullptr, 0}, {"\xa5\x5a", 2}}, TAVO_REPLY_BLOCKS);
    ASSERT_EQ(asBlocks.status, TAVO_OK) << asBlocks.message;
    EXPECT_EQ(asBlocks.json["value"]["data"], json::parse(R"({"block": 0})"));
    ASSERT_EQ(asBlocks.blocks.size(), 1u);
    EXPECT_EQ(asBlocks.blocks[0].size(), 2u);
    const auto sent = simulator.calls().back().parameters;
    EXPECT_EQ(sent.find("data")->toString(), "a55a");
}

TEST_F(CCalls, KeepTextsThatAreNotUtf8) {
    const auto reserved = device.call(R"({"object": "power", "method": "reserve", "arguments":
        {"flag": 0, "first": {"hex-text": "6aff00"}, "second": "gr\u00fcn\u0000"}})");
    ASSERT_EQ(reserved.status, TAVO_OK) << reserved.message;
    const auto available = device.call(R"({"object": "power", "method": "available"})");
    EXPECT_EQ(available.json["value"]["user"], json::parse(R"({"hex-text": "6aff00"})"));
    EXPECT_EQ(available.json["value"]["info"].get<std::string>(), std::string("gr\xc3\xbcn\0", 6));
}

TEST_F(CCalls, RefuseWhatIsWrongAndNameIt) {
    struct Case {
        const char* call;
        tavo_status status;
        const char* message;
    };
    const Case cases[] = {
        {R"([])", TAVO_ERROR_ARGUMENT, "a call must be an object, not array"},
        {R"({"method": "get"})", TAVO_ERROR_ARGUMENT, "a call needs the member 'object'"},
        {R"({"object": "power"})", TAVO_ERROR_ARGUMENT, "a call needs the member 'method'"},
        {R"({"object": 5, "method": "get"})", TAVO_ERROR_ARGUMENT, "'object' must be a text, not number"},
        {R"({"object": "power", "method": null})", TAVO_ERROR_ARGUMENT, "'method' must be a text, not null"},
        {R"({"object": {"hex-text": "zz"}, "method": "get"})", TAVO_ERROR_ARGUMENT,
         "'object' must be a text, not object"},
        {R"({"object": "power", "method": "get", "wait": 1})", TAVO_ERROR_ARGUMENT,
         "a call has no member 'wait'; it has object, method and arguments"},
        {R"({"object": "power", "object": "power", "method": "type"})", TAVO_ERROR_ARGUMENT,
         "'call' gives 'object' twice"},
        {R"({"object": "powers", "method": "get"})", TAVO_ERROR_NOT_FOUND,
         "the device has no object 'powers'"},
        {R"({"object": "", "method": "get"})", TAVO_ERROR_NOT_FOUND, "the device has no object ''"},
        {R"({"object": "power", "method": "got"})", TAVO_ERROR_NOT_FOUND, "power has no method 'got'"},
        {R"({"object": "bench", "method": "identify"})", TAVO_ERROR_NOT_FOUND,
         "the parameters of bench.identify are not known to this client"},
        {R"({"object": "power", "method": "get", "arguments": {"state": 1}})", TAVO_ERROR_ARGUMENT,
         "power.get takes no arguments, but 'state' is given"},
        {R"({"object": "power", "method": "set"})", TAVO_ERROR_ARGUMENT,
         "power.set: field 'state' (bool) is missing"},
        {R"({"object": "power", "method": "set", "arguments": [true]})", TAVO_ERROR_ARGUMENT,
         "power.set: 'arguments' must be an object, not array"},
        {R"({"object": "power", "method": "set", "arguments": {"state": true, "on": 1}})",
         TAVO_ERROR_ARGUMENT, "power.set: there is no field 'on'"},
        {R"({"object": "power", "method": "set", "arguments": {"state": "on"}})", TAVO_ERROR_ARGUMENT,
         "power.set: 'state' must be bool, not \"on\""},
        {R"({"object": "power", "method": "set", "arguments": {"state": null}})", TAVO_ERROR_ARGUMENT,
         "power.set: 'state' must not be null"},
        {R"({"object": "power", "method": "toggle", "arguments": {"value": 2147483648}})",
         TAVO_ERROR_ARGUMENT, "power.toggle: 'value' must be i32, not 2147483648"},
        {R"({"object": "power", "method": "toggle", "arguments": {"value": 1.5}})", TAVO_ERROR_ARGUMENT,
         "power.toggle: 'value' must be an integer of at most 64 bits, not 1.5"},
        {R"({"object": "power", "method": "toggle", "arguments": {"value": {"block": 0}}})",
         TAVO_ERROR_ARGUMENT, "power.toggle: 'value': there is no block 0; given are 0"},
        {R"({"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"bits": 8, "data": {"hex": "0"}}})",
         TAVO_ERROR_ARGUMENT, "cpu0.jtag.shiftDR: 'data': '0' is not a pair of hexadecimal digits"},
        {R"({"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"bits": 8, "data": {"block": -1}}})",
         TAVO_ERROR_ARGUMENT, "cpu0.jtag.shiftDR: 'data': there is no block -1; given are 0"},
        {R"({"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"hex": "00"}})", TAVO_ERROR_ARGUMENT,
         "cpu0.jtag.shiftDR: there is no field 'hex'"},
    };
    for (const auto& wrong : cases) {
        const auto outcome = refused(wrong.call);
        EXPECT_EQ(outcome.status, wrong.status) << wrong.call;
        EXPECT_EQ(outcome.message, wrong.message);
    }
    EXPECT_EQ(device.call(R"({"object": "power", "method": "get"})").status, TAVO_OK);
}

TEST_F(CCalls, RefuseWhatIsNoJson) {
    for (const auto* text : {"", "{", "{'object': 1}", "{} {}", "\xff", "[1,]", "nul"}) {
        const auto outcome = refused(text);
        EXPECT_EQ(outcome.status, TAVO_ERROR_ARGUMENT) << text;
        EXPECT_EQ(outcome.message.substr(0, 44), "'call' is not JSON: parse error at line 1, c") << text;
    }
    EXPECT_EQ(refused(std::string(1'000'000, '[')).message, "'call' is nested too deeply");
    const std::string deep = R"({"object": "power", "method": "set", "arguments": {"state": )";
    EXPECT_EQ(refused(deep + std::string(1'000'000, '[')).message, "'call' is nested too deeply");
}

TEST_F(CCalls, ShortenMessagesThatQuoteLongArguments) {
    const auto outcome = refused(R"({"object": "power", "method": "set", "arguments": {"state": ")" +
                                 std::string(1'000'000, 'x') + "\"}}");
    EXPECT_EQ(outcome.status, TAVO_ERROR_ARGUMENT);
    EXPECT_EQ(outcome.message.size(), 4099u);
}

TEST_F(CCalls, RefuseBadPointersAndFlags) {
    const auto* get = R"({"object": "power", "method": "get"})";
    const auto before = simulator.requestCount();
    tavo_reply* reply = nullptr;
    EXPECT_EQ(tavo_call_json(nullptr, get, nullptr, 0, 0, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'device' is NULL");
    EXPECT_EQ(tavo_call_json(device.get(), nullptr, nullptr, 0, 0, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'call' is NULL");
    EXPECT_EQ(tavo_batch_json(device.get(), nullptr, nullptr, 0, 0, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'calls' is NULL");
    EXPECT_EQ(tavo_call_json(device.get(), get, nullptr, 0, 0, nullptr), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'reply' is NULL");
    EXPECT_EQ(tavo_call_json(device.get(), get, nullptr, 1, 0, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'blocks' is NULL, but 'block_count' is not 0");
    const tavo_bytes bad = {nullptr, 3};
    EXPECT_EQ(tavo_call_json(device.get(), get, &bad, 1, 0, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'blocks[0].data' is NULL, but its size is not 0");
    EXPECT_EQ(tavo_call_json(device.get(), get, nullptr, 0, 6, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "'flags' is 6, which has unknown bits");
    EXPECT_EQ(tavo_tree_json(device.get(), nullptr), TAVO_ERROR_ARGUMENT);
    EXPECT_EQ(tavo_tree_json(nullptr, &reply), TAVO_ERROR_ARGUMENT);
    EXPECT_EQ(reply, nullptr);
    EXPECT_EQ(simulator.requestCount(), before);

    std::size_t count = 5;
    EXPECT_EQ(tavo_reply_json(nullptr, &count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(tavo_reply_blocks(nullptr, nullptr), nullptr);
    tavo_reply_free(nullptr);
}

TEST_F(CCalls, OutliveTheDeviceInTheirReply) {
    const tavo_bytes block = {"\x01\x02\x03\x04", 4};
    tavo_reply* reply = nullptr;
    ASSERT_EQ(tavo_call_json(device.get(), R"({"object": "cpu0.jtag", "method": "shiftDR",
                                              "arguments": {"bits": 32, "data": {"block": 0}}})",
                             &block, 1, TAVO_REPLY_BLOCKS, &reply),
              TAVO_OK);
    tavo_close(device.get());
    std::size_t count = 0;
    const auto* blocks = tavo_reply_blocks(reply, &count);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(std::string(static_cast<const char*>(blocks[0].data), blocks[0].size).size(), 4u);
    tavo_reply_free(reply);
}

TEST_F(CCalls, OfABatchAreOneExchangeInOrder) {
    const auto before = simulator.requestCount();
    const auto outcome = device.batch(R"([
        {"object": "power", "method": "set", "arguments": {"state": true}},
        {"object": "power", "method": "get"},
        {"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"bits": 8, "data": {"block": 0}}},
        {"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"bits": 8, "data": {"block": 0}}}])",
                                      {{"\x55", 1}}, TAVO_REPLY_BLOCKS);
    ASSERT_EQ(outcome.status, TAVO_OK) << outcome.message;
    EXPECT_EQ(outcome.json, json::parse(R"([{"code": 0, "value": null}, {"code": 0, "value": {"state": 1}},
                                            {"code": 0, "value": {"data": {"block": 0}}},
                                            {"code": 0, "value": {"data": {"block": 1}}}])"));
    EXPECT_EQ(outcome.blocks.size(), 2u);
    EXPECT_EQ(simulator.requestCount(), before + 1);
    EXPECT_EQ(callsSince(before),
              (Names{"power.set", "power.get", "cpu0.jtag.shiftDR", "cpu0.jtag.shiftDR"}));
}

TEST_F(CCalls, OfABatchAreSentOnlyIfAllAreRight) {
    const auto before = simulator.requestCount();
    auto outcome = device.batch(R"([{"object": "power", "method": "set", "arguments": {"state": true}},
                                    {"object": "power", "method": "set", "arguments": {}}])");
    EXPECT_EQ(outcome.status, TAVO_ERROR_ARGUMENT);
    EXPECT_EQ(outcome.message, "call 1: power.set: field 'state' (bool) is missing");
    EXPECT_EQ(outcome.callIndex, 1);
    EXPECT_FALSE(outcome.replied);
    outcome = device.batch("{}");
    EXPECT_EQ(outcome.message, "'calls' must be an array, not object");
    EXPECT_EQ(outcome.callIndex, -1);
    outcome = device.batch("[]");
    EXPECT_EQ(outcome.status, TAVO_OK);
    EXPECT_EQ(outcome.json, json::array());
    EXPECT_EQ(simulator.requestCount(), before);
}

TEST_F(CCalls, AnsweredBeforeAFailureOfTheBatchAreTold) {
    simulator.failNext(TAVO::simulator::faults::DeviceError{.code = 1006, .results = 2, .message = "stuck"});
    const auto outcome = device.batch(R"([{"object": "power", "method": "get"},
                                          {"object": "power", "method": "type"},
                                          {"object": "power", "method": "get"}])");
    EXPECT_EQ(outcome.status, TAVO_ERROR_EXECUTION) << outcome.message;
    EXPECT_EQ(outcome.callIndex, 1);
    EXPECT_EQ(outcome.message, "Failed to execute power.type: stuck");
    ASSERT_TRUE(outcome.replied);
    EXPECT_EQ(outcome.json.size(), 2u);
    EXPECT_STREQ(tavo_last_error()->method, "power.type");
    EXPECT_EQ(tavo_last_error()->device_error_code, 1006);
    EXPECT_EQ(tavo_last_error()->worth_retrying, 0);
    EXPECT_EQ(tavo_last_error()->connection_usable, 1);
}

TEST_F(CCalls, CanBeFoundInTheTree) {
    const auto before = simulator.requestCount();
    const auto outcome = device.tree();
    ASSERT_EQ(outcome.status, TAVO_OK) << outcome.message;
    EXPECT_EQ(simulator.requestCount(), before + 1);
    std::vector<json> found;
    for (const auto& object : outcome.json)
        if (object["object"] == "bench.lamp")
            found.push_back(object);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]["type"], "relay");
    EXPECT_EQ(found[0]["version"], "1.0");
    EXPECT_EQ(found[0]["methods"].size(), 11u);
    const auto set = json::parse(R"({"arguments": [{"name": "state", "type": "bool"}], "name": "set",
                                     "result": []})");
    const auto get = json::parse(R"({"arguments": [], "name": "get",
                                     "result": [{"name": "state", "type": "u8"}]})");
    EXPECT_EQ(std::count(found[0]["methods"].begin(), found[0]["methods"].end(), set), 1);
    EXPECT_EQ(std::count(found[0]["methods"].begin(), found[0]["methods"].end(), get), 1);
}

} // namespace
