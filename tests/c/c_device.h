#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tavo/c/tavo_c.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/hang_guard.h>

namespace c_test {

/// What a function that makes a reply did.
struct Outcome {
    tavo_status status = TAVO_OK;
    /// Whether there was a reply to free.
    bool replied = false;
    nlohmann::json json = {};
    std::vector<std::string> blocks = {};
    std::string message = {};
    std::int64_t callIndex = -1;
};

/// Takes over the reply, and reads the error of this thread.
inline Outcome outcomeOf(tavo_status status, tavo_reply* reply) {
    Outcome outcome{.status = status, .replied = reply != nullptr};
    const auto* error = tavo_last_error();
    EXPECT_EQ(error->status, status);
    outcome.message = error->message;
    outcome.callIndex = error->call_index;
    std::size_t size = 0;
    if (const auto* text = tavo_reply_json(reply, &size)) {
        EXPECT_EQ(std::string_view(text).size(), size);
        outcome.json = nlohmann::json::parse(text, nullptr, false);
        EXPECT_FALSE(outcome.json.is_discarded()) << text;
    }
    std::size_t count = 0;
    const auto* blocks = tavo_reply_blocks(reply, &count);
    for (std::size_t i = 0; i < count; ++i)
        outcome.blocks.emplace_back(static_cast<const char*>(blocks[i].data), blocks[i].size);
    tavo_reply_free(reply);
    return outcome;
}

/// A handle, freed at the end.
class Handle {
public:
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { tavo_free(device_); }

    tavo_device* get() const { return device_; }

    tavo_status open(int port, const char* user = "engineer", std::uint32_t timeout = 0) const {
        auto options = optionsFor(port);
        options.user = user;
        options.timeout_ms = timeout;
        return tavo_open(device_, &options);
    }

    static tavo_options optionsFor(int port) {
        tavo_options options{};
        options.size = sizeof(options);
        options.host = "127.0.0.1";
        options.port = port;
        options.user = "engineer";
        options.password = "tavo";
        return options;
    }

    Outcome call(const std::string& text, const std::vector<tavo_bytes>& blocks = {},
                 std::uint32_t flags = 0) const {
        tavo_reply* reply = nullptr;
        const auto status =
            tavo_call_json(device_, text.c_str(), blocks.data(), blocks.size(), flags, &reply);
        return outcomeOf(status, reply);
    }
    Outcome batch(const std::string& text, const std::vector<tavo_bytes>& blocks = {},
                  std::uint32_t flags = 0) const {
        tavo_reply* reply = nullptr;
        const auto status =
            tavo_batch_json(device_, text.c_str(), blocks.data(), blocks.size(), flags, &reply);
        return outcomeOf(status, reply);
    }
    Outcome tree() const {
        tavo_reply* reply = nullptr;
        const auto status = tavo_tree_json(device_, &reply);
        return outcomeOf(status, reply);
    }

private:
    tavo_device* device_ = tavo_new();
};

/// A handle that has a simulated device open.
class OpenHandle : public testing::Test {
protected:
    OpenHandle() {
        simulator.start();
        EXPECT_EQ(device.open(simulator.port()), TAVO_OK) << tavo_last_error()->message;
    }

    /// The calls that reached the simulator since the opening, as "object.method".
    std::vector<std::string> callsSince(std::uint64_t request) const {
        std::vector<std::string> names;
        for (const auto& call : simulator.calls())
            if (call.request > request)
                names.push_back(call.object + "." + call.method);
        return names;
    }

    support::HangGuard guard;
    TAVO::simulator::Simulator simulator;
    Handle device;
};

} // namespace c_test
