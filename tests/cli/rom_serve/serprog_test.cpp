#include <tavo/cli/rom_serve/serprog.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/rom_serve/flash_model.h>

namespace {

using namespace std::chrono_literals;
using namespace TAVO::cli;
using tool_test::at;
using tool_test::FlashBytes;
using tool_test::PlainCells;
using tool_test::serprog24;
using tool_test::spi;
using tool_test::operator+;

const FlashBytes ack{0x06};
const FlashBytes nak{0x15};

/// A client of the protocol, with a flash that works.
class SerprogClient {
public:
    bool type(const FlashBytes& bytes) { return conversation.receive(bytes); }
    /// What is answered to that.
    FlashBytes ask(const FlashBytes& bytes) {
        answers.clear();
        EXPECT_TRUE(type(bytes));
        return answers;
    }

    PlainCells cells{8 * 1024 * 1024};
    SpiFlash flash{chooseFlashChip(8 * 1024 * 1024, ""), cells};
    bool works = true;
    bool isWritten = true;
    int settled = 0;
    int released = 0;
    int left = 0;
    std::size_t longestTransfer = 0;
    FlashBytes answers;
    std::size_t largestSent = 0;
    FlashAccess access{[this](std::span<const std::uint8_t> sent, std::size_t length) {
                           longestTransfer = std::max({longestTransfer, sent.size(), length});
                           return works ? std::optional(flash.transfer(sent, length)) : std::nullopt;
                       },
                       [this] {
                           ++settled;
                           return isWritten;
                       },
                       [this] {
                           ++released;
                           return works;
                       },
                       [this] { ++left; }};
    Serprog conversation{access, [this](std::span<const std::uint8_t> bytes) {
                             largestSent = std::max(largestSent, bytes.size());
                             answers.insert(answers.end(), bytes.begin(), bytes.end());
                         }};
};

TEST(Serprog, TellsWhatItIs) {
    SerprogClient client;
    EXPECT_EQ(client.ask({0x00}), ack);
    EXPECT_EQ(client.ask({0x01}), (FlashBytes{0x06, 0x01, 0x00}));
    auto map = FlashBytes{0x06, 0x3F, 0x01, 0x3F};
    map.resize(33);
    EXPECT_EQ(client.ask({0x02}), map);
    EXPECT_EQ(client.ask({0x03}), (FlashBytes{0x06, 't', 'a', 'v', 'o', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(client.ask({0x04}), (FlashBytes{0x06, 0xFF, 0xFF}));
    EXPECT_EQ(client.ask({0x05}), (FlashBytes{0x06, 0x08}));
    EXPECT_EQ(client.ask({0x08}), (FlashBytes{0x06, 0x00, 0x80, 0x00}));
    EXPECT_EQ(client.ask({0x10}), (FlashBytes{0x15, 0x06}));
    EXPECT_EQ(client.ask({0x11}), (FlashBytes{0x06, 0x00, 0x00, 0x01}));
    EXPECT_EQ(client.ask({0x12, 0x08}), ack);
    EXPECT_EQ(client.ask({0x12, 0x01}), nak);
    EXPECT_EQ(client.ask({0x14, 0x00, 0x12, 0x7A, 0x00}), (FlashBytes{0x06, 0x00, 0x12, 0x7A, 0x00}));
    EXPECT_EQ(client.ask({0x14, 0, 0, 0, 0}), nak);
    EXPECT_EQ(client.ask({0x15, 1}), ack);
    EXPECT_EQ(client.released, 0);
}

TEST(Serprog, RefusesEveryOtherCommand) {
    SerprogClient client;
    for (unsigned command = 0; command < 256; ++command) {
        const bool isKnown = command <= 0x05 || command == 0x08 || (command >= 0x10 && command <= 0x15);
        if (isKnown)
            continue;
        EXPECT_EQ(client.ask({static_cast<std::uint8_t>(command)}), nak) << command;
    }
    EXPECT_EQ(client.ask(FlashBytes(100'000, 'x')).size(), 100'000u);
}

TEST(Serprog, AnswersTheSameWhereverTheInputIsCut) {
    const auto text = FlashBytes{0x00, 0x10, 0x02, 0x12, 0x08, 0x14, 0x40, 0x42, 0x0F, 0x00, 0x77} +
                      spi({0x9F}, 3) + spi({0x06}) + spi(at(0x02, 0x1FF, {0x5A, 0xA5})) +
                      spi(at(0x03, 0x1FE), 4) + spi({}) + FlashBytes{0x15, 0x00, 0x00};
    auto expected = FlashBytes{0x06, 0x15, 0x06, 0x06, 0x3F, 0x01, 0x3F};
    expected.resize(4 + 32);
    expected = expected + FlashBytes{0x06, 0x06, 0x40, 0x42, 0x0F, 0x00, 0x15} +
               FlashBytes{0x06, 0xC2, 0x25, 0x37} + ack + ack + FlashBytes{0x06, 0xFF, 0x5A, 0xFF, 0xFF} +
               ack + ack + ack;
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        const auto middle = text.begin() + static_cast<std::ptrdiff_t>(cut);
        SerprogClient client;
        ASSERT_TRUE(client.type({text.begin(), middle}));
        client.conversation.pause(0ms);
        ASSERT_TRUE(client.type({middle, text.end()}));
        ASSERT_EQ(client.answers, expected) << "cut " << cut;
        ASSERT_EQ(client.cells.bytes[0x100], 0xA5) << "cut " << cut;
        ASSERT_EQ(client.released, 1);
    }
    SerprogClient slow;
    for (const auto byte : text)
        ASSERT_TRUE(slow.type({byte}));
    EXPECT_EQ(slow.answers, expected);
}

TEST(Serprog, RefusesOperationsThatAreTooLongWhole) {
    constexpr std::size_t most = 0xFFFFFF;
    SerprogClient client;
    // Every byte of it would be a command.
    EXPECT_EQ(client.ask(FlashBytes{0x13} + serprog24(most) + serprog24(most)), FlashBytes());
    const FlashBytes piece(1 << 20, 0x15);
    for (std::size_t sent = 0; sent + piece.size() < most; sent += piece.size())
        ASSERT_EQ(client.ask(piece), FlashBytes());
    EXPECT_EQ(client.ask(FlashBytes(piece.begin(), piece.end() - 1)), nak);
    EXPECT_EQ(client.released, 0);

    EXPECT_EQ(client.ask(spi({0x03, 0, 0, 0}, most)), nak);
    EXPECT_EQ(client.ask(spi({}, most)), nak);
    EXPECT_EQ(client.ask(spi(at(0x03, 0), Serprog::longestRead + 1)), nak);
    EXPECT_EQ(client.ask(spi(FlashBytes(Serprog::longestTaken + 1))), nak);
    EXPECT_EQ(client.longestTransfer, 0u);

    EXPECT_EQ(client.ask(spi(at(0x03, 0), Serprog::longestRead)).size(), 1 + Serprog::longestRead);
    EXPECT_EQ(client.ask(spi(FlashBytes(Serprog::longestTaken))), ack);
    EXPECT_EQ(client.ask({0x10}), nak + ack) << "in step";
}

TEST(Serprog, SendsManyAnswersInParts) {
    SerprogClient client;
    FlashBytes many;
    for (int i = 0; i < 100; ++i)
        many = many + spi(at(0x03, 0), Serprog::longestRead);
    EXPECT_EQ(client.ask(many).size(), 100u * (1 + Serprog::longestRead));
    EXPECT_LE(client.largestSent, 2u * Serprog::longestRead + 2);
}

TEST(Serprog, SettlesInPausesThatGrowForAClientThatGoesOn) {
    SerprogClient client;
    client.type({0x00});
    EXPECT_FALSE(client.conversation.pause(0ms)) << "nothing to settle";
    for (const auto patience : {50ms, 100ms, 200ms, 400ms, 400ms}) {
        const auto before = client.settled;
        client.type(spi({0x06}));
        EXPECT_EQ(client.conversation.pause(0ms), patience);
        EXPECT_EQ(client.conversation.pause(patience - 1ms), patience);
        EXPECT_EQ(client.settled, before);
        EXPECT_FALSE(client.conversation.pause(patience));
        EXPECT_EQ(client.settled, before + 1);
    }
    client.type({0x15, 0x00});
    EXPECT_FALSE(client.conversation.pause(0ms)) << "it has let the chip go";
    client.isWritten = false;
    for (int i = 0; i < 3; ++i) {
        client.type(spi({0x05}, 1));
        EXPECT_EQ(client.conversation.pause(0ms), 50ms) << "a pause in reading costs nothing";
        EXPECT_FALSE(client.conversation.pause(50ms));
    }
}

TEST(Serprog, RefusesWhatTheFlashDoesNotDo) {
    SerprogClient client;
    client.works = false;
    EXPECT_EQ(client.ask(spi({0x9F}, 3)), nak);
    EXPECT_EQ(client.ask({0x15, 0x00}), nak);
    EXPECT_EQ(client.ask({0x00}), ack);
    client.conversation.end();
    EXPECT_EQ(client.left, 1);
}

} // namespace
