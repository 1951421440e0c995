#include <gtest/gtest.h>

#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
namespace Header = TAVO::dto::Header;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;

class LpcTest : public support::ModuleTest {
protected:
    void addWithChildren() {
        add(7, "lpc", 0).member("lpcPostCode", 8).member("lpcRomEmulation", 9);
        add(8, "lpcPostCode", 0);
        add(9, "lpcRomEmulation", 0);
    }
};

TEST_F(LpcTest, HandsOutItsChildrenWithoutACall) {
    addWithChildren();
    const auto lpc = open<Lpc_v1_0>(7);
    ASSERT_TRUE(lpc);
    device->appliance.forgetCalls();
    EXPECT_TRUE(lpc->getLpcPostCode());
    EXPECT_EQ(lpc->getLpcPostCode(), lpc->getChild("lpcPostCode"));
    EXPECT_TRUE(lpc->getLpcRomEmulation());
    EXPECT_EQ(lpc->getLpcRomEmulation(), lpc->getChild("lpcRomEmulation"));
    EXPECT_EQ(device->appliance.exchanges(), 0u);
}

TEST_F(LpcTest, WithoutChildrenMissesTheRomEmulationFirst) {
    add(7, "lpc", 0);
    EXPECT_EQ(failureToOpen(), "lpc rom emulation object not found.");
}

TEST_F(LpcTest, CannotBeOpenedWithoutPostCodes) {
    add(7, "lpc", 0).member("lpcRomEmulation", 9);
    add(9, "lpcRomEmulation", 0);
    EXPECT_EQ(failureToOpen(), "lpc post code object not found.");
}

TEST_F(LpcTest, CannotBeOpenedWithAChildOfAnotherType) {
    add(7, "lpc", 0).member("lpcPostCode", 8).member("lpcRomEmulation", 9);
    add(8, "lpcPostCode", 0);
    add(9, "lpcPostCode", 0);
    EXPECT_EQ(failureToOpen(), "lpc rom emulation object not found.");
}

TEST_F(LpcTest, CannotBeOpenedWithAChildOfAnUnknownVersion) {
    addWithChildren();
    device->appliance.object(8).version(1, 1, 0);
    EXPECT_EQ(failureToOpen(), "Unknown lpcPostCode object version: 1.1.0");
}

TEST_F(LpcTest, YieldsTheHeaderConnectionsInOrder) {
    using TAVO::dto::lpc::HeaderConnectionsReply;
    addWithChildren();
    const auto lpc = open<Lpc_v1_0>(7);
    EXPECT_EQ(sentBy(lpc->getHeaderConnectGetMethod()), request("headerConnectGet"));
    const auto connections = reply<HeaderConnectionsReply>(lpc->getHeaderConnectGetMethod(),
                                                           "00000002 00000002 4a31 01 00000000 00")
                                 .connections;
    ASSERT_EQ(connections.size(), 2u);
    EXPECT_EQ(connections[0].name, "J1");
    EXPECT_TRUE(connections[0].connected);
    EXPECT_EQ(connections[1].name, "");
    EXPECT_FALSE(connections[1].connected);
    EXPECT_EQ(reply<HeaderConnectionsReply>(lpc->getHeaderConnectGetMethod(), "00000000"),
              HeaderConnectionsReply());
}

class LpcPostCodeTest : public support::ModuleTest {
protected:
    template <class Reply>
    Reply replyTo(const std::string& method, const std::string& hex) {
        return reply<Reply>(
            std::make_shared<TAVO::BoundMethod<Reply>>(method, *postCode, TAVO::dto::Params()), hex);
    }

    template <class Record>
    Request sentWith(const std::string& method, const Record& record) {
        return sentBy(std::make_shared<TAVO::Method>(method, *postCode,
                                                     TAVO::dto::Params{std::make_shared<Record>(record)}));
    }

    std::shared_ptr<LpcPostCode_v1_0> postCode = openOnly<LpcPostCode_v1_0>("lpcPostCode");
};

TEST_F(LpcPostCodeTest, YieldsTheEntriesOfTheFifo) {
    using TAVO::dto::lpcPostCode::FifoGetReply;
    const auto entries =
        replyTo<FifoGetReply>("fifoGet", "00000002 01 02 03 0000000000000004 ff fe fd 8000000000000000")
            .entries;
    ASSERT_EQ(entries.size(), 2u);
    const auto& [byte1, byte2, byte3, value] = entries[0];
    EXPECT_EQ(std::tuple(byte1, byte2, byte3, value), std::tuple(1, 2, 3, 4u));
    EXPECT_EQ(entries[1].byte1, 0xFF);
    EXPECT_EQ(entries[1].value, 0x8000000000000000u);
}

