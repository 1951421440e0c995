#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/byte_order.h>

namespace TAVOX {

/// Vouches for the memory that encoders lend to an OutputStream, so that large blocks need not be copied.
class TAVO_API Lender {
public:
    /// Whether the run that is about to be lent, and every later one, will stay unchanged until the request
    /// has been sent. Asked only once, at the first long run, because the answer may be costly.
    virtual bool answersForRuns() noexcept = 0;

protected:
    Lender() = default;
    Lender(const Lender&) = default;
    Lender& operator=(const Lender&) = default;
    ~Lender() = default;
};

/// Collects the bytes of one request, big-endian and without padding. Encoders are given one.
///
/// @code
/// out.writeUInt32(celsius);
/// out.writeBytes(zone.size(), reinterpret_cast<const std::uint8_t*>(zone.data()));
/// @endcode
///
/// The bytes lie in a chain of chunks. The first chunk is part of the writer, so a request of up to
/// `chunkCapacity` bytes needs no heap memory; more chunks are allocated as needed. A chunk boundary may
/// split a run of bytes, but never a number.
///
/// When there is no memory for a chunk the writer fails for good: failed() is true, and later writes do
/// nothing. Nothing here throws. One thread at a time.
class TAVO_API OutputStream {
    struct Chunk;

public:
    /// Size of a chunk, in bytes.
    static constexpr std::size_t chunkCapacity = 24480;

    /// The bytes of a request, as a forward range of runs in the order in which they go on the wire. A view:
    /// valid until the writer is written to again or destroyed, and as long as what was lent to it.
    class TAVO_API Chunks {
    public:
        /// A run of bytes.
        using value_type = std::span<const std::uint8_t>;

        /// A forward iterator over the runs.
        class TAVO_API iterator {
        public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = Chunks::value_type;
            using difference_type = std::ptrdiff_t;
            using pointer = const value_type*;
            using reference = value_type;

            iterator() = default;
            value_type operator*() const {
                return atLent_ ? chunk_->lent : value_type(chunk_->data.data(), chunk_->used);
            }
            iterator& operator++() {
                atLent_ = !atLent_ && !chunk_->lent.empty();
                if (!atLent_)
                    chunk_ = chunk_->next.get();
                return *this;
            }
            iterator operator++(int) {
                iterator before = *this;
                ++*this;
                return before;
            }
            bool operator==(const iterator&) const = default;

        private:
            friend class Chunks;
            explicit iterator(const Chunk* chunk)
                : chunk_(chunk) {}
            const Chunk* chunk_ = nullptr;
            bool atLent_ = false;
        };

        /// The first run. There always is one, but it may be empty.
        iterator begin() const { return iterator(first_); }
        /// Behind the last run.
        iterator end() const { return iterator(); }
        /// How many runs there are; walks the chain to count them.
        std::size_t size() const { return static_cast<std::size_t>(std::distance(begin(), end())); }
        /// The run at `index`, which must be below size(); walks the chain to get there.
        value_type operator[](std::size_t index) const {
            return *std::next(begin(), static_cast<std::ptrdiff_t>(index));
        }

    private:
        friend class OutputStream;
        explicit Chunks(const Chunk* first)
            : first_(first) {}
        const Chunk* first_;
    };

    /// A few chunks that one writer leaves to the next, which need not ask for memory then. For writers of
    /// one thread.
    class TAVO_API SpareChunks {
    public:
        SpareChunks() = default;
        SpareChunks(const SpareChunks&) = delete;
        SpareChunks& operator=(const SpareChunks&) = delete;
        ~SpareChunks() = default;

        /// More than these are given back to the system.
        static constexpr std::size_t most = 4;

    private:
        friend class OutputStream;
        std::unique_ptr<Chunk> take() noexcept;
        void add(std::unique_ptr<Chunk> chunk) noexcept;

        std::unique_ptr<Chunk> first_;
        std::size_t count_ = 0;
    };

    // Not defaulted: `OutputStream out{}` must not clear the first chunk.
    OutputStream() noexcept {} // NOLINT(modernize-use-equals-default)
    /// The same with chunks from `spares`, which outlives it, as long as there are some.
    explicit OutputStream(SpareChunks& spares) noexcept
        : spares_(&spares) {}
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;
    ~OutputStream();

    /// From now on lendBytes() may refer to a run where it lies instead of copying it, if `lender` agrees.
    /// @param lender must live until the last write.
    void takeLentRuns(Lender& lender) noexcept { lender_ = &lender; }

