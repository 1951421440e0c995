#include <bench/bench.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include <bench/delayed_line.h>
#include <tavo/client.h>
#include <tests/support/process.h>

namespace bench {

namespace {

using CommonModules::Relay_v1_0;

std::uint16_t portIn(const std::string& line) {
    return static_cast<std::uint16_t>(std::stoi(line.substr(line.rfind(':') + 1)));
}

/// tavo-sim, a line to it that takes some time, and `tavo share` at the end of the line.
class SharedDevice {
public:
    explicit SharedDevice(std::chrono::microseconds roundTrip)
        : simulator_({TAVO_SIM_PROGRAM, {"--port", "0"}})
        , line_(portIn(simulator_.firstLine()), roundTrip)
        , share_(
              {TAVO_PROGRAM,
               {"--host", "127.0.0.1", "--port", std::to_string(line_.port()), "--user", "engineer", "share"},
               "",
               {{"TAVO_PASSWORD", "tavo"}, {"XDG_RUNTIME_DIR", ""}}})
        , port_(portIn(share_.firstLine())) {}
    ~SharedDevice() {
        share_.signal(SIGTERM);
        share_.wait();
    }

    std::shared_ptr<TAVO::Device> openDirect() const { return open(line_.port()); }
    std::shared_ptr<TAVO::Device> openShared() const { return open(port_); }

private:
    static std::shared_ptr<TAVO::Device> open(int port) {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "engineer", "tavo", false,
                                                {.byLevels = true, .keepHeldLock = true, .only = {"power"}});
    }

    support::Process simulator_;
    DelayedLine line_;
    support::Process share_;
    int port_;
};

/// A client that calls the device again and again.
class Caller {
public:
    explicit Caller(std::shared_ptr<TAVO::Device> device)
        : device_(std::move(device))
        , call_(device_->get<Relay_v1_0>("power")->getGetMethod()) {}

    void call() { device_->call(call_); }

private:
    std::shared_ptr<TAVO::Device> device_;
    std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> call_;
};

/// Seconds a call of all clients together, who call for that long. Adds up what each got.
double secondsPerCall(std::vector<std::unique_ptr<Caller>>& callers, std::vector<std::uint64_t>& served,
                      std::chrono::milliseconds time) {
    std::atomic<bool> ends = false;
    std::atomic<std::uint64_t> total = 0;
    std::vector<std::thread> threads;
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < callers.size(); ++i)
        threads.emplace_back([&, i] {
            while (!ends) {
                callers[i]->call();
                ++served[i];
                ++total;
            }
        });
    std::this_thread::sleep_for(time);
    ends = true;
    for (auto& thread : threads)
        thread.join();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    return taken.count() / static_cast<double>(total);
}

void measureClients(Run& run, const SharedDevice& shared, std::size_t clients, const std::string& where,
                    std::optional<double> target) {
    constexpr std::chrono::milliseconds time(100);
    std::vector<std::unique_ptr<Caller>> direct;
    direct.push_back(std::make_unique<Caller>(shared.openDirect()));
    std::vector<std::unique_ptr<Caller>> callers;
    for (std::size_t i = 0; i < clients; ++i)
        callers.push_back(std::make_unique<Caller>(shared.openShared()));
    std::vector<std::uint64_t> alone(1);
    std::vector<std::uint64_t> served(clients);
    const auto compared = interleavedTimes(
        run.rounds(20), [&] { return secondsPerCall(direct, alone, time); },
        [&] { return secondsPerCall(callers, served, time); });
    const auto work =
        "share, " + std::to_string(clients) + (clients == 1 ? " client, " : " clients, ") + where;
    run.report.addRatio(work, compared, target);
    if (clients == 1)
        return;
    const auto mean = static_cast<double>(std::accumulate(served.begin(), served.end(), std::uint64_t{0})) /
                      static_cast<double>(clients);
    const auto least = static_cast<double>(*std::min_element(served.begin(), served.end()));
    run.report.add({work + ", mean to least served", "x", Measured{mean / least, 0}, 2, {}, {}, ""});
}

} // namespace

void measureShare(Run& run) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    {
        const SharedDevice near(std::chrono::microseconds(0));
        for (const std::size_t clients : {1, 16, 64})
            measureClients(run, near, clients, "loopback", 1 / 0.4);
    }
    const SharedDevice far(std::chrono::microseconds(1000));
    measureClients(run, far, 1, "1 ms", 1 / 0.95);
    measureClients(run, far, 16, "1 ms", std::nullopt);
    measureClients(run, far, 64, "1 ms", 1 / 0.95);
}

} // namespace bench
