#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/simulator/models/tap_log.h>
#include <tavo/simulator/objects/jtag.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using TAVO::BoundMethod;
using TAVO::Method;
using Bytes = std::vector<std::uint8_t>;
namespace jtag_records = TAVO::dto::Jtag;

// What the standard chain has next to TDO, in the order of shifting.
const Bytes cpuIdcode{0xC3, 0xD0, 0x45, 0x2A};
// IDCODE (2) for the TAP of 8 bits next to TDO, BYPASS for those of 5 and 10.
const Bytes cpuIdcodeOthersBypass{0x02, 0xFF, 0x7F};
constexpr int chainIrBits = 23;

struct JtagTest : DeviceFixture {
    explicit JtagTest(const std::string& topology = "standard")
        : DeviceFixture({.topology = topology}) {
        power(true);
    }
};

struct JtagProxyTest : JtagTest {
    std::shared_ptr<TAVO::HWDebug::Jtag_v1_1> jtag =
        object<TAVO::HWDebug::CpuDebug_v1_1>(device, "cpu0")->getJtag();

    Bytes shiftedIr(int bits, const Bytes& data) {
        const auto shift = jtag->getShiftIRMethod(bits, data);
        done(shift);
        return shift->value().data;
    }
    Bytes shiftedDr(int bits, const Bytes& data) {
        const auto shift = jtag->getShiftDRMethod(bits, data);
        done(shift);
        return shift->value().data;
    }
    int state() { return called(device, jtag->tapStateGetMethod())->value().state; }
};

TEST_F(JtagProxyTest, AnIdcodeByShiftsIsTheOneByBitBanging) {
    shiftedIr(chainIrBits, cpuIdcodeOthersBypass);
    const auto byShifts = shiftedDr(32, {0, 0, 0, 0});
    EXPECT_EQ(byShifts, cpuIdcode);

    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    std::vector<std::shared_ptr<BoundMethod<TAVO::dto::Header::oGetReply>>> samples;
    const auto clock = [&](bool tms) {
        batch->add(jtag->getIoTmsSetMethod(true, tms));
        samples.push_back(jtag->getIoTdoGetMethod());
        batch->add(samples.back());
        batch->add(jtag->getIoTckSetMethod(true, true));
        batch->add(jtag->getIoTckSetMethod(true, false));
    };
    batch->add(jtag->getIoTckSetMethod(true, false));
    batch->add(jtag->getIoTdiSetMethod(true, false));
    for (int i = 0; i < 5; ++i)
        clock(true);
    for (const bool tms : {false, true, false, false})
        clock(tms);
    const auto first = samples.size();
    for (int bit = 0; bit < 32; ++bit)
        clock(bit == 31);
    const auto requests = simulator.requestCount();
    device->multicall(batch);
    EXPECT_EQ(simulator.requestCount(), requests + 1);

    Bytes byPins(4);
    for (std::size_t bit = 0; bit < 32; ++bit)
        byPins[bit / 8] |=
            static_cast<std::uint8_t>(unsigned{samples[first + bit]->value().level} << bit % 8);
    EXPECT_EQ(byPins, byShifts);
}

TEST_F(JtagProxyTest, TrstResetsTheStateMachineThatShiftsMoved) {
    done(jtag->getTapStateSetMethod(6));
    EXPECT_EQ(state(), 6);
    done(jtag->getIoTrstSetMethod(true, false));
    EXPECT_EQ(state(), 0);
    const auto pin = called(device, jtag->getIoTrstGetMethod())->value();
    EXPECT_TRUE(pin.first);
    EXPECT_FALSE(pin.second);
}

TEST_F(JtagProxyTest, AUserRegisterKeepsWhatIsWrittenUntilPowerGoes) {
    const Bytes select{0x20, 0xFF, 0x7F};
    // 34 bits: the one of each TAP in BYPASS leaves the register last.
    const Bytes value{0x78, 0x56, 0x34, 0x12, 0x00};
    shiftedIr(chainIrBits, select);
    shiftedDr(34, value);
    EXPECT_EQ(shiftedDr(34, value), value);
    power(false);
    power(true);
    shiftedIr(chainIrBits, select);
    EXPECT_EQ(shiftedDr(34, value), Bytes(5, 0x00));
}

