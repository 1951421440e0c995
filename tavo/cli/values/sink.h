#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include <tavo/json/destination.h>

namespace TAVO::cli {

/// Buffered output to a descriptor. Remembers the first error.
class Sink final : public json::Destination {
public:
    explicit Sink(int descriptor)
        : descriptor_(descriptor) {}
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink() { flush(); }

    void write(std::string_view bytes) override;
    /// Writes out the buffer.
    void flush();
    /// The errno of the first error, 0 if there was none. Nothing is written after an error.
    int error() const { return error_; }

private:
    void pass(std::string_view bytes);

    int descriptor_;
    int error_ = 0;
    std::size_t held_ = 0;
    std::array<char, 16384> buffer_{};
};

} // namespace TAVO::cli
