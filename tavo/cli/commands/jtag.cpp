#include <tavo/cli/commands/jtag.h>

#include <optional>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/tap_state_name.h>

namespace TAVO::cli {

namespace {

using HWDebug::Jtag_v1_0;
using HWDebug::Jtag_v1_1;
namespace jtag_v1_0 = TAVOXTranscode::jtag_v1_0;
namespace jtag_v1_1 = TAVOXTranscode::jtag_v1_1;

struct StateOptions : ObjectOptions {
    std::string state;

    void describe(OptionList& list) {
        list.add("state", state, "Target state: a name such as Run-Test/Idle, or a number");
    }
};

void moveOrShowState(Session& session, Output& output, const StateOptions& options) {
    std::optional<std::int32_t> target;
    if (!options.state.empty())
        target = parseInput([&] { return parseTapState(options.state); });
    const auto jtag = chooseJtag(session, options);
    const auto get = callOf(*jtag, jtag_v1_0::tapStateGet);
    std::vector<std::shared_ptr<Method>> batch;
    if (target)
        batch.push_back(moveCall(*jtag, *target));
    batch.push_back(get);
    session.runAll(batch);
    const auto state = get->value().state;
    const auto name = tapStateName(state);
    output.show({{"object", jtag->getFullName()},
                 {"state", state},
                 {"name", name ? nlohmann::json(*name) : nlohmann::json()}},
                [&](TextWriter& text) { text.print("{}\n", tapStateText(state)); });
}

void showPins(Session& session, Output& output, const ObjectOptions& options) {
    const auto jtag = chooseJtag(session, options);
    using Get = std::shared_ptr<BoundMethod<dto::Header::IoGetReply>>;
    std::vector<std::pair<const char*, Get>> driven;
    std::vector<std::shared_ptr<Method>> batch;
    for (const auto& [name, call] :
         {std::pair{"TRST", jtag_v1_0::ioTrstGet}, std::pair{"TCK", jtag_v1_0::ioTckGet},
          std::pair{"TMS", jtag_v1_0::ioTmsGet}, std::pair{"TDI", jtag_v1_0::ioTdiGet}}) {
        driven.emplace_back(name, callOf(*jtag, call));
        batch.push_back(driven.back().second);
    }
    const auto tdo = callOf(*jtag, jtag_v1_0::ioTdoGet);
    batch.push_back(tdo);
    session.runAll(batch);

    const bool level = tdo->value().level;
    nlohmann::json document{{"object", jtag->getFullName()}, {"TDO", {{"level", level}}}};
    for (const auto& [name, get] : driven)
        document[name] = {{"driven", get->value().first}, {"level", get->value().second}};
    output.show(document, [&](TextWriter& text) {
        for (const auto& [name, get] : driven) {
            const auto pin = get->value();
            text.print("{:<4}  {}  {}\n", name, pin.second ? 1 : 0, pin.first ? "driven" : "not driven");
        }
        text.print("TDO   {}\n", level ? 1 : 0);
    });
}

struct FrequencyOptions : ObjectOptions {
    std::optional<std::int32_t> frequency;

    void describe(OptionList& list) { list.add("hz", frequency, "Highest acceptable frequency in Hz"); }
};

void setOrShowFrequency(Session& session, Output& output, const FrequencyOptions& options) {
    const auto jtag = chooseJtag(session, options);
    const bool older = std::dynamic_pointer_cast<Jtag_v1_0>(jtag) != nullptr;
    const auto get = callOf(*jtag, older ? jtag_v1_0::tckFrequencyGet : jtag_v1_1::optionTckFrequencyGet);
    std::vector<std::shared_ptr<Method>> batch;
    if (options.frequency)
        batch.push_back(callOf(*jtag, older ? jtag_v1_0::tckFrequencySet : jtag_v1_1::optionTckFrequencySet,
                               *options.frequency));
    batch.push_back(get);
    session.runAll(batch);
    const auto actual = get->value();
    output.show({{"object", jtag->getFullName()}, {"frequency", actual.frequency}, {"divider", actual.value}},
                [&](TextWriter& text) { text.print("{} Hz, divider {}\n", actual.frequency, actual.value); });
}

} // namespace

std::shared_ptr<Object_v1_0> chooseJtag(Session& session, const ObjectOptions& options) {
    return chooseObject<Jtag_v1_1, Jtag_v1_0>(session, options.object, "jtag");
}

ShiftCall shiftCall(const Object_v1_0& jtag, JtagRegister target, const BitString& bits) {
    requireOffer(jtag, (target == JtagRegister::instruction ? jtag_v1_0::shiftIR : jtag_v1_0::shiftDR).name);
    return toolkit::shiftCall(jtag, target, bits);
}

std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, std::int32_t state) {
    return callOf(jtag, jtag_v1_0::tapStateSet, state);
}

std::vector<Command> jtagCommands() {
    return {
        command("jtag scan", "Reset the chain and find its TAPs, instruction lengths and IDCODEs", scanChain),
        command("jtag shift", "Shift bits through the registers, all shifts in one exchange", shiftBits),
        command("jtag svf", "Play an SVF file", playSvf, measureSvf),
        command("jtag state", "Show or change the state of the TAP controllers", moveOrShowState),
        command("jtag pins", "Show the levels of the pins", showPins),
        command("jtag frequency", "Show or set the TCK frequency", setOrShowFrequency),
        command("jtag serve", "Be a JTAG cable for programs that speak remote_bitbang or XVC", serveJtag),
        command("jtag options", "Show the shift options", showJtagOptions),
    };
}

} // namespace TAVO::cli
