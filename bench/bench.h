#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <bench/appliance.h>
#include <bench/gauge.h>
#include <bench/report.h>
#include <bench/server_process.h>
#include <bench/sockets.h>

namespace bench {

/// One run of the measurements.
struct Run {
    Report report;
    /// Multiplies the number of rounds.
    double effort = 1;
    /// Folder for the points of the plots; empty for none.
    std::string plotFolder;
    /// The processor of this process, and another one if available.
    std::vector<int> processors;
    /// Measure wall time even where processor time is possible.
    bool wallTime = false;

    std::size_t rounds(std::size_t usual) const;
    /// For work that both processes share on one processor.
    Clock sharedProcessor(const ServerProcess& server) const {
        return wallTime ? Clock::wall() : Clock::processor(server.process());
    }
    void writePlot(const std::string& name, const std::vector<std::vector<double>>& rows) const;
};

/// A server, a device opened on it and a raw client.
struct Bench {
    explicit Bench(int processor, std::size_t gauges = Appliance::groupSize);
    /// In another network: `prepareServer` runs in the server's process before it listens, `prepareClient` in
    /// this one before connecting.
    Bench(int processor, const std::string& address, const std::function<void()>& prepareServer,
          const std::function<void()>& prepareClient);

    std::shared_ptr<TAVO::Device> openDevice(const TAVO::OpenOptions& options = {}) const;
    RawClient connectRaw() const { return {server.address(), server.port()}; }

private:
    std::shared_ptr<TAVO::Device> openAfter(const std::function<void()>& prepare) const;

public:
    Appliance appliance;
    ServerProcess server;
    std::shared_ptr<TAVO::Device> device;
    RawClient raw;
    const Gauge& gauge;
};

const Gauge& firstGauge(const TAVO::Device& device);

/// The call in most rows: an int32 and 16 bytes each way.
inline constexpr std::int32_t exchangeNumber = 7;
Bytes exchangeData();
Bytes exchangeParameters();

std::vector<std::shared_ptr<TAVO::Method>> batchOf(TAVO::MulticallQueue& queue);

/// The raw side of a call: the request, and a buffer for the reply.
struct RawCall {
    RawCall(Appliance& appliance, const char* method, const Bytes& parameters, std::size_t count = 1);
    void operator()(RawClient& client) { client.exchange(request, reply); }

    Bytes request;
    Bytes reply;
};

std::shared_ptr<TAVO::MulticallQueue> exchangeQueue(const Gauge& gauge, std::size_t count);

/// Ends the run unless the library sends exactly the same bytes as the raw side.
void insistOnSameBytes(Appliance& appliance, const RawCall& raw, const TAVO::MulticallQueue& queue);

void measureSingleCall(Run& run);
void measureBatch(Run& run);
void measureCycle(Run& run);
void measureBuilding(Run& run);
void measureBlobs(Run& run);
void measureOpening(Run& run);
void measureRequestSizes(Run& run);
void measureAllocations(Run& run);
void measureGrowth(Run& run);
void measurePrograms(Run& run);
void measureMemory(Run& run);
void measureShare(Run& run);
/// Beside OpenOCD's player.
void measureSvf(Run& run);
/// The Python package beside the library in C++.
void measurePython(Run& run);

/// The pieces of work whose memory is measured, each in a process of its own.
const std::vector<std::string>& worksAlone();
/// Does the work on the server at this port and prints the most memory that the process held, in KiB.
void workAlone(const std::string& work, int port);

/// Repeats one piece of work without a network, for profilers.
void drive(const std::string& work, std::size_t iterations);

} // namespace bench
