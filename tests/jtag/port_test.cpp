#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/jtag/port.h>
#include <tests/simulator/simulator_fixture.h>
#include <tests/support/failure_text.h>

namespace {

using namespace TAVO;
using namespace TAVO::jtag;
using HWDebug::Jtag_v1_0;
using HWDebug::Jtag_v1_1;
namespace v1_0 = TAVOXTranscode::jtag_v1_0;
namespace v1_1 = TAVOXTranscode::jtag_v1_1;
using Bytes = std::vector<std::uint8_t>;

/// What an example is run with: a topology and the full name of a "jtag" object in it.
struct Place {
    std::string topology;
    std::string object;
};

class PortTest : public DeviceFixture, public testing::WithParamInterface<Place> {
protected:
    PortTest()
        : DeviceFixture({.topology = GetParam().topology}) {
        power(true);
    }

    Executor executor() {
        return {[this](const Methods& methods) {
                    const auto queue = std::make_shared<MulticallQueue>();
                    for (const auto& method : methods)
                        queue->add(method);
                    ++exchanges;
                    device->multicall(queue);
                },
                [](const Method& method) {
                    if (method.returnCode() != 0)
                        throw std::runtime_error(method.getFullName() + " returned " +
                                                 std::to_string(method.returnCode()));
                }};
    }

    template <class Request, class... Values>
    void set(const TAVOXTranscode::Call<Request>& call, Values&&... values) {
        const auto method = jtag->make(call, std::forward<Values>(values)...);
        device->call(method);
        ASSERT_EQ(method->returnCode(), 0) << call.name;
    }
    template <class Reply>
    Reply get(const TAVOXTranscode::Call<TAVOXTranscode::None, Reply>& call) {
        const auto method = jtag->make(call);
        device->call(method);
        return method->value();
    }
    bool isOld() const { return std::dynamic_pointer_cast<Jtag_v1_0>(jtag) != nullptr; }

    /// Everything that outlives a session, as text.
    std::string options() {
        std::string all;
        const auto add = [&](auto... values) { ((all += std::to_string(values) + " "), ...); };
        const auto addBytes = [&](const Bytes& bytes) {
            for (const auto byte : bytes)
                add(byte);
        };
        if (isOld()) {
            const auto expected = get(v1_0::tdoExpectedGet);
            add(expected.bits);
            addBytes(expected.expected);
            addBytes(expected.mask);
            add(get(v1_0::retryGet).count, get(v1_0::retryGet).enable, get(v1_0::repeatGet).count,
                get(v1_0::repeatGet).enable, get(v1_0::terminationStateIRGet).state,
                get(v1_0::terminationStateDRGet).state, get(v1_0::tckFrequencyGet).frequency);
        } else {
            const auto expected = get(v1_1::optionTdoExpectedGet);
            add(expected.irBits, expected.drBits);
            for (const auto* bytes :
                 {&expected.irExpected, &expected.irMask, &expected.drExpected, &expected.drMask})
                addBytes(*bytes);
            const auto retry = get(v1_1::optionRetryGet);
            const auto repeat = get(v1_1::optionRepeatGet);
            const auto end = get(v1_1::optionTerminationStateGet);
            const auto clocks = get(v1_1::optionPrePostTckGet);
            add(retry.irCount, retry.irEnable, retry.drCount, retry.drEnable, repeat.irCount, repeat.irEnable,
                repeat.drCount, repeat.drEnable, end.irState, end.drState, clocks.value1, clocks.value2,
                clocks.value3, clocks.value4, get(v1_1::optionTckFrequencyGet).frequency);
        }
        for (const auto& pin : {v1_0::ioTrstGet, v1_0::ioTckGet, v1_0::ioTmsGet, v1_0::ioTdiGet})
            add(get(pin).first, get(pin).second);
        return all;
    }

    /// What somebody else may have left behind, and what spoils every shift.
    void leaveOptions() {
        if (isOld()) {
            set(v1_0::tdoExpectedSet, 32, Bytes{1, 2, 3, 4}, Bytes{0xFF, 0xFF, 0xFF, 0xFF});
            set(v1_0::retrySet, 3, 1);
            set(v1_0::repeatSet, 1, true);
            set(v1_0::terminationStateIRSet, static_cast<std::int32_t>(TapState::pauseIr));
            set(v1_0::terminationStateDRSet, static_cast<std::int32_t>(TapState::pauseDr));
        } else {
            set(v1_1::optionTdoExpectedSet, 8, Bytes{7}, Bytes{0xFF}, 32, Bytes{1, 2, 3, 4},
                Bytes{0xFF, 0xFF, 0xFF, 0xFF});
            set(v1_1::optionRetrySet, 2, true, 3, true);
            set(v1_1::optionRepeatSet, 1, true, 2, true);
            set(v1_1::optionTerminationStateSet, static_cast<std::int32_t>(TapState::pauseIr),
                static_cast<std::int32_t>(TapState::pauseDr));
            set(v1_1::optionPrePostTckSet, 1, 2, 3, 4);
        }
    }

