#pragma once

#include <filesystem>
#include <optional>

/// The mode of a file that others than its owner have a right to; nothing where there are no such modes.
std::optional<unsigned> modeOpenToOthers(const std::filesystem::path& file);
