#include <tavo/simulator/main/file_mode.h>

std::optional<unsigned> modeOpenToOthers(const std::filesystem::path&) { return std::nullopt; }
