#include <tavo/client/wire/output_stream.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include <tavo/client/wire/byte_order.h>

namespace TAVOX {

OutputStream::~OutputStream() {
    // One by one: letting each chunk destroy its successor would recurse as deep as the chain is long.
    for (auto chunk = std::move(first_.next); chunk;)
        chunk = std::move(chunk->next);
}

void OutputStream::startChunk() noexcept {
    if (current_->next) {
        failed_ = true;
        return;
    }
    // Default-initialised on purpose: the bytes of a fresh chunk are written before they are read.
    current_->next.reset(new (std::nothrow) Chunk);
    if (!current_->next)
        failed_ = true;
    else
        current_ = current_->next.get();
}

void OutputStream::count(std::size_t bytes) noexcept {
    current_->used += bytes;
    total_ += bytes;
    if (sizeField_)
        sizeCount_ += bytes;
}

std::uint8_t* OutputStream::reserve(std::size_t bytes) noexcept {
    if (failed_)
        return nullptr;
    if (chunkCapacity - current_->used < bytes) {
        startChunk();
        if (failed_)
            return nullptr;
    }
    std::uint8_t* place = current_->data.data() + current_->used;
    count(bytes);
    return place;
}

void OutputStream::writeUInt32(std::uint32_t value) noexcept {
    if (auto* place = reserve(sizeof value))
        storeBigEndian(place, value);
}

void OutputStream::writeInt64(std::int64_t value) noexcept {
    if (auto* place = reserve(sizeof value))
        storeBigEndian(place, static_cast<std::uint64_t>(value));
}

void OutputStream::writeByte(std::uint8_t value) noexcept {
    if (auto* place = reserve(1))
        *place = value;
}

void OutputStream::writeBytes(std::uint64_t length, const std::uint8_t* data) noexcept {
    writeUInt32(static_cast<std::uint32_t>(length));
    while (length > 0 && !failed_) {
        const auto run =
            static_cast<std::size_t>(std::min<std::uint64_t>(length, chunkCapacity - current_->used));
        if (run > 0)
            std::memcpy(current_->data.data() + current_->used, data, run);
        count(run);
        data += run;
        length -= run;
        if (length > 0)
            startChunk();
    }
}

void OutputStream::beginSizedBlock() noexcept {
    sizeField_ = nullptr;
    sizeField_ = reserve(4);
    sizeCount_ = 0;
}

void OutputStream::endSizedBlock() noexcept {
    if (failed_ || !sizeField_)
        return;
    storeBigEndian(sizeField_, static_cast<std::uint32_t>(sizeCount_));
    sizeField_ = nullptr;
    sizeCount_ = 0;
}

} // namespace TAVOX
