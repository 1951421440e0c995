#include <concepts>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/hwdebug/cs_jtag.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
using namespace TAVO::dto::Jtag;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;
using TAVO::Method;

class JtagTest : public support::ModuleTest {
protected:
    std::shared_ptr<Jtag_v1_1> jtag = openOnly<Jtag_v1_1>("jtag", 1);
};

TEST_F(JtagTest, SendsTheBitCountAndTheBytesOfAShift) {
    EXPECT_EQ(sentBy(jtag->getShiftIRMethod(10, {0xA5, 0x03})),
              request("shiftIR", "0000000a 00000002 a5 03"));
    EXPECT_EQ(sentBy(jtag->getShiftDRMethod(-1, {0xFF})), request("shiftDR", "ffffffff 00000001 ff"));
}

TEST_F(JtagTest, SendsAnEmptyShift) {
    EXPECT_EQ(sentBy(jtag->getShiftIRMethod(0, {})), request("shiftIR", "00000000 00000000"));
}

TEST_F(JtagTest, YieldsTheCapturedBits) {
    EXPECT_EQ(reply<ShiftReply>(jtag->getShiftIRMethod(9, {1, 2}), "00000002 80 01"),
              record<ShiftReply>(Bytes{0x80, 0x01}));
    EXPECT_EQ(reply<ShiftReply>(jtag->getShiftDRMethod(0, {}), "00000000"), ShiftReply());
}

TEST_F(JtagTest, SendsTheArgumentsOfEverySetterInOrder) {
    EXPECT_EQ(sentBy(jtag->getTapStateSetMethod(5)), request("tapStateSet", "00000005"));
    EXPECT_EQ(sentBy(jtag->getSleepMethod(1000, true)), request("sleep", "000003e8 01"));
    EXPECT_EQ(sentBy(jtag->getOptionTckFrequencySetMethod(1000000)),
              request("optionTckFrequencySet", "000f4240"));
    EXPECT_EQ(sentBy(jtag->getOptionRetrySetMethod(1, true, 2, false)),
              request("optionRetrySet", "00000001 01 00000002 00"));
    EXPECT_EQ(sentBy(jtag->getOptionRepeatSetMethod(3, false, 4, true)),
              request("optionRepeatSet", "00000003 00 00000004 01"));
    EXPECT_EQ(sentBy(jtag->getOptionTerminationStateSetMethod(6, 7)),
              request("optionTerminationStateSet", "00000006 00000007"));
    EXPECT_EQ(sentBy(jtag->getOptionPrePostTckSetMethod(1, 2, 3, -4)),
              request("optionPrePostTckSet", "00000001 00000002 00000003 fffffffc"));
    EXPECT_EQ(sentBy(jtag->getEnableSetMethod(true)), request("enableSet", "01"));
}

TEST_F(JtagTest, SendsTheTwoFlagsOfEveryPinSetterInOrder) {
    EXPECT_EQ(sentBy(jtag->getIoTrstSetMethod(true, false)), request("ioTrstSet", "01 00"));
    EXPECT_EQ(sentBy(jtag->getIoTckSetMethod(false, true)), request("ioTckSet", "00 01"));
    EXPECT_EQ(sentBy(jtag->getIoTmsSetMethod(true, true)), request("ioTmsSet", "01 01"));
    EXPECT_EQ(sentBy(jtag->getIoTdiSetMethod(true, false)), request("ioTdiSet", "01 00"));
}

TEST_F(JtagTest, SendsTheExpectedBitsOfBothRegistersEachAsABlockOfItsOwn) {
    EXPECT_EQ(sentBy(jtag->getOptionTdoExpectedSetMethod(8, {0x11}, {0x22}, 16, {0x33, 0x44}, {0x55, 0x66})),
              request("optionTdoExpectedSet", "00000008 00000001 11 00000001 22"
                                              "00000010 00000002 3344 00000002 5566"));
    EXPECT_EQ(sentBy(jtag->getOptionTdoExpectedSetMethod(0, {}, {}, 1, {}, {0x01})),
              request("optionTdoExpectedSet", "00000000 00000000 00000000 00000001 00000000 00000001 01"));
}