TEST_F(JtagProxyTest, AChainWithoutPowerReadsOnesAndStaysInReset) {
    power(false);
    EXPECT_EQ(shiftedDr(12, {0, 0}), (Bytes{0xFF, 0x0F}));
    done(jtag->getTapStateSetMethod(1));
    EXPECT_EQ(state(), 0);
}

TEST_F(JtagProxyTest, ShiftsEndInTheirTerminationStates) {
    done(jtag->getOptionTerminationStateSetMethod(13, 6));
    shiftedIr(chainIrBits, cpuIdcodeOthersBypass);
    EXPECT_EQ(state(), 13);
    EXPECT_EQ(shiftedDr(32, {0, 0, 0, 0}), cpuIdcode);
    EXPECT_EQ(state(), 6);
}

TEST_F(JtagProxyTest, AnUnexpectedCaptureIsToldWithItsBits) {
    done(jtag->getTapStateSetMethod(0));
    done(jtag->getOptionTdoExpectedSetMethod(0, {}, {}, 32, {0xC3, 0, 0, 0}, {0xFF, 0, 0, 0}));
    EXPECT_EQ(shiftedDr(32, {0, 0, 0, 0}), cpuIdcode);
    done(jtag->getTapStateSetMethod(0));
    done(jtag->getOptionTdoExpectedSetMethod(0, {}, {}, 32, {0xC2, 0, 0, 0}, {0xFF, 0, 0, 0}));
    const auto shift = jtag->getShiftDRMethod(32, {0, 0, 0, 0});
    EXPECT_EQ(codeOf(shift), return_code::mismatch);
    EXPECT_EQ(shift->value().data, cpuIdcode);
}

TEST_F(JtagProxyTest, OptionsAreReadBackAsTheyWereSet) {
    using namespace TAVO::HWDebug::Jtag_v1_1_Structs;
    const auto read = [this](const auto& method) { return called(device, method)->value(); };
    done(jtag->getOptionRepeatSetMethod(3, true, 4, false));
    const auto repeat = read(jtag->getOptionRepeatGetMethod());
    EXPECT_EQ(repeat.irCount, 3);
    EXPECT_TRUE(repeat.irEnable);
    EXPECT_EQ(repeat.drCount, 4);
    EXPECT_FALSE(repeat.drEnable);

    done(jtag->getOptionRetrySetMethod(5, false, 6, true));
    const auto retry = read(jtag->getOptionRetryGetMethod());
    EXPECT_EQ(retry.irCount, 5);
    EXPECT_FALSE(retry.irEnable);
    EXPECT_EQ(retry.drCount, 6);
    EXPECT_TRUE(retry.drEnable);

    done(jtag->getOptionTdoExpectedSetMethod(9, {1, 0}, {0xFF, 1}, 4, {5}, {15}));
    const auto expected = read(jtag->getOptionTdoExpectedGetMethod());
    EXPECT_EQ(expected.irBits, 9);
    EXPECT_EQ(expected.irExpected, (Bytes{1, 0}));
    EXPECT_EQ(expected.irMask, (Bytes{0xFF, 1}));
    EXPECT_EQ(expected.drBits, 4);
    EXPECT_EQ(expected.drExpected, Bytes{5});
    EXPECT_EQ(expected.drMask, Bytes{15});

    done(jtag->getOptionTerminationStateSetMethod(13, 6));
    const auto termination = read(jtag->getOptionTerminationStateGetMethod());
    EXPECT_EQ(termination.irState, 13);
    EXPECT_EQ(termination.drState, 6);

    done(jtag->getOptionPrePostTckSetMethod(1, 2, 3, 4));
    const auto clocks = read(jtag->getOptionPrePostTckGetMethod());
    EXPECT_EQ(clocks.value1, 1);
    EXPECT_EQ(clocks.value2, 2);
    EXPECT_EQ(clocks.value3, 3);
    EXPECT_EQ(clocks.value4, 4);

    done(jtag->getOptionTckFrequencySetMethod(3'000'000));
    const auto frequency = read(jtag->getOptionTckFrequencyGetMethod());
    EXPECT_EQ(frequency.frequency, 2'941'176u);
    EXPECT_EQ(frequency.value, 17);

    done(jtag->getEnableSetMethod(false));
    EXPECT_FALSE(read(jtag->getEnableGetMethod()).enable);
}

