#pragma once

#include <string>
#include <vector>

/// Help texts, made from the list of commands.
namespace TAVO::cli {

/// The help of the command or group with this path, or of the whole tool if it is empty.
/// @throws Failure (usage) if there is none; names the unknown word and what may have been meant.
std::string helpText(const std::string& path);

/// The same for a topic: a path, or "exit-status".
std::string topicText(const std::vector<std::string>& words);

/// The options that may stand behind a command or group: its own, --object, and those of the tool.
std::vector<std::string> optionNames(const std::string& path);

/// What to say of a word where a command should be.
/// @param path the group in which it stands.
std::string unknownCommandText(const std::string& path, const std::string& word);

/// What to say of an option that nobody knows.
std::string unknownOptionText(const std::string& path, const std::string& word);

} // namespace TAVO::cli
