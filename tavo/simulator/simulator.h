#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/transcode/value.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/fault_script.h>

namespace TAVO::simulator {

/// Settings of a Simulator.
struct Options {
    /// Address to listen on.
    std::string host = "127.0.0.1";
    /// 0 lets the system choose a free port.
    std::uint16_t port = 0;
    /// A name from topologies(), or the path of a file that ends in ".json".
    std::string topology = "standard";
    /// Who may take the lock and log in: user names and passwords.
    std::map<std::string, std::string> accounts = {{"engineer", "tavo"}, {"guest", "tavo"}};
    /// Index of the known server key that "getKey" returns, 0 to 3; -1 for an unknown key.
    int serverKey = 0;
    /// The longest real delay of an answer when a client asks the appliance to sleep. Any excess passes at
    /// once, on the simulated clock only.
    std::chrono::microseconds longestDelay = std::chrono::seconds(10);
    /// Maximum number of open connections, at least 1. For one more the longest idle connection is closed,
    /// but never that of a client that holds the lock; if all do, the new one is closed.
    std::size_t mostConnections = 512;
    /// Maximum size of the requests being received and answers being sent, over all connections. Beyond it
    /// connections are closed, the longest idle first; that of a client that holds the lock is not closed for
    /// others.
    std::size_t mostHeldBytes = std::size_t{512} << 20;
    /// Once the results of a request have reached this size, the request ends with a device error before its
    /// next call.
    std::size_t mostAnswerBytes = std::size_t{64} << 20;
    /// Maximum memory for calls(); 0 keeps no calls.
    std::size_t mostLogBytes = std::size_t{64} << 20;
};

/// One call that reached the appliance.
struct TAVO_SIMULATOR_API CallRecord {
    /// Counted from 1 over the simulator's lifetime; the calls of a batch share it.
    std::uint64_t request = 0;
    /// Counted from 1 over the simulator's lifetime.
    std::uint64_t connection = 0;
    /// 0 if the client had none.
    std::uint32_t lockId = 0;
    std::uint32_t instanceId = 0;
    /// Full name of the object; empty for an unknown instance id.
    std::string object;
    /// Empty for an unknown method id.
    std::string method;
    /// The parameters by name. An empty record if there are none, or if they are malformed, over 8 MiB or too
    /// large for the log.
    Value parameters;
    /// The return code of the call; return_code::failure if it ended with a device error.
    std::int32_t returnCode = 0;
    /// The device error that ended the call, 0 for none.
    std::uint32_t error = 0;

    bool operator==(const CallRecord&) const = default;
    /// One line: "12 #1 power.set(state=true) = 0".
    std::string toString() const;
};

/// A simulated appliance, for tests of applications that use the client library.
///
/// @code
/// TAVO::simulator::Simulator simulator;
/// simulator.start();
/// auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);
/// @endcode
///
/// It listens on one address and serves many connections from its own thread, which runs from start() to
/// stop(). A long request is carried out in pieces, and others are served in between. Any thread may call any
/// operation, but handlers and the observer must not call start() and stop().
class TAVO_SIMULATOR_API Simulator {
public:
    /// Makes the appliance. Does not listen or start a thread yet.
    /// @throws std::invalid_argument for an unknown topology, a mistake in its file, an unknown key index, or
    ///         no connections.
    explicit Simulator(Options options = {});
    /// Calls stop().
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// Starts to listen; does nothing if already listening. After stop() it listens on the same port again,
    /// with the same appliance.
    /// @throws std::runtime_error that names host and port if it cannot listen.
    void start();
    /// Closes all connections and ends the thread. Does nothing if already stopped.
    void stop();
    /// The port it listens on, or did before stop(); 0 before the first start().
    std::uint16_t port() const;

    /// Replaces the fault script. Requests are counted over the simulator's lifetime, see requestCount().
    void setFaults(FaultScript faults);
    /// Adds a fault for the request `ahead` requests from now; 1 is the next.
    /// @throws std::invalid_argument as FaultScript::at.
    void failNext(Fault fault, std::uint64_t ahead = 1);

    /// The last calls in the order they were carried out, limited to 65536 and to Options::mostLogBytes.
    std::vector<CallRecord> calls() const;
    void clearCalls();
    /// Sets a function to run for every call from now on, in the simulator's thread. It must not call the
    /// simulator. An empty function removes it.
    void setObserver(std::function<void(const CallRecord&)> observer);

    /// Requests so far, over all connections.
    std::uint64_t requestCount() const;
    /// Connections accepted so far.
    std::uint64_t connectionCount() const;
    /// Connections open now.
    std::size_t openConnections() const;
    std::optional<LockHolder> lockHolder() const;

    /// Runs `action` on the appliance while no request is served, and returns its result. Use it to read and
    /// change objects, before start() too:
    ///
    /// @code
    /// bool on = simulator.inspect([](Appliance& appliance) { return appliance.get<Relay>("power").state();
    /// });
    /// @endcode
    ///
    /// The action must not call the simulator or let references to objects escape.
    template <class Action>
    auto inspect(Action action) {
        const auto guard = lockAppliance();
        return action(appliance());
    }

private:
    struct State;

    std::unique_lock<std::mutex> lockAppliance() const;
    Appliance& appliance();

    std::unique_ptr<State> state_;
};

} // namespace TAVO::simulator
