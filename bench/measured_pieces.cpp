#include <bench/measured_pieces.h>

#include <vector>

namespace bench {

namespace {

/// Collects the repetitions instead of printing them.
class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const auto& run : runs)
            if (run.run_type == Run::RT_Iteration)
                seconds.push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
    }
    std::vector<double> seconds;
};

} // namespace

Measured measurePiece(const std::string& name, std::size_t repetitions,
                      const std::function<void(benchmark::State&)>& piece) {
    benchmark::ClearRegisteredBenchmarks();
    benchmark::RegisterBenchmark(name.c_str(), piece)
        ->UseManualTime()
        ->MinTime(0.01)
        ->Repetitions(static_cast<int>(repetitions));
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    return summarised(collector.seconds);
}

} // namespace bench
