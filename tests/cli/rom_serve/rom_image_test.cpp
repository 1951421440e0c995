#include <tavo/cli/rom_serve/rom_image.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tests/cli/rom_serve/flash_model.h>

namespace {

using namespace TAVO::cli;
using testing::HasSubstr;
using tool_test::isAll;
using ImageBytes = std::vector<std::uint8_t>;

constexpr std::uint32_t romBytes = 5 * 1024 * 1024;
constexpr std::uint32_t megabyte = 1024 * 1024;
constexpr std::uint32_t block = RomImage::blockSize;

/// An image in front of a memory that counts what it is asked.
class RomImageTest : public testing::Test {
protected:
    RomImageTest() {
        for (std::size_t i = 0; i < memory.size(); ++i)
            memory[i] = static_cast<std::uint8_t>(i * 5 + (i >> 12));
    }

    ImageBytes part(std::uint32_t place, std::uint32_t length) const {
        return {memory.begin() + place, memory.begin() + place + length};
    }
    ImageBytes read(std::uint32_t place, std::uint32_t length) {
        ImageBytes bytes(length);
        image.read(place, bytes);
        return bytes;
    }
    /// Of the last exchange: offset and length of each piece.
    using Layout = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

    ImageBytes memory = ImageBytes(romBytes);
    Layout asked;
    int reads = 0;
    int writes = 0;
    std::uint32_t spoilt = romBytes; ///< a cell that takes nothing
    RomAccess access{[this](const std::vector<RomPart>& parts) {
                         ++reads;
                         asked.clear();
                         RomAccess::Contents contents;
                         for (const auto& each : parts) {
                             asked.emplace_back(each.offset, each.length);
                             contents.push_back(part(each.offset, each.length));
                         }
                         return contents;
                     },
                     [this](const std::vector<RomPiece>& pieces) {
                         ++writes;
                         asked.clear();
                         RomAccess::Contents contents;
                         for (const auto& each : pieces) {
                             const auto length = static_cast<std::uint32_t>(each.bytes.size());
                             asked.emplace_back(each.offset, length);
                             for (std::uint32_t i = 0; i < length; ++i)
                                 if (each.offset + i != spoilt)
                                     memory[each.offset + i] = each.bytes[i];
                             contents.push_back(part(each.offset, length));
                         }
                         return contents;
                     }};
    RomImage image{romBytes, access};
};

TEST_F(RomImageTest, IsReadInPiecesWhenItIsNeeded) {
    EXPECT_EQ(reads, 0);
    EXPECT_EQ(read(3 * megabyte - 1, 3), part(3 * megabyte - 1, 3));
    EXPECT_EQ(asked, (Layout{{2 * megabyte, megabyte}, {3 * megabyte, megabyte}}));
    EXPECT_EQ(read(2 * megabyte, 2 * megabyte), part(2 * megabyte, 2 * megabyte));
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(read(romBytes - 1, 1), part(romBytes - 1, 1));
    EXPECT_EQ(asked, (Layout{{4 * megabyte, megabyte}})) << "no further than its end";
    EXPECT_EQ(read(0, romBytes), memory);
    EXPECT_EQ(reads, 3);
    image.flush();
    EXPECT_EQ(writes, 0);
}

TEST_F(RomImageTest, WritesWhatChangedInOneExchangeWithWhatReadsItBack) {
    const ImageBytes zeros(block, 0);
    image.program(3 * block + 5, ImageBytes(2, 0));
    image.program(4 * block, zeros);
    image.program(300 * block, zeros);
    EXPECT_EQ(image.unwritten(), 3 * block);
    EXPECT_EQ(writes, 0);
    image.flush();
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(asked, (Layout{{3 * block, 2 * block}, {300 * block, block}}));
    EXPECT_TRUE(isAll(part(4 * block, block), 0));
    EXPECT_EQ(image.unwritten(), 0u);
    EXPECT_EQ(image.written(), 3 * block);
    image.flush();
    EXPECT_EQ(writes, 1);
}

TEST_F(RomImageTest, WritesNothingThatIsAsItWas) {
    memory.assign(memory.size(), 0xFF);
    read(0, 1);
    image.erase(0, 64 * block);
    image.program(0, ImageBytes(300, 0xFF));
    EXPECT_EQ(image.unwritten(), 0u);
    image.program(0, ImageBytes{0x0F});
    image.flush();
    image.program(0, ImageBytes{0x1F});
    EXPECT_EQ(image.unwritten(), 0u);
}

TEST_F(RomImageTest, ErasesWithoutReadingAndWritesInPieces) {
    image.erase(0, romBytes);
    EXPECT_TRUE(isAll(read(0, romBytes), 0xFF));
    image.program(megabyte, ImageBytes{0x42});
    EXPECT_EQ(reads, 0);
    image.flush();
    EXPECT_EQ(writes, 3);
    EXPECT_EQ(asked, (Layout{{4 * megabyte, megabyte}}));
    auto expected = ImageBytes(romBytes, 0xFF);
    expected[megabyte] = 0x42;
    EXPECT_EQ(memory, expected);
}

TEST_F(RomImageTest, ReadsAroundWhatChanged) {
    image.erase(block, block);
    auto expected = part(0, 3 * block);
    std::fill(expected.begin() + block, expected.begin() + 2 * block, std::uint8_t{0xFF});
    EXPECT_EQ(read(0, 3 * block), expected);
    EXPECT_EQ(image.unwritten(), block);
}

TEST_F(RomImageTest, TakesFewPiecesInAnExchange) {
    for (std::uint32_t i = 0; i < 300; ++i)
        image.erase(2 * i * block, block);
    image.flush();
    EXPECT_EQ(writes, 3);
    EXPECT_EQ(asked.size(), 300 - 2 * RomImage::piecesPerExchange);
    EXPECT_EQ(memory[598 * block], 0xFF);
}

TEST_F(RomImageTest, NamesTheFirstDifference) {
    memory[block + 7] = 0x12;
    spoilt = block + 7;
    image.erase(0, 4 * block);
    try {
        image.flush();
        ADD_FAILURE();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code, ExitCode::refused);
        EXPECT_STREQ(failure.what(),
                     "first difference at offset 0x1007: the device has 0x12, 0xff was written");
    }
    EXPECT_EQ(image.unwritten(), 4 * block);
    EXPECT_EQ(image.written(), 0u);
}

