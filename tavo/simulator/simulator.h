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

/// What a Simulator is made of.
struct Options {
    /// Address to listen on.
    std::string host = "127.0.0.1";
    /// 0 lets the system choose a free port.
    std::uint16_t port = 0;
    /// A name of topologies(), or the path of a file that ends in ".json".
    std::string topology = "standard";
    /// Who may take the lock and log in: user names and passwords.
    std::map<std::string, std::string> accounts = {{"engineer", "tavo"}, {"guest", "tavo"}};
    /// Index of the known server key that "getKey" answers, 0 to 3; -1 for a key that is not known.
    int serverKey = 0;
    /// The longest time that the answer to one request is held back when the client asks the appliance to
    /// sleep. What goes beyond passes at once, on the simulated clock alone.
    std::chrono::microseconds longestDelay = std::chrono::seconds(10);
    /// How many connections may be open, at least 1. For one more the one that has been idle for the longest
    /// time is closed, but none of a client that holds the lock; when all do, the new one is closed.
    std::size_t mostConnections = 512;
    /// How many bytes of requests that are still coming and of answers that are still going are kept, over
    /// all connections. Beyond that connections are closed, those first whose client has neither sent nor
    /// taken anything for the longest time, and those of a client that holds the lock not for others.
    std::size_t mostHeldBytes = std::size_t{512} << 20;
    /// A request whose results have reached so many bytes ends with a device error before its next call.
    std::size_t mostAnswerBytes = std::size_t{64} << 20;
    /// How much memory calls() may take; 0 keeps no calls.
    std::size_t mostLogBytes = std::size_t{64} << 20;
};

/// One call that reached the appliance.
struct TAVO_SIMULATOR_API CallRecord {
    /// Counted from 1 over the simulator's life; the calls of one batch share it.
    std::uint64_t request = 0;
    /// Counted from 1 over the simulator's life.
    std::uint64_t connection = 0;
    /// 0 when the client had none.
    std::uint32_t lockId = 0;
    std::uint32_t instanceId = 0;
    /// Full name of the object; empty for an unknown instance id.
    std::string object;
    /// Empty for an unknown method id.
    std::string method;
    /// The parameters by name, an empty record when there are none, when they are malformed or over 8 MiB,
    /// and when they alone are too large for the log.
    Value parameters;
    /// What the call answered; return_code::failure when it ended with a device error.
    std::int32_t returnCode = 0;
    /// The device error that the call ended with, 0 for none.
    std::uint32_t error = 0;

    bool operator==(const CallRecord&) const = default;
    /// One line: "12 #1 power.set(state=true) = 0".
    std::string toString() const;
};

/// An appliance in software, for the tests of applications that use the client library.
///
/// @code
/// TAVO::simulator::Simulator simulator;
/// simulator.start();
/// auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);
/// @endcode
///
/// It listens on one address and serves many connections from one thread of its own, which runs from start()
/// to stop(). A request that takes long is carried out in pieces, between which others are served. All
/// operations may be called from any thread, but start() and stop() not from a handler of an object or from
/// the observer.
class TAVO_SIMULATOR_API Simulator {
public:
    /// Makes the appliance; listens to nothing and starts no thread.
    /// @throws std::invalid_argument for an unknown topology, a mistake in its file, an unknown key index, or
    ///         no connections.
    explicit Simulator(Options options = {});
    /// Stops.
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// Returns when it listens; does nothing when it does already. After stop() it listens on the same port
    /// again, and the appliance is as it was.
    /// @throws std::runtime_error that names host and port when it cannot listen.
    void start();
    /// Closes all connections and returns when no thread runs any more. Does nothing when it is stopped.
    void stop();
    /// Where it listens, or did before it was stopped; 0 before the first start.
    std::uint16_t port() const;

    /// Replaces the fault script. Requests are counted over the simulator's life, see requestCount().
    void setFaults(FaultScript faults);
    /// Adds a fault for a coming request: the next one, or the one `ahead` requests from now.
    /// @throws std::invalid_argument as FaultScript::at.
    void failNext(Fault fault, std::uint64_t ahead = 1);

    /// The last calls, 65536 and Options::mostLogBytes at most, in the order in which they were carried out.
    std::vector<CallRecord> calls() const;
    void clearCalls();
    /// Is called for every call from now on, in the simulator's thread. Must not call the simulator; an empty
    /// function ends it.
    void setObserver(std::function<void(const CallRecord&)> observer);

    /// Requests so far, over all connections.
    std::uint64_t requestCount() const;
    /// Connections accepted so far.
    std::uint64_t connectionCount() const;
    /// Connections that are open now.
    std::size_t openConnections() const;
    std::optional<LockHolder> lockHolder() const;

    /// Runs `action` on the appliance while no request is served, and returns what it returns. For looking at
    /// objects and for changing them, before start() too:
    ///
    /// @code
    /// bool on = simulator.inspect([](Appliance& appliance) { return appliance.get<Relay>("power").state();
    /// });
    /// @endcode
    ///
    /// The action must not call the simulator, and references to objects must not leave it.
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
