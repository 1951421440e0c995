#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/simulator/objects/gpu.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using TAVO::BoundMethod;
using TAVO::Method;
using Bytes = std::vector<std::uint8_t>;
using Headers = std::vector<TAVO::dto::Base::Header>;

struct GpuTest : DeviceFixture {
    Bytes scanned(int bits) { return read(scan->getScanMethod(bits)).data; }

    std::shared_ptr<TAVO::HWDebug::GpuDebug_v1_0> gpu = object<TAVO::HWDebug::GpuDebug_v1_0>(device, "gpu0");
    std::shared_ptr<TAVO::HWDebug::GpuScan_v1_0> scan = gpu->getGpuScan();
};

TEST_F(GpuTest, APatternByScansIsTheOneByBitBanging) {
    power(true);
    const auto byScan = scanned(64);
    EXPECT_EQ(byScan, (Bytes{0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01}));

    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    std::vector<std::shared_ptr<BoundMethod<TAVO::dto::Header::iGetReply>>> samples;
    for (int bit = 0; bit < 64; ++bit) {
        batch->add(scan->getIoSckSetMethod(true, false));
        samples.push_back(scan->getIoSdoGetMethod());
        batch->add(samples.back());
        batch->add(scan->getIoSckSetMethod(true, true));
    }
    device->multicall(batch);
    Bytes byPins(8);
    for (std::size_t bit = 0; bit < 64; ++bit)
        byPins[bit / 8] |= static_cast<std::uint8_t>(unsigned{samples[bit]->value().level} << bit % 8);
    EXPECT_EQ(byPins, byScan);
    const auto pin = read(scan->getIoSckGetMethod());
    EXPECT_TRUE(pin.first);
    EXPECT_TRUE(pin.second);
}

TEST_F(GpuTest, ScansCarryOnWhereTheLastOneEnded) {
    power(true);
    EXPECT_EQ(scanned(12), (Bytes{0xEF, 0x0D}));
    EXPECT_EQ(scanned(8), Bytes{0xBC});
    EXPECT_TRUE(scanned(0).empty());
    EXPECT_EQ(codeOf(scan->getScanMethod(65'537)), return_code::badArgument);
    EXPECT_EQ(codeOf(scan->getScanMethod(-1)), return_code::badArgument);
}

TEST_F(GpuTest, WithoutPowerZerosAreScannedAndThePatternWaits) {
    EXPECT_EQ(scanned(16), (Bytes{0x00, 0x00}));
    EXPECT_FALSE(read(scan->getIoSdoGetMethod()).level);
    power(true);
    EXPECT_EQ(scanned(8), Bytes{0xEF});
}

TEST_F(GpuTest, ScanOptionsAreReadBackAndAct) {
    power(true);
    done(scan->getOptionSckFrequencySetMethod(3'000'000));
    const auto frequency = read(scan->getOptionSckFrequencyGetMethod());
    EXPECT_EQ(frequency.frequency, 2'857'142u);
    EXPECT_EQ(frequency.value, 14);
    EXPECT_EQ(codeOf(scan->getOptionSckFrequencySetMethod(20'000'001)), return_code::badArgument);
    done(scan->getEnableSetMethod(false));
    EXPECT_FALSE(read(scan->getEnableGetMethod()).enable);
    EXPECT_EQ(codeOf(scan->getScanMethod(8)), return_code::disabled);
    EXPECT_EQ(codeOf(scan->getIoSckSetMethod(true, true)), return_code::disabled);
}

TEST_F(GpuTest, HeaderModeIsKeptInItsRange) {
    EXPECT_EQ(read(gpu->getHeaderModeGetMethod()).mode, 1);
    done(gpu->getHeaderModeSetMethod(3));
    EXPECT_EQ(read(gpu->getHeaderModeGetMethod()).mode, 3);
    EXPECT_EQ(codeOf(gpu->getHeaderModeSetMethod(4)), return_code::badArgument);
    EXPECT_EQ(read(gpu->getHeaderModeGetMethod()).mode, 3);
}

TEST_F(GpuTest, PowerEnableFollowsTheBoard) {
    EXPECT_FALSE(read(gpu->getIoPxEnGetMethod()).level);
    power(true);
    EXPECT_TRUE(read(gpu->getIoPxEnGetMethod()).level);
}

TEST_F(GpuTest, HeadersTellOfAPowerOnUntilCleared) {
    power(true);
    EXPECT_EQ(read(gpu->getHeaderStatusGetMethod()).headers, (Headers{{"GPU-DEBUG", 1, 1, 0}}));
    EXPECT_EQ(read(scan->getHeaderStatusGetMethod()).headers, (Headers{{"SCAN", 1, 1, 0}}));
    done(scan->getHeaderStatusClearMethod());
    EXPECT_EQ(read(scan->getHeaderStatusGetMethod()).headers, (Headers{{"SCAN", 1, 0, 0}}));
    power(false);
    EXPECT_EQ(read(scan->getHeaderStatusGetMethod()).headers, (Headers{{"SCAN", 0, 0, 0}}));
}

TEST_F(GpuTest, ChildrenAreTheModulesOfTheConnector) {
    power(true);
    const auto idcode = gpu->getJtag()->getShiftDRMethod(32, {0, 0, 0, 0});
    done(idcode);
    EXPECT_EQ(idcode->value().data, (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
    const auto bytes = gpu->getI2c()->getTransferMethod(0x50, 0, {0}, 2);
    done(bytes);
    EXPECT_EQ(bytes->value().data, (Bytes{0xFF, 0xFF}));
}

TEST_F(GpuTest, MuxesAnswer) {
    const auto mux = object<TAVO::HWDebug::KelvorGpuDebugMux_v1_0>(device, "gpuMux");
    EXPECT_EQ(read(mux->getHeaderModeGetMethod()).mode, 1);
    done(mux->getHeaderModeSetMethod(2));
    EXPECT_EQ(read(mux->getHeaderModeGetMethod()).mode, 2);
    EXPECT_EQ(codeOf(mux->getHeaderModeSetMethod(-1)), return_code::badArgument);
    const auto video = object<TAVO::HWDebug::KelvorUvdMux_v1_0>(device, "uvdMux");
    EXPECT_EQ(video->type(), "kelvorUvdMux");
    EXPECT_EQ(video->version().text, "1.0");
    EXPECT_EQ(video->methods().size(), 8u);
}

} // namespace
