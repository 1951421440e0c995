#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/server/reply_scanner.h>
#include <tests/support/wire_bytes.h>

namespace {

using namespace support;
using TAVO::server::ErrorFrame;
using TAVO::server::ReplyReceiver;
using TAVO::server::ReplyScanner;

/// What a reply consists of, in words.
class Told : public ReplyReceiver {
public:
    void head(std::span<const std::uint8_t> status, const std::optional<ErrorFrame>& error,
              std::uint32_t resultCount) override {
        text += "status " + hexOf({status.begin(), status.end()}) + "; ";
        if (error)
            text += "error " + std::to_string(error->position) + " " + std::to_string(error->code) + " " +
                    error->message + "; ";
        text += std::to_string(resultCount) + " results;";
    }
    void resultBegins(std::uint32_t size) override { text += " (" + std::to_string(size) + " "; }
    void resultBytes(std::span<const std::uint8_t> bytes) override {
        EXPECT_FALSE(bytes.empty());
        text += hexOf({bytes.begin(), bytes.end()});
    }
    void resultEnds() override { text += ")"; }

    std::string text;
};

const Bytes whole = joined({u32(2),
                            {0x0A, 0x0B},
                            block(joined({u32(1), u32(1006), text("broken")})),
                            u32(3),
                            block({1, 2, 3, 4, 5}),
                            block({}),
                            block(u32(0xFFFFFFFF))});
const std::string wholeText = "status 0a0b; error 1 1006 broken; 3 results; (5 0102030405) (0 ) (4 ffffffff)";

TEST(ReplyScanner, TellsThePartsOfAReply) {
    ReplyScanner scanner;
    Told told;
    EXPECT_EQ(scanner.feed(whole, told), whole.size());
    EXPECT_TRUE(scanner.isComplete());
    EXPECT_EQ(told.text, wholeText);
}

TEST(ReplyScanner, TellsTheSameOfEveryCut) {
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        ReplyScanner scanner;
        Told told;
        const std::span<const std::uint8_t> bytes(whole);
        EXPECT_EQ(scanner.feed(bytes.first(cut), told), cut);
        EXPECT_EQ(scanner.isComplete(), cut == whole.size());
        EXPECT_EQ(scanner.feed(bytes.subspan(cut), told), whole.size() - cut);
        EXPECT_TRUE(scanner.isComplete());
        EXPECT_EQ(told.text, wholeText) << cut;
    }
}

TEST(ReplyScanner, LeavesWhatFollows) {
    ReplyScanner scanner;
    Told told;
    EXPECT_EQ(scanner.feed(joined({replyWith({}), {7, 8, 9}}), told), 12u);
    EXPECT_TRUE(scanner.isComplete());
    EXPECT_EQ(told.text, "status ; 0 results;");
    EXPECT_EQ(scanner.feed(Bytes{7, 8, 9}, told), 0u);
}

TEST(ReplyScanner, BelievesNoAbsurdHead) {
    for (const auto& head : {u32(0x7FFFFFFF), joined({u32(0), u32(0xFFFFFFFF)}), u32((1 << 20) + 1)}) {
        ReplyScanner scanner;
        Told told;
        EXPECT_THROW(scanner.feed(head, told), std::runtime_error) << hexOf(head);
    }
}

TEST(ReplyScanner, RefusesAnErrorThatIsCutShort) {
    for (const auto& error : {Bytes{1, 2, 3}, joined({u32(0), u32(1001)}),
                              joined({u32(0), u32(1001), u32(6), bytesOf("alice")})}) {
        ReplyScanner scanner;
        Told told;
        EXPECT_THROW(scanner.feed(joined({u32(0), block(error)}), told), std::runtime_error) << hexOf(error);
    }
}

TEST(ReplyScanner, HoldsNoResult) {
    ReplyScanner scanner;
    Told told;
    scanner.feed(joined({u32(0), u32(0), u32(1), u32(0xFFFFFFFF)}), told);
    const Bytes piece(100000, 0xEE);
    told.text.clear();
    EXPECT_EQ(scanner.feed(piece, told), piece.size());
    EXPECT_EQ(told.text.size(), 2 * piece.size());
    EXPECT_FALSE(scanner.isComplete());
}

} // namespace
