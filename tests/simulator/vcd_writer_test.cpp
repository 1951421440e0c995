#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/simulator/vcd_writer.h>

namespace {

using TAVO::simulator::VcdWriter;

struct Dump {
    std::vector<std::string> pieces;
    VcdWriter writer;

    explicit Dump(const std::vector<std::string>& scopes)
        : writer(scopes, [this](std::string_view text) { pieces.emplace_back(text); }) {}
    std::string flushed() {
        pieces.clear();
        writer.flush();
        return pieces.empty() ? "" : pieces.front();
    }
};

TEST(VcdWriter, BeginsWithItsScopesAndAllWiresHigh) {
    Dump dump({"cpu0.jtag", "a b"});
    EXPECT_EQ(dump.flushed(), "$comment Each clock takes two steps, whatever its frequency. $end\n"
                              "$timescale 1 us $end\n"
                              "$scope module cpu0.jtag $end\n"
                              "$var wire 1 ! tck $end\n"
                              "$var wire 1 \" tms $end\n"
                              "$var wire 1 # tdi $end\n"
                              "$var wire 1 $ tdo $end\n"
                              "$var wire 1 % trst $end\n"
                              "$upscope $end\n"
                              "$scope module a\\x20b $end\n"
                              "$var wire 1 & tck $end\n"
                              "$var wire 1 ' tms $end\n"
                              "$var wire 1 ( tdi $end\n"
                              "$var wire 1 ) tdo $end\n"
                              "$var wire 1 * trst $end\n"
                              "$upscope $end\n"
                              "$enddefinitions $end\n"
                              "#0\n$dumpvars\n"
                              "1!\n1\"\n1#\n1$\n1%\n1&\n1'\n1(\n1)\n1*\n"
                              "$end\n#1\n");
    EXPECT_EQ(dump.flushed(), "");
}

TEST(VcdWriter, ChangesWiresWhileTckIsLow) {
    Dump dump({"x", "y"});
    dump.flushed();
    dump.writer.clock(0, false, true, false);
    dump.writer.clock(0, false, false, false);
    EXPECT_EQ(dump.flushed(), "0!\n0\"\n0$\n#2\n1!\n#3\n"
                              "0!\n0#\n#4\n1!\n#5\n");
    dump.writer.clock(1, true, true, true);
    dump.writer.trst(0, false);
    dump.writer.trst(0, true);
    dump.writer.clock(0, true, true, true);
    EXPECT_EQ(dump.flushed(), "0&\n#6\n1&\n#7\n"
                              "0%\n#8\n1%\n#9\n"
                              "0!\n1\"\n1#\n1$\n#10\n1!\n#11\n");
}

TEST(VcdWriter, NamesManyWiresApart) {
    std::vector<std::string> scopes;
    for (int i = 0; i < 40; ++i)
        scopes.push_back("s" + std::to_string(i));
    Dump dump(scopes);
    const auto text = dump.flushed();
    // 200 wires: the 95th and the 189th begin with the first character again.
    EXPECT_NE(text.find("$var wire 1 ~ tdo $end\n$var wire 1 !\" trst $end\n"), std::string::npos) << text;
    EXPECT_NE(text.find("$var wire 1 ~\" tdi $end\n$var wire 1 !# tdo $end\n"), std::string::npos) << text;
    EXPECT_THROW(dump.writer.clock(40, true, true, true), std::out_of_range);
}

TEST(VcdWriter, HandsOverPiecesOfBoundedSize) {
    Dump dump({"x"});
    for (int i = 0; i < 50'000; ++i)
        dump.writer.clock(0, true, i % 2 == 0, true);
    EXPECT_GT(dump.pieces.size(), 5u);
    for (const auto& piece : dump.pieces)
        EXPECT_LT(piece.size(), std::size_t{70'000});
    const auto before = dump.pieces;
    std::string all;
    for (const auto& piece : before)
        all += piece;
    all += dump.flushed();
    EXPECT_TRUE(all.ends_with("#100001\n")) << all.substr(all.size() - 20);
}

} // namespace
