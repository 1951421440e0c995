#include <tavo/cli/serial_serve/terminal_link.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

[[noreturn]] void refuseLink(const std::string& path, const std::string& reason) {
    throw Failure(ExitCode::usage, fmt::format("cannot make the link '{}': {}", path, reason));
}

} // namespace

TerminalLink::TerminalLink(std::string path, std::string terminal)
    : path_(std::move(path))
    , terminal_(std::move(terminal)) {
    if (::symlink(terminal_.c_str(), path_.c_str()) == 0)
        return;
    if (errno != EEXIST)
        refuseLink(path_, std::generic_category().message(errno));
    if (!isLeftOver())
        refuseLink(path_, "there is something that is no link left over from a terminal that is gone");
    const auto temporary = fmt::format("{}.{}", path_, ::getpid());
    if (::symlink(terminal_.c_str(), temporary.c_str()) != 0)
        refuseLink(path_, std::generic_category().message(errno));
    if (std::rename(temporary.c_str(), path_.c_str()) != 0) {
        const auto reason = std::generic_category().message(errno);
        ::unlink(temporary.c_str());
        refuseLink(path_, reason);
    }
}

bool TerminalLink::isLeftOver() const {
    struct stat found {};
    if (::lstat(path_.c_str(), &found) != 0 || !S_ISLNK(found.st_mode) || found.st_uid != ::geteuid())
        return false;
    std::error_code failure;
    const auto target = std::filesystem::read_symlink(path_, failure);
    if (failure || target.parent_path() != std::filesystem::path(terminal_).parent_path())
        return false;
    return target == terminal_ || !std::filesystem::exists(target, failure);
}

TerminalLink::~TerminalLink() {
    std::error_code failure;
    if (std::filesystem::read_symlink(path_, failure) == terminal_)
        ::unlink(path_.c_str());
}

} // namespace TAVO::cli
