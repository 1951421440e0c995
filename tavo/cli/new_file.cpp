#include <tavo/cli/new_file.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

/// A link stays one: what it leads to is replaced.
std::string targetOf(const std::string& path) {
    std::error_code unresolved;
    const auto target = std::filesystem::canonical(path, unresolved);
    return unresolved ? path : target.string();
}

mode_t permissionsOf(const std::string& path) {
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0)
        return existing.st_mode & mode_t{07777};
    const auto mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

} // namespace

NewFile::NewFile(const std::string& path)
    : path_(targetOf(path))
    , temporary_(path_ + ".XXXXXX") {
    std::error_code unknown;
    const auto status = std::filesystem::status(path_, unknown);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw Failure(ExitCode::usage, fmt::format("cannot write '{}': it is no regular file", path_));
    file_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
    if (file_ < 0)
        refuse();
}

NewFile::~NewFile() {
    if (file_ < 0)
        return;
    ::close(file_);
    ::unlink(temporary_.c_str());
}

void NewFile::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto written = ::write(file_, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            refuse();
        bytes = bytes.subspan(static_cast<std::size_t>(written < 0 ? 0 : written));
    }
}

void NewFile::complete() {
    if (::fchmod(file_, permissionsOf(path_)) != 0 || ::fsync(file_) != 0 ||
        std::rename(temporary_.c_str(), path_.c_str()) != 0)
        refuse();
    ::close(std::exchange(file_, -1));
}

void NewFile::refuse() const {
    throw Failure(ExitCode::usage,
                  fmt::format("cannot write '{}': {}", path_, std::generic_category().message(errno)));
}

} // namespace TAVO::cli
