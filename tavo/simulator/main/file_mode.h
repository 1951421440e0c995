#pragma once

#include <filesystem>
#include <optional>

/// The mode of the file if it gives anybody but the owner access; empty otherwise, and on systems without
/// modes.
std::optional<unsigned> modeOpenToOthers(const std::filesystem::path& file);
