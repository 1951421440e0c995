#include <algorithm>
#include <cctype>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/simulator/simulator.h>
#include <tavo/simulator/topology.h>
#include <tests/device/drawn_tree.h>
#include <tests/support/all_types.h>
#include <tests/support/hang_guard.h>
#include <tests/support/transport_calls.h>

namespace {

using TAVO::simulator::Appliance;
using TAVO::simulator::CallRecord;
using TAVO::simulator::Fault;
using TAVO::simulator::SimulatedObject;
using TAVO::simulator::Simulator;
namespace base = TAVO::TAVOXTranscode::base_v1_0;
namespace faults = TAVO::simulator::faults;

enum class Order { fixed, byLevels };

/// A simulated appliance, opened in both orders.
class OpenedBothWays {
public:
    explicit OpenedBothWays(const std::string& topology)
        : simulator({.topology = topology}) {
        support::registerAllTypes();
        simulator.start();
    }

    std::shared_ptr<TAVO::Device>
    open(Order order, const std::shared_ptr<TAVO::Interrupter>& interrupter = nullptr) const {
        return TAVO::DeviceFactory::buildDevice(
            "127.0.0.1", simulator.port(), "engineer", "tavo", true,
            {.interrupter = interrupter, .byLevels = order == Order::byLevels});
    }

    std::string outcome(Order order, const std::shared_ptr<TAVO::Interrupter>& interrupter = nullptr) const {
        return opening::outcomeOf([&] { return open(order, interrupter); }, idsOf);
    }

    /// Versions and the ids of all methods, which the device is asked for.
    std::string askedOutcome(Order order) const {
        return opening::outcomeOf([&] { return open(order); },
                                  [](const TAVO::Object_v1_0& object) {
                                      std::vector<std::string> names;
                                      for (const auto& listed : object.methods())
                                          names.push_back(listed.name);
                                      return " " + std::string(object.version()) +
                                             opening::idsOf(object, names);
                                  });
    }

    /// The outcome where these faults meet the exchange of that number.
    std::string outcome(Order order, std::uint64_t exchange, const std::vector<Fault>& faults) {
        for (const auto& fault : faults)
            simulator.failNext(fault, exchange);
        return outcome(order);
    }

    /// The calls of an opening; their requests are counted from 1.
    std::vector<CallRecord> callsOf(Order order) {
        const auto before = simulator.requestCount();
        simulator.clearCalls();
        outcome(order);
        auto calls = simulator.calls();
        for (auto& call : calls)
            call.request -= before;
        std::erase_if(calls, [](const auto& call) { return call.method == "unlock"; });
        return calls;
    }

    Simulator simulator;

private:
    /// Those that the tables know: an opening that went wrong shall not ask the device any more.
    static std::string idsOf(const TAVO::Object_v1_0& object) {
        std::vector<std::string> names;
        for (const auto& table : support::allTables())
            for (const auto& row : table.rows)
                names.emplace_back(row.name);
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        return opening::idsOf(object, names);
    }
};

/// The position of each call in the order of the calls of an opening.
struct Position {
    std::uint64_t exchange = 0;
    std::uint32_t index = 0;
};
using Positions = std::map<std::pair<std::uint32_t, std::string>, Position>;

Positions firstPositions(const std::vector<CallRecord>& calls) {
    Positions positions;
    Position next;
    for (const auto& call : calls) {
        next = {call.request, call.request == next.exchange ? next.index + 1 : 0};
        positions.emplace(std::pair{call.instanceId, call.method}, next);
    }
    return positions;
}

class BothOpenings : public testing::TestWithParam<std::string> {
protected:
    /// Whoever does not learn the id of the lock, or loses the connection while it unlocks, cannot give it
    /// back, but gets it again.
    void expectGivenBack(bool mayBeKept) {
        EXPECT_TRUE(!ways.simulator.lockHolder() || mayBeKept);
        ways.simulator.setFaults({});
        EXPECT_EQ(ways.outcome(Order::byLevels), clean);
        EXPECT_FALSE(ways.simulator.lockHolder());
    }

