#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <future>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/simulator/scripted_peer.h>
#include <tests/support/hang_guard.h>
#include <tests/support/wire_bytes.h>

/// The device's end of a connection, byte by byte, as TAVO::simulator::ScriptedPeer plays it, for tests of
/// GoogleTest. Every wait here ends after `patience` with an exception.
namespace support {

inline constexpr auto patience = TAVO::simulator::peerPatience;

using RawConnection = TAVO::simulator::PeerConnection;
using RawListener = TAVO::simulator::PeerListener;

/// A listener for tests in one thread, where the client under test might wait without end.
class GuardedListener : public RawListener {
public:
    using RawListener::RawListener;

private:
    HangGuard guard_;
};

/// Plays the device in a thread, see TAVO::simulator::ScriptedPeer. An exception of the script fails the
/// test.
class ScriptedServer {
public:
    using Script = TAVO::simulator::ScriptedPeer::Script;

    explicit ScriptedServer(Script script, int backlog = 16)
        : peer_(std::move(script), backlog, patience) {}
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer() { join(); }

    std::uint16_t port() const { return peer_.port(); }
    std::string portText() const { return peer_.portText(); }

    /// Waits for the script's end.
    void join() {
        try {
            peer_.join();
        } catch (const std::exception& failure) {
            ADD_FAILURE() << "server script: " << failure.what();
        }
    }

private:
    HangGuard guard_;
    TAVO::simulator::ScriptedPeer peer_;
};

/// Lets one thread wait for another, once.
class Signal {
public:
    void raise() { promise_.set_value(); }
    void await() const {
        if (future_.wait_for(patience) != std::future_status::ready)
            throw std::runtime_error("waited too long for the other thread");
    }

private:
    std::promise<void> promise_;
    std::shared_future<void> future_ = promise_.get_future().share();
};

} // namespace support