TEST_F(JtagProxyTest, WrongArgumentsAndASwitchedOffPortAreRefused) {
    EXPECT_EQ(codeOf(jtag->getShiftDRMethod(9, {0})), return_code::badArgument);
    EXPECT_EQ(codeOf(jtag->getShiftIRMethod(-1, {})), return_code::badArgument);
    EXPECT_EQ(codeOf(jtag->getTapStateSetMethod(4)), return_code::badArgument);
    EXPECT_EQ(codeOf(jtag->getOptionTerminationStateSetMethod(1, 4)), return_code::badArgument);
    EXPECT_EQ(codeOf(jtag->getOptionTckFrequencySetMethod(999)), return_code::badArgument);
    done(jtag->getEnableSetMethod(false));
    EXPECT_EQ(codeOf(jtag->getShiftDRMethod(8, {0})), return_code::disabled);
    EXPECT_EQ(codeOf(jtag->getTapStateSetMethod(0)), return_code::disabled);
    EXPECT_EQ(codeOf(jtag->getIoTckSetMethod(true, true)), return_code::disabled);
}

TEST_F(JtagProxyTest, SleepingTakesSimulatedTime) {
    const auto now = [this] {
        return simulator.inspect([](Appliance& appliance) { return appliance.board()->now(); });
    };
    freeze();
    const auto before = now();
    done(jtag->getSleepMethod(1500, true));
    EXPECT_EQ(now(), before + 1500);
    EXPECT_EQ(codeOf(jtag->getSleepMethod(-1, false)), return_code::badArgument);
}

TEST_F(JtagProxyTest, EveryCompositeHasAChainOfItsOwn) {
    const auto chipSelect = object<TAVO::HWDebug::CsJtag_v1_0>(device, "csJtag")->getJtag();
    const auto gpu = object<TAVO::HWDebug::GpuDebug_v1_0>(device, "gpu0")->getJtag();
    done(jtag->getTapStateSetMethod(6));
    for (const auto& other : {chipSelect, gpu}) {
        EXPECT_EQ(called(device, other->tapStateGetMethod())->value().state, 0);
        const auto shift = other->getShiftDRMethod(32, {0, 0, 0, 0});
        done(shift);
        EXPECT_EQ(shift->value().data, cpuIdcode);
    }
    EXPECT_EQ(state(), 6);
}

TEST_F(JtagProxyTest, AnObserverIsToldWhatArrives) {
    std::string lines;
    simulator.inspect([&](Appliance& appliance) {
        auto log = std::make_shared<TapLog>("cpu0.jtag", [&](std::string_view piece) { lines += piece; });
        appliance.get<Jtag>("cpu0.jtag").port().setObserver(std::move(log));
    });
    done(jtag->getTapStateSetMethod(1));
    done(jtag->getTapStateSetMethod(0));
    shiftedIr(chainIrBits, cpuIdcodeOthersBypass);
    shiftedDr(32, {0, 0, 0, 0});
    EXPECT_EQ(simulator.inspect([&](Appliance&) { return lines; }), "cpu0.jtag reset\n"
                                                                    "cpu0.jtag ir 23 7fff02 002101\n"
                                                                    "cpu0.jtag dr 32 00000000 2a45d0c3\n");
}

TEST_F(JtagProxyTest, HeaderStatusTellsOfAPowerOn) {
    const auto status = called(device, jtag->getheaderStatusGetMethod())->value();
    ASSERT_EQ(status.headers.size(), 1u);
    EXPECT_EQ(status.headers[0], (TAVO::dto::Base::Header{"JTAG", 1, 1, 0}));
    ASSERT_EQ(status.connections.size(), 1u);
    EXPECT_EQ(status.connections[0].first, std::vector<std::string>{"JTAG"});
    EXPECT_EQ(status.connections[0].second, std::vector<std::string>{"TAP"});
}

// Version 1.0 has no operations of its own: everything is called by name.
struct LegacyJtagTest : JtagTest {
    LegacyJtagTest()
        : JtagTest("legacy") {}

