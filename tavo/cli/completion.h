#pragma once

#include <functional>
#include <map>
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

/// Tells names.
/// @param begun how the wanted names begin; may be ignored.
using NamesOfKind = std::function<std::vector<std::string>(NameKind kind, const std::string& begun)>;

/// What can follow these words of a line for an open device and begins with `begun`, or more than that.
Completions completionsFor(const std::vector<std::string>& words, const std::string& begun,
                           const NamesOfKind& names);

/// The same for a line of the tool, with the options of the connection.
Completions completionsForTool(const std::vector<std::string>& words, const std::string& begun,
                               const NamesOfKind& names);

/// The options that stand beside every command, as far as the line has them: names and values.
using GivenOptions = std::map<std::string, std::string>;

GivenOptions optionsOfTool(const std::vector<std::string>& words);

} // namespace TAVO::cli
