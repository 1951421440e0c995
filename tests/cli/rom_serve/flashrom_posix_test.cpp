#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/rom_serve/serve_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;

FlashBytes randomBytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    FlashBytes bytes(size);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

/// flashrom in front of the ROM, without a word about the chip.
class Flashrom : public RomServeTest {
protected:
    using RomServeTest::RomServeTest;

    static support::ProcessOutcome run(const CableProcess& server, const Words& words) {
        return support::runProcess(
            {.program = "/usr/sbin/flashrom",
             .arguments = Words{"-p", "serprog:ip=127.0.0.1:" + std::to_string(server.port())} + words});
    }
};

TEST_F(Flashrom, WritesAWholeMemoryInFewExchanges) {
    const auto image = randomBytes(8 * 1024 * 1024, 1);
    const auto file = fileWith("image", image);
    const auto server = serve({"--once", "--enable"});
    const auto written = run(*server, {"-w", file});
    EXPECT_EQ(written.exitCode, 0) << written.output << written.errors;
    EXPECT_THAT(written.output, HasSubstr("VERIFIED"));
    const auto end = server->wait();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_LE(exchangesWith("sramSet"), 16u);
    RecordProperty("exchanges", static_cast<int>(exchangesWith("sramSet")));
    EXPECT_TRUE(isEnabled());
    const auto saved = tool({"rom", "save", (folder / "saved").string()});
    EXPECT_EQ(saved.exitCode, 0) << saved.errors;
    EXPECT_TRUE(contentOf("saved") == image);
}

class FlashromOfAMebibyte : public Flashrom {
protected:
    FlashromOfAMebibyte()
        : Flashrom(1024 * 1024) {}
};

TEST_F(FlashromOfAMebibyte, ReadsErasesComparesAndWritesParts) {
    auto image = randomBytes(1024 * 1024, 2);
    withRom([&](auto& rom) { rom.write(0, image); });
    const auto server = serve();
    EXPECT_EQ(run(*server, {"-r", (folder / "back").string()}).exitCode, 0);
    EXPECT_TRUE(contentOf("back") == image);

    const auto other = randomBytes(1024 * 1024, 3);
    const auto otherFile = fileWith("other", other);
    const auto compared = run(*server, {"-v", otherFile});
    EXPECT_NE(compared.exitCode, 0);
    EXPECT_THAT(compared.output + compared.errors, HasSubstr("FAILED"));
    EXPECT_TRUE(memory() == image) << "nothing has been written so far";
    EXPECT_EQ(exchangesWith("sramSet"), 0u);

    std::ofstream(folder / "layout") << "00021000:00033fff middle\n";
    const auto part = run(*server, {"-l", (folder / "layout").string(), "-i", "middle", "-w", otherFile});
    EXPECT_EQ(part.exitCode, 0) << part.output << part.errors;
    std::copy(other.begin() + 0x21000, other.begin() + 0x34000, image.begin() + 0x21000);
    EXPECT_TRUE(memory() == image);
    for (const auto& call : callsOf("rom", "sramSet"))
        EXPECT_THAT(call.parameters.toString(), testing::Not(HasSubstr("offset=0 "))) << "the part alone";

    const auto erased = run(*server, {"-E"});
    EXPECT_EQ(erased.exitCode, 0) << erased.output << erased.errors;
    EXPECT_TRUE(isAll(memory(), 0xFF));
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.errors, "");
}

TEST(FlashromProbe, FindsAMemoryOfEverySize) {
    class Probed : public Flashrom {
    public:
        explicit Probed(std::size_t size)
            : Flashrom(size) {}
        void TestBody() override {}
        std::string found() {
            const auto server = serve({"--once"});
            return run(*server, {}).output;
        }
    };
    for (const auto& [kibibytes, chip] :
         {std::pair{512u, "\"GD25Q40(B)\" (512 kB, SPI)"}, std::pair{1024u, "\"MX25U8032E\" (1024 kB, SPI)"},
          std::pair{2048u, "\"MX25U1635E\" (2048 kB, SPI)"},
          std::pair{4096u, "\"MX25U3235E/F\" (4096 kB, SPI)"},
          std::pair{8192u, "\"MX25U6435E/F\" (8192 kB, SPI)"},
          std::pair{16384u, "\"MX25U12835F\" (16384 kB, SPI)"}}) {
        const auto output = Probed(std::size_t{kibibytes} * 1024).found();
        EXPECT_THAT(output, HasSubstr("flash chip " + std::string(chip)));
        EXPECT_EQ(output.find("flash chip"), output.rfind("flash chip \"")) << "one chip";
    }
}

class RomOfThirtyTwoMebibytes : public RomServeTest {
protected:
    RomOfThirtyTwoMebibytes()
        : RomServeTest(std::size_t{32} * 1024 * 1024) {}
};

TEST_F(RomOfThirtyTwoMebibytes, IsRefusedAtTheStart) {
    const auto refused = tool({"rom", "serve", "0"});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, HasSubstr("33554432 bytes, more than the 16777216"));
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
} // namespace tool_test
