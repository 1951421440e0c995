#include <algorithm>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/tap_log.h>
#include <tests/cli/jtag_serve/serve_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;

/// openFPGALoader in front of a chain of one FPGA.
class OpenFpgaLoader : public ServeTest {
protected:
    OpenFpgaLoader()
        : ServeTest(TAVO_SOURCE_DIR "/examples/topologies/fpga.json", "jtag") {}

    support::ProcessOutcome run(const CableProcess& cable, const Words& words) const {
        return support::runProcess({.program = "/usr/bin/openFPGALoader",
                                    .arguments = Words{"-c", "xvc-client", "--ip", "127.0.0.1", "--port",
                                                       std::to_string(cable.port())} +
                                                 words});
    }
};

/// The hexadecimal digits of what is shifted of these bytes, each with its highest bit first, as a number
/// whose lowest bit was shifted first.
std::string shiftedDigits(std::string_view bytes) {
    std::string digits;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        for (unsigned half = 0; half < 2; ++half) {
            unsigned digit = 0;
            for (unsigned bit = 0; bit < 4; ++bit)
                digit |= (static_cast<unsigned char>(*byte) >> (half * 4 + bit) & 1u) << (3 - bit);
            digits += "0123456789abcdef"[digit];
        }
    return digits;
}

TEST_F(OpenFpgaLoader, NamesTheFpga) {
    const auto cable = serve("--xvc");
    const auto outcome = run(*cable, {"--detect"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("0x362d093"));
    EXPECT_THAT(outcome.output, HasSubstr("artix a7 35t"));
    EXPECT_EQ(cable->end().exitCode, 0);
}

TEST_F(OpenFpgaLoader, LoadsABitstreamBitForBit) {
    std::string log;
    withPort([&](auto& port) {
        port.setObserver(
            std::make_shared<TAVO::simulator::TapLog>("jtag", [&](std::string_view piece) { log += piece; }));
    });
    std::mt19937 random(1);
    std::string bitstream(500'000, '\0');
    std::generate(bitstream.begin(), bitstream.end(), [&] { return static_cast<char>(random()); });
    const auto cable = serve("--xvc");
    const auto outcome = run(*cable, {"--fpga-part", "xc7a35tcsg324", "--file-type", "bin", "-m",
                                      fileWith("bitstream.bin", bitstream)});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_EQ(cable->end().exitCode, 0);
    withPort([](auto& port) { port.setObserver(nullptr); });

    // CFG_IN, then the bitstream; the loader adds a clock.
    const auto instruction = log.find("jtag ir 6 05 ");
    ASSERT_NE(instruction, std::string::npos) << log.substr(0, 1000);
    std::istringstream line(log.substr(log.find('\n', instruction) + 1));
    std::string name;
    std::string target;
    std::uint64_t bits = 0;
    std::string tdi;
    line >> name >> target >> bits >> tdi;
    EXPECT_EQ(target, "dr");
    EXPECT_GE(bits, 4'000'000u);
    EXPECT_LE(bits, 4'000'001u);
    const auto expected = shiftedDigits(bitstream);
    ASSERT_GE(tdi.size(), expected.size());
    EXPECT_TRUE(tdi.substr(tdi.size() - expected.size()) == expected);
}

} // namespace
} // namespace tool_test