    template <class Request>
    void set(const std::string& name, std::shared_ptr<Request> request, int code = return_code::done) {
        EXPECT_EQ(codeOf(std::make_shared<Method>(name, *jtag, TAVO::dto::Params{request})), code) << name;
    }
    template <class Reply>
    Reply get(const std::string& name, std::shared_ptr<TAVO::dto::request_packet> request = nullptr) {
        const auto method = std::make_shared<BoundMethod<Reply>>(name, *jtag, TAVO::dto::Params{request});
        done(method);
        return method->value();
    }
    Bytes shifted(const std::string& name, int bits, const Bytes& data) {
        const auto request = std::make_shared<jtag_records::ShiftRequest>();
        request->bits = bits;
        request->data = data;
        return get<jtag_records::ShiftReply>(name, request).data;
    }

    std::shared_ptr<TAVO::HWDebug::Jtag_v1_0> jtag =
        object<TAVO::HWDebug::CpuDebug_v1_0>(device, "cpu")->getJtag();
};

TEST_F(LegacyJtagTest, ShiftsByNameAsTheNewerOneDoes) {
    EXPECT_EQ(shifted("shiftIR", chainIrBits, cpuIdcodeOthersBypass), (Bytes{0x01, 0x21, 0x00}));
    EXPECT_EQ(shifted("shiftDR", 32, {0, 0, 0, 0}), cpuIdcode);
    const auto request = std::make_shared<jtag_records::TapStateSetRequest>();
    request->state = 13;
    set("tapStateSet", request);
    EXPECT_EQ(get<jtag_records::TapStateGetReply>("tapStateGet").state, 13);
}

TEST_F(LegacyJtagTest, OptionsAreReadBackAsTheyWereSet) {
    const auto repeat = std::make_shared<jtag_records::RepeatSetRequest>();
    repeat->count = 3;
    repeat->enable = true;
    set("repeatSet", repeat);
    EXPECT_EQ(get<jtag_records::RepeatGetReply>("repeatGet").count, 3);
    EXPECT_TRUE(get<jtag_records::RepeatGetReply>("repeatGet").enable);

    const auto retry = std::make_shared<jtag_records::RetrySetRequest>();
    retry->first = 9;
    retry->second = 1;
    set("retrySet", retry);
    EXPECT_EQ(get<jtag_records::RetryGetReply>("retryGet").count, 9);
    EXPECT_TRUE(get<jtag_records::RetryGetReply>("retryGet").enable);

    const auto expected = std::make_shared<jtag_records::TdoExpectedSetRequest>();
    expected->bits = 12;
    expected->expected = {0x34, 0x02};
    expected->mask = {0xFF, 0x0F};
    set("tdoExpectedSet", expected);
    const auto read = get<jtag_records::TdoExpectedGetReply>("tdoExpectedGet");
    EXPECT_EQ(read.bits, 12);
    EXPECT_EQ(read.expected, expected->expected);
    EXPECT_EQ(read.mask, expected->mask);
    expected->mask = {0xFF};
    set("tdoExpectedSet", expected, return_code::badArgument);

    const auto state = std::make_shared<jtag_records::TerminationStateSetRequest>();
    state->state = 13;
    set("terminationStateIRSet", state);
    EXPECT_EQ(get<jtag_records::TerminationStateGetReply>("terminationStateIRGet").state, 13);
    EXPECT_EQ(get<jtag_records::TerminationStateGetReply>("terminationStateDRGet").state, 1);
    state->state = 6;
    set("terminationStateDRSet", state);
    EXPECT_EQ(get<jtag_records::TerminationStateGetReply>("terminationStateDRGet").state, 6);

    const auto frequency = std::make_shared<jtag_records::OptionTckFrequencySetRequest>();
    frequency->frequency = 20'000'000;
    set("tckFrequencySet", frequency);
    const auto actual = get<TAVO::dto::Base::FrequencyGetReply>("tckFrequencyGet");
    EXPECT_EQ(actual.frequency, 16'666'666u);
    EXPECT_EQ(actual.value, 3);
}

TEST_F(LegacyJtagTest, WhatIsExpectedCountsForBothRegisters) {
    const auto expected = std::make_shared<jtag_records::TdoExpectedSetRequest>();
    expected->bits = 8;
    expected->expected = {0xFF};
    expected->mask = {0xFF};
    set("tdoExpectedSet", expected);
    for (const auto* name : {"shiftIR", "shiftDR"}) {
        const auto request = std::make_shared<jtag_records::ShiftRequest>();
        request->bits = 8;
        request->data = {0};
        set(name, request, return_code::mismatch);
    }
}

} // namespace
