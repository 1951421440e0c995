#include <bench/bench.h>

#include <benchmark/benchmark.h>

namespace bench {

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

Comparison compareUpload(Run& run, Bench& bench, std::size_t size, std::size_t rounds, std::size_t pieces) {
    const Bytes data(size, 0xA5);
    RawCall raw(bench.appliance, "store", support::block(data));
    const auto method = bench.gauge.getStoreMethod(data);
    return interleaved(
        run.rounds(rounds), pieces, [&] { raw(bench.raw); }, [&] { bench.device->call(method); });
}

Comparison compareDownload(Run& run, Bench& bench, std::size_t size, std::size_t rounds, std::size_t pieces) {
    RawCall raw(bench.appliance, "fetch", support::u32(static_cast<std::uint32_t>(size)));
    return interleaved(
        run.rounds(rounds), pieces, [&] { raw(bench.raw); },
        [&] {
            const auto method = bench.gauge.getFetchMethod(static_cast<std::int32_t>(size));
            bench.device->call(method);
            benchmark::DoNotOptimize(method->value());
        });
}

void measureOn(Run& run, int processor, const std::string& setting, std::optional<double> target) {
    Bench bench(processor);
    constexpr auto size = 16 * mebibyte;
    run.report.addRatio("upload of 16 MiB" + setting, compareUpload(run, bench, size, 30, 1), target);
    run.report.addRatio("download of 16 MiB, value taken" + setting, compareDownload(run, bench, size, 30, 1),
                        target);
}

} // namespace

void measureBlobs(Run& run) {
    measureOn(run, run.processors.front(), "", 1.3);
    if (run.processors.size() > 1)
        measureOn(run, run.processors[1], ", server on another processor", {});
}

} // namespace bench
