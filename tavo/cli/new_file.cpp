#include <tavo/cli/new_file.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

[[noreturn]] void refusePath(const std::string& path, const std::string& reason) {
    throw Failure(ExitCode::usage, fmt::format("cannot write '{}': {}", path, reason));
}

/// Status of the file, without following a link; empty if there is none.
std::optional<struct stat> lookAt(const std::string& path) {
    struct stat found {};
    if (::lstat(path.c_str(), &found) == 0)
        return found;
    if (errno != ENOENT)
        refusePath(path, std::generic_category().message(errno));
    return std::nullopt;
}

/// Resolves the links at the end of the path.
std::string targetOf(const std::string& path) {
    constexpr int mostLinks = 40;
    std::filesystem::path target = path;
    for (int links = 0; links < mostLinks; ++links) {
        const auto found = lookAt(target);
        if (!found || !S_ISLNK(found->st_mode))
            return target;
        if (found->st_uid != ::geteuid() && found->st_uid != 0)
            refusePath(target, "it is a link owned by another user");
        std::error_code unread;
        const auto next = std::filesystem::read_symlink(target, unread);
        if (unread)
            refusePath(target, unread.message());
        target = target.parent_path() / next;
    }
    refusePath(path, std::generic_category().message(ELOOP));
}

mode_t newPermissions() {
    const auto mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

/// The permissions of the file to replace, else those of a new file.
mode_t permissionsAt(const std::string& path) {
    const auto existing = lookAt(path);
    if (!existing)
        return newPermissions();
    if (!S_ISREG(existing->st_mode))
        refusePath(path, "it is not a regular file");
    if (existing->st_uid != ::geteuid())
        refusePath(path, "it belongs to another user");
    return existing->st_mode & mode_t{0777};
}

} // namespace

NewFile::NewFile(const std::string& path, std::optional<mode_t> permissions)
    : path_(targetOf(path))
    , permissions_(permissions.value_or(permissionsAt(path_)))
    , temporary_(path_ + ".XXXXXX")
    , file_(::mkostemp(temporary_.data(), O_CLOEXEC)) {
    if (file_ < 0)
        refuse();
}

NewFile::~NewFile() {
    if (file_ < 0)
        return;
    ::close(file_);
    if (!isPublished_)
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

void NewFile::publish() {
    if (isPublished_)
        return;
    if (::fchmod(file_, permissions_) != 0 || std::rename(temporary_.c_str(), path_.c_str()) != 0)
        refuse();
    isPublished_ = true;
}

void NewFile::complete() {
    if (::fsync(file_) != 0)
        refuse();
    publish();
    ::close(std::exchange(file_, -1));
}

void NewFile::refuse() const { refusePath(path_, std::generic_category().message(errno)); }

} // namespace TAVO::cli
