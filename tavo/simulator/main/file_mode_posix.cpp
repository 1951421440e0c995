#include <tavo/simulator/main/file_mode.h>

std::optional<unsigned> modeOpenToOthers(const std::filesystem::path& file) {
    using std::filesystem::perms;
    std::error_code ignored;
    const auto mode = std::filesystem::status(file, ignored).permissions();
    if (ignored || (mode & (perms::group_all | perms::others_all)) == perms::none)
        return std::nullopt;
    return static_cast<unsigned>(mode & perms::mask);
}
