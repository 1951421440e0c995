#pragma once

#include <functional>
#include <string>
#include <vector>

#include <tavo/cli/option_list.h>

namespace TAVO::cli {

/// What may stand in a place of a line.
struct Completions {
    std::vector<std::string> words;
    /// Whether the name of a file may stand there.
    bool files = false;
};

/// Tells names of the open device.
/// @param begun how the wanted names begin; may be ignored.
using NamesOnDevice = std::function<std::vector<std::string>(NameKind kind, const std::string& begun)>;

/// What can follow these words of a line for an open device and begins with `begun`, or more than that.
Completions completionsFor(const std::vector<std::string>& words, const std::string& begun,
                           const NamesOnDevice& names);

} // namespace TAVO::cli
