#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/table.h>
#include <tavo/simulator/objects/relay.h>
#include <tavo/simulator/simulated_object.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/process.h>

namespace tool_test {

using Words = std::vector<std::string>;

inline Words operator+(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// Counts what is not one JSON document as a failure of the test.
inline nlohmann::json jsonOf(const std::string& text) {
    auto document = nlohmann::json::parse(text, nullptr, false);
    EXPECT_FALSE(document.is_discarded()) << text;
    return document;
}

/// The same for any number of documents, one behind the other.
inline std::vector<nlohmann::json> documentsOf(const std::string& text) {
    std::vector<nlohmann::json> documents;
    std::istringstream stream(text);
    while ((stream >> std::ws).good() && stream.peek() != std::istringstream::traits_type::eof()) {
        try {
            stream >> documents.emplace_back();
        } catch (const nlohmann::json::exception&) {
            ADD_FAILURE() << text;
            break;
        }
    }
    return documents;
}

inline support::ProcessSetup toolWith(Words arguments) {
    return {.program = TAVO_PROGRAM, .arguments = std::move(arguments)};
}

inline support::ProcessOutcome runTool(Words arguments) {
    return support::runProcess(toolWith(std::move(arguments)));
}

/// A group of a type that no client knows, with a method that only it knows.
class Rack : public TAVO::simulator::SimulatedObject {
public:
    Rack()
        : SimulatedObject("rack", "3.1.4") {
        addMethod(identifyRow);
        on(identify, [] {});
    }

private:
    static constexpr TAVO::TAVOXTranscode::Call<> identify{"identify"};
    static constexpr auto identifyRow = TAVO::TAVOXTranscode::rowOf(identify);
};

/// The tool against a simulated device in the test's own process, as its user engineer.
class SimulatedTool : public testing::Test {
protected:
    explicit SimulatedTool(const std::string& topology = "standard")
        : simulator({.topology = topology}) {
        simulator.start();
    }

    Words address() const { return {"--host", "127.0.0.1", "--port", std::to_string(simulator.port())}; }
    support::ProcessSetup setupOf(const Words& arguments) const {
        auto setup = toolWith(address() + Words{"--user", "engineer"} + arguments);
        setup.environment["TAVO_PASSWORD"] = "tavo";
        return setup;
    }
    support::ProcessOutcome tool(const Words& arguments, const std::string& input = "") const {
        auto setup = setupOf(arguments);
        setup.input = input;
        return support::runProcess(setup);
    }
    /// The calls of that method since the last clearCalls().
    std::vector<TAVO::simulator::CallRecord> callsOf(std::string_view object, std::string_view method) const {
        std::vector<TAVO::simulator::CallRecord> found;
        for (auto& call : simulator.calls())
            if (call.object == object && call.method == method)
                found.push_back(std::move(call));
        return found;
    }

    /// Runs the tool once, and tells how many requests after the start of such a run that call comes.
    std::uint64_t requestsUntil(std::string_view object, std::string_view method, const Words& arguments) {
        simulator.clearCalls();
        const auto before = simulator.requestCount();
        EXPECT_EQ(tool(arguments).exitCode, 0);
        const auto calls = callsOf(object, method);
        EXPECT_EQ(calls.size(), 1u);
        return calls.empty() ? 1 : calls.front().request - before;
    }

    TAVO::simulator::Simulator simulator;
};

/// The tool against a device that has relays "power" and "cmos" and a rack "bench", which holds the relays
/// "fan" and "lamp" and a rack "drawer" with the relays "left" and "right".
class ToolTest : public SimulatedTool {
protected:
    ToolTest()
        : SimulatedTool("bare") {
        simulator.inspect([](TAVO::simulator::Appliance& appliance) {
            using TAVO::simulator::Relay;
            appliance.add<Relay>("power");
            appliance.add<TAVO::simulator::CmosRelay>("cmos");
            auto& bench = appliance.add<Rack>("bench");
            bench.add<Relay>("lamp");
            bench.add<Relay>("fan");
            auto& drawer = bench.add<Rack>("drawer");
            drawer.add<Relay>("left");
            drawer.add<Relay>("right");
        });
    }
};

} // namespace tool_test
