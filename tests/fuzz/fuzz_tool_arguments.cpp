#include <string>
#include <vector>

#include <tavo/cli/arguments.h>
#include <tavo/cli/failure.h>
#include <tests/fuzz/fuzz_input.h>

// The tool's arguments, parsed and not carried out. Input: the arguments with a zero byte between them.

namespace {

using fuzz::require;
using TAVO::cli::ExitCode;

std::vector<std::string> argumentsIn(fuzz::View input) {
    std::vector<std::string> arguments{"tavo", ""};
    for (const auto byte : input) {
        if (byte == 0)
            arguments.emplace_back();
        else
            arguments.back() += static_cast<char>(byte);
    }
    return arguments;
}

void checkProgram(const TAVO::cli::Program& program) {
    const int asked =
        (program.action ? 1 : 0) + (program.localAction ? 1 : 0) + (program.help.empty() ? 0 : 1);
    require(asked == 1, "arguments ask for an action or for help");
    if (!program.action)
        return;
    const auto& connection = program.connection;
    require(!connection.simulated || connection.host.empty(), "there is at most one device to work on");
    require(!connection.port || *connection.port > 0, "a port is one that can be connected to");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    const auto arguments = argumentsIn({bytes, length});
    std::vector<const char*> pointers;
    for (const auto& argument : arguments)
        pointers.push_back(argument.c_str());
    try {
        checkProgram(TAVO::cli::parseArguments(static_cast<int>(pointers.size()), pointers.data()));
    } catch (const TAVO::cli::Failure& failure) {
        require(failure.code == ExitCode::usage && failure.what()[0] != '\0',
                "wrong arguments are told in words");
    }
    return 0;
}