    /// 4 bytes. Signed values are passed as their two's-complement bits.
    void writeUInt32(std::uint32_t value) noexcept { writeNumber(value); }
    /// 8 bytes. Unsigned values are passed as the signed value of the same bits.
    void writeInt64(std::int64_t value) noexcept { writeNumber(static_cast<std::uint64_t>(value)); }
    /// 1 byte.
    void writeByte(std::uint8_t value) noexcept { writeNumber(value); }
    /// 1 byte: 1 for true, 0 for false.
    void writeBool(bool value) noexcept { writeByte(value ? 1 : 0); }
    /// The low 32 bits of `length` as 4 bytes, then a copy of the `length` bytes at `data`.
    void writeBytes(std::uint64_t length, const std::uint8_t* data) noexcept {
        writeUInt32(static_cast<std::uint32_t>(length));
        if (length > room())
            writeLongRun(length, data);
        else
            writeShortRun(length, data);
    }
    /// The same bytes on the wire, but after takeLentRuns() a run of at least `shortestLent` bytes may be
    /// referred to where it lies. It must then stay unchanged until the request has been sent. For the
    /// library's own record encoders; encoders of your own use writeBytes().
    void lendBytes(std::uint64_t length, const std::uint8_t* data) noexcept {
        writeUInt32(static_cast<std::uint32_t>(length));
        if (length > room())
            lendLongRun(length, data);
        else
            writeShortRun(length, data);
    }
    /// The shortest run that lendBytes() refers to instead of copying it, in bytes.
    static constexpr std::size_t shortestLent = std::size_t{64} * 1024;

    /// Reserves 4 bytes for the size of what is written until endSizedBlock(). Blocks do not nest: a second
    /// call opens a new block and leaves the size of the first one unset.
    void beginSizedBlock() noexcept;
    /// Writes the number of bytes since beginSizedBlock() into the reserved place. Does nothing when no block
    /// is open.
    void endSizedBlock() noexcept;

    /// Whether memory ran out. The bytes are incomplete then and must not be sent.
    bool failed() const noexcept { return failed_; }
    /// Number of bytes written so far, lent ones included.
    std::uint64_t total() const noexcept { return inFormerChunks_ + current_->used + current_->lent.size(); }
    /// The bytes written so far.
    Chunks chunks() const noexcept { return Chunks(&first_); }

private:
    struct Chunk { // NOLINT(cppcoreguidelines-pro-type-member-init): clearing `data` would cost each call
        std::unique_ptr<Chunk> next;
        std::size_t used = 0;
        std::span<const std::uint8_t> lent; ///< comes after the chunk's own bytes; nothing follows it
        std::array<std::uint8_t, chunkCapacity> data;
    };

    std::size_t room() const noexcept { return limit_ - current_->used; }
    /// The next bytes of the current chunk, which must have room for them.
    std::uint8_t* take(std::size_t bytes) noexcept {
        auto* place = current_->data.data() + current_->used;
        current_->used += bytes;
        return place;
    }
    /// The same, in a new chunk if need be; null when the writer has failed.
    std::uint8_t* reserve(std::size_t bytes) noexcept {
        return room() >= bytes || startChunk() ? take(bytes) : nullptr;
    }
    template <class Number>
    void writeNumber(Number value) noexcept {
        if (auto* place = reserve(sizeof value))
            storeBigEndian(place, value);
    }
    void writeShortRun(std::uint64_t length, const std::uint8_t* data) noexcept {
        if (length > 0)
            std::memcpy(take(static_cast<std::size_t>(length)), data, static_cast<std::size_t>(length));
    }
    void writeLongRun(std::uint64_t length, const std::uint8_t* data) noexcept;
    void lendLongRun(std::uint64_t length, const std::uint8_t* data) noexcept;
    bool startChunk() noexcept;
    /// Takes no more bytes into the current chunk.
    void closeChunk() noexcept { limit_ = current_->used; }

    SpareChunks* spares_ = nullptr;
    Chunk first_;
    Chunk* current_ = &first_;
    std::size_t limit_ = chunkCapacity;
    bool failed_ = false;
    Lender* lender_ = nullptr;
    bool lends_ = false;
    std::uint64_t inFormerChunks_ = 0;
    std::uint8_t* sizeField_ = nullptr;
    std::uint64_t sizeStart_ = 0;
};

} // namespace TAVOX