    support::HangGuard guard{std::chrono::seconds(110)};
    OpenedBothWays ways{GetParam()};
    std::string clean = ways.outcome(Order::fixed);
};

TEST_P(BothOpenings, ComeToTheSame) {
    EXPECT_EQ(ways.outcome(Order::byLevels), clean);
    EXPECT_EQ(ways.askedOutcome(Order::byLevels), ways.askedOutcome(Order::fixed));
    EXPECT_FALSE(ways.simulator.lockHolder());
}

/// What an object answers when it is asked for a description, from then on.
template <class Reply>
void answerAlways(SimulatedObject& object,
                  const TAVO::TAVOXTranscode::Call<TAVO::TAVOXTranscode::None, Reply>& call,
                  std::uint32_t deviceError) {
    using namespace TAVO::simulator;
    object.on(
        call,
        [deviceError]() -> Reply {
            if (deviceError == 0)
                throw Refusal(5);
            throw DeviceFault(deviceError, "refused");
        },
        Access::open);
}

const std::vector<std::function<void(SimulatedObject&, std::uint32_t)>> refusals{
    [](auto& object, auto error) { answerAlways(object, base::methods, error); },
    [](auto& object, auto error) { answerAlways(object, base::type, error); },
    [](auto& object, auto error) { answerAlways(object, base::version, error); },
    [](auto& object, auto error) { answerAlways(object, base::members, error); },
};

TEST_P(BothOpenings, MeetARefusalOfAnyDescriptionAlike) {
    const std::vector<std::uint32_t> errors{0, 1000, 1001, 1002, 1003, 1004, 1005, 1006, 1013, 4711};
    const auto ids = ways.simulator.inspect([](Appliance& appliance) {
        std::vector<std::uint32_t> all;
        for (const auto& [id, object] : appliance.objects())
            all.push_back(id);
        return all;
    });
    const auto eachMeets = ids.size() > 20 ? 1 : errors.size(); // of a large tree, each object another one
    std::size_t turn = 0;
    for (const auto id : ids)
        for (const auto& refuse : refusals)
            for (std::size_t i = 0; i < eachMeets; ++i) {
                const auto error = errors[turn++ % errors.size()];
                OpenedBothWays refusing(GetParam());
                refusing.simulator.inspect([&](Appliance& appliance) { refuse(*appliance.find(id), error); });
                const auto usual = refusing.outcome(Order::fixed);
                EXPECT_EQ(refusing.outcome(Order::byLevels), usual) << id << " " << error;
                EXPECT_FALSE(refusing.simulator.lockHolder());
            }
}

TEST_P(BothOpenings, MeetAReturnCodeOfAnyCallAlike) {
    const auto fixed = firstPositions(ways.callsOf(Order::fixed));
    for (const auto& [call, position] : firstPositions(ways.callsOf(Order::byLevels))) {
        const auto met =
            ways.outcome(Order::byLevels, position.exchange, {faults::ReturnCode{5, position.index}});
        const auto asked = fixed.find(call);
        const auto usual = asked == fixed.end()
                               ? clean // the version of what has no factory
                               : ways.outcome(Order::fixed, asked->second.exchange, {faults::ReturnCode{5}});
        EXPECT_EQ(met, usual) << call.first << " " << call.second;
        expectGivenBack(call.second == "lock");
    }
}

/// What may become of an opening by levels when something goes wrong with one exchange.
enum class Like {
    same,         ///< what becomes of the other that has the same call spoilt
    sameOrUnhurt, ///< this, or the tree: what is refused in a batch is asked for again
    connection,   ///< the tree or a NetworkError: the exchange was good, the next one may meet what is behind
                  ///< it
    anyFailure,   ///< the tree or an exception: the bytes of a longer reply are mistaken for other things
};

bool isTree(const std::string& outcome) { return outcome.starts_with("device "); }
bool isNetworkError(const std::string& outcome) {
    return outcome.starts_with(typeid(TAVO::NetworkError).name());
}

struct Spoiling {
    std::vector<Fault> faults;
    Like like = Like::same;
};

std::vector<Spoiling> spoilings() {
    using Field = faults::Size::Field;
    const Fault behindTheReply = faults::Cut{1000000};
    std::vector<Spoiling> all{
        {{faults::Close{}}},
        {{faults::Reset{}}},
        {{faults::Dribble{std::chrono::microseconds(0)}}},
        {{behindTheReply}, Like::connection},
        {{faults::Stray{1}}, Like::connection},
        {{faults::Stray{3}}, Like::connection},
    };
    for (const std::size_t bytes : {0U, 3U, 4U, 11U, 12U, 17U})
        all.push_back({{faults::Cut{bytes}}});
    for (const std::uint32_t code : {1000U, 1001U, 1002U, 1003U, 1004U, 1005U, 1006U, 1013U, 4711U}) {
        all.push_back({{faults::DeviceError{code, 0, "why"}}, Like::sameOrUnhurt});
        all.push_back({{faults::DeviceError{code, 1, "why"}}, Like::sameOrUnhurt});
        all.push_back({{faults::DeviceError{code, 1000, "why"}, behindTheReply}, Like::anyFailure});
    }
    for (const std::uint32_t count : {0U, 1U, 2U, 0xFFFFFFFFU})
        all.push_back({{faults::Count{count}, behindTheReply}, Like::anyFailure});
    for (const auto field : {Field::status, Field::error, Field::result})
        for (const std::uint32_t bytes : {0U, 1U, 10U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU})
            all.push_back({{faults::Size{field, bytes}, behindTheReply}, Like::anyFailure});
    return all;
}

TEST_P(BothOpenings, MeetWhatSpoilsAnExchangeAlike) {
    const auto fixed = firstPositions(ways.callsOf(Order::fixed));
    for (const auto& [call, position] : firstPositions(ways.callsOf(Order::byLevels))) {
        if (position.index != 0)
            continue;
        for (const auto& [spoils, like] : spoilings()) {
            const testing::ScopedTrace trace(__FILE__, __LINE__,
                                             std::to_string(call.first) + "." + call.second + ", fault " +
                                                 std::to_string(spoils.front().index()));
            const auto met = ways.outcome(Order::byLevels, position.exchange, spoils);
            const auto asked = fixed.find(call);
            const bool isComparable = asked != fixed.end(); // the fixed order may fail before it gets there
            if (isComparable && (like == Like::same || (like == Like::sameOrUnhurt && met != clean))) {
                EXPECT_EQ(met, ways.outcome(Order::fixed, asked->second.exchange, spoils));
            } else if (met != clean) {
                EXPECT_FALSE(isTree(met)) << met;
                EXPECT_TRUE(like == Like::anyFailure || isNetworkError(met)) << met;
            }
            const bool mayEndBehind = like == Like::connection || like == Like::anyFailure;
            expectGivenBack(call.second == "lock" || (mayEndBehind && met == clean));
        }
    }
}

TEST_P(BothOpenings, CanBeInterruptedInAnyExchangeThatIsNotAnswered) {
    for (const auto& [call, position] : firstPositions(ways.callsOf(Order::byLevels))) {
        if (position.index != 0)
            continue;
        const auto interrupter = std::make_shared<TAVO::Interrupter>();
        const auto silent = ways.simulator.requestCount() + position.exchange;
        ways.simulator.failNext(faults::Silent{}, position.exchange);
        // Once the request is there its exchange runs, so that one interrupt is enough.
        std::thread other([&] {
            while (ways.simulator.requestCount() < silent)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            interrupter->interrupt();
        });
        EXPECT_EQ(ways.outcome(Order::byLevels, interrupter),
                  opening::told(TAVO::NetworkError(support::interrupted)));
        other.join();
        expectGivenBack(call.second == "lock");
    }
}

std::vector<std::string> topologyNames() {
    std::vector<std::string> names;
    for (const auto& topology : TAVO::simulator::topologies())
        names.push_back(topology.name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(Topologies, BothOpenings, testing::ValuesIn(topologyNames()), [](const auto& given) {
    std::string name;
    bool begins = true;
    for (const char letter : given.param) {
        if (letter != '-')
            name += begins ? static_cast<char>(std::toupper(letter)) : letter;
        begins = letter == '-';
    }
    return name;
});

} // namespace
