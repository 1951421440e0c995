#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace TAVO::simulator {

/// Finds the requests in what a client sends. Takes memory for bytes that came, never for sizes announced.
class RequestAssembler {
public:
    enum class State { incomplete, complete, tooLarge };

    void feed(std::span<const std::uint8_t> bytes);
    /// What the bytes that came so far begin with.
    State scan();
    /// Takes off a complete request.
    std::vector<std::uint8_t> take();
    /// How many bytes are kept.
    std::size_t size() const { return bytes_.size(); }

private:
    std::vector<std::uint8_t> bytes_;
    // Where the request at the front begins: what lies before has been taken.
    std::size_t begin_ = 0;
    // How much of it is known to be well formed, and how many calls are missing then.
    std::size_t known_ = 0;
    std::uint32_t callsLeft_ = 0;
};

} // namespace TAVO::simulator
