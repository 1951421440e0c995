#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include <tavo/cli/values/jtag_survey.h>

namespace TAVO::cli {

/// The survey as JSON. Unknown "irLength" and "idcode" of a TAP are null.
nlohmann::json chainDocument(const ChainSurvey& survey);
/// The survey as a table.
std::string chainText(const ChainSurvey& survey);

} // namespace TAVO::cli
