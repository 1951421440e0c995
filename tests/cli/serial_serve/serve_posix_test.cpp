#include <array>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

#include <tavo/cli/descriptor.h>
#include <tests/cli/serial_serve/serial_fixture.h>
#include <tests/simulator/raw_client.h>
#include <tests/support/soon.h>

namespace tool_test {
namespace {

using support::Bytes;
using support::RawClient;
using testing::HasSubstr;
using testing::StartsWith;
using SerialServe = SerialServeTest;
using SerialPty = SerialServeTest;

Bytes bytesOfText(std::string_view text) { return {text.begin(), text.end()}; }
std::string textOfBytes(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

constexpr std::string_view version = "version\r\nTarget firmware 1.0\r\ntarget> ";

void expectVersion(RawClient& client) {
    ASSERT_TRUE(client.send(bytesOfText("version\r")));
    EXPECT_EQ(textOfBytes(client.receive(version.size())), version);
}

TEST_F(SerialServe, NeedsOneWayInAndTakesNoOptionOfTheConsole) {
    for (const auto& words :
         {Words{}, Words{"--tcp", "0", "--pty"}, Words{"--tcp", "0", "--rfc2217", "0"},
          Words{"--tcp", "here"}, Words{"--tcp", "0", "--link", "x"}, Words{"--tcp", "0", "--until", "x"}}) {
        const auto outcome = tool(Words{"serial", "serve"} + words);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.errors, "");
    }
    const auto above = tool({"serial", "--baud", "9600", "serve", "--tcp", "0"});
    EXPECT_EQ(above.exitCode, 2);
    EXPECT_EQ(above.errors, "tavo: --baud is an option of 'serial', not of 'serial serve'\n");
    const auto refused = tool({"serial", "serve", "--tcp", "0", "--baud", "12345"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.output, "") << "no client is let in";
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(SerialServe, ServesOneClientAtATimeAndEndsAfterTheFirstIfAsked) {
    bootBoard();
    const auto server = serve("--tcp", {"--baud", "57600"});
    auto first = std::make_unique<RawClient>(server->port());
    expectVersion(*first);
    EXPECT_EQ(settings()->baud, 57600);
    RawClient second(server->port());
    ASSERT_TRUE(second.send(bytesOfText("version\r")));
    expectVersion(*first);
    EXPECT_FALSE(second.hasInput());
    first.reset();
    EXPECT_EQ(textOfBytes(second.receive(version.size())), version);
    expectAllGivenBack(server->end());

    const auto once = serve("--tcp", {"--once"});
    std::make_unique<RawClient>(once->port())->send(bytesOfText("x"));
    expectAllGivenBack(once->wait());
}

TEST_F(SerialServe, SaysWhatTheBoardStillSaysToAClientThatSendsNoMore) {
    bootBoard();
    const auto server = serve("--tcp");
    RawClient client(server->port());
    ASSERT_TRUE(client.send(bytesOfText("reboot\r")));
    client.finishSending();
    // Of the clock of the board: the first message comes 300 ms later.
    EXPECT_THAT(textOfBytes(client.receiveToEnd()), StartsWith("reboot\r\n\r\nTarget firmware 1.0\r\n"));
    RawClient next(server->port());
    ASSERT_TRUE(next.send(bytesOfText("x")));
    expectAllGivenBack(server->end(SIGINT));
}

TEST_F(SerialServe, GivesTheNextClientTheLineAsItWas) {
    const auto server = serve("--rfc2217", {"--xonxoff"});
    const auto found = settings();
    auto client = std::make_unique<RawClient>(server->port());
    ASSERT_TRUE(client->send({255, 250, 44, 1, 0, 0, 0x25, 0x80, 255, 240, 255, 250, 44, 3, 2, 255, 240}));
    EXPECT_EQ(client->receive(17),
              (Bytes{255, 250, 44, 101, 0, 0, 0x25, 0x80, 255, 240, 255, 250, 44, 103, 2, 255, 240}));
    EXPECT_EQ(settings()->baud, 9600);
    EXPECT_TRUE(settings()->parity);
    client.reset();
    RawClient next(server->port());
    ASSERT_TRUE(next.send({255, 250, 44, 1, 0, 0, 0, 0, 255, 240}));
    EXPECT_EQ(next.receive(10), (Bytes{255, 250, 44, 101, 0, 1, 0xC2, 0, 255, 240}));
    EXPECT_EQ(settings(), found);
    expectAllGivenBack(server->end());
}

TEST_F(SerialServe, KeepsWhatTheBoardSaidBeforeTheLineChanged) {
    bootBoard();
    const auto server = serve("--rfc2217", {"--baud", "300"});
    RawClient client(server->port());
    // 15 characters take the line 600 ms, and the board boots after 300 ms: opening the port drops what
    // waits.
    ASSERT_TRUE(
        client.send(support::joined({bytesOfText("version\rreboot\r"), {255, 250, 44, 2, 7, 255, 240}})));
    const std::string boots = "\r\nTarget firmware 1.0\r\n";
    const auto expected = std::string(version) + "reboot\r\n" + "\xFF\xFA\x2C\x66\x07\xFF\xF0" + boots;
    EXPECT_THAT(textOfBytes(client.receive(expected.size())), StartsWith(expected));
    EXPECT_EQ(settings()->dataBits, 7);

    ASSERT_TRUE(client.send({255, 250, 44, 5, 5, 255, 240}));
    std::string text;
    EXPECT_TRUE(support::soon([&] {
        text += textOfBytes(client.receive());
        return text.find("\xFF\xFA\x2C\x69\x06\xFF\xF0") != std::string::npos;
    })) << text;
    EXPECT_EQ(settings()->dataBits, 7) << "open as before";
    ASSERT_TRUE(client.send({255, 250, 44, 2, 8, 255, 240}));
    EXPECT_TRUE(support::soon([&] {
        text += textOfBytes(client.receive());
        return text.find("\xFF\xFA\x2C\x66\x08\xFF\xF0") != std::string::npos;
    })) << "it works: "
        << text;
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.errors, HasSubstr("the port cannot send a break at 300 baud"));
}

TEST_F(SerialServe, HostileInputEndsThatClientAlone) {
    bootBoard();
    const auto server = serve("--rfc2217");
    RawClient client(server->port());
    Bytes flood{255, 250, 44};
    flood.resize(3'000'000, 0);
    client.send(flood);
    EXPECT_TRUE(client.hasEnded());
    RawClient next(server->port());
    expectVersion(next);
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.errors, HasSubstr("a Telnet subnegotiation without an end"));
}

TEST_F(SerialServe, TellsOfADeviceThatFailsAndAnswersItsClient) {
    const auto server = serve("--rfc2217");
    auto client = std::make_unique<RawClient>(server->port());
    ASSERT_TRUE(client->send({255, 250, 44, 2, 0, 255, 240}));
    EXPECT_EQ(client->receive(7), (Bytes{255, 250, 44, 102, 8, 255, 240}));
    breakDevice();
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(client->send({'x', 255, 250, 44, 2, 7, 255, 240}));
        EXPECT_EQ(client->receive(7), (Bytes{255, 250, 44, 102, 8, 255, 240}));
    }
    client.reset();
    const auto end = server->wait();
    EXPECT_EQ(end.exitCode, 1);
    EXPECT_THAT(end.errors, HasSubstr("the device fails, its port says nothing from now on"));
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(SerialServe, EndedByASignalStillTellsThatTheDeviceFailed) {
    const auto server = serve("--rfc2217");
    RawClient client(server->port());
    breakDevice();
    ASSERT_TRUE(client.send({'x', 255, 250, 44, 2, 7, 255, 240}));
    EXPECT_EQ(client.receive(7), (Bytes{255, 250, 44, 102, 8, 255, 240}));
    EXPECT_EQ(server->end().exitCode, 1);
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(SerialServe, DropsWhatAClientSentThatIsLongGone) {
    const auto server = serve("--rfc2217", {"--baud", "300"});
    // Every setting waits a second for the line.
    Bytes sent;
    for (int round = 0; round < 20; ++round)
        sent = support::joined({sent,
                                Bytes(26, 'x'),
                                {255, 250, 44, 2, 7, 255, 240},
                                Bytes(26, 'x'),
                                {255, 250, 44, 2, 8, 255, 240}});
    EXPECT_TRUE(RawClient(server->port()).send(sent));
    RawClient next(server->port());
    ASSERT_TRUE(next.send({255, 250, 44, 5, 0, 255, 240}));
    EXPECT_EQ(next.receive(7), (Bytes{255, 250, 44, 105, 1, 255, 240})) << "not 40 seconds later";
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0) << end.errors;
}

/// A program's end of a terminal.
class Opened {
public:
    explicit Opened(const std::string& path)
        : terminal_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_TRUE(terminal_.isOpen()) << path;
        ::fcntl(terminal_.number(), F_SETFL, O_NONBLOCK);
    }

