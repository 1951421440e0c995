#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <bench/bench.h>

namespace {

using Measurement = std::pair<std::string, std::function<void(bench::Run&)>>;

const std::vector<Measurement> measurements{
    {"single", bench::measureSingleCall},
    {"batch", bench::measureBatch},
    {"cycle", bench::measureCycle},
    {"build", bench::measureBuilding},
    {"blobs", bench::measureBlobs},
    {"opening", bench::measureOpening},
    {"sizes", bench::measureRequestSizes},
    {"allocations", bench::measureAllocations},
    {"growth", bench::measureGrowth},
    {"programs", bench::measurePrograms},
    {"memory", bench::measureMemory},
    {"share", bench::measureShare},
    {"svf", bench::measureSvf},
    {"python", bench::measurePython},
};

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& measurement : measurements)
        all.push_back(measurement.first);
    return all;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App program("Measures what the library adds to the network, as ratios to a raw client");
    std::vector<std::string> only;
    std::string json, markdown, driven;
    std::size_t iterations = 1000;
    bench::Run run;
    program.add_option("--only", only, "Measure only these")->delimiter(',')->check(CLI::IsMember(names()));
    program.add_option("--effort", run.effort, "Multiplies the number of rounds")->check(CLI::PositiveNumber);
    program.add_flag("--wall", run.wallTime, "Measure wall time instead of processor time");
    program.add_option("--json", json, "Write the results to this file");
    program.add_option("--markdown", markdown, "Write the table to this file");
    program.add_option("--plots", run.plotFolder, "Write the points of the plots to this folder");
    program
        .add_option("--drive", driven, "Measure nothing; repeat this work without a network, for profilers")
        ->check(CLI::IsMember({"single", "batch", "build", "cycle"}));
    std::string alone;
    int port = 0;
    auto* aloneOption = program
                            .add_option("--alone", alone,
                                        "Measure nothing; do this work on the server at --port, and print "
                                        "the most memory that it took, in KiB")
                            ->check(CLI::IsMember(bench::worksAlone()));
    aloneOption->needs(program.add_option("--port", port, "The server of --alone"));
    program.add_option("--iterations", iterations, "How often to repeat the driven work");
    CLI11_PARSE(program, argc, argv);

    try {
        bench::registerGauge();
        if (!alone.empty()) {
            bench::workAlone(alone, port);
            return 0;
        }
        if (!driven.empty()) {
            bench::drive(driven, iterations);
            return 0;
        }
        run.processors = bench::allowedProcessors();
        bench::pinTo(run.processors.front());
        fmt::print("{:<56} {:>16} {:>8} {:>9}\n", "work", "measured", "noise", "at most");
        for (const auto& [name, measure] : measurements)
            if (only.empty() || std::find(only.begin(), only.end(), name) != only.end())
                measure(run);
        if (!json.empty())
            std::ofstream(json) << run.report.toJson().dump(2) << '\n';
        if (!markdown.empty())
            std::ofstream(markdown) << run.report.toMarkdown();
        return run.report.missed() ? 1 : 0;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "{}: {}\n", argv[0], failure.what());
        return 2;
    }
}
