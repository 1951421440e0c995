#include <bench/bench.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <sched.h>

namespace bench {

namespace {

constexpr double longestAllowed = 20e-3;

std::vector<std::size_t> requestSizes() {
    std::vector<std::size_t> sizes;
    for (std::size_t size = 1; size <= 1024 * 1024; size *= 2)
        sizes.push_back(size);
    // Around the ends of the first three chunks, where a request gets one more piece.
    constexpr auto besideData = requestHeadSize + callHeadSize + 4;
    for (const std::size_t chunks : {1u, 2u, 3u})
        for (const std::size_t size : {chunks * TAVOX::OutputStream::chunkCapacity - besideData})
            sizes.insert(sizes.end(), {size - 1, size, size + 1, size + 100});
    return sizes;
}

/// Measures the slowest exchange of all sizes. The raw client's slowest shows the share of the machine.
void measureSlowest(Run& run, const std::string& work, Bench& bench) {
    const auto clock = Clock::wall();
    Measured slowest;
    double slowestRaw = 0;
    for (const auto size : requestSizes()) {
        RawCall raw(bench.appliance, "store", support::block(Bytes(size, 0xA5)));
        const auto method = bench.gauge.getStoreMethod(Bytes(size, 0xA5));
        for (std::size_t i = 0; i < run.rounds(20); ++i) {
            slowestRaw = std::max(slowestRaw, clock.timed([&] { raw(bench.raw); }));
            slowest.value = std::max(slowest.value, clock.timed([&] { bench.device->call(method); }));
        }
    }
    slowest.value *= 1e3;
    slowest.noise = slowestRaw * 1e3;
    run.report.add({work, "ms", slowest, longestAllowed * 1e3, slowestRaw, slowest.value / 1e3, ""});
}

void command(const std::string& text) {
    if (std::system((text + " 2>/dev/null").c_str()) != 0)
        throw std::runtime_error("'" + text + "' failed");
}

/// While it exists, new sockets of this thread belong to a separate network.
class OwnNetwork {
public:
    OwnNetwork()
        : before_(checked(::open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC), "network namespace")) {
        checked(::unshare(CLONE_NEWNET), "a network namespace of its own");
    }
    OwnNetwork(const OwnNetwork&) = delete;
    OwnNetwork& operator=(const OwnNetwork&) = delete;
    ~OwnNetwork() { ::setns(before_.number(), CLONE_NEWNET); }

private:
    Descriptor before_;
};

constexpr const char* clientAddress = "192.0.2.1";
constexpr const char* serverAddress = "192.0.2.2";

/// In the server's process: makes a separate network and a cable from it to the client's.
void joinNetworks(pid_t client) {
    checked(::unshare(CLONE_NEWNET), "a network namespace of its own");
    command("ip link add cable1 mtu 1500 type veth peer name cable0 mtu 1500 netns " +
            std::to_string(client));
    command(std::string("ip addr add ") + serverAddress + "/24 dev cable1");
    command("ip link set cable1 up");
}

void measureAcrossNetworks(Run& run, const std::string& work) {
    const OwnNetwork network;
    const auto client = ::getpid();
    Bench bench(
        run.processors.front(), serverAddress, [client] { joinNetworks(client); },
        [] {
            command(std::string("ip addr add ") + clientAddress + "/24 dev cable0");
            command("ip link set cable0 up");
        });
    measureSlowest(run, work, bench);
}

} // namespace

void measureRequestSizes(Run& run) {
    {
        Bench bench(run.processors.front());
        measureSlowest(run, "slowest request of 1 B to 1 MiB, loopback", bench);
    }
    const std::string work = "slowest request of 1 B to 1 MiB, veth, MTU 1500";
    try {
        measureAcrossNetworks(run, work);
    } catch (const std::exception& failure) {
        run.report.addNotMeasured(work, failure.what());
    }
}

} // namespace bench
