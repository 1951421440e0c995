#include <bench/bench.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include <tests/support/process.h>

namespace bench {

namespace {

constexpr std::size_t manyCalls = 100'000;
constexpr std::size_t largeBlock = std::size_t{64} * 1024 * 1024;

/// What the system calls VmHWM: only of this process, unlike the figures of wait4, which hold the starter's
/// too.
long peakKibibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (long value = 0; word == "VmHWM:" && status >> value)
            return value;
    throw std::runtime_error("the system does not tell the peak of the memory");
}

void runBatch(TAVO::Device& device) {
    const auto& gauge = firstGauge(device);
    const auto data = exchangeData();
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    std::vector<std::shared_ptr<TAVO::BoundMethod<ExchangeReply>>> methods;
    for (std::size_t i = 0; i < manyCalls; ++i) {
        methods.push_back(gauge.getExchangeMethod(exchangeNumber, data));
        queue->add(methods.back());
    }
    device.multicall(queue);
    for (const auto& method : methods)
        benchmark::DoNotOptimize(method->take());
}

void download(TAVO::Device& device) {
    const auto method = firstGauge(device).getFetchMethod(static_cast<std::int32_t>(largeBlock));
    device.call(method);
    benchmark::DoNotOptimize(method->take());
}

void upload(TAVO::Device& device) { device.call(firstGauge(device).getStoreMethod(Bytes(largeBlock, 0xA5))); }

double peakMebibytes(const Bench& bench, const std::string& work) {
    const auto outcome = support::runProcess(
        {"/proc/self/exe", {"--alone", work, "--port", std::to_string(bench.server.port())}});
    if (outcome.exitCode != 0)
        throw std::runtime_error("--alone " + work + " failed: " + outcome.errors);
    return std::stod(outcome.output) / 1024;
}

} // namespace

const std::vector<std::string>& worksAlone() {
    static const std::vector<std::string> works{"open", "batch", "download", "upload"};
    return works;
}

void workAlone(const std::string& work, int port) {
    const auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "engineer", "tavo", false);
    if (work == "batch")
        runBatch(*device);
    else if (work == "download")
        download(*device);
    else if (work == "upload")
        upload(*device);
    std::printf("%ld\n", peakKibibytes());
}

void measureMemory(Run& run) {
    const Bench bench(run.processors.front());
    const auto add = [&](const std::string& what, const char* work, std::optional<double> target) {
        run.report.add({"peak memory of a process that " + what,
                        "MiB",
                        Measured{peakMebibytes(bench, work), 0},
                        target,
                        {},
                        {},
                        ""});
    };
    add("opens a device", "open", {});
    add("runs a batch of 100000", "batch", 25);
    add("downloads 64 MiB", "download", {});
    add("uploads 64 MiB", "upload", 70);
}

} // namespace bench
