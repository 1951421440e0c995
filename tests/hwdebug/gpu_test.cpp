#include <gtest/gtest.h>

#include <tavo/client/hwdebug/gpu_debug.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>
#include <tavo/client/hwdebug/kelvor_uvd_mux.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
using namespace TAVO::HWDebug::GpuScan_v1_0_Structs;
namespace Header = TAVO::dto::Header;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;
using TAVO::dto::Base::FrequencyGetReply;

class GpuScanTest : public support::ModuleTest {
protected:
    std::shared_ptr<GpuScan_v1_0> scan = openOnly<GpuScan_v1_0>("gpuScan");
};

TEST_F(GpuScanTest, SendsTheArgumentsOfItsMethodsInOrder) {
    EXPECT_EQ(sentBy(scan->getScanMethod(32)), request("scan", "00000020"));
    EXPECT_EQ(sentBy(scan->getOptionSckFrequencySetMethod(1000)),
              request("optionSckFrequencySet", "000003e8"));
    EXPECT_EQ(sentBy(scan->getIoSckSetMethod(true, false)), request("ioSckSet", "01 00"));
    EXPECT_EQ(sentBy(scan->getEnableSetMethod(true)), request("enableSet", "01"));
}

TEST_F(GpuScanTest, SendsNoParametersWithGettersAndClear) {
    EXPECT_EQ(sentBy(scan->getOptionSckFrequencyGetMethod()), request("optionSckFrequencyGet"));
    EXPECT_EQ(sentBy(scan->getIoSckGetMethod()), request("ioSckGet"));
    EXPECT_EQ(sentBy(scan->getIoSdoGetMethod()), request("ioSdoGet"));
    EXPECT_EQ(sentBy(scan->getEnableGetMethod()), request("enableGet"));
    EXPECT_EQ(sentBy(scan->getHeaderStatusGetMethod()), request("headerStatusGet"));
    EXPECT_EQ(sentBy(scan->getHeaderStatusClearMethod()), request("headerStatusClear"));
}

TEST_F(GpuScanTest, ScansNothing) {
    EXPECT_EQ(sentBy(scan->getScanMethod(0)), request("scan", "00000000"));
    EXPECT_EQ(reply<ScanGet>(scan->getScanMethod(0), "00000000"), ScanGet());
}

TEST_F(GpuScanTest, YieldsTheResultsOfItsMethods) {
    EXPECT_EQ(reply<ScanGet>(scan->getScanMethod(9), "00000002 ff01").data, (Bytes{0xFF, 0x01}));
    const auto frequency =
        reply<GpuScanSckFrequency>(scan->getOptionSckFrequencyGetMethod(), "0000000000000005 00000006");
    EXPECT_EQ(std::tuple(frequency.frequency, frequency.value), std::tuple(5u, 6));
    const auto [first, second] = reply<GpuScanIoSck>(scan->getIoSckGetMethod(), "00 02");
    EXPECT_FALSE(first);
    EXPECT_TRUE(second);
    EXPECT_TRUE(reply<Header::iGetReply>(scan->getIoSdoGetMethod(), "01").level);
    EXPECT_TRUE(reply<Header::EnableGetReply>(scan->getEnableGetMethod(), "01").enable);
    EXPECT_EQ(reply<HeaderResult>(scan->getHeaderStatusGetMethod(), support::headerStatusHex).headers.size(),
              1u);
}

TEST(GpuScanResults, ConvertBackToTheirReplies) {
    const auto pin = record<Header::IoGetReply>(true, false);
    EXPECT_EQ(Header::IoGetReply(GpuScanIoSck(pin)), pin);
    const auto frequency = record<FrequencyGetReply>(1u, 2);
    EXPECT_EQ(FrequencyGetReply(GpuScanSckFrequency(frequency)), frequency);
}

