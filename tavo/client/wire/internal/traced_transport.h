#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <tavo/client/wire/trace.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// Tells a sink what passes over another transport, which must outlive it.
class TracedTransport final : public Transport {
public:
    explicit TracedTransport(Transport& transport)
        : transport_(transport) {}

    /// Empty: tells nobody.
    void setSink(TraceSink sink) { sink_ = std::move(sink); }
    const TraceSink& sink() const { return sink_; }

    void send(const TAVOX::OutputStream::Chunks& request) override;
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;
    const std::uint8_t* receiveInPlace(std::uint64_t length) override;
    std::span<const std::uint8_t> held() const noexcept override { return transport_.held(); }
    void interrupt() noexcept override { transport_.interrupt(); }
    bool renew() noexcept override { return transport_.renew(); }
    bool hasUnaskedBytes() noexcept override { return transport_.hasUnaskedBytes(); }
    void ensureConnected() override;
    std::uint64_t connectionNumber() const noexcept override { return transport_.connectionNumber(); }
    void keepConnection(bool kept) noexcept override { transport_.keepConnection(kept); }
    bool isConnected() const noexcept override { return transport_.isConnected(); }
    void setTimeLimit(TimeLimit limit) override { transport_.setTimeLimit(limit); }
    TimeLimit timeLimit() const noexcept override { return transport_.timeLimit(); }
    std::intptr_t descriptor() const noexcept override { return transport_.descriptor(); }

private:
    void tell(TraceDirection direction, std::span<const std::uint8_t> bytes);
    void tellRequest(const TAVOX::OutputStream::Chunks& request);
    /// Tells what has come and was not told yet.
    void tellHeld();
    /// Waits for the next byte, and tells it with all that came with it. False, with nothing taken, when the
    /// transport has no buffer of its own.
    bool receiveFirst(std::uint8_t& byte);
    /// Receives at least one byte, and of a transport that reads ahead no more than have come.
    std::uint64_t receiveRun(std::uint8_t* buffer, std::uint64_t length);

    Transport& transport_;
    TraceSink sink_;
    /// How many of the held bytes have been told.
    std::size_t told_ = 0;
    /// Whether the transport is known to read ahead.
    bool readsAhead_ = false;
    std::vector<std::uint8_t> piece_;
};

} // namespace TAVO
