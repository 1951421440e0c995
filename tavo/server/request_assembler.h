#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace TAVO::server {

/// Splits a client's bytes into requests. Takes memory only for bytes that arrived, never for announced
/// sizes.
class RequestAssembler {
public:
    enum class State { incomplete, complete, tooLarge };

    void feed(std::span<const std::uint8_t> bytes);
    /// Checks how far the first request has arrived.
    State scan();
    /// Removes and returns a complete request.
    std::vector<std::uint8_t> take();
    /// Number of bytes kept.
    std::size_t size() const { return bytes_.size(); }

private:
    std::vector<std::uint8_t> bytes_;
    // Start of the first request. The bytes before it have been taken.
    std::size_t begin_ = 0;
    // How much of it is known to be well formed, and how many calls are still missing.
    std::size_t known_ = 0;
    std::uint32_t callsLeft_ = 0;
};

} // namespace TAVO::server
