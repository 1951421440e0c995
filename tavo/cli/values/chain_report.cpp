#include <tavo/cli/values/chain_report.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/values/bit_notation.h>

namespace TAVO::cli {

namespace {

std::optional<std::size_t> instructionLength(const ChainSurvey& survey, std::size_t tap) {
    return survey.splits.size() == 1 ? std::optional(survey.splits.front()[tap]) : std::nullopt;
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

} // namespace

nlohmann::json chainDocument(const ChainSurvey& survey) {
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

std::string chainText(const ChainSurvey& survey) {
    std::string text = "TAP   IR  IDCODE      version  part    manufacturer\n";
    for (std::size_t position = 0; position < survey.taps.size(); ++position)
        text += tapText(survey, position);
    return text +
           fmt::format("IR total {} bits, captured {}; TAP 0 is next to TDO\n",
                       survey.instructionCapture.size(),
                       bitsText(survey.instructionCapture, BitNotation::number)) +
           splitsText(survey);
}

} // namespace TAVO::cli
