#include <bench/bench.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include <bench/delayed_line.h>
#include <tests/support/process.h>

namespace bench {

namespace {

using Words = std::vector<std::string>;

/// 2000 scans that read and compare the IDCODEs of the simulator's chain.
class SvfFile {
public:
    SvfFile()
        : path_(std::filesystem::temp_directory_path() /
                ("tavo_bench_" + std::to_string(::getpid()) + ".svf")) {
        std::ofstream file(path_);
        file << "STATE RESET;\nSTATE IDLE;\n";
        for (int scan = 0; scan < 2000; ++scan)
            file << "SDR 96 TDI (0) TDO (0C0DE1D517B1E0C32A45D0C3);\nRUNTEST 1 TCK;\n";
        if (!file.flush())
            throw std::runtime_error("cannot write " + path_.string());
    }
    SvfFile(const SvfFile&) = delete;
    SvfFile& operator=(const SvfFile&) = delete;
    ~SvfFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

std::uint16_t portOf(support::Process& process) {
    const auto line = process.firstLine();
    return static_cast<std::uint16_t>(std::stoi(line.substr(line.rfind(':') + 1)));
}

void insistOnSuccess(const support::ProcessSetup& setup) {
    const auto outcome = support::runProcess(setup);
    if (outcome.exitCode != 0)
        throw std::runtime_error(setup.program + " failed: " + outcome.errors);
}

/// tavo-sim at the end of a line that takes some time.
class DistantChain {
public:
    explicit DistantChain(std::chrono::microseconds roundTrip)
        : simulator_({TAVO_SIM_PROGRAM, {"--port", "0"}})
        , line_(portOf(simulator_), roundTrip) {
        insistOnSuccess(tool({"relay", "set", "power", "on"}));
    }

    support::ProcessSetup tool(const Words& arguments) const {
        Words all{"--host", "127.0.0.1", "--port", std::to_string(line_.port()), "--user", "engineer"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return {TAVO_PROGRAM, all, "", {{"TAVO_PASSWORD", "tavo"}}};
    }

    double player(const std::string& file, const std::string& stopAt) const {
        const auto setup = tool({"jtag", "svf", "--object", "cpu0.jtag", "--stop-at", stopAt, file});
        return Clock::wall().timed([&] { insistOnSuccess(setup); });
    }

    double openOcd(const std::string& file) const {
        support::Process bridge(tool({"jtag", "serve", "--bitbang", "0", "--object", "cpu0.jtag"}));
        const Words commands{"adapter driver remote_bitbang",
                             "remote_bitbang host 127.0.0.1",
                             "remote_bitbang port " + std::to_string(portOf(bridge)),
                             "reset_config none",
                             "jtag newtap board cpu -irlen 8",
                             "jtag newtap board chipset -irlen 5",
                             "jtag newtap board cpld -irlen 10",
                             "init",
                             "svf -quiet " + file,
                             "shutdown"};
        support::ProcessSetup setup{"/usr/bin/openocd", {}};
        for (const auto& command : commands)
            setup.arguments.insert(setup.arguments.end(), {"-c", command});
        const auto seconds = Clock::wall().timed([&] { insistOnSuccess(setup); });
        bridge.signal(SIGTERM);
        bridge.wait();
        return seconds;
    }

private:
    support::Process simulator_;
    DelayedLine line_;
};

} // namespace

void measureSvf(Run& run) {
    const SvfFile file;
    for (const int milliseconds : {0, 5}) {
        const DistantChain chain{std::chrono::milliseconds(milliseconds)};
        for (const std::string stopAt : {"check", "batch", "end"}) {
            const auto compared = interleavedTimes(
                run.rounds(3), [&] { return chain.openOcd(file.path()); },
                [&] { return chain.player(file.path(), stopAt); });
            const bool hasTarget = stopAt == "batch" && milliseconds > 0;
            run.report.addRatio("SVF, 2000 checked scans, --stop-at " + stopAt + ", " +
                                    std::to_string(milliseconds) + " ms, to OpenOCD",
                                compared, hasTarget ? std::optional(1 / 20.0) : std::nullopt);
        }
    }
}

} // namespace bench
