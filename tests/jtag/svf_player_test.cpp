#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tavo/jtag/svf/player.h>
#include <tavo/simulator/objects/jtag.h>
#include <tavo/simulator/simulator.h>

namespace {

using TAVO::jtag::Port;
using TAVO::simulator::Appliance;
using TAVO::simulator::Jtag;
namespace svf = TAVO::jtag::svf;
using svf::PlanOptions;
using svf::StopAt;
using testing::HasSubstr;

/// Behind these lines, data scans reach the USER register of the TAP next to TDO, with two bits behind it.
const std::string toUser = "TIR 15 TDI (7FFF); TDR 2 TDI (0); SIR 8 TDI (20);\n";

/// A port of the standard simulator, whose board is powered. The version of the object is the parameter.
class SvfPlayer : public testing::TestWithParam<std::string> {
protected:
    SvfPlayer()
        : simulator_({.topology = GetParam()}) {
        simulator_.start();
        simulator_.inspect([](Appliance& appliance) { appliance.board()->setPower(true); });
        TAVO::CoreObjects::registerCoreObjects();
        TAVO::HWDebug::HwdObjects::registerCoreObjects();
        CommonModules::CommonModulesObjects::registerCoreObjects();
        device_ = TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator_.port(), "engineer", "tavo", false,
                                                   {.byLevels = true});
        object_ = device_->get<TAVO::Object_v1_0>(name_);
    }

    TAVO::jtag::Executor executor() {
        return {[this](const TAVO::jtag::Methods& methods) {
                    const auto queue = std::make_shared<TAVO::MulticallQueue>();
                    for (const auto& method : methods)
                        queue->add(method);
                    device_->multicall(queue);
                },
                [](const TAVO::Method& method) {
                    if (method.returnCode() != 0)
                        throw std::runtime_error(method.getFullName());
                }};
    }

    /// @return what was played, whatever came of it; `fault_` says what.
    svf::Totals play(const std::string& text, PlanOptions options = {}) {
        fault_.clear();
        Port port(object_, executor());
        svf::Player player(text, "f.svf", options, port, {});
        try {
            player.play();
        } catch (const svf::Mismatch& mismatch) {
            fault_ = mismatch.what();
        }
        batches_ = player.batches();
        frequency_ = port.frequency();
        port.restore(executor());
        return player.totals();
    }

    template <class Look>
    auto look(Look look) {
        return simulator_.inspect(
            [&](Appliance& appliance) { return look(appliance.get<Jtag>(name_).port()); });
    }
    std::uint32_t user() {
        return look([](auto& port) {
            return static_cast<std::uint32_t>(port.chain().taps().at(0).content(0x20).number());
        });
    }

    const std::string name_ = GetParam() == "legacy" ? "cpu.jtag" : "cpu0.jtag";
    TAVO::simulator::Simulator simulator_;
    std::shared_ptr<TAVO::Device> device_;
    std::shared_ptr<TAVO::Object_v1_0> object_;
    std::string fault_;
    std::size_t batches_ = 0;
    std::int32_t frequency_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Versions, SvfPlayer, testing::Values("standard", "legacy"),
                         [](const auto& tested) { return tested.param; });

TEST_P(SvfPlayer, WritesAndReadsARegister) {
    play(toUser + "SDR 32 TDI (12345678); SDR 32 TDI (0) TDO (12345678);");
    EXPECT_EQ(fault_, "");
    EXPECT_EQ(user(), 0u);
    play(toUser + "SDR 32 TDI (CAFEF00D);");
    EXPECT_EQ(user(), 0xCAFEF00D);
}

TEST_P(SvfPlayer, PausedScansAreOneForTheRegister) {
    play(toUser + "SDR 32 TDI (89ABCDEF); TDR 0; ENDDR DRPAUSE;\n"
                  "SDR 16 TDI (5678) TDO (CDEF); ENDDR IDLE; TDR 2 TDI (0);\n"
                  "SDR 16 TDI (1234) TDO (89AB);");
    EXPECT_EQ(fault_, "");
    EXPECT_EQ(user(), 0x12345678u);
}

TEST_P(SvfPlayer, APathByPinsLeavesThePauseToTheNextScan) {
    // The path shifts two zeros.
    play(toUser + "TDR 0; ENDDR DRPAUSE; SDR 14 TDI (2AAA);\n"
                  "STATE DREXIT2 DRSHIFT DRSHIFT DREXIT1 DRPAUSE;\n"
                  "ENDDR IDLE; TDR 2 TDI (0); SDR 16 TDI (FFFF);");
    EXPECT_EQ(user(), 0xFFFF2AAAu);
}

TEST_P(SvfPlayer, AMismatchNamesBitsAndEndsTheFile) {
    const auto totals =
        play(toUser + "SDR 32 TDI (0F0F0F0F);\n\nSDR 32 TDI (1) TDO (0F0F0F4F) MASK (0000FFF0);\n"
                      "STATE IDLE; SDR 32 TDI (2);");
    EXPECT_EQ(fault_,
              "f.svf:4: TDO is (0F0F0F0F), expected (0F0F0F4F) under MASK (0000FFF0), first wrong bit 6");
    EXPECT_EQ(user(), 1u);
    EXPECT_EQ(totals.scans, 0u);
}

