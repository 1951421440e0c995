#include <tavo/simulator/simulator.h>

#include <algorithm>
#include <stdexcept>

#include <tavo/client/exchange/server_keys.h>
#include <tavo/simulator/internal/call_log.h>
#include <tavo/simulator/internal/server.h>
#include <tavo/simulator/topology.h>

namespace TAVO::simulator {

namespace {

constexpr std::size_t longestLog = 65536;
// After this time a request lets others have their turn.
constexpr std::chrono::milliseconds longestTurn{20};

std::vector<std::uint8_t> keyNumber(int index) {
    const auto keys = serverKeys();
    if (index == -1)
        return std::vector<std::uint8_t>(keys.front().key.size(), 0xEE);
    if (index < 0 || static_cast<std::size_t>(index) >= keys.size())
        throw std::invalid_argument("there is no server key " + std::to_string(index));
    const auto& key = keys[static_cast<std::size_t>(index)].key;
    return {key.begin(), key.end()};
}

} // namespace

std::string CallRecord::toString() const {
    auto text = std::to_string(request) + " #" + std::to_string(connection) + " ";
    text += object.empty() ? "object " + std::to_string(instanceId) : object;
    text += "." + (method.empty() ? std::string("?") : method) + "(" + parameters.toString() + ")";
    text += error == 0 ? " = " + std::to_string(returnCode) : " error " + std::to_string(error);
    return text;
}

struct Simulator::State : RequestHandler {
    explicit State(Options given)
        : options(std::move(given))
        , appliance(options.accounts, keyNumber(options.serverKey)) {
        if (options.mostConnections == 0)
            throw std::invalid_argument("mostConnections must be at least 1");
        topologyNamed(options.topology).build(appliance);
    }

    /// A waiting thread gets the mutex before the one that has just released it.
    std::unique_lock<std::mutex> lock() {
        const std::lock_guard next(turnstile);
        return std::unique_lock(mutex);
    }

    std::uint64_t connected() override {
        const auto guard = lock();
        ++openConnections;
        return ++connections;
    }

    void disconnected() override {
        const auto guard = lock();
        --openConnections;
    }

    std::unique_ptr<CallRunner> begin(std::uint64_t connection, std::vector<std::uint8_t> request) override {
        const auto guard = lock();
        auto made = runner(connection);
        made->begin(std::move(request));
        return made;
    }

    std::optional<Response> proceed(CallRunner& runner) override {
        const auto guard = lock();
        if (!runner.proceed(std::chrono::steady_clock::now() + longestTurn))
            return std::nullopt;
        auto response = runner.finish();
        if (response.delay.count() > 0)
            passTime(response.delay);
        return response;
    }

    std::uint32_t lockInUse() override {
        const auto guard = lock();
        const auto& holder = appliance.lock().holder();
        return holder ? holder->lockId : 0;
    }

    /// Advances the clock at once by the part of the delay that the client does not wait for.
    void passTime(std::chrono::microseconds& delay) {
        auto& clock = appliance.clock();
        const auto end = clock.elapsed() + delay.count();
        const auto held = std::min(delay, options.longestDelay);
        clock.advance(clock.isFrozen() ? delay : delay - held);
        clock.holdAt(end);
        delay = held;
    }

    Response refuse(std::uint64_t connection) override {
        const auto guard = lock();
        return runner(connection)->refuse();
    }

    std::unique_ptr<CallRunner> runner(std::uint64_t connection) {
        ++requests;
        const bool isTold = observer || options.mostLogBytes > 0;
        return std::make_unique<CallRunner>(appliance, requests, connection, faults.faultsAt(requests),
                                            isTold ? log : noLog, options.mostAnswerBytes);
    }

    void enterCall(CallRecord record) {
        if (observer)
            observer(record);
        calls.add(std::move(record));
    }

    const Options options;
    const CallRunner::Log noLog;
    const CallRunner::Log log = [this](CallRecord record) { enterCall(std::move(record)); };

    std::mutex turnstile;
    std::mutex mutex;
    Appliance appliance;
    FaultScript faults;
    CallLog calls{longestLog, options.mostLogBytes};
    std::function<void(const CallRecord&)> observer;
    std::uint64_t requests = 0;
    std::uint64_t connections = 0;
    std::size_t openConnections = 0;
    std::uint16_t port = 0;

    std::mutex lifecycle;
    std::unique_ptr<Server> server;
};

Simulator::Simulator(Options options)
    : state_(std::make_unique<State>(std::move(options))) {}

Simulator::~Simulator() { stop(); }

void Simulator::start() {
    const std::lock_guard lifecycle(state_->lifecycle);
    if (state_->server)
        return;
    const auto known = port();
    const auto& options = state_->options;
    state_->server = std::make_unique<Server>(
        options.host, known != 0 ? known : options.port,
        server::ClientBounds{options.mostConnections, options.mostHeldBytes}, *state_);
    const auto guard = lockAppliance();
    state_->port = state_->server->port();
}

void Simulator::stop() {
    const std::lock_guard lifecycle(state_->lifecycle);
    state_->server.reset();
}

std::uint16_t Simulator::port() const {
    const auto guard = lockAppliance();
    return state_->port;
}

void Simulator::setFaults(FaultScript faults) {
    const auto guard = lockAppliance();
    state_->faults = std::move(faults);
}

void Simulator::failNext(Fault fault, std::uint64_t ahead) {
    const auto guard = lockAppliance();
    state_->faults.at(state_->requests + ahead, std::move(fault));
}

std::vector<CallRecord> Simulator::calls() const {
    const auto guard = lockAppliance();
    return state_->calls.records();
}

void Simulator::clearCalls() {
    const auto guard = lockAppliance();
    state_->calls.clear();
}

void Simulator::setObserver(std::function<void(const CallRecord&)> observer) {
    const auto guard = lockAppliance();
    state_->observer = std::move(observer);
}

std::uint64_t Simulator::requestCount() const {
    const auto guard = lockAppliance();
    return state_->requests;
}

std::uint64_t Simulator::connectionCount() const {
    const auto guard = lockAppliance();
    return state_->connections;
}

std::size_t Simulator::openConnections() const {
    const auto guard = lockAppliance();
    return state_->openConnections;
}

std::optional<LockHolder> Simulator::lockHolder() const {
    const auto guard = lockAppliance();
    return state_->appliance.lock().holder();
}

std::unique_lock<std::mutex> Simulator::lockAppliance() const { return state_->lock(); }

Appliance& Simulator::appliance() { return state_->appliance; }

} // namespace TAVO::simulator
