#include <cstddef>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/jtag/svf/player.h>

namespace {

namespace svf = TAVO::jtag::svf;

struct Stopped : std::runtime_error {
    using std::runtime_error::runtime_error;
};

TEST(SvfMeasure, CanBeStoppedAtEachStatement) {
    std::string text = "SDR 8 TDI(0);";
    for (int i = 0; i < 1000; ++i)
        text += "ENDDR IDLE;";
    std::size_t asked = 0;
    svf::PlanOptions options;
    options.checkpoint = [&] {
        if (++asked == 500)
            throw Stopped("stopped");
    };
    EXPECT_THROW(svf::measure(text, "f.svf", options, 1000), Stopped);
    EXPECT_EQ(asked, 500u);
}

/// The mask of a header is looked at once, not for each of the scans, which took a quarter of an hour here.
TEST(SvfMeasure, ALargeHeaderDoesNotMakeManyScansSlow) {
    std::string text = "HDR 160000000 TDI(0) TDO(0) MASK(0); SDR 1 TDI(0) TDO(0) MASK(0);";
    constexpr std::size_t scans = 100'000;
    for (std::size_t i = 1; i < scans; ++i)
        text += "SDR 1 TDO(0);";
    const auto totals = svf::measure(text, "f.svf", {}, 1000);
    EXPECT_EQ(totals.scans, scans);
    EXPECT_EQ(totals.checkedScans, 0u);
}

} // namespace
