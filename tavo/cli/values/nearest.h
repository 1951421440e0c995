#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// The candidate that the user may have meant by `word`; empty if none is much like it.
std::string nearest(std::string_view word, const std::vector<std::string>& candidates);

} // namespace TAVO::cli