TEST_F(JtagTest, SendsNoParametersWithAGetter) {
    EXPECT_EQ(sentBy(jtag->tapStateGetMethod()), request("tapStateGet"));
    EXPECT_EQ(sentBy(jtag->getOptionTckFrequencyGetMethod()), request("optionTckFrequencyGet"));
    EXPECT_EQ(sentBy(jtag->getOptionTdoExpectedGetMethod()), request("optionTdoExpectedGet"));
    EXPECT_EQ(sentBy(jtag->getOptionRetryGetMethod()), request("optionRetryGet"));
    EXPECT_EQ(sentBy(jtag->getOptionRepeatGetMethod()), request("optionRepeatGet"));
    EXPECT_EQ(sentBy(jtag->getOptionTerminationStateGetMethod()), request("optionTerminationStateGet"));
    EXPECT_EQ(sentBy(jtag->getOptionPrePostTckGetMethod()), request("optionPrePostTckGet"));
    EXPECT_EQ(sentBy(jtag->getIoTrstGetMethod()), request("ioTrstGet"));
    EXPECT_EQ(sentBy(jtag->getIoTckGetMethod()), request("ioTckGet"));
    EXPECT_EQ(sentBy(jtag->getIoTmsGetMethod()), request("ioTmsGet"));
    EXPECT_EQ(sentBy(jtag->getIoTdiGetMethod()), request("ioTdiGet"));
    EXPECT_EQ(sentBy(jtag->getIoTdoGetMethod()), request("ioTdoGet"));
    EXPECT_EQ(sentBy(jtag->getEnableGetMethod()), request("enableGet"));
    EXPECT_EQ(sentBy(jtag->getheaderStatusGetMethod()), request("headerStatusGet"));
}

TEST_F(JtagTest, YieldsTheReplyRecordsOfItsGetters) {
    namespace Header = TAVO::dto::Header;
    EXPECT_EQ(reply<TapStateGetReply>(jtag->tapStateGetMethod(), "0000000f").state, 15);
    EXPECT_EQ(reply<TAVO::dto::Base::FrequencyGetReply>(jtag->getOptionTckFrequencyGetMethod(),
                                                        "0000000100000000 fffffffe"),
              record<TAVO::dto::Base::FrequencyGetReply>(std::uint64_t{1} << 32, -2));
    EXPECT_EQ(reply<OptionTerminationStateGetReply>(jtag->getOptionTerminationStateGetMethod(),
                                                    "00000001 00000002"),
              record<OptionTerminationStateGetReply>(1, 2));
    EXPECT_EQ(reply<OptionPrePostTckGetReply>(jtag->getOptionPrePostTckGetMethod(),
                                              "00000001 00000002 00000003 00000004"),
              record<OptionPrePostTckGetReply>(1, 2, 3, 4));
    EXPECT_EQ(reply<Header::IoGetReply>(jtag->getIoTrstGetMethod(), "01 00"),
              record<Header::IoGetReply>(true, false));
    EXPECT_EQ(reply<Header::IoGetReply>(jtag->getIoTckGetMethod(), "00 01"),
              record<Header::IoGetReply>(false, true));
    EXPECT_EQ(reply<Header::IoGetReply>(jtag->getIoTmsGetMethod(), "ff 00"),
              record<Header::IoGetReply>(true, false));
    EXPECT_EQ(reply<Header::IoGetReply>(jtag->getIoTdiGetMethod(), "01 01"),
              record<Header::IoGetReply>(true, true));
    EXPECT_TRUE(reply<Header::oGetReply>(jtag->getIoTdoGetMethod(), "01").level);
    EXPECT_TRUE(reply<Header::EnableGetReply>(jtag->getEnableGetMethod(), "01").enable);
}

TEST_F(JtagTest, YieldsItsOwnResultRecords) {
    const auto [irCount, irEnable, drCount, drEnable] =
        reply<Jtag_v1_1_Structs::RepeatGet>(jtag->getOptionRepeatGetMethod(), "00000001 01 00000002 00");
    EXPECT_EQ(std::tuple(irCount, irEnable, drCount, drEnable), std::tuple(1, true, 2, false));
    const auto retry =
        reply<Jtag_v1_1_Structs::RetryGet>(jtag->getOptionRetryGetMethod(), "00000003 00 00000004 01");
    EXPECT_EQ(std::tuple(retry.irCount, retry.irEnable, retry.drCount, retry.drEnable),
              std::tuple(3, false, 4, true));
    const auto [irBits, irExpected, irMask, drBits, drExpected, drMask] =
        reply<Jtag_v1_1_Structs::TdoExpectedGet>(
            jtag->getOptionTdoExpectedGetMethod(),
            "00000008 00000001 11 00000001 22 00000010 00000002 3344 00000000");
    EXPECT_EQ(std::tuple(irBits, irExpected, irMask), std::tuple(8, Bytes{0x11}, Bytes{0x22}));
    EXPECT_EQ(std::tuple(drBits, drExpected, drMask), std::tuple(16, Bytes{0x33, 0x44}, Bytes{}));
    EXPECT_EQ(reply<HeaderResult>(jtag->getheaderStatusGetMethod(), support::headerStatusHex).headers.size(),
              1u);
}

