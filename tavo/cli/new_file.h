#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <sys/types.h>

namespace TAVO::cli {

/// A file that replaces an earlier one only when complete. Until then it has a temporary name in the same
/// folder; it is removed if never completed.
///
/// Replaces only a regular file that the user owns, and keeps its read, write and execute permissions but no
/// others. Follows a symbolic link at the end of the path if the user or root owns it, so the link stays;
/// refuses links of anybody else.
class NewFile {
public:
    /// @throws Failure (usage), like the other operations, if the file cannot be created or the path names
    ///         anything else.
    /// @param permissions those of the file, in place of those above.
    explicit NewFile(const std::string& path, std::optional<mode_t> permissions = std::nullopt);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void write(std::span<const std::uint8_t> bytes);
    /// Gives the file its final name now, for content that is of use from its beginning. write() adds to it.
    void publish();
    /// Syncs the content to disk, then gives the file its final name.
    void complete();

private:
    [[noreturn]] void refuse() const;

    std::string path_;
    mode_t permissions_;
    std::string temporary_;
    int file_ = -1;
    bool isPublished_ = false;
};

} // namespace TAVO::cli
