#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace TAVO::cli {

/// Where bytes go that are written as they are made: a descriptor, in large pieces. Its first error is kept.
class Sink {
public:
    explicit Sink(int descriptor)
        : descriptor_(descriptor) {}
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink() { flush(); }

    void write(std::string_view bytes);
    /// Passes on what is held back.
    void flush();
    /// The system's number of the first error, 0 when there was none. Nothing is written after an error.
    int error() const { return error_; }

private:
    void pass(std::string_view bytes);

    int descriptor_;
    int error_ = 0;
    std::size_t held_ = 0;
    std::array<char, 16384> buffer_{};
};

} // namespace TAVO::cli
