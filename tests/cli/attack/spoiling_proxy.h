#pragma once

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <unistd.h>

#include <tavo/simulator/scripted_peer.h>
#include <tavo/simulator/simulator.h>
#include <tests/cli/attack/spoiling.h>
#include <tests/simulator/raw_client.h>

namespace attack {

/// A topology with one object for each kind of verb: it is opened in half the time of the standard one.
class SmallTopology {
public:
    SmallTopology() {
        const int file = mkstemps(path_.data(), 5);
        if (file < 0 || close(file) != 0)
            throw std::runtime_error("cannot make a file");
        std::ofstream(path_) << R"({"name": "attacked", "objects": [
            {"name": "power", "type": "relay", "options": {"drives": "power"}},
            {"name": "cpu0", "type": "cpuDebug", "version": "1.1", "members": [
                {"name": "hdt", "type": "hdt", "version": "1.1"},
                {"name": "jtag", "type": "jtag", "version": "1.1"}]},
            {"name": "gpu0", "type": "gpuDebug", "members": [
                {"name": "gpuScan", "type": "gpuScan"},
                {"name": "jtag", "type": "jtag", "version": "1.1"},
                {"name": "i2c", "type": "i2c"}]},
            {"name": "i2c", "type": "i2c"},
            {"name": "lpc", "type": "lpc", "members": [
                {"name": "lpcPostCode", "type": "lpcPostCode"},
                {"name": "lpcRomEmulation", "type": "lpcRomEmulation"}]},
            {"name": "com", "type": "com"},
            {"name": "lcd", "type": "cfa633"}]})";
    }
    SmallTopology(const SmallTopology&) = delete;
    SmallTopology& operator=(const SmallTopology&) = delete;
    ~SmallTopology() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_; }

private:
    std::string path_ = std::filesystem::temp_directory_path() / "attacked-XXXXXX.json";
};

/// A simulated appliance behind a proxy that passes requests and replies on, and spoils one reply of a run.
class SpoilingProxy {
public:
    /// What comes instead of a reply.
    using Spoil = std::function<Spoilt(const Bytes& reply)>;

    /// What has happened in a run.
    struct Outcome {
        std::size_t replies = 0;
        /// What the client was sent.
        std::size_t bytes = 0;
        /// The reply was spoilt while the client had been given the lock, in a reply that was not.
        bool spoiltUnderLock = false;
    };

    /// @param patience how long a client may be silent after a spoilt reply that goes on before the
    /// connection is closed.
    explicit SpoilingProxy(std::chrono::milliseconds patience)
        : patience_(patience)
        , simulator_({.topology = SmallTopology().path(),
                      .longestDelay = std::chrono::milliseconds(1),
                      .mostLogBytes = 0}) {
        simulator_.start();
        thread_ = std::thread([this] { serve(); });
    }
    SpoilingProxy(const SpoilingProxy&) = delete;
    SpoilingProxy& operator=(const SpoilingProxy&) = delete;
    ~SpoilingProxy() {
        stopping_ = true;
        thread_.join();
    }

    std::uint16_t port() const { return listener_.port(); }
    TAVO::simulator::Simulator& simulator() { return simulator_; }

    /// From now on replies are counted from 1, and the one of that number is spoilt, if any. The appliance is
    /// as after power-on, with the board switched on.
    void begin(std::size_t number, Spoil spoil) {
        simulator_.inspect([](TAVO::simulator::Appliance& appliance) {
            appliance.reset();
            appliance.clock().advance(
                std::chrono::seconds(20)); // an update of the firmware has come to its end
            appliance.board()->setPower(true);
        });
        const std::lock_guard lock(mutex_);
        outcome_ = {};
        number_ = number;
        spoil_ = std::move(spoil);
    }

    /// When the client has ended.
    Outcome end() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (busy_ || listener_.hasWaitingClient()) {
            if (std::chrono::steady_clock::now() > deadline)
                throw std::runtime_error("the client does not close");
            std::this_thread::sleep_for(pause);
        }
        const std::lock_guard lock(mutex_);
        return outcome_;
    }

private:
    using PeerConnection = TAVO::simulator::PeerConnection;
    static constexpr std::chrono::milliseconds pause{1};

    void serve() {
        while (!stopping_) {
            if (!listener_.hasWaitingClient()) {
                std::this_thread::sleep_for(pause);
                continue;
            }
            busy_ = true;
            try {
                serve(listener_.accept());
            } catch (const std::runtime_error&) { // the client has gone
            }
            busy_ = false;
        }
    }

    void serve(PeerConnection client) {
        support::RawClient appliance(simulator_.port());
        while (!stopping_ && client.isOpen()) {
            if (!client.hasInput(pause))
                continue;
            if (client.atEnd())
                return;
            const auto request = client.readRequest();
            const bool locked = simulator_.lockHolder().has_value();
            appliance.send(request);
            answer(client, replyFrom(appliance), locked);
        }
    }

    static Bytes replyFrom(support::RawClient& appliance) {
        Bytes reply;
        do {
            const auto piece = appliance.receive();
            if (piece.empty())
                throw std::runtime_error("no reply");
            reply.insert(reply.end(), piece.begin(), piece.end());
        } while (!layoutOf(reply));
        return reply;
    }

    void answer(PeerConnection& client, const Bytes& reply, bool locked) {
        Spoilt sent{reply};
        bool spoilt = false;
        {
            const std::lock_guard lock(mutex_);
            spoilt = ++outcome_.replies == number_;
            if (spoilt) {
                sent = spoil_(reply);
                outcome_.spoiltUnderLock = locked;
            }
            outcome_.bytes += sent.bytes.size();
        }
        client.write(sent.bytes);
        const bool givesUp = spoilt && sent.after == Spoilt::After::goesOn && !client.hasInput(patience_);
        if (sent.after == Spoilt::After::closes || givesUp)
            client.close();
        else if (sent.after == Spoilt::After::resets)
            client.reset();
    }

    std::chrono::milliseconds patience_;
    TAVO::simulator::Simulator simulator_;
    TAVO::simulator::PeerListener listener_;
    std::mutex mutex_;
    std::size_t number_ = 0;
    Spoil spoil_;
    Outcome outcome_;
    std::atomic<bool> busy_ = false;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace attack