TEST_F(RomImageTest, ForgetsAllButWhatChanged) {
    read(0, 1);
    image.erase(0, block);
    memory.assign(memory.size(), 0x33);
    image.forget();
    EXPECT_EQ(read(block - 1, 2), (ImageBytes{0xFF, 0x33}));
    image.flush();
    EXPECT_EQ(memory[0], 0xFF);
    EXPECT_EQ(memory[block], 0x33);
}

TEST_F(RomImageTest, IsDoubtfulAfterUnfinishedWorkUntilAllOfThatIsRead) {
    memory[block] = 0xFF;
    image.program(block, ImageBytes{0});
    image.erase(3 * block, block);
    EXPECT_FALSE(image.isDoubtful());
    image.flush();
    image.doubt();
    image.forget();
    EXPECT_TRUE(image.isDoubtful());
    read(block, block);
    EXPECT_TRUE(image.isDoubtful());
    image.program(3 * block, ImageBytes{0});
    image.accept();
    read(3 * block, block - 1);
    EXPECT_TRUE(image.isDoubtful()) << "read in part";
    read(3 * block, block);
    EXPECT_FALSE(image.isDoubtful());
}

TEST_F(RomImageTest, StaysAsItIsWhenTheDeviceFails) {
    const auto working = access;
    access.read = [](const auto&) -> RomAccess::Contents { throw std::runtime_error("gone"); };
    EXPECT_THROW(read(0, 1), std::runtime_error);
    EXPECT_THROW(image.program(0, ImageBytes{0}), std::runtime_error);
    access.read = working.read;
    EXPECT_EQ(read(0, 5), part(0, 5));
    access.rewrite = [](const auto&) -> RomAccess::Contents { throw std::runtime_error("gone"); };
    image.erase(0, block);
    EXPECT_THROW(image.flush(), std::runtime_error);
    access.rewrite = working.rewrite;
    image.flush();
    EXPECT_EQ(memory[0], 0xFF);
}

} // namespace
