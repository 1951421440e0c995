#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/server/frames.h>
#include <tavo/trace/capture.h>
#include <tests/support/wire_bytes.h>

namespace {

using support::Bytes;
using support::bytesFromHex;
using support::bytesOf;
using support::joined;
using TAVO::server::appendWord;

Bytes words(std::initializer_list<std::uint32_t> all) {
    Bytes bytes;
    for (const auto word : all)
        appendWord(bytes, word);
    return bytes;
}

const Bytes request = words({0, 1, 1000, 77, 0});
const Bytes reply = words({0, 0, 1, 4, 0});

constexpr std::uint32_t clientAddress = 0x0A000001;
constexpr std::uint32_t deviceAddress = 0x0A000002;
constexpr std::uint16_t devicePort = 6123;

/// A packet of TCP without what the internet protocol puts before it.
struct TcpPacket {
    std::uint32_t from = clientAddress;
    std::uint32_t to = deviceAddress;
    std::uint16_t fromPort = 50000;
    std::uint16_t toPort = devicePort;
    std::uint32_t sequence = 0;
    bool isSyn = false;
    Bytes payload = {};

    Bytes segment() const {
        return joined({words({static_cast<std::uint32_t>(fromPort) << 16 | toPort, sequence, 0,
                              isSyn ? 0x50020000U : 0x50000000U, 0}),
                       payload});
    }
    Bytes ipv4() const { // of no stated length, as network cards leave it
        return joined({words({0x45000000, 0, 0x40060000, from, to}), segment()});
    }
    Bytes ipv6() const {
        const auto tcp = segment();
        return joined({words({0x60000000, static_cast<std::uint32_t>(tcp.size()) << 16 | 0x0640, 0xFE800000,
                              0, 0, from, 0xFE800000, 0, 0, to}),
                       tcp});
    }
    TcpPacket answeredBy(const Bytes& bytes) const { return {to, from, toPort, fromPort, 0, false, bytes}; }
};

class CaptureFile : public testing::Test {
protected:
    void begin(std::uint16_t linkType) {
        file = words({0x0A0D0D0A, 28, 0x1A2B3C4D, 0x00010000, 0xFFFFFFFF, 0xFFFFFFFF, 28, 1, 20,
                      static_cast<std::uint32_t>(linkType) << 16, 0, 20});
    }
    void add(const Bytes& packet) {
        const auto size = static_cast<std::uint32_t>(packet.size());
        const auto padding = (4 - size % 4) % 4;
        const auto length = 32 + size + padding;
        for (const auto& part :
             {words({6, length, 0, 0, 0, size, size}), packet, Bytes(padding), words({length})})
            file.insert(file.end(), part.begin(), part.end());
    }
    void read() {
        exchanges = 0;
        TAVO::trace::Capture capture({}, 4096, [this](const auto& exchange, const auto&) {
            exchanges += exchange.isAnswered && exchange.calls.at(0).id.methodId == 77 ? 1 : 0;
        });
        std::istringstream in(std::string(file.begin(), file.end()));
        capture.read(in);
        problems = capture.problems();
    }

    Bytes file;
    int exchanges = 0;
    std::vector<std::string> problems;
};

TEST_F(CaptureFile, IsReadWhateverLinkThePacketsPassed) {
    struct Link {
        std::string_view name;
        std::uint16_t type;
        bool isIpv6;
        std::string_view head;
    };
    const Link links[] = {
        {"null", 0, false, "02000000"},
        {"loop", 108, true, "0000001e"},
        {"raw", 101, false, ""},
        {"raw 6", 101, true, ""},
        {"IPv4", 228, false, ""},
        {"IPv6", 229, true, ""},
        {"Ethernet", 1, false, "020000000001 020000000002 0800"},
        {"Ethernet 6", 1, true, "020000000001 020000000002 86dd"},
        {"Ethernet with two tags", 1, false, "020000000001 020000000002 88a80005 81000007 0800"},
        {"cooked", 113, false, "0000 0001 0006 0200000000010000 0800"},
        {"cooked 6", 113, true, "0000 0001 0006 0200000000010000 86dd"},
        {"cooked 2", 276, false, "0800 0000 00000003 0001 00 06 0200000000010000"},
        {"cooked 2, 6", 276, true, "86dd 0000 00000003 0001 00 06 0200000000010000"},
    };
    for (const auto& link : links) {
        begin(link.type);
        const TcpPacket asked{.payload = request};
        for (const auto& packet : {asked, asked.answeredBy(reply)})
            add(joined({bytesFromHex(link.head), link.isIpv6 ? packet.ipv6() : packet.ipv4()}));
        read();
        EXPECT_EQ(exchanges, 1) << link.name;
    }
    begin(1);
    add(joined({bytesFromHex("020000000001 020000000002 0806"), TcpPacket{.payload = request}.ipv4()}));
    read();
    EXPECT_EQ(exchanges, 0);
}

TEST_F(CaptureFile, MayHaveManyOtherConnectionsBeforeTheDevice) {
    for (const std::uint32_t others : {300U, 40000U}) {
        begin(101);
        for (std::uint32_t i = 0; i < others; ++i)
            add(TcpPacket{
                .to = 0x0B000000 + i, .toPort = 80, .payload = bytesOf(i % 2 ? "ping" : "GET / HTTP/1.1")}
                    .ipv4());
        const TcpPacket asked{.payload = request};
        add(asked.ipv4());
        add(asked.answeredBy(reply).ipv4());
        read();
        EXPECT_EQ(exchanges, 1) << others;
        EXPECT_THAT(problems, testing::IsEmpty());
    }
}

TEST_F(CaptureFile, TellsConnectionsOfTheSameEndsApart) {
    begin(101);
    for (const std::uint32_t first : {100U, 500'000U, 500'000U})
        add(TcpPacket{.sequence = first, .isSyn = true}.ipv4());
    const TcpPacket asked{.sequence = 500'001, .payload = request};
    add(asked.ipv4());
    add(asked.answeredBy(reply).ipv4());
    add(TcpPacket{.sequence = 7, .isSyn = true}.ipv4());
    const TcpPacket again{.sequence = 8, .payload = request};
    add(again.ipv4());
    add(again.answeredBy(reply).ipv4());
    read();
    EXPECT_EQ(exchanges, 2);
    EXPECT_THAT(problems, testing::IsEmpty());
}

TEST_F(CaptureFile, TellsOfTooManyRequestsWithoutAReply) {
    begin(101);
    for (std::uint32_t i = 0; i <= 1000; ++i)
        add(TcpPacket{.sequence = i * 20, .payload = request}.ipv4());
    read();
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_THAT(problems[0], testing::HasSubstr("more than 1000 requests without a reply"));
}

} // namespace
