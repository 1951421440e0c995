#include <gtest/gtest.h>

#include <tavo/simulator/models/gpu_scan_port.h>

namespace {

using TAVO::simulator::GpuScanPort;
using Bytes = std::vector<std::uint8_t>;

TEST(GpuScanPortTest, AScanCarriesOnWhereTheLastOneEnded) {
    GpuScanPort port;
    port.setPattern(0x8000'0000'0000'00F5);
    EXPECT_EQ(port.scan(4), (Bytes{0x05}));
    EXPECT_EQ(port.scan(8), (Bytes{0x0F}));
    EXPECT_EQ(port.scan(53), (Bytes{0, 0, 0, 0, 0, 0, 0x18})) << "the last bit, and the first once more";
}

TEST(GpuScanPortTest, ClockingThePinReadsTheSameBits) {
    GpuScanPort scanned, clocked;
    std::uint8_t byte = 0;
    for (int bit = 0; bit < 8; ++bit) {
        byte |= static_cast<std::uint8_t>(unsigned{clocked.sdo()} << bit);
        clocked.setSck({true, true});
        clocked.setSck({true, true});
        clocked.setSck({true, false});
    }
    EXPECT_EQ(scanned.scan(8), (Bytes{byte}));
    EXPECT_EQ(scanned.scan(16), clocked.scan(16));
}

TEST(GpuScanPortTest, APinThatIsNotDrivenClocksNothing) {
    GpuScanPort port;
    port.setPattern(1);
    port.setSck({false, true});
    EXPECT_TRUE(port.sdo());
}

TEST(GpuScanPortTest, CountsAndFrequenciesOutOfRangeAreRefused) {
    GpuScanPort port;
    EXPECT_EQ(port.scan(-1), std::nullopt);
    EXPECT_EQ(port.scan(GpuScanPort::mostBits + 1), std::nullopt);
    EXPECT_EQ(port.scan(0), Bytes{});
    EXPECT_FALSE(port.setFrequency(999));
    EXPECT_FALSE(port.setFrequency(20'000'001));
    EXPECT_TRUE(port.setFrequency(15'000'000));
    EXPECT_EQ(port.frequency(), 13'333'333u);
    EXPECT_EQ(port.divider(), 3u);
}

} // namespace