    void type(std::string_view text) {
        EXPECT_EQ(::write(terminal_.number(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    /// What has come, once it ends so.
    std::string readTo(std::string_view end) {
        std::string text;
        EXPECT_TRUE(support::soon([&] {
            std::array<char, 4096> part{};
            const auto got = ::read(terminal_.number(), part.data(), part.size());
            text.append(part.data(), static_cast<std::size_t>(got > 0 ? got : 0));
            return text.ends_with(end);
        })) << text;
        return text;
    }
    void setRate(speed_t rate) {
        termios settings{};
        EXPECT_EQ(::tcgetattr(terminal_.number(), &settings), 0);
        ::cfsetspeed(&settings, rate);
        EXPECT_EQ(::tcsetattr(terminal_.number(), TCSANOW, &settings), 0);
    }

private:
    TAVO::cli::Descriptor terminal_;
};

TEST_F(SerialPty, IsATerminalThatFollowsTheRate) {
    bootBoard();
    const auto server = serveTerminal({"--baud", "9600"});
    EXPECT_EQ(settings()->baud, 9600);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(server->path()).permissions(), perms::owner_read | perms::owner_write);
    {
        Opened program(server->path());
        program.type("version\r");
        EXPECT_EQ(program.readTo("target> "), version);
        program.setRate(B57600);
        EXPECT_TRUE(support::soon([&] { return settings() && settings()->baud == 57600; }));
        program.setRate(B4000000);
        program.type("version\r");
        EXPECT_EQ(program.readTo("target> "), version);
        EXPECT_EQ(settings()->baud, 57600);
    }
    Opened next(server->path());
    next.type("echo \xFF\x11\x13\x03\r");
    EXPECT_EQ(next.readTo("target> "), "echo \xFF\r\n\xFF\r\ntarget> ");
    const auto end = server->end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.errors, HasSubstr("the program asks for 4000000 baud, the port stays at 57600 baud"));
    EXPECT_FALSE(settings());
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(SerialPty, KeepsTheNewestThatTheBoardSaysToNobody) {
    const auto server = serveTerminal();
    bootBoard();
    ASSERT_TRUE(support::soon([&] { return callsOf("com", "recv").size() > 3; }));
    // More than the port keeps, and less than the door does.
    std::string expected;
    for (int part = 0; part < 4; ++part) {
        const std::string word(200, static_cast<char>('a' + part));
        const auto line = "echo " + word;
        withPort([&](auto& port) {
            for (int time = 0; time < 30; ++time)
                for (const auto byte : line + "\r")
                    port.console().type(static_cast<std::uint8_t>(byte));
        });
        for (int time = 0; time < 30; ++time)
            expected += line + "\r\n" + word + "\r\ntarget> ";
        const auto seen = callsOf("com", "recv").size();
        ASSERT_TRUE(support::soon([&] { return callsOf("com", "recv").size() > seen + 1; }));
    }
    Opened program(server->path());
    const auto text = program.readTo(expected);
    EXPECT_THAT(text, HasSubstr("Target firmware 1.0"));
    expectAllGivenBack(server->end());
}

TEST_F(SerialPty, EndsAfterTheFirstProgramOrWithTheDevice) {
    const auto once = serveTerminal({"--once"});
    {
        Opened program(once->path());
        program.type("x");
        ASSERT_TRUE(support::soon([&] { return !callsOf("com", "send").empty(); }));
    }
    expectAllGivenBack(once->wait());

    const auto broken = serveTerminal();
    {
        Opened program(broken->path());
        program.type("x");
        breakDevice();
    }
    const auto end = broken->wait();
    EXPECT_EQ(end.exitCode, 1);
    EXPECT_THAT(end.errors, HasSubstr("the device fails"));
}

TEST_F(SerialPty, MakesItsLinkAndNeverTakesAnothersPlace) {
    const auto link = (folder / "board").string();
    {
        const auto server = serveTerminal({"--link", link});
        EXPECT_EQ(std::filesystem::read_symlink(link), server->path());
        const auto second = tool({"serial", "serve", "--pty", "--link", link});
        EXPECT_EQ(second.exitCode, 2) << "the terminal of another server";
        EXPECT_THAT(second.errors, HasSubstr(link));
        EXPECT_EQ(std::filesystem::read_symlink(link), server->path());
        expectAllGivenBack(server->end());
        EXPECT_FALSE(std::filesystem::is_symlink(link));
    }
    // A server that was killed leaves its link.
    std::filesystem::create_symlink("/dev/pts/999999", link);
    {
        const auto server = serveTerminal({"--link", link});
        EXPECT_EQ(std::filesystem::read_symlink(link), server->path());
        std::filesystem::remove(link);
        fileWith("board", "precious");
        expectAllGivenBack(server->end());
    }
    for (const auto* other : {"", "nowhere", "/dev/null"}) {
        if (*other != '\0') {
            std::filesystem::remove(link);
            std::filesystem::create_symlink(other, link);
        }
        const auto refused = tool({"serial", "serve", "--pty", "--link", link});
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_THAT(refused.errors, HasSubstr(link));
        EXPECT_TRUE(*other == '\0' ? std::filesystem::is_regular_file(link)
                                   : std::filesystem::read_symlink(link) == other);
    }
    EXPECT_TRUE(callsOf("com", "send").empty());
}

} // namespace
} // namespace tool_test
