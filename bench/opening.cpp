#include <bench/bench.h>

#include <memory>
#include <optional>

#include <bench/distant_transport.h>

namespace bench {

namespace {

/// Times openings of one device, without the closing.
class Opening {
public:
    Opening(Bench& bench, const Clock& clock)
        : bench_(bench)
        , clock_(clock)
        , requests_(bench.appliance.openingRequests("engineer", "tavo")) {
        for (const auto& request : requests_)
            replies_.emplace_back(bench.appliance.replyTo(request).size());
    }

    std::size_t exchanges() const { return requests_.size(); }

    double raw() {
        std::optional<RawClient> client;
        return clock_.timed([&] {
            client.emplace(bench_.connectRaw());
            for (std::size_t i = 0; i < requests_.size(); ++i)
                client->exchange(requests_[i], replies_[i]);
        });
    }

    double library() {
        std::shared_ptr<TAVO::Device> device;
        return clock_.timed([&] { device = bench_.openDevice(); });
    }

private:
    Bench& bench_;
    Clock clock_;
    std::vector<Bytes> requests_;
    std::vector<Bytes> replies_;
};

constexpr std::size_t smallTree = 200;
constexpr std::size_t largeTree = 1600;

/// Openings in the fixed order and level by level, which ask for the same.
void compareLevels(Run& run, const Bench& bench, const Clock& clock) {
    const TAVO::OpenOptions byLevels{.byLevels = true};
    const auto before = bench.server.exchanges();
    const auto device = bench.openDevice(byLevels);
    run.report.addCount("opening 200 objects by levels", "exchanges",
                        static_cast<double>(bench.server.exchanges() - before), 8);
    const auto timeOf = [](const Clock& by, const auto& open) {
        std::shared_ptr<TAVO::Device> opened;
        return by.timed([&] { opened = open(); });
    };
    const auto near = interleavedTimes(
        run.rounds(30), [&] { return timeOf(clock, [&] { return bench.openDevice(); }); },
        [&] { return timeOf(clock, [&] { return bench.openDevice(byLevels); }); });
    run.report.add({"opening 200 objects by levels", "x fixed order", near.ratio, 0.25, near.raw,
                    near.library.value, ""});
    const auto openDistant = [&](const TAVO::OpenOptions& options) {
        return TAVO::DeviceFactory::buildDevice(
            std::make_unique<DistantTransport>(bench.server.address(), bench.server.port()), "engineer",
            "tavo", false, options);
    };
    const auto distant = interleavedTimes(
        run.rounds(4), [&] { return timeOf(Clock::wall(), [&] { return openDistant({}); }); },
        [&] { return timeOf(Clock::wall(), [&] { return openDistant(byLevels); }); });
    run.report.add({"opening 200 objects by levels, 1 ms a round trip", "ms",
                    Measured{distant.library.value * 1e3, distant.library.noise * 1e3}, 26, distant.raw,
                    distant.library.value, "raw is the fixed order"});
}

} // namespace

void measureOpening(Run& run) {
    Bench bench(run.processors.front(), smallTree);
    compareLevels(run, bench, run.sharedProcessor(bench.server));
    Opening opening(bench, run.sharedProcessor(bench.server));

    const auto before = bench.server.exchanges();
    const auto another = bench.openDevice();
    run.report.addCount("opening 200 objects", "exchanges",
                        static_cast<double>(bench.server.exchanges() - before),
                        static_cast<double>(opening.exchanges()));
    run.report.addRatio("opening 200 objects",
                        interleavedTimes(
                            run.rounds(60), [&] { return opening.raw(); }, [&] { return opening.library(); }),
                        1.15);

    Bench largeBench(run.processors.front(), largeTree);
    Opening large(largeBench, run.sharedProcessor(largeBench.server));
    const auto growth = interleavedTimes(
        run.rounds(10), [&] { return opening.library() / smallTree; },
        [&] { return large.library() / largeTree; });
    run.report.addGrowth("opening, each object of 1600 to each of 200", growth);
}

} // namespace bench
