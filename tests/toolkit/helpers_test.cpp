#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/toolkit/i2c.h>
#include <tavo/toolkit/jtag_scan.h>
#include <tavo/toolkit/post_codes.h>
#include <tavo/toolkit/rom.h>
#include <tavo/toolkit/serial_link.h>
#include <tavo/toolkit/svf.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO;
using namespace TAVO::toolkit;
using testing::ElementsAre;

struct StoppedHere : std::runtime_error {
    StoppedHere()
        : std::runtime_error("stopped") {}
};
struct RefusedHere : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Counts exchanges, and stops at one of them.
class CountingAccess : public Access {
public:
    explicit CountingAccess(Device& device)
        : device_(device) {}

    void run(const Methods& calls) override {
        throwIfStopped();
        execute(calls);
    }
    void runLast(const Methods& calls) override { execute(calls); }
    void insist(const Method& executed) override {
        if (executed.returnCode() != 0)
            throw RefusedHere(executed.getFullName());
    }
    bool isRefusal(const std::exception& failure) const override {
        return dynamic_cast<const RefusedHere*>(&failure) != nullptr;
    }
    void throwIfStopped() override {
        if (exchanges.size() >= stopAfter)
            throw StoppedHere();
    }
    void pause(std::chrono::milliseconds) override { throwIfStopped(); }

    /// The methods of each.
    std::vector<std::vector<std::string>> exchanges;
    std::size_t stopAfter = 1000;

private:
    void execute(const Methods& calls) {
        const auto queue = std::make_shared<MulticallQueue>();
        auto& names = exchanges.emplace_back();
        for (const auto& call : calls) {
            queue->add(call);
            names.push_back(call->getName());
        }
        device_.multicall(queue);
    }

    Device& device_;
};

class Toolkit : public SimulatorFixture {
protected:
    Toolkit() { device_->call(object<CommonModules::Relay_v1_0>(device_, "power")->getSetMethod(true)); }

    std::shared_ptr<Device> device_ = open();
    CountingAccess access_{*device_};
};

TEST_F(Toolkit, DetectsAddressesInOneExchange) {
    const auto bus = object<HWDebug::I2c_v1_0>(device_, "i2c");
    EXPECT_THAT(acknowledgingAddresses(access_, *bus, firstUsualAddress, lastUsualAddress),
                ElementsAre(0x48u, 0x50u, 0x54u));
    EXPECT_EQ(access_.exchanges.size(), 1u);
    EXPECT_THROW(acknowledgingAddresses(access_, *bus, 2, 1), BadRequest);
    EXPECT_THROW(acknowledgingAddresses(access_, *bus, 2, 0x80), BadRequest);
    EXPECT_EQ(access_.exchanges.size(), 1u);
}

TEST_F(Toolkit, ScansAChainInOneExchange) {
    EXPECT_EQ(scanChain(access_, *object(device_, "cpu0.jtag")).taps.size(), 3u);
    EXPECT_EQ(access_.exchanges.size(), 1u);
    device_->call(object<CommonModules::Relay_v1_0>(device_, "power")->getSetMethod(false));
    EXPECT_ANY_THROW(scanChain(access_, *object(device_, "cpu0.jtag")));
}

TEST_F(Toolkit, TakesCodesWithNothingBetweenTheTwoCalls) {
    takeCodes(access_, *object<HWDebug::LpcPostCode_v1_0>(device_, "lpc.lpcPostCode"));
    EXPECT_THAT(access_.exchanges, ElementsAre(ElementsAre("fifoGet", "fifoClear")));
}

TEST_F(Toolkit, ALoadThatIsStoppedLeavesTheRomOffAndTellsHowFarItCame) {
    const auto rom = object<HWDebug::LpcRomEmulation_v1_0>(device_, "lpc.lpcRomEmulation");
    const std::vector<std::uint8_t> image(6u << 20);
    RomLoading loading(access_, rom, image, "image", {.enables = true});
    std::vector<std::uint64_t> told;
    access_.stopAfter = access_.exchanges.size() + 2;
    EXPECT_THROW(loading.run([&](std::string_view phase, std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(phase, "writing");
        EXPECT_EQ(total, image.size());
        told.push_back(done);
    }),
                 StoppedHere);
    EXPECT_THAT(told, ElementsAre(0u, 2u << 20, 4u << 20));
    EXPECT_EQ(loading.stateText(), "at least 4194304 of 6291456 bytes were written; the ROM is off");
}

TEST_F(Toolkit, AnImageThatDoesNotFitIsNotBegun) {
    const auto rom = object<HWDebug::LpcRomEmulation_v1_0>(device_, "lpc.lpcRomEmulation");
    const std::vector<std::uint8_t> image(2);
    const auto size = RomMemory(access_, rom).size();
    EXPECT_THROW(RomLoading(access_, rom, image, "image", {.offset = size - 1}), BadRequest);
}

TEST_F(Toolkit, AStoppedSvfFileGivesThePortBackAndTellsThePlace) {
    const auto jtag = object(device_, "cpu0.jtag");
    constexpr std::string_view text = "STATE RESET;\nSDR 8 TDI(0) TDO(0) MASK(1);\nSIR 8 TDI(0);\n";
    svf::PlanOptions options;
    SvfPlay whole(access_, jtag, text, "f.svf", options, {});
    try {
        whole.run();
        FAIL() << "the IDCODE begins with a 1";
    } catch (const svf::Mismatch& mismatch) {
        EXPECT_THAT(mismatch.what(), testing::HasSubstr("f.svf:2: TDO is"));
    }
    const auto restoring = access_.exchanges.back();
    EXPECT_FALSE(restoring.empty());

    SvfPlay stopped(access_, jtag, "STATE RESET;\nSDR 8 TDI(0) TDO(C3);\nSIR 8 TDI(0);\n", "f.svf", options,
                    {});
    access_.stopAfter = access_.exchanges.size() + 1;
    EXPECT_THROW(stopped.run(), StoppedHere);
    EXPECT_EQ(stopped.place(), "f.svf:3");
    EXPECT_EQ(access_.exchanges.back(), restoring);
}

TEST_F(Toolkit, ABreakNeedsASlowerRate) {
    const auto port = object<CommonModules::Com_v1_0>(device_, "com");
    dto::com::OpenRequest settings;
    settings.value1 = 300;
    settings.value2 = 8;
    EXPECT_THROW(sendBreak(access_, port, settings), BadRequest);
    EXPECT_TRUE(access_.exchanges.empty());
}

} // namespace