TEST(GpuScanResults, AreMadeFromTheirReplyAlone) {
    const auto other = outcomeWith(Header::iGetReply());
    const std::string refusal = "Can't convert Result to desire type";
    EXPECT_EQ(failureOf<std::runtime_error>([&] { ScanGet{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { GpuScanIoSck{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { GpuScanSckFrequency{other}; }), refusal);
}

using GpuDebugTest = support::ModuleTest;

TEST_F(GpuDebugTest, HandsOutItsChildrenWithoutACall) {
    add(7, "gpuDebug", 0).member("jtag", 8).member("gpuScan", 9).member("i2c", 10);
    add(8, "jtag", 1);
    add(9, "gpuScan", 0);
    add(10, "i2c", 0);
    const auto gpu = open<GpuDebug_v1_0>(7);
    ASSERT_TRUE(gpu);
    device->appliance.forgetCalls();
    EXPECT_TRUE(gpu->getJtag());
    EXPECT_EQ(gpu->getJtag(), gpu->getChild("jtag"));
    EXPECT_TRUE(gpu->getGpuScan());
    EXPECT_EQ(gpu->getGpuScan(), gpu->getChild("gpuScan"));
    EXPECT_TRUE(gpu->getI2c());
    EXPECT_EQ(gpu->getI2c(), gpu->getChild("i2c"));
    EXPECT_EQ(device->appliance.exchanges(), 0u);
}

TEST_F(GpuDebugTest, CanBeOpenedWithoutI2c) {
    add(7, "gpuDebug", 0).member("jtag", 8).member("gpuScan", 9);
    add(8, "jtag", 1);
    add(9, "gpuScan", 0);
    const auto gpu = open<GpuDebug_v1_0>(7);
    ASSERT_TRUE(gpu);
    EXPECT_FALSE(gpu->getI2c());
    EXPECT_TRUE(gpu->getGpuScan());
}

TEST_F(GpuDebugTest, CanBeOpenedWithAnotherObjectInThePlaceOfI2c) {
    add(7, "gpuDebug", 0).member("jtag", 8).member("gpuScan", 9).member("i2c", 10);
    add(8, "jtag", 1);
    add(9, "gpuScan", 0);
    add(10, "relay", 0);
    const auto gpu = open<GpuDebug_v1_0>(7);
    ASSERT_TRUE(gpu);
    EXPECT_FALSE(gpu->getI2c());
    EXPECT_TRUE(gpu->getChild("i2c"));
}

TEST_F(GpuDebugTest, CannotBeOpenedWithAnOlderJtag) {
    add(7, "gpuDebug", 0).member("jtag", 8).member("gpuScan", 9);
    add(8, "jtag", 0);
    add(9, "gpuScan", 0);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(GpuDebugTest, WithoutChildrenMissesTheJtagFirst) {
    add(7, "gpuDebug", 0);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(GpuDebugTest, CannotBeOpenedWithoutGpuScan) {
    add(7, "gpuDebug", 0).member("jtag", 8);
    add(8, "jtag", 1);
    EXPECT_EQ(failureToOpen(), "gpuscan object not found.");
}

TEST_F(GpuDebugTest, CallsItsOwnMethods) {
    using namespace TAVO::dto::gpuDebug;
    add(7, "gpuDebug", 0).member("jtag", 8).member("gpuScan", 9);
    add(8, "jtag", 1);
    add(9, "gpuScan", 0);
    const auto gpu = open<GpuDebug_v1_0>(7);
    EXPECT_EQ(sentBy(gpu->getHeaderModeGetMethod()), request("headerModeGet"));
    EXPECT_EQ(sentBy(gpu->getHeaderModeSetMethod(3)), request("headerModeSet", "00000003"));
    EXPECT_EQ(sentBy(gpu->getIoPxEnGetMethod()), request("ioPxEnGet"));
    EXPECT_EQ(sentBy(gpu->getHeaderStatusGetMethod()), request("headerStatusGet"));
    EXPECT_EQ(reply<HeaderModeGetReply>(gpu->getHeaderModeGetMethod(), "00000004").mode, 4);
    EXPECT_TRUE(reply<IoPxEnGetReply>(gpu->getIoPxEnGetMethod(), "01").level);
    EXPECT_EQ(reply<HeaderResult>(gpu->getHeaderStatusGetMethod(), support::headerStatusHex).headers.size(),
              1u);
}

class MuxTest : public support::ModuleTest {};

TEST_F(MuxTest, OfTheGpuSelectsTheHeaderMode) {
    using namespace TAVO::dto::kelvorGpuDebugMux;
    const auto mux = openOnly<KelvorGpuDebugMux_v1_0>("kelvorGpuDebugMux");
    EXPECT_EQ(sentBy(mux->getHeaderModeGetMethod()), request("headerModeGet"));
    EXPECT_EQ(sentBy(mux->getHeaderModeSetMethod(-1)), request("headerModeSet", "ffffffff"));
    EXPECT_EQ(reply<HeaderModeGetReply>(mux->getHeaderModeGetMethod(), "00000002").mode, 2);
}

TEST_F(MuxTest, OfTheUvdHasTheMethodsOfEveryObject) {
    const auto mux = openOnly<KelvorUvdMux_v1_0>("kelvorUvdMux");
    ASSERT_TRUE(mux);
    EXPECT_EQ(mux->type(), "kelvorUvdMux");
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { mux->getEncoder("headerModeGet"); }),
              "Could not find Method Encoder for Method: headerModeGet");
}

} // namespace
