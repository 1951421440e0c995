#pragma once

#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include <tests/fuzz/fuzz_input.h>

namespace fuzz {

/// A file in memory that this process and its children can open by its path.
class MemoryFile {
public:
    MemoryFile()
        : descriptor_(::memfd_create("input", 0)) {
        require(descriptor_ >= 0, "the system has files in memory");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    std::string path() const {
        return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(descriptor_);
    }
    void write(View content) {
        const auto size = static_cast<ssize_t>(content.size());
        require(::ftruncate(descriptor_, 0) == 0 &&
                    ::pwrite(descriptor_, content.data(), content.size(), 0) == size,
                "a file in memory takes the input");
    }
    std::string read() const {
        std::string content(static_cast<std::size_t>(::lseek(descriptor_, 0, SEEK_END)), '\0');
        require(::pread(descriptor_, content.data(), content.size(), 0) ==
                    static_cast<ssize_t>(content.size()),
                "a file in memory gives back what it holds");
        return content;
    }

private:
    int descriptor_;
};

} // namespace fuzz