TEST_F(JtagTest, RefusesMethodsThatTheDeviceDoesNotList) {
    device->appliance.add(8, "jtag").version(1, 1, 0);
    const auto bare = open<Jtag_v1_1>(8);
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { bare->getShiftIRMethod(0, {}); }),
              "Could not find Method ID for Method: shiftIR");
}

TEST(JtagResults, AreMadeFromTheirReplyAlone) {
    const auto outcome = outcomeWith(TapStateGetReply());
    const std::string refusal = "Can't convert Result to desire type";
    using namespace Jtag_v1_1_Structs;
    EXPECT_EQ(failureOf<std::runtime_error>([&] { RepeatGet{outcome}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { RetryGet{outcome}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { TdoExpectedGet{outcome}; }), refusal);
    // A retry's reply is no repeat's, though the two look alike.
    EXPECT_EQ(failureOf<std::runtime_error>([&] { RepeatGet{outcomeWith(OptionRetryGetReply())}; }), refusal);
    EXPECT_EQ(RetryGet(outcomeWith(record<OptionRetryGetReply>(1, true, 2, false))),
              RetryGet(record<OptionRetryGetReply>(1, true, 2, false)));
}

template <class Proxy>
concept HasTypedOperations = requires(const Proxy& proxy) {
    proxy.tapStateGetMethod();
};

class OldJtagTest : public support::ModuleTest {
protected:
    std::shared_ptr<Method> call(const std::string& name, std::shared_ptr<TAVO::dto::request_packet> record) {
        return std::make_shared<Method>(name, *jtag, TAVO::dto::Params{std::move(record)});
    }

    std::shared_ptr<Jtag_v1_0> jtag = openOnly<Jtag_v1_0>("jtag", 0);
};

TEST_F(OldJtagTest, HasNoTypedOperations) {
    EXPECT_TRUE(HasTypedOperations<Jtag_v1_1>);
    EXPECT_FALSE(HasTypedOperations<Jtag_v1_0>);
}

TEST_F(OldJtagTest, SendsTwoIntegersForRetryAndAnIntegerAndAFlagForRepeat) {
    EXPECT_EQ(sentBy(call("retrySet", std::make_shared<RetrySetRequest>(record<RetrySetRequest>(3, 1)))),
              request("retrySet", "00000003 00000001"));
    EXPECT_EQ(
        sentBy(call("repeatSet", std::make_shared<RepeatSetRequest>(record<RepeatSetRequest>(3, true)))),
        request("repeatSet", "00000003 01"));
}

TEST_F(OldJtagTest, HasTheSameWireFormForTheTerminationStatesOfBothRegisters) {
    EXPECT_EQ(jtag->getEncoder("terminationStateIRSet"), jtag->getEncoder("terminationStateDRSet"));
    EXPECT_EQ(jtag->getDecoder("terminationStateIRGet"), jtag->getDecoder("terminationStateDRGet"));
}

TEST_F(OldJtagTest, SharesTheWireFormOfShiftsStatesSleepAndFrequencyWithTheNewer) {
    add(8, "jtag", 1);
    const auto newer = open<Jtag_v1_1>(8);
    for (const char* name : {"shiftIR", "shiftDR", "tapStateGet", "tapStateSet", "sleep"}) {
        EXPECT_EQ(jtag->getEncoder(name), newer->getEncoder(name)) << name;
        EXPECT_EQ(jtag->getDecoder(name), newer->getDecoder(name)) << name;
    }
    EXPECT_EQ(jtag->getEncoder("tckFrequencySet"), newer->getEncoder("optionTckFrequencySet"));
    EXPECT_EQ(jtag->getDecoder("tckFrequencyGet"), newer->getDecoder("optionTckFrequencyGet"));
}

using CsJtagTest = support::ModuleTest;

TEST_F(CsJtagTest, HandsOutItsChild) {
    add(7, "csJtag", 0).member("jtag", 8);
    add(8, "jtag", 1);
    const auto csJtag = open<CsJtag_v1_0>(7);
    ASSERT_TRUE(csJtag);
    EXPECT_TRUE(csJtag->getJtag());
    EXPECT_EQ(csJtag->getJtag(), csJtag->getChild("jtag"));
}

TEST_F(CsJtagTest, CannotBeOpenedWithoutAChildOfThatName) {
    add(7, "csJtag", 0).member("Jtag", 8);
    add(8, "jtag", 1);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(CsJtagTest, CannotBeOpenedWithAnOlderChild) {
    add(7, "csJtag", 0).member("jtag", 8);
    add(8, "jtag", 0);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

} // namespace
