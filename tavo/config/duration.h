#pragma once

#include <string>
#include <string_view>

namespace TAVO::config {

/// The one way in which users write durations: a number with ms, s, m or h, or a number of seconds.
/// @return seconds.
/// @throws std::invalid_argument that says what is wrong with the text.
double parseDuration(std::string_view text);

/// The shortest such text: "10s", "500ms", "2m".
std::string durationText(double seconds);

} // namespace TAVO::config
