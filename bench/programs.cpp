#include <bench/bench.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>
#include <stdexcept>

#include <tests/support/process.h>

namespace bench {

namespace {

/// `tavo` on a `tavo-sim`, from its start to its end.
class Tool {
public:
    Tool()
        : simulator_({TAVO_SIM_PROGRAM, {"--port", "0"}}) {
        const auto line = simulator_.firstLine();
        port_ = line.substr(line.rfind(':') + 1);
    }

    double seconds(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--host", "127.0.0.1", "--port", port_, "--user", "engineer"});
        return Clock::wall().timed([&] {
            const auto outcome =
                support::runProcess({TAVO_PROGRAM, arguments, "", {{"TAVO_PASSWORD", "tavo"}}});
            if (outcome.exitCode != 0)
                throw std::runtime_error("the tool failed: " + outcome.errors);
        });
    }

    /// Ends the simulator. Returns the requests that it has answered.
    double requests() {
        simulator_.signal(SIGTERM);
        const auto told = simulator_.wait().errors;
        std::smatch match;
        if (!std::regex_search(told, match, std::regex("stopped after ([0-9]+) requests")))
            throw std::runtime_error("tavo-sim does not tell its requests: " + told);
        return std::stod(match[1]);
    }

private:
    support::Process simulator_;
    std::string port_;
};

void measureTool(Run& run) {
    const std::string work = "tavo relay get power, start to end";
    const std::vector<std::string> command{"relay", "get", "power"};
    Tool once;
    once.seconds(command);
    run.report.addCount(work, "exchanges", once.requests(), 12);
    const Tool tool;
    const auto compared = interleavedTimes(
        run.rounds(60), [&] { return tool.seconds({"--version"}); }, [&] { return tool.seconds(command); });
    run.report.add({work,
                    "ms",
                    Measured{compared.library.value * 1e3, compared.library.noise * 1e3},
                    {},
                    compared.raw,
                    compared.library.value,
                    "raw is tavo --version"});
}

} // namespace

void measurePrograms(Run& run) {
    measureTool(run);
    const auto bytes = std::filesystem::file_size(TAVO_SMALLEST_PROGRAM);
    run.report.addFigure("size of a program that opens a device", "kB", static_cast<double>(bytes) / 1000,
                         "stripped, with the static library; see bench/smallest");
}

} // namespace bench
