#include <tavo/cli/commands/jtag.h>

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/jtag_survey.h>
#include <tavo/cli/tap_state_name.h>

namespace TAVO::cli {

namespace {

ChainSurvey survey(Session& session, const Object_v1_0& jtag) {
    const auto reset = [&] { return moveCall(jtag, parseTapState("Test-Logic-Reset")); };
    const auto probes = chainProbes();
    const auto afterReset = shiftCall(jtag, JtagRegister::data, probes.afterReset);
    const auto instruction = shiftCall(jtag, JtagRegister::instruction, probes.instruction);
    const auto bypass = shiftCall(jtag, JtagRegister::data, probes.bypass);
    const std::vector<std::shared_ptr<Method>> batch{reset(), afterReset, instruction, bypass, reset()};
    session.runAll(batch);
    return surveyChain({capturedBy(afterReset), capturedBy(instruction), capturedBy(bypass)});
}

/// The instruction register's length where it is the same in every possible split.
std::optional<std::size_t> instructionLength(const ChainSurvey& survey, std::size_t tap) {
    if (survey.splits.empty() || survey.hasMoreSplits)
        return std::nullopt;
    const auto length = survey.splits.front()[tap];
    const auto agrees = [&](const auto& split) { return split[tap] == length; };
    return std::all_of(survey.splits.begin(), survey.splits.end(), agrees) ? std::optional(length)
                                                                           : std::nullopt;
}

nlohmann::json documentOf(const ChainSurvey& survey) {
    auto taps = nlohmann::json::array();
    for (std::size_t position = 0; position < survey.taps.size(); ++position) {
        nlohmann::json tap{{"position", position}, {"irLength", nullptr}, {"idcode", nullptr}};
        if (const auto length = instructionLength(survey, position))
            tap["irLength"] = *length;
        if (const auto& idcode = survey.taps[position]) {
            tap["idcode"] = fmt::format("{:#010x}", idcode->value);
            tap["version"] = idcode->version();
            tap["part"] = idcode->part();
            tap["manufacturer"] = {{"bank", idcode->manufacturerBank()}, {"id", idcode->manufacturer()}};
        }
        taps.push_back(std::move(tap));
    }
    return {{"taps", std::move(taps)},
            {"irLength", survey.instructionCapture.size()},
            {"irCapture", bitsText(survey.instructionCapture, BitNotation::number)},
            {"irSplits", survey.splits},
            {"ambiguous", survey.splits.size() != 1}};
}

std::string tapText(const ChainSurvey& survey, std::size_t position) {
    const auto length = instructionLength(survey, position);
    const auto head = fmt::format("{:>3}  {:>3}", position, length ? std::to_string(*length) : "?");
    const auto& idcode = survey.taps[position];
    if (!idcode)
        return head + "  none\n";
    return fmt::format("{}  {:#010x}  {:>7}  {:#06x}  bank {} id {:#04x}\n", head, idcode->value,
                       idcode->version(), idcode->part(), idcode->manufacturerBank(), idcode->manufacturer());
}

std::string splitsText(const ChainSurvey& survey) {
    if (survey.splits.empty())
        return "The IR lengths are unknown: fewer registers than TAPs begin with 1, 0 in what was "
               "captured.\n";
    if (survey.splits.size() == 1)
        return "";
    std::string text = "The IR lengths are ambiguous, TAP 0 first:";
    for (const auto& split : survey.splits)
        text += fmt::format("{} {}", &split == &survey.splits.front() ? "" : " or", fmt::join(split, "+"));
    return text + (survey.hasMoreSplits ? ", and more.\n" : ".\n");
}

std::string textOf(const ChainSurvey& survey) {
    std::string text = "TAP   IR  IDCODE      version  part    manufacturer\n";
    for (std::size_t position = 0; position < survey.taps.size(); ++position)
        text += tapText(survey, position);
    return text +
           fmt::format("IR total {} bits, captured {}; TAP 0 is next to TDO\n",
                       survey.instructionCapture.size(),
                       bitsText(survey.instructionCapture, BitNotation::number)) +
           splitsText(survey);
}

} // namespace

void scanChain(Session& session, Output& output, const JtagArguments& arguments) {
    const auto jtag = chooseJtag(session, arguments);
    const auto found = survey(session, *jtag);
    auto document = documentOf(found);
    document["object"] = jtag->getFullName();
    output.show(document, textOf(found));
}

} // namespace TAVO::cli
