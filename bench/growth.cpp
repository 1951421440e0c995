#include <bench/bench.h>

#include <algorithm>

namespace bench {

namespace {

/// Seconds per call in exchanges of a batch, with about the same number of calls in every measurement.
class BatchTime {
public:
    BatchTime(Run& run, Bench& bench, std::size_t size)
        : bench_(bench)
        , clock_(run.sharedProcessor(bench.server))
        , size_(size)
        , raw_(bench.appliance, "exchange", exchangeParameters(), size)
        , queue_(exchangeQueue(bench.gauge, size)) {}

    double library() {
        return each([&] { bench_.device->multicall(queue_); });
    }
    double raw() {
        return each([&] { raw_(bench_.raw); });
    }

private:
    template <class Exchange>
    double each(Exchange exchange) const {
        const auto exchanges = std::max<std::size_t>(1, 2000 / size_);
        return clock_.timed([&] {
            for (std::size_t i = 0; i < exchanges; ++i)
                exchange();
        }) / static_cast<double>(exchanges * size_);
    }

    Bench& bench_;
    Clock clock_;
    std::size_t size_;
    RawCall raw_;
    std::shared_ptr<TAVO::MulticallQueue> queue_;
};

void plotBatches(Run& run, Bench& bench) {
    std::vector<std::vector<double>> points;
    for (std::size_t size = 1; size <= 100'000; size *= 10)
        for (const std::size_t factor : {1u, 3u}) {
            if (size * factor > 100'000)
                continue;
            BatchTime batch(run, bench, size * factor);
            const auto times = interleavedTimes(
                run.rounds(size < 10'000 ? 60 : 10), [&] { return batch.raw(); },
                [&] { return batch.library(); });
            points.push_back(
                {static_cast<double>(size * factor), times.raw * 1e9, times.library.value * 1e9});
        }
    run.writePlot("batches", points);
}

void measureManyDevices(Run& run, Bench& bench) {
    constexpr std::size_t count = 256;
    RawCall raw(bench.appliance, "exchange", exchangeParameters());
    std::vector<RawClient> clients;
    std::vector<std::shared_ptr<TAVO::Device>> devices;
    std::vector<std::shared_ptr<TAVO::Method>> methods;
    for (std::size_t i = 0; i < count; ++i) {
        clients.push_back(bench.connectRaw());
        devices.push_back(bench.openDevice());
        methods.push_back(firstGauge(*devices.back()).getExchangeMethod(exchangeNumber, exchangeData()));
    }
    std::size_t rawTurn = 0, libraryTurn = 0;
    const auto inTurn = interleaved(
        run.sharedProcessor(bench.server), run.rounds(4000), 32, [&] { raw(clients[rawTurn++ % count]); },
        [&] {
            const auto turn = libraryTurn++ % count;
            devices[turn]->call(methods[turn]);
        });
    run.report.addRatio("single call, on 256 open devices in turn", inTurn, 1.08);
}

} // namespace

void measureGrowth(Run& run) {
    Bench bench(run.processors.front());
    BatchTime small(run, bench, 100);
    BatchTime large(run, bench, 100'000);
    const auto growth = interleavedTimes(
        run.rounds(30), [&] { return small.library(); }, [&] { return large.library(); });
    run.report.addGrowth("each call of a batch of 100,000 to each of 100", growth);
    if (!run.plotFolder.empty())
        plotBatches(run, bench);
    measureManyDevices(run, bench);
}

} // namespace bench
