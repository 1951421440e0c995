#include <tavo/cli/commands/commands.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

using CommonModules::Relay_v1_0;

struct Arguments {
    std::string name;
    std::string state;
    std::int32_t value = 0;
};

const char* stateText(std::uint8_t state) { return state != 0 ? "on" : "off"; }

nlohmann::json documentOf(const std::string& name, std::uint8_t state) {
    return {{"name", name}, {"state", state}, {"on", state != 0}};
}

void listRelays(Session& session, Output& output, const Arguments&) {
    using Get = std::shared_ptr<BoundMethod<dto::relay::GetReply>>;
    std::vector<std::pair<std::shared_ptr<Relay_v1_0>, Get>> relays;
    std::vector<std::shared_ptr<Method>> batch;
    for (const auto& object : session.objects())
        if (const auto relay = std::dynamic_pointer_cast<Relay_v1_0>(object)) {
            relays.emplace_back(relay, relay->getGetMethod());
            batch.push_back(relays.back().second);
        }
    if (!batch.empty())
        session.runAll(batch);
    output.show(
        [&](JsonWriter& json) {
            json.array([&] {
                for (const auto& [relay, get] : relays)
                    json.write(documentOf(relay->getFullName(), get->value().state));
            });
        },
        [&](TextWriter& text) {
            for (const auto& [relay, get] : relays)
                text.print("{}  {}\n", relay->getFullName(), stateText(get->value().state));
        });
}

void getRelay(Session& session, Output& output, const Arguments& arguments) {
    const auto relay = session.find<Relay_v1_0>(arguments.name, "relay");
    const auto state = session.value(relay->getGetMethod()).state;
    output.show(documentOf(arguments.name, state),
                [&](TextWriter& text) { text.print("{}\n", stateText(state)); });
}

void showDone(Output& output, const Arguments& arguments, const Method& method) {
    output.show({{"name", arguments.name}, {"returnCode", method.returnCode()}});
}

void setRelay(Session& session, Output& output, const Arguments& arguments) {
    const auto relay = session.find<Relay_v1_0>(arguments.name, "relay");
    const auto method = relay->getSetMethod(arguments.state == "on");
    session.execute(method);
    showDone(output, arguments, *method);
}

void toggleRelay(Session& session, Output& output, const Arguments& arguments) {
    const auto relay = session.find<Relay_v1_0>(arguments.name, "relay");
    const auto method = relay->getToggleMethod(arguments.value);
    session.execute(method);
    showDone(output, arguments, *method);
}

} // namespace

void addRelay(CLI::App& tool, Program& program) {
    auto* relay = tool.add_subcommand("relay", "Look at relays and switch them");
    relay->require_subcommand(1);
    const auto arguments = std::make_shared<Arguments>();
    const auto add = [&](const char* name, const char* description,
                         void (*action)(Session&, Output&, const Arguments&)) {
        auto* command = relay->add_subcommand(name, description);
        command->callback([&program, arguments, action] {
            program.action = [arguments, action](Session& session, Output& output) {
                action(session, output, *arguments);
            };
        });
        return command;
    };
    const auto addName = [&](CLI::App* command) {
        command->add_option("name", arguments->name, "Full name of the relay")->required();
    };

    add("list", "All relays and their states", listRelays);
    addName(add("get", "The state of a relay: on or off", getRelay));

    auto* set = add("set", "Switch a relay", setRelay);
    addName(set);
    set->add_option("state", arguments->state, "on or off")->required()->check(CLI::IsMember({"on", "off"}));

    auto* toggle = add("toggle", "Toggle a relay", toggleRelay);
    addName(toggle);
    toggle->add_option("value", arguments->value,
                       "A number that the device defines, 0 unless given; -- before a negative one");
}

} // namespace TAVO::cli
