#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/byte_order.h>

namespace TAVOX {

/// Supplies the bytes of a block that is read while it still arrives. Both operations block until the bytes
/// are there, and throw what the connection throws.
class TAVO_API InputSource {
public:
    /// The next `count` bytes in one piece, valid until the next call of either operation.
    virtual std::span<const std::uint8_t> gather(std::uint64_t count) = 0;
    /// Stores the next `count` bytes at `destination`.
    virtual void receive(std::uint8_t* destination, std::uint64_t count) = 0;

protected:
    InputSource() = default;
    InputSource(const InputSource&) = default;
    InputSource& operator=(const InputSource&) = default;
    ~InputSource() = default;
};

/// Reads the values of one received block, big-endian. Decoders are given one. The block is borrowed: it must
/// outlive the reader and every view that readSpan() returned.
///
/// A read beyond the end of the block fails the reader for good: this read and all later ones return zero (or
/// a null pointer) and consume nothing. Check failed() once, after the last field.
///
/// @code
/// const auto code = in.readInt32();
/// const auto temperature = in.readInt32();
/// if (in.failed())
///     return {};
/// @endcode
///
/// A block may also be read while it still arrives, from an InputSource. Then each read may block, a view of
/// readSpan() lasts only until the next read, and copies of the reader take each other's bytes. CallExchange
/// does this for the library's own record decoders only.
///
/// Only an InputSource throws; the reader is useless after that. One thread at a time.
class TAVO_API InputStream {
public:
    /// Reads the `length` bytes at `bytes`, all of which are there already.
    InputStream(const std::uint8_t* bytes, std::uint64_t length) noexcept
        : cursor_(bytes)
        , arrived_(length)
        , size_(length) {}
    /// Reads a block of `length` bytes, none of which has arrived yet. `source` must outlive the reader.
    InputStream(InputSource& source, std::uint64_t length) noexcept
        : cursor_(nullptr)
        , arrived_(0)
        , outstanding_(length)
        , size_(length)
        , source_(&source) {}

    /// 4 bytes. For an unsigned field, cast the value to std::uint32_t.
    std::int32_t readInt32() { return static_cast<std::int32_t>(readNumber<std::uint32_t>()); }
    /// 8 bytes. For an unsigned field, cast the value to std::uint64_t.
    std::int64_t readInt64() { return static_cast<std::int64_t>(readNumber<std::uint64_t>()); }
    /// 1 byte.
    std::uint8_t readByte() { return readNumber<std::uint8_t>(); }
    /// 1 byte; any value but 0 is true.
    bool readBool() { return readByte() != 0; }

    /// Copies the next `count` bytes to `destination`, without a length field; copies nothing when it fails.
    void readRaw(std::uint8_t* destination, std::uint64_t count) {
        if (count > arrived_ && !failed_ && count <= outstanding_) {
            receive(destination, count);
            return;
        }
        const auto* bytes = readSpan(count);
        if (bytes && count > 0)
            std::memcpy(destination, bytes, static_cast<std::size_t>(count));
    }

    /// The next `count` bytes where they lie in the block, or null when fewer remain.
    const std::uint8_t* readSpan(std::uint64_t count) {
        if (failed_ || (count > arrived_ && !gather(count))) {
            fail();
            return nullptr;
        }
        const auto* bytes = cursor_;
        cursor_ += count;
        arrived_ -= count;
        return bytes;
    }

    /// Blocks until the whole rest of the block has arrived.
    void awaitRest() {
        if (outstanding_ > 0 && !failed_)
            gather(outstanding_);
    }

    /// Whether a read went beyond the end of the block, or fail() was called.
    bool failed() const noexcept { return failed_; }
    /// Fails the reader. For a value that cannot be right, such as a count of more elements than can fit in
    /// the rest of the block.
    /// @param begun how many bytes of the bad value have been read already: 4 for such a count.
    void fail(std::uint64_t begun = 0) noexcept {
        if (!failed_)
            failedAt_ = size_ - remaining() - begun;
        failed_ = true;
    }
    /// Offset in the block of the value at which the reader failed; 0 while it has not.
    std::uint64_t failedAt() const noexcept { return failedAt_; }

    /// Length of the whole block, in bytes.
    std::uint64_t size() const noexcept { return size_; }
    /// How many bytes have not been read yet, arrived or not.
    std::uint64_t remaining() const noexcept { return arrived_ + outstanding_; }
    /// How many of the remaining() bytes can be read without blocking.
    std::uint64_t arrived() const noexcept { return arrived_; }

private:
    template <class Number>
    Number readNumber() {
        const auto* bytes = readSpan(sizeof(Number));
        return bytes ? loadBigEndian<Number>(bytes) : Number{0};
    }

    bool gather(std::uint64_t count);
    void receive(std::uint8_t* destination, std::uint64_t count);

    const std::uint8_t* cursor_;
    // One of these two is always 0: what was gathered is read before more is gathered.
    std::uint64_t arrived_;
    std::uint64_t outstanding_ = 0;
    std::uint64_t size_;
    InputSource* source_ = nullptr;
    std::uint64_t failedAt_ = 0;
    bool failed_ = false;
};

} // namespace TAVOX
