#include <bench/bench.h>

#include <span>

#include <benchmark/benchmark.h>

#include <bench/measured_pieces.h>
#include <bench/prepared_transport.h>
#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/wire/socket_transport.h>

namespace bench {

namespace {

constexpr std::size_t batchSize = 1000;

using Batch = std::vector<std::shared_ptr<TAVO::Method>>;

/// Counts the system calls in one exchange of the batch, on a separate connection.
void countSystemCalls(Run& run, const Bench& bench, const std::string& work, const Batch& batch,
                      double expectedReceives) {
    constexpr std::uint64_t exchanges = 200;
    TAVO::SocketTransport transport(bench.server.address(), std::to_string(bench.server.port()));
    TAVO::CallExchange exchange(transport);
    for (std::uint64_t i = 0; i < exchanges; ++i)
        exchange.run(Appliance::lockId, batch);
    const auto each = [](std::uint64_t count) { return static_cast<double>(count) / exchanges; };
    const auto& counters = transport.counters();
    run.report.addCount(work, "polls", each(counters.polls), 1);
    run.report.addCount(work, "sends", each(counters.sends), 1);
    run.report.addCount(work, "receives", each(counters.receives), expectedReceives);
}

Comparison compareSingleCall(Run& run, Bench& bench, const Clock& clock) {
    RawCall raw(bench.appliance, "exchange", exchangeParameters());
    const auto method = bench.gauge.getExchangeMethod(exchangeNumber, exchangeData());
    return interleaved(
        clock, run.rounds(2000), 20, [&] { raw(bench.raw); }, [&] { bench.device->call(method); });
}

Comparison compareBatch(Run& run, Bench& bench, const Clock& clock) {
    RawCall raw(bench.appliance, "exchange", exchangeParameters(), batchSize);
    const auto queue = exchangeQueue(bench.gauge, batchSize);
    return interleaved(
        clock, run.rounds(600), 2, [&] { raw(bench.raw); }, [&] { bench.device->multicall(queue); });
}

} // namespace

void measureSingleCall(Run& run) {
    Bench bench(run.processors.front());
    const auto clock = run.sharedProcessor(bench.server);
    const auto queue = exchangeQueue(bench.gauge, 1);
    RawCall raw(bench.appliance, "exchange", exchangeParameters());
    insistOnSameBytes(bench.appliance, raw, *queue);
    run.report.addRatio("single call", compareSingleCall(run, bench, clock), 1.08);

    const auto data = exchangeData();
    const auto whole = interleaved(
        clock, run.rounds(1000), 20, [&] { raw(bench.raw); },
        [&] {
            const auto method = bench.gauge.getExchangeMethod(exchangeNumber, data);
            bench.device->call(method);
            benchmark::DoNotOptimize(method->value());
        });
    run.report.addRatio("single call, building and value included", whole, {});
    countSystemCalls(run, bench, "single call", batchOf(*queue), 1);

    if (run.processors.size() > 1) {
        Bench other(run.processors[1]);
        run.report.addRatio("single call, server on another processor",
                            compareSingleCall(run, other, Clock::wall()), {});
    }
}

void measureBatch(Run& run) {
    Bench bench(run.processors.front());
    const auto clock = run.sharedProcessor(bench.server);
    const auto queue = exchangeQueue(bench.gauge, batchSize);
    RawCall raw(bench.appliance, "exchange", exchangeParameters(), batchSize);
    insistOnSameBytes(bench.appliance, raw, *queue);

    const auto comparison = compareBatch(run, bench, clock);
    const auto each =
        Measured{comparison.library.value * 1e9 / batchSize, comparison.library.noise * 1e9 / batchSize};
    run.report.add({"batch of 1000, each call", "ns", each, 120, comparison.raw / batchSize,
                    comparison.library.value / batchSize, ""});
    run.report.addRatio("batch of 1000", comparison, 4);
    const auto receives = (raw.reply.size() + 65535) / 65536;
    countSystemCalls(run, bench, "batch of 1000", batchOf(*queue), static_cast<double>(receives));

    if (run.processors.size() > 1) {
        Bench other(run.processors[1]);
        run.report.addRatio("batch of 1000, server on another processor",
                            compareBatch(run, other, Clock::wall()), {});
    }
}

namespace {

/// Everything that an application does for a batch: build it, execute it, take its results, free it.
template <class Build, class Execute>
void runWholeCycle(std::size_t count, Build build, Execute execute) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    std::vector<std::shared_ptr<TAVO::BoundMethod<ExchangeReply>>> methods;
    methods.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        methods.push_back(build());
        queue->add(methods.back());
    }
    execute(queue);
    for (const auto& method : methods)
        benchmark::DoNotOptimize(method->take());
}

} // namespace

