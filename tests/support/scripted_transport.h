#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/transport.h>
#include <tests/support/wire_bytes.h>

namespace support {

/// Takes one request after the other and yields prepared bytes. Receiving more than was prepared fails, as
/// on a connection that the peer has closed.
class ScriptedTransport : public TAVO::Transport {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    explicit ScriptedTransport(Bytes prepared = {})
        : reply(std::move(prepared)) {}

    void send(const TAVOX::OutputStream::Chunks& chunks) override {
        countOperation();
        receivedBeforeSend = received;
        ++sends;
        for (const auto chunk : chunks)
            sent.insert(sent.end(), chunk.begin(), chunk.end());
    }

    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        countOperation();
        runs.push_back(length);
        // The whole run is touched, as the system would: the memory must be there.
        std::fill_n(buffer, length, std::uint8_t{0xEE});
        if (reply.size() - received < length)
            throw TAVO::NetworkError("closed");
        std::copy_n(reply.begin() + static_cast<std::ptrdiff_t>(received), length, buffer);
        received += static_cast<std::size_t>(length);
    }

    Bytes reply;
    /// The operation, counted from 0, that fails with NetworkError "broken".
    std::size_t failingOperation = never;

    Bytes sent;
    std::size_t sends = 0;
    std::size_t received = 0;
    std::size_t receivedBeforeSend = 0;
    std::size_t operations = 0;
    /// Length of every receive.
    std::vector<std::uint64_t> runs;

private:
    void countOperation() {
        if (operations++ == failingOperation)
            throw TAVO::NetworkError("broken");
    }
};

} // namespace support
