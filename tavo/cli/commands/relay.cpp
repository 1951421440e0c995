#include <tavo/cli/commands/commands.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/follow.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

namespace {

using CommonModules::Relay_v1_0;
namespace relay_v1_0 = CommonModules::TAVOXTranscode::relay_v1_0;

const char* stateText(std::uint8_t state) { return state != 0 ? "on" : "off"; }

nlohmann::json documentOf(const std::string& name, std::uint8_t state) {
    return {{"name", name}, {"state", state}, {"on", state != 0}};
}

struct ListOptions {
    bool follow = false;
    Pace pace;

    void describe(OptionList& list) {
        list.add("--follow", follow, "Go on with a line for each change");
        pace.describe(list, {"--follow"});
    }
};

struct RelayState {
    std::string name;
    std::uint8_t state = 0;
};

/// The states of all relays, in one exchange.
std::vector<RelayState> relayStates(Session& session) {
    using Get = std::shared_ptr<BoundMethod<dto::relay::GetReply>>;
    std::vector<std::pair<std::string, Get>> relays;
    std::vector<std::shared_ptr<Method>> batch;
    for (const auto& object : session.objects())
        if (const auto relay = std::dynamic_pointer_cast<Relay_v1_0>(object)) {
            relays.emplace_back(relay->getFullName(), relay->getGetMethod());
            batch.push_back(relays.back().second);
        }
    if (!batch.empty())
        session.runAll(batch);
    std::vector<RelayState> states;
    states.reserve(relays.size());
    for (const auto& [name, get] : relays)
        states.push_back({name, get->value().state});
    return states;
}

void followRelays(Session& session, Output& output, const Pace& pace) {
    Changes changes(output);
    lookRepeatedly(pace, [&] {
        for (const auto& [name, state] : relayStates(session))
            changes.show(name, documentOf(name, state), fmt::format("{}  {}", name, stateText(state)));
        return false;
    });
}

void listRelays(Session& session, Output& output, const ListOptions& options) {
    if (options.follow) {
        followRelays(session, output, options.pace);
        return;
    }
    const auto relays = relayStates(session);
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                for (const auto& [name, state] : relays)
                    json.write(documentOf(name, state));
            });
        },
        [&](TextWriter& text) {
            for (const auto& [name, state] : relays)
                text.print("{}  {}\n", name, stateText(state));
        });
}

struct RelayOptions {
    std::string name;

    void describe(OptionList& list) {
        list.add("name", name, "Full name of the relay", {.required = true, .nameKind = NameKind::relay});
    }
};

std::shared_ptr<Relay_v1_0> relayOf(Session& session, const RelayOptions& options) {
    return namedObject<Relay_v1_0>(session, options.name, "relay");
}

void getRelay(Session& session, Output& output, const RelayOptions& options) {
    const auto state = session.value(*relayOf(session, options), relay_v1_0::get).state;
    output.show(documentOf(options.name, state),
                [&](TextWriter& text) { text.print("{}\n", stateText(state)); });
}

void showDone(Output& output, const RelayOptions& options) {
    output.show({{"name", options.name}, {"returnCode", 0}});
}

struct SetOptions : RelayOptions {
    std::string state;

    void describe(OptionList& list) {
        RelayOptions::describe(list);
        list.add("state", state, "on or off", {.required = true, .choices = {"on", "off"}});
    }
};

void setRelay(Session& session, Output& output, const SetOptions& options) {
    session.execute(*relayOf(session, options), relay_v1_0::set, options.state == "on");
    showDone(output, options);
}

struct ToggleOptions : RelayOptions {
    std::int32_t value = 0;

    void describe(OptionList& list) {
        RelayOptions::describe(list);
        list.add("value", value, "A number that the device defines; default 0; put -- before a negative one");
    }
};

void toggleRelay(Session& session, Output& output, const ToggleOptions& options) {
    session.execute(*relayOf(session, options), relay_v1_0::toggle, options.value);
    showDone(output, options);
}

} // namespace

std::vector<Command> relayCommands() {
    return {
        command("relay list", "List all relays and their states", listRelays),
        command("relay get", "Show the state of a relay: on or off", getRelay),
        command("relay set", "Switch a relay", setRelay),
        command("relay toggle", "Toggle a relay", toggleRelay),
    };
}

} // namespace TAVO::cli
