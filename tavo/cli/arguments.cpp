#include <tavo/cli/arguments.h>

#include <cctype>
#include <map>
#include <sstream>
#include <string>

#include <fmt/format.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/number_check.h>
#include <tavo/client/version_number.h>

namespace TAVO::cli {

namespace {

std::string versionText() {
    return fmt::format("tavo {}.{}.{}", ClientLibraryMajorVersion, ClientLibraryMinorVersion,
                       ClientLibraryBugfixVersion);
}

/// For a unit alone would stand for one of it.
std::string refuseWithoutNumber(const std::string& text) {
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text.front())) != 0
               ? ""
               : fmt::format("'{}' does not begin with a number", text);
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
    auto* via =
        tool.add_option("--via", connection.via,
                        "Reach the device through a command of the shell, %h being the host and %p the\n"
                        "port, such as 'ssh gateway -W %h:%p'")
            ->type_name("COMMAND")
            ->needs(host)
            ->group(group);
    tool.add_flag("--secure", connection.secure, "Insist on a known server key")->group(group);
    tool.add_option("--timeout", connection.timeout,
                    "How long the device may take to be opened, and to answer each exchange, such as 500ms,\n"
                    "10s or 2m; as long as it takes unless given")
        ->type_name("DURATION")
        ->transform(CLI::AsNumberWithUnit(
            std::map<std::string, double>{{"ms", 0.001}, {"s", 1}, {"m", 60}, {"h", 3600}},
            CLI::AsNumberWithUnit::CASE_SENSITIVE))
        ->transform(CLI::Validator(refuseWithoutNumber, ""))
        ->check(numberFrom(0.001, 1e6))
        ->group(group);
    auto* simulated =
        tool.add_flag("--sim", connection.simulated, "Use a simulated device inside the tool instead")
            ->excludes(host)
            ->excludes(port)
            ->excludes(via)
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

} // namespace

Program parseArguments(int argc, const char* const* argv) {
    Program program;
    CLI::App tool("Drives a networked hardware-debug appliance", "tavo");
    describe(tool, program);
    try {
        tool.parse(argc, argv);
    } catch (const CLI::Success& help) {
        std::ostringstream text;
        tool.exit(help, text, text);
        program.help = text.str();
        return program;
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitCode::usage, fmt::format("{} (--help tells more)", error.what()));
    }
    if (program.connection.host.empty() && !program.connection.simulated)
        throw Failure(ExitCode::usage, "--host or --sim is needed (--help tells more)");
    return program;
}

} // namespace TAVO::cli
