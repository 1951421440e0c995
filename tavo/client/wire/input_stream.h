#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <tavo/client/wire/byte_order.h>

namespace TAVOX {

/// Reads the values of one received block, which it does not own and which must outlive it and every view
/// that readSpan() gave out. Numbers are big-endian.
///
/// A read that asks for more than what remains fails the reader for good: that read and every later one yield
/// zero (or a null pointer) and consume nothing. Nothing here throws; test failed() after the reads of a
/// record. A reader is used by one thread at a time.
class InputStream {
public:
    InputStream(const std::uint8_t* bytes, std::uint64_t length) noexcept
        : cursor_(bytes)
        , size_(length)
        , remaining_(length) {}

    /// 4 bytes; take the value as signed or unsigned as the field demands.
    std::int32_t readInt32() noexcept { return static_cast<std::int32_t>(readNumber<std::uint32_t>()); }
    /// 8 bytes.
    std::int64_t readInt64() noexcept { return static_cast<std::int64_t>(readNumber<std::uint64_t>()); }
    /// 1 byte.
    std::uint8_t readByte() noexcept { return readNumber<std::uint8_t>(); }
    /// 1 byte; any value but 0 is true.
    bool readBool() noexcept { return readByte() != 0; }

    /// Copies the next `count` bytes to `destination`, or fails and copies nothing.
    void readRaw(std::uint8_t* destination, std::uint64_t count) noexcept {
        const auto* bytes = readSpan(count);
        if (bytes && count > 0)
            std::memcpy(destination, bytes, static_cast<std::size_t>(count));
    }

    /// The next `count` bytes inside the block, or a null pointer when there are not so many.
    const std::uint8_t* readSpan(std::uint64_t count) noexcept {
        if (failed_ || remaining_ < count) {
            failed_ = true;
            return nullptr;
        }
        const auto* bytes = cursor_;
        cursor_ += count;
        remaining_ -= count;
        return bytes;
    }

    bool failed() const noexcept { return failed_; }
    /// Fails the reader: for a caller who finds that what he read cannot be right, such as a count of
    /// elements that does not fit in what remains.
    void fail() noexcept { failed_ = true; }

    /// Length of the block.
    std::uint64_t size() const noexcept { return size_; }
    /// Bytes that have not been read.
    std::uint64_t remaining() const noexcept { return remaining_; }

private:
    template <class Number>
    Number readNumber() noexcept {
        const auto* bytes = readSpan(sizeof(Number));
        return bytes ? loadBigEndian<Number>(bytes) : Number{0};
    }

    const std::uint8_t* cursor_;
    std::uint64_t size_;
    std::uint64_t remaining_;
    bool failed_ = false;
};

} // namespace TAVOX
