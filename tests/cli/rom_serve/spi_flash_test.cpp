#include <tavo/cli/rom_serve/spi_flash.h>

#include <algorithm>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tests/cli/rom_serve/flash_model.h>

namespace {

using namespace TAVO::cli;
using testing::Each;
using testing::HasSubstr;
using tool_test::at;
using tool_test::FlashBytes;
using tool_test::isAll;
using tool_test::PlainCells;

constexpr std::uint32_t kibi = 1024;
constexpr std::uint32_t mebi = 1024 * kibi;

class SpiFlashPart : public testing::Test {
protected:
    FlashBytes send(const FlashBytes& sent, std::size_t length = 0) { return flash.transfer(sent, length); }
    /// With writing enabled before.
    void change(const FlashBytes& sent) {
        send({0x06});
        send(sent);
    }
    unsigned status() { return send({0x05}, 1).at(0); }
    FlashBytes read(std::uint32_t place, std::size_t length) { return send(at(0x03, place), length); }
    /// How many bytes are erased, of cells that were not.
    std::ptrdiff_t erased() const { return std::count(cells.bytes.begin(), cells.bytes.end(), 0xFF); }

    PlainCells cells{512 * kibi};
    SpiFlash flash{chooseFlashChip(512 * kibi, ""), cells};
};

TEST_F(SpiFlashPart, TellsWhatItIs) {
    EXPECT_EQ(send({0x9F}, 3), (FlashBytes{0xC8, 0x40, 0x13}));
    EXPECT_EQ(send({0x9F, 0}, 2), (FlashBytes{0x40, 0x13})) << "it begins to talk with the byte before";
    EXPECT_EQ(send(at(0x90, 0), 3), (FlashBytes{0xC8, 0x12, 0xC8}));
    EXPECT_EQ(send(at(0x90, 1), 2), (FlashBytes{0x12, 0xC8}));
    EXPECT_EQ(send({0xAB, 0, 0, 0}, 2), (FlashBytes{0x12, 0x12}));
    EXPECT_EQ(send({}, 2), (FlashBytes{0xFF, 0xFF}));
    for (const auto cut : FlashBytes{0x90, 0xAB, 0x03, 0x0B})
        EXPECT_EQ(send({cut, 0, 0}, 2), (FlashBytes{0xFF, 0xFF})) << "without its address";
}

TEST_F(SpiFlashPart, HasNoParameterTableAndIgnoresWhatItDoesNotKnow) {
    const std::set<unsigned> known{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x0B, 0x15, 0x20,
                                   0x35, 0x50, 0x52, 0x60, 0x90, 0x9F, 0xAB, 0xC7, 0xD8};
    cells.bytes.assign(cells.bytes.size(), 0x5A);
    send({0x06});
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        if (known.contains(opcode))
            continue;
        send(at(static_cast<std::uint8_t>(opcode), 0, {0, 0}));
        EXPECT_THAT(send(at(static_cast<std::uint8_t>(opcode), 0, {0}), 3), Each(0xFF)) << opcode;
    }
    EXPECT_TRUE(isAll(cells.bytes, 0x5A));
    EXPECT_EQ(status(), 0x02u) << "writing is enabled still";
}

TEST_F(SpiFlashPart, ReadsFromAnyPlaceAndRoundTheEnd) {
    for (std::size_t i = 0; i < cells.bytes.size(); ++i)
        cells.bytes[i] = static_cast<std::uint8_t>(i * 7 + (i >> 8));
    EXPECT_EQ(read(0x12345, 3), FlashBytes(cells.bytes.begin() + 0x12345, cells.bytes.begin() + 0x12348));
    EXPECT_EQ(send(at(0x0B, 0x12345, {0}), 3), read(0x12345, 3));
    EXPECT_EQ(send(at(0x03, 0x12345, {0, 0}), 1), read(0x12347, 1)) << "two bytes went unread";
    EXPECT_EQ(read(0x7FFFF, 2), (FlashBytes{cells.bytes.back(), cells.bytes.front()}));
    EXPECT_EQ(read(0xFFFFFF, 2), read(0x7FFFF, 2)) << "higher bits of an address count for nothing";
    EXPECT_EQ(read(5, cells.bytes.size()).back(), cells.bytes[4]);
    EXPECT_EQ(send(at(0x0B, 0), 1), FlashBytes{0xFF}) << "without its idle byte";
}

TEST_F(SpiFlashPart, ProgramsBitsToZeroAlone) {
    change(at(0x02, 0x100, {0xF0, 0x0F}));
    change(at(0x02, 0x100, {0x3C, 0xFF}));
    EXPECT_EQ(read(0xFF, 4), (FlashBytes{0xFF, 0x30, 0x0F, 0xFF}));
}

TEST_F(SpiFlashPart, ProgramsRoundTheEndOfAPage) {
    change(at(0x02, 0x1FE, {1, 2, 3}));
    EXPECT_EQ(read(0x1FD, 4), (FlashBytes{0xFF, 1, 2, 0xFF}));
    EXPECT_EQ(read(0x100, 2), (FlashBytes{3, 0xFF}));

    FlashBytes many(258, 0x11);
    many[256] = 0x22;
    many[257] = 0x44;
    change(at(0x02, 0x3FF, many));
    EXPECT_EQ(read(0x3FE, 3), (FlashBytes{0x11, 0x22, 0xFF})) << "the last 256 bytes count";
    EXPECT_EQ(read(0x300, 2), (FlashBytes{0x44, 0x11}));
}

