#include <tavo/client/wire/output_stream.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace TAVOX {

OutputStream::~OutputStream() {
    // One by one: if each chunk destroyed the next, a long chain would exhaust the stack.
    for (auto chunk = std::move(first_.next); chunk;) {
        auto next = std::move(chunk->next);
        if (spares_)
            spares_->add(std::move(chunk));
        chunk = std::move(next);
    }
}

std::unique_ptr<OutputStream::Chunk> OutputStream::SpareChunks::take() noexcept {
    if (!first_)
        return nullptr;
    --count_;
    auto taken = std::move(first_);
    first_ = std::move(taken->next);
    taken->used = 0;
    taken->lent = {};
    return taken;
}

void OutputStream::SpareChunks::add(std::unique_ptr<Chunk> chunk) noexcept {
    if (count_ == most)
        return;
    ++count_;
    chunk->next = std::move(first_);
    first_ = std::move(chunk);
}

bool OutputStream::startChunk() noexcept {
    if (!failed_ && spares_)
        current_->next = spares_->take();
    // Left uninitialised on purpose: the bytes of a new chunk are written before they are read.
    if (!failed_ && !current_->next)
        current_->next.reset(new (std::nothrow) Chunk);
    if (failed_ || !current_->next) {
        failed_ = true;
        closeChunk();
        return false;
    }
    inFormerChunks_ = total();
    current_ = current_->next.get();
    limit_ = chunkCapacity;
    return true;
}

void OutputStream::writeLongRun(std::uint64_t length, const std::uint8_t* data) noexcept {
    if (failed_)
        return;
    while (length > 0) {
        if (room() == 0 && !startChunk())
            return;
        const auto run = static_cast<std::size_t>(std::min<std::uint64_t>(length, room()));
        std::memcpy(take(run), data, run);
        data += run;
        length -= run;
    }
}

void OutputStream::lendLongRun(std::uint64_t length, const std::uint8_t* data) noexcept {
    if (failed_)
        return;
    if (length >= shortestLent && lender_ && !lends_) {
        lends_ = lender_->answersForRuns();
        if (!lends_)
            lender_ = nullptr;
    }
    if (length < shortestLent || !lends_) {
        writeLongRun(length, data);
        return;
    }
    current_->lent = {data, static_cast<std::size_t>(length)};
    closeChunk();
}

void OutputStream::beginSizedBlock() noexcept {
    sizeField_ = reserve(4);
    sizeStart_ = total();
}

void OutputStream::endSizedBlock() noexcept {
    if (failed_ || !sizeField_)
        return;
    storeBigEndian(sizeField_, static_cast<std::uint32_t>(total() - sizeStart_));
    sizeField_ = nullptr;
}

} // namespace TAVOX
