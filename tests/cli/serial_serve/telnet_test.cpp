#include <tavo/cli/serial_serve/telnet.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace TAVO::cli::telnet;
using Texts = std::vector<std::string>;

/// What a reader tells, as text. Data join, however they were cut.
class TelnetNotes final : public Listener {
public:
    void data(std::span<const std::uint8_t> bytes) override {
        if (!followsData_)
            all.emplace_back("data");
        followsData_ = true;
        for (const auto byte : bytes)
            all.back() += " " + std::to_string(byte);
    }
    void negotiate(Command verb, std::uint8_t option) override {
        add("negotiate " + std::to_string(verb) + " " + std::to_string(option));
    }
    void subnegotiate(std::span<const std::uint8_t> bytes) override {
        add("sub");
        for (const auto byte : bytes)
            all.back() += " " + std::to_string(byte);
    }
    void command(std::uint8_t command) override { add("command " + std::to_string(command)); }

    Texts all;

private:
    void add(const std::string& text) {
        all.push_back(text);
        followsData_ = false;
    }

    bool followsData_ = false;
};

TEST(TelnetReader, TellsTheSameWhereverTheInputIsCut) {
    const Bytes input{1,   2,   255, 255, 3,   255, 251, 44,  4,   255, 250, 44,  1,
                      255, 255, 0,   10,  255, 240, 255, 243, 255, 254, 99,  255, 250,
                      44,  255, 253, 0,   7,   255, 240, 255, 250, 255, 240, 8};
    const Texts expected{"data 1 2 255 3",  "negotiate 251 44",
                         "data 4",          "sub 44 1 255 0 10",
                         "command 243",     "negotiate 254 99",
                         "negotiate 253 0", "data 7",
                         "command 240",     "sub",
                         "data 8"};
    for (std::size_t cut = 0; cut <= input.size(); ++cut) {
        Reader reader;
        TelnetNotes notes;
        const std::span<const std::uint8_t> bytes(input);
        ASSERT_TRUE(reader.take(bytes.first(cut), notes));
        ASSERT_TRUE(reader.take(bytes.subspan(cut), notes));
        ASSERT_EQ(notes.all, expected) << "cut " << cut;
    }
}

TEST(TelnetReader, EndsAtASubnegotiationWithoutAnEnd) {
    Reader reader;
    TelnetNotes notes;
    Bytes input{255, 250, 44};
    input.resize(2 + Reader::longestSubnegotiation, 7);
    ASSERT_TRUE(reader.take(input, notes));
    EXPECT_FALSE(reader.take(Bytes{7}, notes));
    EXPECT_FALSE(reader.take(Bytes{255, 255}, notes));
    EXPECT_TRUE(notes.all.empty());
}

TEST(TelnetOptions, AnswerWhatChangesAndNothingElse) {
    Options options;
    EXPECT_EQ(options.take(will, comPort), (Bytes{255, 253, 44}));
    EXPECT_EQ(options.take(will, comPort), Bytes());
    EXPECT_EQ(options.take(doIt, comPort), (Bytes{255, 251, 44}));
    EXPECT_EQ(options.take(doIt, comPort), Bytes());
    EXPECT_TRUE(options.isOn(comPort));
    EXPECT_EQ(options.take(wont, comPort), (Bytes{255, 254, 44}));
    EXPECT_EQ(options.take(wont, comPort), Bytes());
    EXPECT_EQ(options.take(dont, comPort), (Bytes{255, 252, 44}));
    EXPECT_FALSE(options.isOn(comPort));
    for (const auto other : Bytes{1, 24, 31, 45, 255}) {
        EXPECT_EQ(options.take(will, other), (Bytes{255, 254, other}));
        EXPECT_EQ(options.take(doIt, other), (Bytes{255, 252, other}));
        EXPECT_EQ(options.take(wont, other), Bytes());
        EXPECT_EQ(options.take(dont, other), Bytes());
    }
}

TEST(TelnetOptions, TakeAnAnswerToAProposalForNoProposal) {
    Options options;
    EXPECT_EQ(options.propose(binary), (Bytes{255, 251, 0, 255, 253, 0}));
    EXPECT_EQ(options.propose(binary), Bytes());
    EXPECT_FALSE(options.isOn(binary));
    EXPECT_EQ(options.take(doIt, binary), Bytes());
    EXPECT_EQ(options.take(wont, binary), Bytes());
    EXPECT_TRUE(options.isOn(binary));
    EXPECT_EQ(options.propose(binary), (Bytes{255, 253, 0}));
    EXPECT_EQ(options.take(will, binary), Bytes());
    EXPECT_EQ(options.propose(binary), Bytes());
}

/// Two ends of the same kind come to rest.
TEST(TelnetOptions, NeverAnswerEachOtherForEver) {
    Options here;
    Options there;
    auto bytes = here.propose(binary);
    int rounds = 0;
    for (auto* end = &there; !bytes.empty(); end = end == &there ? &here : &there) {
        ASSERT_LT(++rounds, 4);
        Bytes answers;
        for (std::size_t at = 0; at + 2 < bytes.size(); at += 3)
            for (const auto byte : end->take(static_cast<Command>(bytes[at + 1]), bytes[at + 2]))
                answers.push_back(byte);
        bytes = answers;
    }
    EXPECT_TRUE(here.isOn(binary));
    EXPECT_TRUE(there.isOn(binary));
}

} // namespace
