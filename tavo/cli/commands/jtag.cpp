#include <tavo/cli/commands/jtag.h>

#include <fmt/format.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/commands/commands.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/tap_state_name.h>

namespace TAVO::cli {

namespace {

using HWDebug::Jtag_v1_0;
using HWDebug::Jtag_v1_1;

std::int32_t stateOf(const std::string& text) {
    return parseInput([&] { return parseTapState(text); });
}

void moveOrShowState(Session& session, Output& output, const JtagArguments& arguments) {
    std::optional<std::int32_t> target;
    if (!arguments.state.empty())
        target = stateOf(arguments.state);
    const auto jtag = chooseJtag(session, arguments);
    const auto get = callOf<dto::Jtag::TapStateGetReply>(*jtag, "tapStateGet");
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

void showPins(Session& session, Output& output, const JtagArguments& arguments) {
    const auto jtag = chooseJtag(session, arguments);
    using Get = std::shared_ptr<BoundMethod<dto::Header::IoGetReply>>;
    std::vector<std::pair<const char*, Get>> driven;
    std::vector<std::shared_ptr<Method>> batch;
    for (const auto& [name, method] :
         {std::pair{"TRST", "ioTrstGet"}, {"TCK", "ioTckGet"}, {"TMS", "ioTmsGet"}, {"TDI", "ioTdiGet"}}) {
        driven.emplace_back(name, callOf<dto::Header::IoGetReply>(*jtag, method));
        batch.push_back(driven.back().second);
    }
    const auto tdo = callOf<dto::Header::oGetReply>(*jtag, "ioTdoGet");
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

void setOrShowFrequency(Session& session, Output& output, const JtagArguments& arguments) {
    const auto jtag = chooseJtag(session, arguments);
    const std::string prefix =
        std::dynamic_pointer_cast<Jtag_v1_0>(jtag) ? "tckFrequency" : "optionTckFrequency";
    const auto get = callOf<dto::Base::FrequencyGetReply>(*jtag, prefix + "Get");
    std::vector<std::shared_ptr<Method>> batch;
    if (arguments.frequency) {
        auto request = std::make_shared<dto::Jtag::OptionTckFrequencySetRequest>();
        request->frequency = *arguments.frequency;
        batch.push_back(callOf(*jtag, prefix + "Set", {request}));
    }
    batch.push_back(get);
    session.runAll(batch);
    const auto actual = get->value();
    output.show({{"object", jtag->getFullName()}, {"frequency", actual.frequency}, {"divider", actual.value}},
                [&](TextWriter& text) { text.print("{} Hz, divider {}\n", actual.frequency, actual.value); });
}

} // namespace

std::shared_ptr<Object_v1_0> chooseJtag(Session& session, const JtagArguments& arguments) {
    return chooseObject<Jtag_v1_1, Jtag_v1_0>(session, arguments.object, "jtag");
}

ShiftCall shiftCall(const Object_v1_0& jtag, JtagRegister target, const BitString& bits) {
    auto request = std::make_shared<dto::Jtag::ShiftRequest>();
    request->bits = static_cast<std::int32_t>(bits.size());
    request->data = bits.bytes();
    return callOf<dto::Jtag::ShiftReply>(jtag, target == JtagRegister::instruction ? "shiftIR" : "shiftDR",
                                         {request});
}

BitString capturedBy(const ShiftCall& call) {
    const auto& request = dynamic_cast<const dto::Jtag::ShiftRequest&>(*call->getParams().request);
    const auto size = static_cast<std::size_t>(request.bits);
    const auto result = call->getResult();
    const auto& data = dto::replyOf<dto::Jtag::ShiftReply>(result).data;
    if (result.code == 0 && data.size() != BitString::bytesFor(size))
        throw Failure(ExitCode::protocol, fmt::format("{} captured {} bytes for {} bits", call->getFullName(),
                                                      data.size(), size));
    return {size, data};
}

std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, std::int32_t state) {
    auto request = std::make_shared<dto::Jtag::TapStateSetRequest>();
    request->state = state;
    return callOf(jtag, "tapStateSet", {request});
}

void addJtag(CLI::App& tool, Program& program) {
    CommandGroup<JtagArguments> jtag(tool, program, "jtag", "Look at JTAG chains and shift through them");
    auto& arguments = jtag.arguments();
    jtag.group().add_option("--object", arguments.object,
                            "Full name of the jtag object; needed when there are several");

    jtag.add("scan", "Reset the chain; find its TAPs, their instruction lengths and IDCODEs", scanChain);

    auto* shift =
        jtag.add("shift", "Shift bits through the registers, all shifts in one exchange", shiftBits);
    shift
        ->add_option(
            "shift", arguments.shifts,
            "ir or dr, how many bits, and these as a hexadecimal number, whose lowest bit goes first; "
            "again for each further shift")
        ->required()
        ->type_name("ir|dr BITS HEX");
    shift->add_flag("--bytes", arguments.bytes,
                    "HEX and results are bytes in the order of shifting, the lowest bit of each first");

    jtag.add("state", "Tell the state of the TAP controllers, or move them", moveOrShowState)
        ->add_option("state", arguments.state, "Where to: a name such as Run-Test/Idle, or a number");
    jtag.add("pins", "Tell the levels of the pins", showPins);
    jtag.add("frequency", "Tell the frequency of TCK, or set it", setOrShowFrequency)
        ->add_option("hz", arguments.frequency, "The highest wanted");
    jtag.add("options", "Tell the options of shifts", showJtagOptions);
}

} // namespace TAVO::cli
