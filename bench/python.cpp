#include <bench/bench.h>

#include <benchmark/benchmark.h>

#include <bench/python_worker.h>

namespace bench {

namespace {

constexpr std::size_t batchSize = 1000;
constexpr std::size_t blockSize = std::size_t{16} * 1024 * 1024;

/// Library and package take turns on the same server, each with the processor time of itself and the server.
class Turns {
public:
    Turns(Run& run, Bench& bench)
        : run_(run)
        , worker_(TAVO_PYTHON_PROGRAMS "/library.py", bench.server.port())
        , library_(run.sharedProcessor(bench.server))
        , python_(run.wallTime ? Clock::wall()
                               : Clock::processors(worker_.process(), bench.server.process())) {}

    template <class Work>
    Comparison compare(std::size_t rounds, std::size_t pieces, const std::string& name, Work work) {
        const auto each = static_cast<double>(pieces);
        return interleavedTimes(
            run_.rounds(rounds),
            [&] {
                return library_.timed([&] {
                    for (std::size_t i = 0; i < pieces; ++i)
                        work();
                }) / each;
            },
            [&] { return python_.timed([&] { worker_.work(name, pieces); }) / each; });
    }

private:
    Run& run_;
    PythonWorker worker_;
    Clock library_;
    Clock python_;
};

void addRatio(Run& run, const std::string& work, const Comparison& times, std::optional<double> target) {
    run.report.add({"Python, " + work, "x library", times.ratio, target, times.raw, times.library.value,
                    "raw is the library in C++"});
}

void addEachCall(Run& run, const std::string& work, const Comparison& times, std::optional<double> target) {
    constexpr auto each = 1e6 / batchSize;
    run.report.add({"Python, batch of 1000, " + work + ", each call", "us",
                    Measured{times.library.value * each, times.library.noise * each}, target,
                    times.raw / batchSize, times.library.value / batchSize, "raw is the library in C++"});
}

} // namespace

void measurePython(Run& run) {
    Bench bench(run.processors.front());
    Turns turns(run, bench);
    const auto data = exchangeData();

    const auto single = turns.compare(400, 200, "single", [&] {
        const auto method = bench.gauge.getExchangeMethod(exchangeNumber, data);
        bench.device->call(method);
        benchmark::DoNotOptimize(method->value());
    });
    addRatio(run, "single call, value included", single, 1.8);

    const auto built = [&] {
        const auto queue = exchangeQueue(bench.gauge, batchSize);
        bench.device->multicall(queue);
        return queue;
    };
    addEachCall(run, "built and executed", turns.compare(100, 1, "batch", built), 5);
    const auto taken = turns.compare(100, 1, "values", [&] {
        const auto queue = built();
        for (const auto& method : queue->getMethods())
            benchmark::DoNotOptimize(static_cast<const TAVO::BoundMethod<ExchangeReply>&>(*method).value());
    });
    addEachCall(run, "built, executed and read", taken, {});

    const auto download = turns.compare(60, 1, "download", [&] {
        const auto method = bench.gauge.getFetchMethod(blockSize);
        bench.device->call(method);
        benchmark::DoNotOptimize(method->take());
    });
    addRatio(run, "download of 16 MiB", download, 1.3);
}

} // namespace bench
