#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include <tavo/toolkit/jtag_survey.h>

namespace TAVO::cli {

using toolkit::ChainSurvey;

/// The survey as JSON. Unknown "irLength" and "idcode" of a TAP are null.
nlohmann::json chainDocument(const ChainSurvey& survey);
/// The survey as a table.
std::string chainText(const ChainSurvey& survey);

} // namespace TAVO::cli