TEST_F(LpcPostCodeTest, YieldsNoEntriesOfAnEmptyFifo) {
    EXPECT_TRUE(replyTo<TAVO::dto::lpcPostCode::FifoGetReply>("fifoGet", "00000000").entries.empty());
}

TEST_F(LpcPostCodeTest, IsReachedByName) {
    using namespace TAVO::dto::lpcPostCode;
    EXPECT_EQ(replyTo<PostCodeGetReply>("postCodeGet", "0000aa55").postCode, 0xAA55);
    EXPECT_EQ(replyTo<FifoSizeGetReply>("fifoSizeGet", "00000200").size, 512);
    EXPECT_EQ(replyTo<FifoStatusReply>("fifoStatusGet", "00000005 01 00 00 01"),
              record<FifoStatusReply>(5, true, false, false, true));
    EXPECT_EQ(replyTo<OptionPortGetReply>("optionPortGet", "80").port, 0x80);
    EXPECT_EQ(sentWith("optionPortSet", record<OptionPortSetRequest>(std::uint8_t{0x80})),
              request("optionPortSet", "80"));
    EXPECT_EQ(sentWith("optionPassiveSet", record<OptionPassiveSetRequest>(std::uint8_t{1})),
              request("optionPassiveSet", "01"));
    EXPECT_EQ(sentWith("optionFifoCircularSet", record<OptionFifoCircularSetRequest>(std::uint8_t{2})),
              request("optionFifoCircularSet", "02"));
    EXPECT_EQ(sentWith("optionFifoDiscardSet", record<OptionFifoDiscardSetRequest>(std::uint8_t{3})),
              request("optionFifoDiscardSet", "03"));
    EXPECT_EQ(sentWith("optionFifoAutoResetSet", record<OptionFifoAutoResetSetRequest>(std::uint8_t{4})),
              request("optionFifoAutoResetSet", "04"));
    EXPECT_EQ(sentWith("fifoClear", OptionPortSetRequest()), request("fifoClear"));
    EXPECT_EQ(sentWith("fifoStatusClear", OptionPortSetRequest()), request("fifoStatusClear"));
}

class LpcRomEmulationTest : public support::ModuleTest {
protected:
    std::shared_ptr<LpcRomEmulation_v1_0> rom = openOnly<LpcRomEmulation_v1_0>("lpcRomEmulation");
};

TEST_F(LpcRomEmulationTest, SendsTheArgumentsOfItsMethodsInOrder) {
    EXPECT_EQ(sentBy(rom->getSramGetMethod(0x100, 16)), request("sramGet", "00000100 00000010"));
    EXPECT_EQ(sentBy(rom->getSramSetMethod(0x100, {0xEA, 0x5B})),
              request("sramSet", "00000100 00000002 ea5b"));
    EXPECT_EQ(sentBy(rom->getSramSetMethod(-1, {})), request("sramSet", "ffffffff 00000000"));
    EXPECT_EQ(sentBy(rom->getSramSizeGetMethod()), request("sramSizeGet"));
    EXPECT_EQ(sentBy(rom->getOptionRomTypeGetMethod()), request("optionRomTypeGet"));
    EXPECT_EQ(sentBy(rom->getEnableGetMethod()), request("enableGet"));
    EXPECT_EQ(sentBy(rom->getEnableSetMethod(true)), request("enableSet", "01"));
}

TEST_F(LpcRomEmulationTest, SendsTheLowEightBitsOfTheRomType) {
    EXPECT_EQ(sentBy(rom->getOptionRomTypeSetMethod(0x102)), request("optionRomTypeSet", "02"));
    EXPECT_EQ(sentBy(rom->getOptionRomTypeSetMethod(-1)), request("optionRomTypeSet", "ff"));
}

TEST_F(LpcRomEmulationTest, YieldsTheResultsOfItsMethods) {
    using namespace TAVO::dto::lpcRomEmulation;
    using LpcRomEmulation_v1_0_Structs::SramGet;
    EXPECT_EQ(reply<SramGet>(rom->getSramGetMethod(0, 2), "00000002 ea5b").data, (Bytes{0xEA, 0x5B}));
    EXPECT_EQ(reply<SramGet>(rom->getSramGetMethod(0, 0), "00000000"), SramGet());
    EXPECT_EQ(reply<SramSizeGetReply>(rom->getSramSizeGetMethod(), "00100000").size, 1048576);
    EXPECT_EQ(reply<OptionRomTypeGetReply>(rom->getOptionRomTypeGetMethod(), "ff").romType, 255);
    EXPECT_TRUE(reply<Header::EnableGetReply>(rom->getEnableGetMethod(), "01").enable);
    EXPECT_EQ(failureOf<std::runtime_error>([] { SramGet{outcomeWith(SramSizeGetReply())}; }),
              "Can't convert Result to desire type");
}

} // namespace
