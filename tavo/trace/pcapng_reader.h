#pragma once

#include <chrono>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <stdexcept>
#include <vector>

namespace TAVO::trace {

/// The file is none that can be read.
class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One packet of a capture, borrowed until the next.
struct Packet {
    std::uint16_t linkType = 0;
    std::chrono::nanoseconds time{0};
    std::span<const std::uint8_t> bytes;
};

/// Reads the packets of a pcapng file, of any byte order and resolution of time. Holds one block at a time.
class PcapngReader {
public:
    /// `in` must outlive the reader.
    explicit PcapngReader(std::istream& in)
        : in_(in) {}

    /// The next packet; empty at the end of the file, also of one that ends within a block.
    /// @throws FormatError for a file that is no pcapng file, and for a block that cannot be one.
    std::optional<Packet> next();
    /// Whether the file ended within a block.
    bool isCut() const { return isCut_; }

private:
    struct Interface {
        std::uint16_t linkType = 0;
        std::uint8_t resolution = 6;
        std::int64_t offset = 0;
    };

    /// Reads a block into block_. Returns its type; empty at the end.
    std::optional<std::uint32_t> readBlock();
    bool read(std::uint8_t* to, std::size_t count);
    std::uint16_t half(std::size_t place) const;
    std::uint32_t word(std::size_t place) const;
    void describeInterface();
    Packet packet(std::size_t interface, std::uint64_t ticks, std::size_t begin, std::uint32_t length) const;

    std::istream& in_;
    bool isBig_ = false;
    bool hasSection_ = false;
    bool isCut_ = false;
    std::vector<Interface> interfaces_;
    /// Without type and lengths.
    std::vector<std::uint8_t> block_;
};

} // namespace TAVO::trace
