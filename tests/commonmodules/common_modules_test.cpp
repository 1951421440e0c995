#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace CommonModules;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;

using Integers = std::vector<int>;

class RelayTest : public support::ModuleTest {};

TEST_F(RelayTest, SendsItsStateAsOneByte) {
    const auto relay = openOnly<Relay_v1_0>("relay");
    EXPECT_EQ(sentBy(relay->getSetMethod(true)), request("set", "01"));
    EXPECT_EQ(sentBy(relay->getSetMethod(false)), request("set", "00"));
}

template <class Relay, class State>
concept TakesState = requires(const Relay& relay, State state) {
    relay.getSetMethod(state);
};

TEST_F(RelayTest, TakesNoTextForItsState) {
    EXPECT_TRUE((TakesState<Relay_v1_0, bool>));
    EXPECT_TRUE((TakesState<Relay_v1_0, int>));
    EXPECT_FALSE((TakesState<Relay_v1_0, const char*>));
    EXPECT_FALSE((TakesState<Relay_v1_0, char*>));
    EXPECT_FALSE((TakesState<CmosRelay_v1_0, const char*>));
    const auto relay = openOnly<Relay_v1_0>("relay");
    EXPECT_EQ(sentBy(relay->getSetMethod(0)), request("set", "00"));
}

TEST_F(RelayTest, SendsTheIntegerOfToggle) {
    const auto relay = openOnly<Relay_v1_0>("relay");
    EXPECT_EQ(sentBy(relay->getToggleMethod(-1)), request("toggle", "ffffffff"));
}

TEST_F(RelayTest, YieldsTheStateAsTheDeviceReportsIt) {
    const auto relay = openOnly<Relay_v1_0>("relay");
    EXPECT_EQ(sentBy(relay->getGetMethod()), request("get"));
    EXPECT_EQ(reply<TAVO::dto::relay::GetReply>(relay->getGetMethod(), "02").state, 2);
}

TEST_F(RelayTest, OfTheCmosSendsTheIntegerOfClear) {
    const auto relay = openOnly<CmosRelay_v1_0>("cmosRelay");
    EXPECT_EQ(sentBy(relay->getCmosClearMethod(500)), request("cmosClear", "000001f4"));
}

class ComTest : public support::ModuleTest {
protected:
    std::shared_ptr<Com_v1_0> com = openOnly<Com_v1_0>("com");
};

TEST_F(ComTest, SendsTheNineSettingsOfOpenInOrder) {
    EXPECT_EQ(sentBy(com->getOpenMethod(9600, 8, true, false, 1, false, false, false, true)),
              request("open", "00002580 00000008 01 00 00000001 00 00 00 01"));
    EXPECT_EQ(sentBy(com->getOpenMethod(-1, 0, false, true, 2, true, true, true, false)),
              request("open", "ffffffff 00000000 00 01 00000002 01 01 01 00"));
}

TEST_F(ComTest, SendsNoParametersWithClose) { EXPECT_EQ(sentBy(com->getCloseMethod()), request("close")); }

TEST_F(ComTest, SendsAZeroByteForEachIntegerBeforeTheirLowBytes) {
    for (const int ignored : {0, 1, -1, 0x7FFFFFFF})
        EXPECT_EQ(sentBy(com->getSendMethod(ignored, {0x41, 0x142})),
                  request("send", "00000004 00 00 41 42"));
}

TEST_F(ComTest, SendsAnEmptyBlockForNoIntegers) {
    EXPECT_EQ(sentBy(com->getSendMethod(5, {})), request("send", "00000000"));
}

TEST_F(ComTest, SendsTheIntegerOfRecv) {
    EXPECT_EQ(sentBy(com->getRecvMethod(80)), request("recv", "00000050"));
}

TEST_F(ComTest, YieldsOneIntegerForEachReceivedByte) {
    EXPECT_EQ(reply<Integers>(com->getRecvMethod(3), "00000003 00 7f ff"), (Integers{0, 127, 255}));
    EXPECT_EQ(reply<Integers>(com->getRecvMethod(3), "00000000"), Integers());
}

TEST(ComBytes, AreTwiceAsManyAsTheIntegers) {
    using TAVO::dto::convert_to_byte_array;
    EXPECT_EQ(convert_to_byte_array({}), Bytes());
    EXPECT_EQ(convert_to_byte_array({-1}), (Bytes{0, 0xFF}));
    EXPECT_EQ(convert_to_byte_array({0x1FF, 0x80, 0}), (Bytes{0, 0, 0, 0xFF, 0x80, 0}));
}

TEST(ComIntegers, AreMadeFromTheReplyOfRecvAlone) {
    const auto of = TAVO::PlainResult<Integers>::of;
    EXPECT_EQ(of(outcomeWith(record<TAVO::dto::com::RecvReply>(Bytes{200}))), Integers{200});
    EXPECT_EQ(failureOf<std::runtime_error>([&] { of({}); }), "Can't convert Result to desire type");
}

class Cfa633Test : public support::ModuleTest {
protected:
    std::shared_ptr<Cfa633_v1_0> lcd = openOnly<Cfa633_v1_0>("cfa633");
};

TEST_F(Cfa633Test, SendsTheIntegersAndTheTextOfPrintAsTheyAre) {
    EXPECT_EQ(sentBy(lcd->getLcdPrintMethod(0, 1, "Hi")),
              request("lcdPrint", "00000000 00000001 00000002 4869"));
    EXPECT_EQ(sentBy(lcd->getLcdPrintMethod(0, 0, "")), request("lcdPrint", "00000000 00000000 00000000"));
    EXPECT_EQ(sentBy(lcd->getLcdPrintMethod(-1, 2, std::string("a\n\0\xFF", 4))),
              request("lcdPrint", "ffffffff 00000002 00000004 610a00ff"));
}

TEST_F(Cfa633Test, SendsNoParametersWithClear) {
    EXPECT_EQ(sentBy(lcd->getLcdClearMethod()), request("lcdClear"));
}

TEST_F(Cfa633Test, SendsTheLevelOfTheBackLight) {
    EXPECT_EQ(sentBy(lcd->getLcdBackLightMethod(100)), request("lcdBackLight", "00000064"));
}

} // namespace
