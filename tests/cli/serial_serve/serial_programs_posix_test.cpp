#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/serial_serve/serial_fixture.h>
#include <tests/cli/share/share_fixture.h>

namespace tool_test {
namespace {

using testing::HasSubstr;
using SerialPrograms = SerialServeTest;

constexpr auto python = "/usr/bin/python3";

constexpr auto pyserialScript = R"script(
import sys
import serial

port = serial.serial_for_url(sys.argv[1], timeout=20)
print("lines", port.cts, port.dsr, port.cd, port.ri)
port.write(b"version\r")
print(port.read_until(b"target> "))
port.baudrate = 9600
port.bytesize = serial.SEVENBITS
port.parity = serial.PARITY_EVEN
port.stopbits = serial.STOPBITS_TWO
port.rtscts = True
port.write(b"echo \xff\x01\xff\r")
print(port.read_until(b"target> "))
port.send_break()
port.write(b"help\r")
port.reset_input_buffer()
port.write(b"x")
print(port.read(1))
try:
    port.dtr = False
    print("DTR is off")
except ValueError:
    print("DTR stays")
try:
    port.baudrate = 12345
    print("12345 baud")
except ValueError:
    print("no 12345 baud")
port.close()
)script";

TEST_F(SerialPrograms, PyserialOpensSetsReadsAndWrites) {
    bootBoard();
    const auto server = serve("--rfc2217");
    const auto run =
        support::runProcess({.program = python,
                             .arguments = {"-W", "ignore", "-c", pyserialScript,
                                           "rfc2217://127.0.0.1:" + std::to_string(server->port())},
                             .input = "\n"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "lines True True True False\n"
                          "b'version\\r\\nTarget firmware 1.0\\r\\ntarget> '\n"
                          "b'echo \\xff\\xff\\r\\n\\xff\\xff\\r\\ntarget> '\n"
                          "b'x'\n"
                          "DTR stays\n"
                          "no 12345 baud\n");
    bool wasSet = false;
    for (const auto& call : callsOf("com", "open"))
        wasSet = wasSet || call.parameters.toString() ==
                               "value1=9600 value2=7 flag1=true flag2=true value3=2 flag3=true flag4=false "
                               "flag5=false flag6=false";
    EXPECT_TRUE(wasSet);
    expectAllGivenBack(server->end());
}

TEST_F(SerialPrograms, SocatTalksByTcpAndByTerminal) {
    bootBoard();
    const auto server = serve("--tcp", {"--once"});
    const auto byTcp = support::runProcess(
        {.program = "/usr/bin/socat",
         .arguments = {"-t", "20", "-", "TCP:127.0.0.1:" + std::to_string(server->port())},
         .input = "version\r"});
    EXPECT_EQ(byTcp.exitCode, 0) << byTcp.errors;
    EXPECT_EQ(byTcp.output, "version\r\nTarget firmware 1.0\r\ntarget> ");
    expectAllGivenBack(server->wait());

    const auto link = (folder / "board").string();
    const auto terminal = serveTerminal({"--link", link});
    const auto byTerminal = support::runProcess({.program = "/usr/bin/socat",
                                                 .arguments = {"-t", "3", "-", link + ",raw,echo=0"},
                                                 .input = "version\r"});
    EXPECT_EQ(byTerminal.exitCode, 0) << byTerminal.errors;
    EXPECT_EQ(byTerminal.output, "version\r\nTarget firmware 1.0\r\ntarget> ");
    expectAllGivenBack(terminal->end());
}

TEST_F(SerialPrograms, PicocomPassesCharacters) {
    bootBoard();
    const auto server = serveTerminal();
    support::PseudoTerminal screen;
    support::Process picocom({.program = "/usr/bin/picocom",
                              .arguments = {"--nolock", "-b", "9600", server->path()},
                              .outputFile = screen.name(),
                              .terminal = screen.name()});
    screen.waitFor("Terminal ready");
    screen.type("version\r");
    screen.waitFor("version\r\nTarget firmware 1.0\r\ntarget> ");
    EXPECT_EQ(settings()->baud, 9600);
    screen.type("\x01\x18"); // Ctrl-A, Ctrl-X
    EXPECT_EQ(picocom.wait().exitCode, 0);
    expectAllGivenBack(server->end());
}

TEST_F(SerialPrograms, LabgridExpectsOnTheConsoleAndCyclesThePower) {
    const auto shared = [this](support::ProcessSetup setup) {
        setup.environment["XDG_RUNTIME_DIR"] = folder.string();
        return setup;
    };
    ShareProcess share(shared(setupOf({"share"})));
    CableProcess server(shared(setupOf({"serial", "serve", "--rfc2217", "0"})));
    std::filesystem::create_directories(folder / "bin");
    std::filesystem::create_symlink(TAVO_PROGRAM, folder / "bin" / "tavo");
    const std::string example = TAVO_SOURCE_DIR "/examples/labgrid";
    const auto run =
        support::runProcess(shared({.program = python,
                                    .arguments = {"-m", "pytest", "-q", "-p", "no:cacheprovider", "--lg-env",
                                                  example + "/board.yaml", example},
                                    .environment = {{"PATH", (folder / "bin").string() + ":/usr/bin:/bin"},
                                                    {"PYTHONDONTWRITEBYTECODE", "1"},
                                                    {"TAVO_HOST", "127.0.0.1"},
                                                    {"TAVO_PORT", std::to_string(simulator.port())},
                                                    {"TAVO_USER", "engineer"},
                                                    {"TAVO_PASSWORD", "tavo"},
                                                    {"LG_CONSOLE_HOST", "127.0.0.1"},
                                                    {"LG_CONSOLE_PORT", std::to_string(server.port())}}}));
    EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("2 passed"));
    EXPECT_EQ(callsOf("power", "set").size(), 3u);
    const auto end = server.end();
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    share.end();
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
} // namespace tool_test