TEST_F(SpiFlashPart, ErasesSectorsBlocksAndAll) {
    for (const auto& [opcode, size] :
         {std::pair{0x20u, 4 * kibi}, std::pair{0x52u, 32 * kibi}, std::pair{0xD8u, 64 * kibi}}) {
        cells.bytes.assign(cells.bytes.size(), 0);
        change(at(static_cast<std::uint8_t>(opcode), 0x2FABC));
        EXPECT_EQ(erased(), size);
        EXPECT_EQ(cells.bytes[0x2FABC], 0xFF);
        EXPECT_EQ(cells.bytes[0x2FABC / size * size], 0xFF);
    }
    for (const auto opcode : FlashBytes{0x60, 0xC7}) {
        cells.bytes.assign(cells.bytes.size(), 0);
        change({opcode});
        EXPECT_TRUE(isAll(cells.bytes, 0xFF));
    }
}

TEST_F(SpiFlashPart, ChangesNothingUnlessWritingIsEnabled) {
    cells.bytes.assign(cells.bytes.size(), 0x5A);
    const std::vector<FlashBytes> changes{at(0x02, 0, {0}), at(0x20, 0), at(0x52, 0),
                                          at(0xD8, 0),      {0x60},      {0xC7}};
    for (const auto& each : changes) {
        send(each);
        send({0x06});
        EXPECT_EQ(status(), 0x02u);
        send({0x04});
        send(each);
        EXPECT_TRUE(isAll(cells.bytes, 0x5A));
        EXPECT_EQ(status(), 0u);
    }
    for (const auto& each : changes) {
        change(each);
        EXPECT_EQ(status(), 0u) << "it is enabled for one change";
    }
    EXPECT_TRUE(isAll(cells.bytes, 0xFF));
}

TEST_F(SpiFlashPart, ChangesNothingWithAByteTooManyOrTooFew) {
    cells.bytes.assign(cells.bytes.size(), 0x5A);
    for (const auto& each : {at(0x02, 0), FlashBytes{0x02, 0}, at(0x20, 0, {0}), FlashBytes{0x20, 0, 0},
                             at(0x52, 0, {0}), FlashBytes{0xD8}, FlashBytes{0x60, 0}, FlashBytes{0xC7, 0}})
        change(each);
    send({0x06});
    EXPECT_EQ(send(at(0x02, 0, {0}), 1), FlashBytes{0xFF}) << "clocks behind the data";
    send({0x20, 0, 0, 0}, 1);
    EXPECT_TRUE(isAll(cells.bytes, 0x5A));
    send({0x04});
    send({0x06, 0});
    EXPECT_EQ(status(), 0u);
}

TEST_F(SpiFlashPart, KeepsItsStatusAndProtectsWhatThatSays) {
    cells.bytes.assign(cells.bytes.size(), 0x5A);
    send({0x01, 0x04});
    EXPECT_EQ(status(), 0u) << "not enabled";
    change({0x01, 0xFF, 0x02});
    EXPECT_EQ(status(), 0xFCu) << "all but what tells of writing";
    EXPECT_EQ(send({0x35}, 1), FlashBytes{0x02});
    EXPECT_EQ(send({0x15}, 1), FlashBytes{0x00});
    for (const auto& each : {at(0x02, 0, {0}), at(0x20, 0), FlashBytes{0xC7}}) {
        change(each);
        EXPECT_TRUE(isAll(cells.bytes, 0x5A));
        EXPECT_EQ(status(), 0xFCu);
    }
    send({0x50});
    send({0x01, 0x40});
    EXPECT_EQ(status(), 0x40u) << "by the older command";
    send({0x01, 0x00});
    EXPECT_EQ(status(), 0x40u) << "once";
    change(at(0x20, 0));
    EXPECT_EQ(erased(), 4096);
}

TEST(FlashChips, FollowFromTheSizeOfTheMemory) {
    for (const auto& [size, last] : {std::pair{1u, 0x34}, std::pair{2u, 0x35}, std::pair{4u, 0x36},
                                     std::pair{8u, 0x37}, std::pair{16u, 0x38}}) {
        const auto& chip = chooseFlashChip(size * mebi, "");
        EXPECT_EQ(chip.size, size * mebi);
        EXPECT_THAT(chip.identity, testing::ElementsAre(0xC2, 0x25, last));
    }
    EXPECT_EQ(chooseFlashChip(8 * mebi, "GD25Q64").identity[2], 0x17);
    EXPECT_EQ(chooseFlashChip(5 * mebi, "MX25U3235F").size, 4 * mebi) << "smaller than the memory";
    for (const auto& chip : flashChips()) // whose identity ends in the exponent of the size
        EXPECT_EQ(chip.size, 1u << (chip.identity[0] == 0xC2 ? chip.identity[2] - 0x20 : chip.identity[2]))
            << chip.name;
}

TEST(FlashChips, AreRefusedThatDoNotFit) {
    const auto complaint = [](std::uint32_t memory, const std::string& name) -> std::string {
        try {
            chooseFlashChip(memory, name);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code, ExitCode::usage);
            return failure.what();
        }
        return "none";
    };
    EXPECT_THAT(complaint(3 * mebi, ""), HasSubstr("no flash chip has the ROM's 3145728 bytes"));
    EXPECT_THAT(complaint(0, ""), HasSubstr("0 bytes"));
    EXPECT_THAT(complaint(32 * mebi, ""), HasSubstr("33554432 bytes, more than the 16777216"));
    EXPECT_EQ(complaint(mebi, "MX25U1635E"), "the MX25U1635E has 2097152 bytes, more than the ROM's 1048576");
    EXPECT_THAT(complaint(mebi, "W25"), HasSubstr("there is no flash chip 'W25', only GD25Q40, MX25U8032E"));
}

} // namespace
