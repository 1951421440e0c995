#pragma once

#include <cstdint>

#include <tavo/client/export.h>
#include <tavo/client/wire/output_stream.h>

namespace TAVO {

/// Moves the bytes of requests and replies; knows nothing of what they mean. SocketTransport is the one for
/// real devices; deriving another one puts a different connection, or a test's script, below the calls.
///
/// A transport is used by one thread at a time. Failures are thrown as NetworkError.
class TAVO_API Transport {
public:
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport();

    /// Sends the whole request, its chunks in order and as one unbroken run of bytes. The chunks are only
    /// read, and only until this returns.
    virtual void send(const TAVOX::OutputStream::Chunks& request) = 0;

    /// Waits until `length` bytes have arrived and stores them at `buffer`. Does nothing for length 0.
    /// There is no time-out: a call waits for the device as long as it takes.
    virtual void receiveAll(std::uint8_t* buffer, std::uint64_t length) = 0;

    /// The next `length` bytes where the transport itself holds them, taken as by receiveAll(); valid until
    /// the next receive or send. Null, and nothing is taken, when it does not hold so many in one piece: they
    /// can be had by receiveAll(). A transport needs not to offer this.
    virtual const std::uint8_t* receiveInPlace(std::uint64_t length);

protected:
    Transport() = default;
};

} // namespace TAVO