TEST_P(SvfPlayer, AMismatchInLongDataShowsItsVicinity) {
    play("SIR 23 TDI (7FFFFF); SDR 1003 TDI (0) TDO (0);\n"
         "SDR 1003 TDI (" +
         std::string(251, '0') + ") TDO (4" + std::string(100, '0') + ");");
    EXPECT_THAT(fault_, HasSubstr("f.svf:2: TDO, bits 336 to 465 of 1003, is (0000"));
    EXPECT_THAT(fault_, HasSubstr("first wrong bit 402"));
}

TEST_P(SvfPlayer, WhatStandsAroundAScanIsComparedToo) {
    play("SIR 23 TDI (7FFFFF);\nHDR 1 TDI (1) TDO (1);\nSDR 2 TDI (0);");
    EXPECT_EQ(fault_,
              "f.svf:3: TDO around the scan, from line 2, is (0), expected (1) under MASK (1), first wrong "
              "bit 0");
}

TEST_P(SvfPlayer, WithoutComparingNothingIsWrong) {
    play(toUser + "SDR 32 TDI (0F0F0F0F); SDR 32 TDI (1) TDO (0F0F0F4F); SDR 32 TDI (2);",
         {.compares = false});
    EXPECT_EQ(fault_, "");
    EXPECT_EQ(user(), 2u);
}

TEST_P(SvfPlayer, APolledScanIsRepeatedOnTheDevice) {
    // Shifted out again, the register holds what was shifted in before.
    play(toUser + "SDR 32 TDI (5); SDR 32 TDI (6); SDR 32 TDI (7) TDO (7);", {.retries = 2});
    EXPECT_EQ(fault_, "");
    play(toUser + "SDR 32 TDI (6); SDR 32 TDI (7) TDO (8);", {.retries = 2});
    EXPECT_THAT(fault_, HasSubstr("TDO is (00000007), expected (00000008)"));
    const auto options =
        look([](auto& port) { return port.options(TAVO::simulator::JtagPort::Register::data); });
    EXPECT_EQ(options, TAVO::simulator::JtagPort::ShiftOptions());
}

TEST_P(SvfPlayer, FrequencyIsSetAndGivenBack) {
    play("FREQUENCY 2.5E6 HZ; STATE IDLE;");
    EXPECT_EQ(frequency_, 2'500'000);
    play("FREQUENCY 2.5E6 HZ; STATE IDLE; FREQUENCY; STATE IDLE;");
    EXPECT_EQ(frequency_, 1'000'000);
    EXPECT_EQ(look([](auto& port) { return port.frequency(); }), 1'000'000u);
}

TEST_P(SvfPlayer, TrstSelectsIdcodes) {
    play(toUser + "TIR 0; TDR 0; TRST ON; TRST Z; SDR 32 TDI (0) TDO (2A45D0C3);");
    EXPECT_EQ(fault_, "");
}

TEST_P(SvfPlayer, RunTestRestsWhereItSays) {
    play("RUNTEST 10 TCK ENDSTATE IRPAUSE;");
    EXPECT_EQ(look([](auto& port) { return port.state(); }), 13);
    play("RUNTEST RESET 10 TCK 1E-6 SEC;");
    EXPECT_EQ(look([](auto& port) { return port.state(); }), 0);
}

TEST_P(SvfPlayer, StopRulesDecideHowManyExchangesAFileTakes) {
    std::string text;
    for (int scan = 0; scan < 2000; ++scan)
        text += "SDR 32 TDI (0) TDO (2A45D0C3); RUNTEST 1 TCK;";
    for (const auto& [stopAt, batches] :
         {std::pair{StopAt::check, 2001}, {StopAt::batch, 21}, {StopAt::end, 1}}) {
        simulator_.clearCalls();
        const auto before = simulator_.requestCount();
        const auto totals = play("FREQUENCY 5E7 HZ;\n" + text, {.stopAt = stopAt});
        EXPECT_EQ(fault_, "");
        EXPECT_EQ(batches_, static_cast<std::size_t>(batches));
        // To ask, to set the frequency, and to give everything back.
        EXPECT_EQ(simulator_.requestCount() - before, static_cast<std::uint64_t>(batches) + 3);
        EXPECT_EQ(totals.checkedScans, 2000u);
        EXPECT_EQ(totals.bits, 64'000u);
        EXPECT_EQ(totals.statements, 4001u);
    }
}

TEST(SvfMeasure, TellsWhatPlayingTakes) {
    const auto totals = svf::measure("FREQUENCY 1E3 HZ; RUNTEST 5 TCK 1 SEC; FREQUENCY; RUNTEST 7 TCK;"
                                     "SDR 8 TDI (0) TDO (0); SIR 3 TDI (0);",
                                     "f.svf", {}, 1'000'000);
    EXPECT_EQ(totals, (svf::Totals{6, 2, 1, 11, std::chrono::microseconds(1'005'007)}));
}

TEST(SvfMeasure, HugeFilesTakeNoTime) {
    std::string text = "SDR 268435456 TDI (0);";
    for (int scan = 0; scan < 10'000; ++scan)
        text += "SDR 268435456;";
    text += "FREQUENCY 1E5 HZ;";
    for (int wait = 0; wait < 10'000; ++wait)
        text += "RUNTEST 4294967295 TCK 86400 SEC;RUNTEST RESET 10000 TCK;RUNTEST IDLE 1 TCK;";
    EXPECT_EQ(svf::measure(text, "f.svf", {}, 1).scans, 10'001u);
}

} // namespace
