#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <tests/support/fake_appliance.h>
#include <tests/support/raw_server.h>

namespace support {

/// Serves an appliance in memory on a real socket, one connection after the other, from construction to
/// destruction. The appliance is reached through change() meanwhile.
class ApplianceServer {
public:
    /// What happens instead of the reply to one request.
    using Fault = std::function<void(RawConnection&, const Bytes& reply)>;
    /// By number of the request, counted from 1 over all connections.
    using Faults = std::map<std::size_t, Fault>;

    explicit ApplianceServer(FakeAppliance& appliance, Faults faults = {})
        : appliance_(appliance)
        , faults_(std::move(faults))
        , server_([this](RawListener& listener) { serve(listener); }) {}
    ~ApplianceServer() { stopping_ = true; }

    int port() const { return server_.port(); }

    /// From now on clients are refused; returns when the connection is closed.
    void stop() {
        stopping_ = true;
        server_.join();
    }

    void setFault(std::size_t request, Fault fault) {
        const std::lock_guard lock(mutex_);
        faults_[request] = std::move(fault);
    }
    /// The same for the request that comes next.
    void failNext(Fault fault) { setFault(exchanges() + 1, std::move(fault)); }

    /// Changes the appliance between two requests.
    template <class Action>
    void change(Action action) {
        const std::lock_guard lock(mutex_);
        action(appliance_);
    }

    std::vector<FakeCall> calls() const {
        const std::lock_guard lock(mutex_);
        return appliance_.calls();
    }
    std::vector<std::string> callNames() const {
        const std::lock_guard lock(mutex_);
        return appliance_.callNames();
    }
    std::size_t exchanges() const {
        const std::lock_guard lock(mutex_);
        return appliance_.exchanges();
    }
    std::size_t connections() const { return connections_; }

    /// Waits until the client has closed what it had opened.
    void awaitNoConnection() const {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (open_ || waiting_) {
            if (std::chrono::steady_clock::now() > deadline)
                throw std::runtime_error("waited too long for the client to close");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    static constexpr std::chrono::milliseconds pause{1};

    void serve(RawListener& listener) {
        while (!stopping_) {
            waiting_ = listener.hasWaitingClient();
            if (waiting_)
                serve(listener.accept());
            else
                std::this_thread::sleep_for(pause);
        }
    }

    void serve(RawConnection connection) {
        open_ = true;
        ++connections_;
        while (!stopping_ && connection.isOpen()) {
            if (!connection.hasInput(pause))
                continue;
            if (connection.atEnd())
                break;
            const auto request = connection.readRequest();
            const auto [reply, fault] = answer(request);
            if (fault)
                fault(connection, reply);
            else
                connection.write(reply);
        }
        connection.close();
        open_ = false;
    }

    std::pair<Bytes, Fault> answer(const Bytes& request) {
        const std::lock_guard lock(mutex_);
        auto reply = appliance_.answer(request);
        const auto fault = faults_.find(appliance_.exchanges());
        return {std::move(reply), fault == faults_.end() ? Fault() : fault->second};
    }

    FakeAppliance& appliance_;
    Faults faults_;
    mutable std::mutex mutex_;
    std::atomic<bool> stopping_ = false;
    std::atomic<bool> open_ = false;
    std::atomic<bool> waiting_ = false;
    std::atomic<std::size_t> connections_ = 0;
    ScriptedServer server_;
};

} // namespace support
