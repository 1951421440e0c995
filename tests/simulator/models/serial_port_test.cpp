#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/models/serial_port.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/models/hand_clock.h>

namespace {

using namespace TAVO::simulator;
using testing::HasSubstr;

struct SerialPortTest : testing::Test, tests::HandClock {
    std::shared_ptr<SerialConsole> console = std::make_shared<SerialConsole>(board);
    SerialPort port{console};

    std::int32_t send(const std::string& text) {
        return port.send(std::vector<std::uint8_t>(text.begin(), text.end()));
    }
    std::string receive(std::int32_t count = 65536) {
        std::vector<std::uint8_t> data;
        EXPECT_EQ(port.receive(count, data), return_code::done);
        return {data.begin(), data.end()};
    }
    void openAtPrompt() {
        ASSERT_EQ(port.open({}), return_code::done);
        board->setPower(true);
        advance(Board::bootDuration);
        ASSERT_THAT(receive(), testing::EndsWith(SerialConsole::prompt));
    }
};

TEST_F(SerialPortTest, AcceptsStandardSettingsOnly) {
    using Settings = SerialPort::Settings;
    EXPECT_EQ(port.open(Settings{.baud = 300}), return_code::done);
    EXPECT_EQ(port.open(Settings{.dataBits = 5, .stopBits = 2}), return_code::done);
    EXPECT_EQ(port.open(Settings{.baud = 115201}), return_code::badArgument);
    EXPECT_EQ(port.open(Settings{.dataBits = 4}), return_code::badArgument);
    EXPECT_EQ(port.open(Settings{.dataBits = 9}), return_code::badArgument);
    EXPECT_EQ(port.open(Settings{.stopBits = 0}), return_code::badArgument);
    EXPECT_EQ(port.open(Settings{.stopBits = 3}), return_code::badArgument);
    EXPECT_EQ(port.settings(), (Settings{.dataBits = 5, .stopBits = 2}));
}

TEST_F(SerialPortTest, DoesNothingWhileClosed) {
    std::vector<std::uint8_t> data;
    EXPECT_EQ(send("x"), return_code::notReady);
    EXPECT_EQ(port.receive(1, data), return_code::notReady);
    EXPECT_EQ(port.close(), return_code::notReady);
    ASSERT_EQ(port.open({}), return_code::done);
    EXPECT_EQ(port.close(), return_code::done);
    EXPECT_EQ(send("x"), return_code::notReady);
}

TEST_F(SerialPortTest, LoopbackGivesEveryByteBackWithoutTheBoard) {
    ASSERT_EQ(port.open({.loopback = true}), return_code::done);
    const std::string sent("\0\0\xFFz", 4);
    EXPECT_EQ(send(sent), return_code::done);
    EXPECT_EQ(receive(2), std::string(2, '\0'));
    EXPECT_EQ(receive(), "\xFFz");
    EXPECT_EQ(receive(), "");
}

TEST_F(SerialPortTest, LoopbackKeepsTheLatestBytesOfTooMany) {
    ASSERT_EQ(port.open({.loopback = true}), return_code::done);
    send("first" + std::string(SerialPort::bufferSize, 'x'));
    EXPECT_EQ(receive(), std::string(SerialPort::bufferSize, 'x'));
}

TEST_F(SerialPortTest, RefusesCountsOutOfRange) {
    ASSERT_EQ(port.open({}), return_code::done);
    std::vector<std::uint8_t> data;
    EXPECT_EQ(port.receive(-1, data), return_code::badArgument);
    EXPECT_EQ(port.receive(65537, data), return_code::badArgument);
}

TEST_F(SerialPortTest, BoardWithoutPowerIsSilent) {
    ASSERT_EQ(port.open({}), return_code::done);
    EXPECT_EQ(send("help\r"), return_code::done);
    EXPECT_EQ(receive(), "");
}

TEST_F(SerialPortTest, BootMessagesComeWhileTheBoardBootsAndThePromptEndsThem) {
    ASSERT_EQ(port.open({}), return_code::done);
    board->setPower(true);
    advance(700'000);
    const auto early = receive();
    EXPECT_THAT(early, HasSubstr("Target firmware"));
    EXPECT_THAT(early, testing::Not(HasSubstr("Memory")));
    send("lost\r");
    advance(Board::bootDuration);
    const auto late = receive();
    EXPECT_THAT(late, HasSubstr("Memory: 2048 MB"));
    EXPECT_THAT(late, testing::EndsWith("\r\ntarget> "));
    EXPECT_THAT(late, testing::Not(HasSubstr("lost")));
}

TEST_F(SerialPortTest, OpeningDropsWhatCameBefore) {
    board->setPower(true);
    advance(Board::bootDuration);
    ASSERT_EQ(port.open({}), return_code::done);
    EXPECT_EQ(receive(), "");
    send("\r");
    EXPECT_EQ(receive(), "\r\ntarget> ");
}

TEST_F(SerialPortTest, ConsoleEchoesAndAnswers) {
    openAtPrompt();
    send("echo a  b\r");
    EXPECT_EQ(receive(), "echo a  b\r\na  b\r\ntarget> ");
    send("temp\n");
    EXPECT_EQ(receive(), "temp\r\n36.5 C\r\ntarget> ");
    send("version\r\n");
    EXPECT_EQ(receive(), "version\r\nTarget firmware 1.0\r\ntarget> ");
    send("echo\r");
    EXPECT_EQ(receive(), "echo\r\n\r\ntarget> ");
    send("nonsense x\r");
    EXPECT_THAT(receive(), HasSubstr("Unknown command: nonsense"));
    send("help\r");
    EXPECT_THAT(receive(), HasSubstr("reboot"));
    send("status\r");
    EXPECT_THAT(receive(), testing::AllOf(HasSubstr("power on for 3.0 s"), HasSubstr("power-ons 1, boots 1"),
                                          HasSubstr("settings kept")));
}

TEST_F(SerialPortTest, ConsoleIgnoresTheZeroBytesBetweenData) {
    openAtPrompt();
    send(std::string("\0\0\0\0\0temp\r", 10));
    EXPECT_EQ(receive(), "temp\r\n36.5 C\r\ntarget> ");
}

TEST_F(SerialPortTest, ConsoleEditsItsLineByBackspace) {
    openAtPrompt();
    send("\btex\x7Fmq\bp\r");
    EXPECT_EQ(receive(), "tex\b \bmq\b \bp\r\n36.5 C\r\ntarget> ");
}

TEST_F(SerialPortTest, ConsoleRefusesMoreThanFitsALine) {
    openAtPrompt();
    send(std::string(SerialConsole::longestLine, 'x') + "y");
    EXPECT_EQ(receive(), std::string(SerialConsole::longestLine, 'x') + "\a");
}

TEST_F(SerialPortTest, RebootCommandBootsAgain) {
    openAtPrompt();
    send("reboot\r");
    EXPECT_EQ(receive(), "reboot\r\n");
    EXPECT_EQ(board->bootCount(), 2u);
    advance(Board::bootDuration);
    EXPECT_THAT(receive(), testing::AllOf(HasSubstr("Target firmware"), testing::EndsWith("target> ")));
}

TEST_F(SerialPortTest, SwitchingOffTakesTheOutputAlong) {
    openAtPrompt();
    send("half a li");
    board->setPower(false);
    EXPECT_EQ(receive(), "");
    board->setPower(true);
    advance(Board::bootDuration);
    receive();
    send("\r");
    EXPECT_EQ(receive(), "\r\ntarget> ");
}

TEST_F(SerialPortTest, KeepsTheLatestOutputOfAConsoleThatNobodyReads) {
    openAtPrompt();
    for (int i = 0; i < 200; ++i)
        send("echo " + std::string(100, 'x') + "\r");
    const auto output = receive();
    EXPECT_EQ(output.size(), SerialConsole::longestBacklog);
    EXPECT_THAT(output, testing::EndsWith("target> "));
}

TEST_F(SerialPortTest, TakesAMebibyteAtATimeAtMost) {
    openAtPrompt();
    EXPECT_EQ(send(std::string(SerialPort::largestSend, 'x')), return_code::done);
    EXPECT_EQ(receive().size(), SerialConsole::longestBacklog);
    EXPECT_EQ(send(std::string(SerialPort::largestSend + 1, 'x')), return_code::badArgument);
    EXPECT_EQ(receive().size(), 0u);
}

} // namespace
