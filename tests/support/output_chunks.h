#ifndef TAVO_TESTS_SUPPORT_OUTPUT_CHUNKS_H
#define TAVO_TESTS_SUPPORT_OUTPUT_CHUNKS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <tavo/client/wire/output_stream.h>

namespace support {

/// Bytes that one chunk of an output stream holds.
inline constexpr std::size_t chunkCapacity = 24480;

/// All bytes of the stream, chunk behind chunk.
inline std::vector<std::uint8_t> written(const TAVOX::OutputStream& out) {
    std::vector<std::uint8_t> all;
    for (const auto chunk : out.chunks())
        all.insert(all.end(), chunk.begin(), chunk.end());
    return all;
}

inline std::vector<std::size_t> chunkSizes(const TAVOX::OutputStream& out) {
    std::vector<std::size_t> sizes;
    for (const auto chunk : out.chunks())
        sizes.push_back(chunk.size());
    return sizes;
}

} // namespace support

#endif
