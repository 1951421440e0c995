#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace TAVO::cli {

/// A file that takes the place of an earlier one only when it is whole: until then it has another name, in
/// the same folder, and it is gone when it is not completed.
class NewFile {
public:
    /// @throws Failure (usage), as the others do, when the file cannot be made, or when something that is no
    ///         regular file has its name.
    explicit NewFile(const std::string& path);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void write(std::span<const std::uint8_t> bytes);
    /// Gives it its name.
    void complete();

private:
    [[noreturn]] void refuse() const;

    std::string path_;
    std::string temporary_;
    int file_ = -1;
};

} // namespace TAVO::cli
