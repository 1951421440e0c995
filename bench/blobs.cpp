#include <bench/bench.h>

#include <algorithm>

#include <benchmark/benchmark.h>

namespace bench {

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

Comparison compareUpload(Run& run, Bench& bench, const Clock& clock, std::size_t size, std::size_t rounds,
                         std::size_t pieces) {
    const Bytes data(size, 0xA5);
    RawCall raw(bench.appliance, "store", support::block(data));
    const auto method = bench.gauge.getStoreMethod(data);
    return interleaved(
        clock, run.rounds(rounds), pieces, [&] { raw(bench.raw); }, [&] { bench.device->call(method); });
}

enum class Ending { takes, looks, copies };

Comparison compareDownload(Run& run, Bench& bench, const Clock& clock, std::size_t size, std::size_t rounds,
                           std::size_t pieces, Ending ending = Ending::takes) {
    RawCall raw(bench.appliance, "fetch", support::u32(static_cast<std::uint32_t>(size)));
    return interleaved(
        clock, run.rounds(rounds), pieces, [&] { raw(bench.raw); },
        [&] {
            const auto method = bench.gauge.getFetchMethod(static_cast<std::int32_t>(size));
            bench.device->call(method);
            if (ending == Ending::takes)
                benchmark::DoNotOptimize(method->take());
            else if (ending == Ending::looks)
                benchmark::DoNotOptimize(method->reply().data.back());
            else
                benchmark::DoNotOptimize(method->value());
        });
}

/// The most that these may take, as multiples of the raw client.
struct Targets {
    std::optional<double> upload, taken, inPlace;
};

void measureLarge(Run& run, Bench& bench, const Clock& clock, const std::string& setting,
                  const Targets& targets) {
    constexpr auto size = 16 * mebibyte;
    run.report.addRatio("upload of 16 MiB" + setting, compareUpload(run, bench, clock, size, 150, 1),
                        targets.upload);
    run.report.addRatio("download of 16 MiB, value taken" + setting,
                        compareDownload(run, bench, clock, size, 150, 1), targets.taken);
    run.report.addRatio("download of 16 MiB, looked at in place" + setting,
                        compareDownload(run, bench, clock, size, 150, 1, Ending::looks), targets.inPlace);
    run.report.addRatio("download of 16 MiB, value copied" + setting,
                        compareDownload(run, bench, clock, size, 30, 1, Ending::copies), {});
}

void plotSizes(Run& run) {
    Bench bench(run.processors.front());
    const auto clock = run.sharedProcessor(bench.server);
    std::vector<std::vector<double>> points;
    for (std::size_t size = 1024; size <= 16 * mebibyte; size *= 4) {
        const auto pieces = std::clamp<std::size_t>(mebibyte / size, 1, 20);
        const auto up = compareUpload(run, bench, clock, size, 20, pieces);
        const auto down = compareDownload(run, bench, clock, size, 20, pieces);
        const auto bytes = static_cast<double>(size);
        points.push_back({bytes, bytes / up.raw / 1e6, bytes / up.library.value / 1e6, bytes / down.raw / 1e6,
                          bytes / down.library.value / 1e6});
    }
    run.writePlot("blobs", points);
}

} // namespace

void measureBlobs(Run& run) {
    if (!run.plotFolder.empty())
        plotSizes(run);
    Bench bench(run.processors.front());
    measureLarge(run, bench, run.sharedProcessor(bench.server), "", {1.03, 1.05, 1.06});
    if (run.processors.size() > 1) {
        Bench other(run.processors[1]);
        measureLarge(run, other, Clock::wall(), ", server on another processor", {});
    }
}

} // namespace bench
