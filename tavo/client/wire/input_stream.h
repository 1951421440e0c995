#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/byte_order.h>

namespace TAVOX {

/// Where the bytes of a block come from that is read while it still arrives. Throws when they cannot be had.
class TAVO_API InputSource {
public:
    /// The next `count` bytes in one piece, valid until the next call.
    virtual std::span<const std::uint8_t> gather(std::uint64_t count) = 0;
    /// Stores the next `count` bytes.
    virtual void receive(std::uint8_t* destination, std::uint64_t count) = 0;

protected:
    InputSource() = default;
    InputSource(const InputSource&) = default;
    InputSource& operator=(const InputSource&) = default;
    ~InputSource() = default;
};

/// Reads the values of one received block, which it does not own and which must outlive it and every view
/// that readSpan() gave out. Numbers are big-endian.
///
/// A large block may be read while it still arrives, from an InputSource. A view that readSpan() gave out
/// then ends with the next read, and copies of the reader take each other's bytes. A CallExchange reads so
/// for the library's own record decoders alone.
///
/// A read that asks for more than what remains fails the reader for good: that read and every later one yield
/// zero (or a null pointer) and consume nothing. Test failed() after the reads of a record. Nothing here
/// throws but an InputSource, whose exception leaves the read; the reader is of no use then. A reader is used
/// by one thread at a time.
class TAVO_API InputStream {
public:
    InputStream(const std::uint8_t* bytes, std::uint64_t length) noexcept
        : cursor_(bytes)
        , arrived_(length)
        , size_(length) {}
    /// A block of `length` bytes that all have yet to come.
    InputStream(InputSource& source, std::uint64_t length) noexcept
        : cursor_(nullptr)
        , arrived_(0)
        , outstanding_(length)
        , size_(length)
        , source_(&source) {}

    /// 4 bytes; take the value as signed or unsigned as the field demands.
    std::int32_t readInt32() { return static_cast<std::int32_t>(readNumber<std::uint32_t>()); }
    /// 8 bytes.
    std::int64_t readInt64() { return static_cast<std::int64_t>(readNumber<std::uint64_t>()); }
    /// 1 byte.
    std::uint8_t readByte() { return readNumber<std::uint8_t>(); }
    /// 1 byte; any value but 0 is true.
    bool readBool() { return readByte() != 0; }

    /// Copies the next `count` bytes to `destination`, or fails and copies nothing.
    void readRaw(std::uint8_t* destination, std::uint64_t count) {
        if (count > arrived_ && !failed_ && count <= outstanding_) {
            receive(destination, count);
            return;
        }
        const auto* bytes = readSpan(count);
        if (bytes && count > 0)
            std::memcpy(destination, bytes, static_cast<std::size_t>(count));
    }

    /// The next `count` bytes inside the block, or a null pointer when there are not so many.
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

    /// Waits until the whole rest of the block has arrived.
    void awaitRest() {
        if (outstanding_ > 0 && !failed_)
            gather(outstanding_);
    }

    bool failed() const noexcept { return failed_; }
    /// Fails the reader: for a caller who finds that what he read cannot be right, such as a count of
    /// elements that does not fit in what remains.
    /// @param begun how many bytes of the value at fault have been read, such as the four of that count.
    void fail(std::uint64_t begun = 0) noexcept {
        if (!failed_)
            failedAt_ = size_ - remaining() - begun;
        failed_ = true;
    }
    /// Where in the block the value begins at which the reader has failed.
    std::uint64_t failedAt() const noexcept { return failedAt_; }

    /// Length of the block.
    std::uint64_t size() const noexcept { return size_; }
    /// Bytes that have not been read.
    std::uint64_t remaining() const noexcept { return arrived_ + outstanding_; }
    /// The part of remaining() that needs not to be waited for.
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
    // One of these two is 0 at any time: what is gathered is read before more is.
    std::uint64_t arrived_;
    std::uint64_t outstanding_ = 0;
    std::uint64_t size_;
    InputSource* source_ = nullptr;
    std::uint64_t failedAt_ = 0;
    bool failed_ = false;
};

} // namespace TAVOX
