#pragma once

#include <cstdint>

#include <tavo/client/export.h>
#include <tavo/client/wire/deadline.h>
#include <tavo/client/wire/output_stream.h>

namespace TAVO {

/// Moves the bytes of requests and replies; knows nothing of what they mean. SocketTransport is the one for
/// real devices; deriving another one puts a different connection, or a test's script, below the calls.
///
/// A transport is used by one thread at a time, but for interrupt(). Failures are thrown as NetworkError.
class TAVO_API Transport {
public:
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport();

    /// Sends the whole request, its chunks in order and as one unbroken run of bytes. The chunks are only
    /// read, and only until this returns.
    virtual void send(const TAVOX::OutputStream::Chunks& request) = 0;

    /// Waits until `length` bytes have arrived and stores them at `buffer`. Does nothing for length 0. Waits
    /// as long as it takes, but for interrupt() and setTimeLimit() where the transport has them.
    virtual void receiveAll(std::uint8_t* buffer, std::uint64_t length) = 0;

    /// The next `length` bytes where the transport itself holds them, taken as by receiveAll(); valid until
    /// the next receive or send. Null, and nothing is taken, when it does not hold so many in one piece: they
    /// can be had by receiveAll(). A transport needs not to offer this.
    virtual const std::uint8_t* receiveInPlace(std::uint64_t length);

    /// Ends a call that waits: NetworkError leaves it. For other threads and signal handlers, at any time.
    /// Does nothing by default; a transport that cannot be interrupted waits for the device as long as it
    /// takes.
    virtual void interrupt() noexcept;

    /// Gives the connection up, with every byte that came unasked: the next send() goes over a new one.
    /// @return false when the transport has no way to make a new connection; it is left as it was then, as
    ///         it is by default.
    virtual bool renew() noexcept;

    /// Whether bytes have come that nobody has asked for: read ahead, or readable now. None of them is taken.
    /// False by default.
    virtual bool hasUnaskedBytes() noexcept;

    /// Makes sure that there is a connection, as send() does before its first byte: connects when there is
    /// none or when the peer has closed it. Does nothing by default.
    /// @throws NetworkError as send() does for bytes that nobody has asked for and for a failed connect.
    virtual void ensureConnected();

    /// The number of the connection in use: another one after each connection made anew. Always 0 by default.
    virtual std::uint64_t connectionNumber() const noexcept;

    /// While kept, a connection that has ended is not made anew. send() and ensureConnected() fail instead,
    /// before anything is sent, with NetworkError "Connection to device closed unexpectedly." and the
    /// system's error for a connection that was reset. For what must not go over a connection that was not
    /// checked. Does nothing by default.
    virtual void keepConnection(bool kept) noexcept;

    /// Whether there is a connection, as far as is known here: nothing is asked of the system, and what the
    /// peer has ended meanwhile counts until the next send. True by default.
    virtual bool isConnected() const noexcept;

    /// From now on no exchange may take longer: from send(), which makes the connection anew where it must,
    /// to the last byte of the reply that is received. Beyond the limit the connection is closed and
    /// NetworkError "Call to device timed out." leaves the call that waits; the next exchange goes over a new
    /// connection, with a limit of its own. There is none at first. Does nothing by default; such a transport
    /// has no limit.
    /// @throws std::invalid_argument that names a limit below 1 ms.
    virtual void setTimeLimit(TimeLimit limit);

    /// The limit that holds. None by default.
    virtual TimeLimit timeLimit() const noexcept;

protected:
    Transport() = default;
};

} // namespace TAVO
