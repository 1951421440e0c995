#pragma once

#include <cstring>
#include <stdexcept>
#include <utility>

#include <tavo/client/wire/transport.h>

#include <bench/gauge.h>

namespace bench {

/// Answers every request with the same prepared reply, without a network.
class PreparedTransport final : public TAVO::Transport {
public:
    PreparedTransport(Bytes reply, std::size_t requestSize)
        : reply_(std::move(reply)) {
        sent_.reserve(requestSize);
    }

    void send(const TAVOX::OutputStream::Chunks& request) override {
        sent_.clear();
        for (const auto chunk : request)
            sent_.insert(sent_.end(), chunk.begin(), chunk.end());
        received_ = 0;
    }

    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        if (reply_.size() - received_ < length)
            throw std::out_of_range("more is received than was prepared");
        std::memcpy(buffer, reply_.data() + received_, static_cast<std::size_t>(length));
        received_ += static_cast<std::size_t>(length);
    }

    /// The last request.
    const Bytes& sent() const { return sent_; }

private:
    Bytes reply_;
    Bytes sent_;
    std::size_t received_ = 0;
};

} // namespace bench