void measureCycle(Run& run) {
    Bench bench(run.processors.front());
    const auto clock = run.sharedProcessor(bench.server);
    const auto data = exchangeData();
    const auto shortNamed = [&] { return bench.gauge.getExchangeMethod(exchangeNumber, data); };
    const auto longNamed = [&] { return bench.gauge.getLongNamedExchangeMethod(exchangeNumber, data); };
    const auto execute = [&bench](const auto& queue) { bench.device->multicall(queue); };
    const struct {
        std::size_t count;
        std::size_t rounds;
        double target;
    } cases[] = {{10, 2000, 3}, {1000, 300, 3}, {100000, 40, 6}};
    for (const auto& [count, rounds, target] : cases) {
        RawCall raw(bench.appliance, "exchange", exchangeParameters(), count);
        const auto pieces = count < 100 ? 20U : 1U;
        const auto comparison = interleaved(
            clock, run.rounds(rounds), pieces, [&] { raw(bench.raw); },
            [&] { runWholeCycle(count, shortNamed, execute); });
        const auto work = "batch of " + std::to_string(count) + ", built, executed, taken and freed";
        run.report.addRatio(work, comparison, target);
        if (count == 100000) {
            const auto each = 1e9 / static_cast<double>(count);
            run.report.add({work + ", each call",
                            "ns",
                            Measured{comparison.library.value * each, comparison.library.noise * each},
                            200,
                            {},
                            {},
                            ""});
        }
    }
    const auto named = interleaved(
        clock, run.rounds(600), 1, [&] { runWholeCycle(batchSize, shortNamed, execute); },
        [&] { runWholeCycle(batchSize, longNamed, execute); });
    run.report.add({"batch of 1000, names of 24 letters instead of 8", "x short", named.ratio, 1.03,
                    named.raw, named.library.value, "raw is the short names"});
}

void measureBuilding(Run& run) {
    Bench bench(run.processors.front());
    const auto clock = run.wallTime ? Clock::wall() : Clock::ownProcessor();
    const auto data = exchangeData();
    const auto built = measurePiece("build", run.rounds(60), [&](benchmark::State& state) {
        for (auto _ : state) {
            TAVO::MulticallQueue queue;
            const auto seconds = clock.timed([&] {
                for (std::size_t i = 0; i < batchSize; ++i)
                    queue.add(bench.gauge.getExchangeMethod(exchangeNumber, data));
            });
            state.SetIterationTime(seconds);
        }
    });
    run.report.add({"building 1000 Methods, each",
                    "ns",
                    Measured{built.value * 1e9 / batchSize, built.noise * 1e9 / batchSize},
                    250,
                    {},
                    {},
                    ""});
}

void drive(const std::string& work, std::size_t iterations) {
    Bench bench(allowedProcessors().front());
    if (work == "build") {
        for (std::size_t i = 0; i < iterations; ++i)
            exchangeQueue(bench.gauge, batchSize);
        return;
    }
    const std::size_t count = work == "single" ? 1 : batchSize;
    const RawCall raw(bench.appliance, "exchange", exchangeParameters(), count);
    PreparedTransport transport(bench.appliance.replyTo(raw.request), raw.request.size());
    TAVO::CallExchange exchange(transport);
    if (work == "cycle") {
        const auto data = exchangeData();
        for (std::size_t i = 0; i < iterations; ++i)
            runWholeCycle(
                count, [&] { return bench.gauge.getExchangeMethod(exchangeNumber, data); },
                [&exchange](const auto& queue) { exchange.run(Appliance::lockId, queue->getMethods()); });
        return;
    }
    const auto batch = batchOf(*exchangeQueue(bench.gauge, count));
    for (std::size_t i = 0; i < iterations; ++i)
        exchange.run(Appliance::lockId, batch);
}

} // namespace bench
