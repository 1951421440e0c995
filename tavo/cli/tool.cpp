#include <tavo/cli/tool.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <sstream>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/interrupt.h>
#include <tavo/client/version_number.h>

namespace TAVO::cli {

namespace {

std::string versionText() {
    return fmt::format("tavo {}.{}.{}", ClientLibraryMajorVersion, ClientLibraryMinorVersion,
                       ClientLibraryBugfixVersion);
}

void addConnectionOptions(CLI::App& tool, ConnectionOptions& connection) {
    const auto group = "Connection";
    auto* host = tool.add_option("--host", connection.host, "The device's name or address")->group(group);
    auto* port = tool.add_option("--port", connection.port, "Its port, 6123 unless given, 6124 with --secure")
                     ->check(CLI::Range(1, 65535))
                     ->group(group);
    tool.add_option("--user", connection.user, "In whose name the lock is taken")->group(group);
    tool.add_option("--password-file", connection.passwordFile, "File whose first line is the password")
        ->group(group);
    tool.add_flag("--secure", connection.secure, "Insist on a known server key")->group(group);
    auto* simulated =
        tool.add_flag("--sim", connection.simulated, "Use a simulated device inside the tool instead")
            ->excludes(host)
            ->excludes(port)
            ->group(group);
    tool.add_option("--topology", connection.topology, "Which simulated device")
        ->needs(simulated)
        ->capture_default_str()
        ->group(group);
}

void describe(CLI::App& tool, Program& program) {
    tool.fallthrough();
    tool.require_subcommand(1);
    tool.set_version_flag("--version", versionText());
    tool.add_flag("--json", program.json, "Data and failures as JSON");
    addConnectionOptions(tool, program.connection);
    tool.footer(
        "The password is the first line of --password-file, else the value of TAVO_PASSWORD, else it is\n"
        "asked for at the terminal. Options may stand before or after the command.\n\n" +
        exitCodesText());
    addInfo(tool, program);
    addTree(tool, program);
    addCall(tool, program);
    addBatch(tool, program);
    addRelay(tool, program);
    addTime(tool, program);
    addFirmware(tool, program);
    addHeader(tool, program);
    addJtag(tool, program);
    addHdt(tool, program);
    addGpu(tool, program);
    addI2c(tool, program);
    addPost(tool, program);
    addRom(tool, program);
    addSerial(tool, program);
    addLcd(tool, program);
}

/// Sets the program's action, or writes the help that was asked for and leaves it empty.
void parse(CLI::App& tool, const Program& program, int argc, char** argv, Output& output) {
    try {
        tool.parse(argc, argv);
    } catch (const CLI::Success& help) {
        std::ostringstream text;
        tool.exit(help, text, text);
        output.write(text.str());
        return;
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitCode::usage, fmt::format("{} (--help tells more)", error.what()));
    }
    if (program.connection.host.empty() && !program.connection.simulated)
        throw Failure(ExitCode::usage, "--host or --sim is needed (--help tells more)");
}

bool wantsJson(int argc, char** argv) {
    // Also where the arguments are too wrong to be parsed, their failure is told as JSON.
    return std::any_of(argv, argv + argc, [](std::string_view word) { return word == "--json"; });
}

void execute(int argc, char** argv, Output& output) {
    Program program;
    CLI::App tool("Drives a networked hardware-debug appliance", "tavo");
    describe(tool, program);
    parse(tool, program, argc, argv, output);
    if (program.action) {
        Session session(program.connection);
        program.action(session, output);
    }
}

/// The exit status of an action, whose failure is told.
template <class Action>
ExitCode attempt(Output& output, Action action) {
    try {
        action();
        return ExitCode::done;
    } catch (const Interrupted&) {
        throw;
    } catch (const std::exception& exception) {
        const auto report = describeFailure(exception);
        output.tell(report);
        return report.code;
    }
}

} // namespace

int runTool(int argc, char** argv) {
    holdStandardStreams();
    std::setlocale(LC_CTYPE, "");
    std::signal(SIGPIPE, SIG_IGN);
    Output output(wantsJson(argc, argv));
    try {
        const auto outcome = attempt(output, [&] { execute(argc, argv, output); });
        const auto written = outcome == ExitCode::done ? attempt(output, [&] { output.finish(); }) : outcome;
        return static_cast<int>(written);
    } catch (const Interrupted& interrupted) {
        dieOf(interrupted);
        return static_cast<int>(ExitCode::protocol);
    }
}

} // namespace TAVO::cli
