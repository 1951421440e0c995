#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <sys/types.h>

namespace TAVO::cli {

/// A file that takes the place of an earlier one only when it is whole: until then it has another name, in
/// the same folder, and it is gone when it is not completed.
///
/// It replaces nothing but a regular file of the user's own, whose permissions it keeps: read, write and
/// execute, and nothing beyond. Symbolic links at the end of the path are followed where they are the user's
/// own or root's, so that they stay links; links of anybody else are refused.
class NewFile {
public:
    /// @throws Failure (usage), as the others do, when the file cannot be made, or when something else than
    ///         the above has its name.
    explicit NewFile(const std::string& path);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void write(std::span<const std::uint8_t> bytes);
    /// Gives it its name, once its content is on the disk.
    void complete();

private:
    [[noreturn]] void refuse() const;

    std::string path_;
    mode_t permissions_;
    std::string temporary_;
    int file_ = -1;
};

} // namespace TAVO::cli