    std::shared_ptr<Object_v1_0> jtag = object(device, GetParam().object);
    int exchanges = 0;
};

INSTANTIATE_TEST_SUITE_P(All, PortTest,
                         testing::Values(Place{"standard", "cpu0.jtag"}, Place{"standard", "csJtag.jtag"},
                                         Place{"legacy", "cpu.jtag"}),
                         [](const auto& place) {
                             auto name = place.param.topology + "_" + place.param.object;
                             for (auto& letter : name)
                                 letter = letter == '.' || letter == '-' ? '_' : letter;
                             return name;
                         });

const Shift idcode{Register::data, BitString(32, false), TapState::runTestIdle, true, {}};

TEST_P(PortTest, WhatSomebodyElseLeftSpoilsNoShiftAndIsGivenBack) {
    leaveOptions();
    const auto before = options();
    Port port(jtag, executor());
    const auto captured = port.run({Move{TapState::testLogicReset}, idcode});
    ASSERT_EQ(captured.size(), 2u);
    EXPECT_EQ(captured[0].size(), 0u);
    EXPECT_EQ(captured[1].number(0, 32), 0x2A45D0C3u);
    EXPECT_NE(options(), before);
    EXPECT_EQ(port.state(), TapState::runTestIdle);
    port.setFrequency(2'000'000);
    port.run({Trst{true, false}, PinClock{true, true, false}});
    port.restore(executor());
    EXPECT_EQ(options(), before);
    const auto made = exchanges;
    port.restore(executor());
    EXPECT_EQ(exchanges, made);
}

TEST_P(PortTest, StepsAreOneExchange) {
    Port port(jtag, executor());
    exchanges = 0;
    port.run({Move{}, idcode, Shift{Register::instruction, BitString(23, true), TapState::pauseIr, true, {}},
              Idle{std::chrono::microseconds(5), true}, idcode});
    EXPECT_EQ(exchanges, 1);
    port.run({});
    EXPECT_EQ(exchanges, 1);
}

TEST_P(PortTest, AShiftGoesOnFromItsPause) {
    Port port(jtag, executor());
    const auto parts =
        port.run({Move{TapState::testLogicReset},
                  Shift{Register::data, BitString(20, false), TapState::pauseDr, true, {}},
                  Shift{Register::data, BitString(76, false), TapState::runTestIdle, true, {}}});
    auto whole = parts[1];
    whole.append(parts[2]);
    EXPECT_EQ(whole.number(0, 32), 0x2A45D0C3u);
    EXPECT_EQ(whole.number(32, 32), 0x17B1E0C3u);
    EXPECT_EQ(whole.number(64, 32), 0x0C0DE1D5u);
    port.restore(executor());
}

TEST_P(PortTest, ClocksByPinsDoWhatShiftsDo) {
    Port port(jtag, executor());
    Steps steps{Move{TapState::testLogicReset}, Move{TapState::runTestIdle}};
    for (const bool tms : {true, false, false})
        steps.push_back(PinClock{tms, true, false});
    const auto first = steps.size();
    for (int bit = 0; bit < 32; ++bit)
        steps.push_back(PinClock{bit == 31, true, true});
    for (const bool tms : {true, false})
        steps.push_back(PinClock{tms, true, false});
    steps.push_back(ReleasePins{});
    steps.push_back(idcode);
    const auto results = port.run(steps);
    BitString bits;
    for (auto step = first; step < first + 32; ++step)
        bits.append(results[step]);
    EXPECT_EQ(bits.number(0, 32), 0x2A45D0C3u);
    EXPECT_EQ(results.back().number(0, 32), 0x2A45D0C3u);
    port.restore(executor());
}

TEST_P(PortTest, TdoIsReadWithoutAClock) {
    Port port(jtag, executor());
    const auto results =
        port.run({Move{TapState::testLogicReset}, Move{TapState::runTestIdle}, PinClock{true, true, false},
                  PinClock{false, true, false}, PinClock{false, true, false}, ReadTdo{}, ReadTdo{},
                  PinClock{false, true, true}, PinClock{false, true, true}, PinClock{true, true, true},
                  PinClock{true, true, false}, PinClock{false, true, false}, ReleasePins{}});
    // 0xC3 begins with 1, 1, 0.
    EXPECT_TRUE(results[5].at(0));
    EXPECT_TRUE(results[6].at(0));
    EXPECT_TRUE(results[7].at(0));
    EXPECT_TRUE(results[8].at(0));
    EXPECT_FALSE(results[9].at(0));
    EXPECT_EQ(port.state(), TapState::runTestIdle);
    port.restore(executor());
}

TEST_P(PortTest, AVainPollTellsWhatCameLast) {
    Port port(jtag, executor());
    auto polled = idcode;
    polled.poll = Poll{BitString(32, false), BitString(32, true), 2};
    const auto results = port.run({Move{TapState::testLogicReset}, polled, idcode});
    EXPECT_EQ(results[1].size(), 32u);
    EXPECT_EQ(results[2].number(0, 32), 0x2A45D0C3u);
    port.restore(executor());
}

TEST_P(PortTest, ARefusedPollIsNamed) {
    Port port(jtag, executor());
    const Shift polled{Register::data, BitString(6000, false), TapState::runTestIdle, true,
                       Poll{BitString(6000, true), BitString(6000, true), 1000}};
    EXPECT_EQ(support::failureOf<std::runtime_error>([&] { port.run({polled}); }),
              GetParam().object + ".shiftDR returned 1");
    port.restore(executor());
}

TEST_P(PortTest, TheResetReachedByPinsSelectsTheIdcode) {
    Port port(jtag, executor());
    const Shift bypass{Register::instruction, BitString(23, true), TapState::runTestIdle, false, {}};
    Steps steps{Move{TapState::testLogicReset}, bypass};
    for (int clock = 0; clock < 5; ++clock)
        steps.push_back(PinClock{true, true, false});
    steps.push_back(ReleasePins{});
    steps.push_back(idcode);
    EXPECT_EQ(port.run(steps).back().number(0, 32), 0x2A45D0C3u);
    port.restore(executor());
}

TEST_P(PortTest, WhatTheDeviceRefusesIsNamed) {
    set(v1_0::enableSet, false);
    Port port(jtag, executor());
    EXPECT_EQ(support::failureOf<std::runtime_error>([&] { port.run({idcode}); }),
              GetParam().object + ".shiftDR returned 3");
    port.restore(executor());
    set(v1_0::enableSet, true);
}

TEST_P(PortTest, AfterAFailureTheStateToEndInIsSetAnew) {
    Port port(jtag, executor());
    port.run({idcode});
    set(v1_0::enableSet, false);
    auto paused = idcode;
    paused.end = TapState::pauseDr;
    EXPECT_THROW(port.run({paused}), std::runtime_error);
    set(v1_0::enableSet, true);
    port.run({idcode});
    EXPECT_EQ(port.state(), TapState::runTestIdle);
    port.restore(executor());
}

TEST_P(PortTest, ClocksAreCountedInTime) {
    Port port(jtag, executor());
    EXPECT_EQ(port.frequency(), 1'000'000);
    EXPECT_EQ(port.timeOf(0).count(), 0);
    EXPECT_EQ(port.timeOf(7).count(), 7);
    EXPECT_EQ(port.timeOf(~std::uint64_t{0}), std::chrono::microseconds::max());
    EXPECT_EQ(port.setFrequency(3'000'000), 2'941'176);
    EXPECT_EQ(port.timeOf(1).count(), 1);
    EXPECT_EQ(port.timeOf(2'941'177).count(), 1'000'001);
    EXPECT_EQ(port.timeOf(~std::uint64_t{0}).count(), 6'271'893'988'564'285'720);
    port.restore(executor());
    EXPECT_EQ(Port(jtag, executor()).frequency(), 1'000'000);
}

TEST_P(PortTest, APauseIsNoLongerThanADay) {
    Port port(jtag, executor());
    exchanges = 0;
    EXPECT_EQ(support::failureOf<std::invalid_argument>([&] { port.run({Idle{std::chrono::hours(25)}}); }),
              "a pause of 90000000000 microseconds is longer than a day");
    EXPECT_EQ(exchanges, 0);
}

TEST_P(PortTest, AnObjectOfAnotherTypeIsNamed) {
    EXPECT_EQ(
        support::failureOf<std::invalid_argument>([&] { Port port(object(device, "power"), executor()); }),
        "power is no jtag object");
}

} // namespace
