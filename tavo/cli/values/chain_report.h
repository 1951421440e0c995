#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include <tavo/cli/values/jtag_survey.h>

namespace TAVO::cli {

/// What was found in a chain, for programs; "irLength" and "idcode" of a TAP are null where they are unknown.
nlohmann::json chainDocument(const ChainSurvey& survey);
/// The same as a table.
std::string chainText(const ChainSurvey& survey);

} // namespace TAVO::cli
