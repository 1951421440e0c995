#pragma once

#include <cstdint>
#include <span>

#include <tavo/client/export.h>
#include <tavo/client/wire/deadline.h>
#include <tavo/client/wire/output_stream.h>

namespace TAVO {

/// Carries the bytes of requests and replies. SocketTransport is the one for real devices; derive your own to
/// run the calls over another connection, such as TLS, or over a test's script, and hand it to
/// DeviceFactory::buildDevice.
///
/// send() and receiveAll() are all that a transport must have; each of the others does nothing by default,
/// and says so. Failures are thrown as NetworkError. One thread at a time, except for interrupt().
class TAVO_API Transport {
public:
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport();

    /// Sends the whole request, its chunks in order, as one unbroken run of bytes. Blocks until all is sent.
    /// The chunks are borrowed only until this returns.
    virtual void send(const TAVOX::OutputStream::Chunks& request) = 0;

    /// Blocks until `length` bytes have arrived and stores them at `buffer`; returns at once for 0. Only
    /// interrupt() and the time limit cut the wait short, if the transport supports them.
    virtual void receiveAll(std::uint8_t* buffer, std::uint64_t length) = 0;

    /// Like receiveAll(), but returns a pointer to the bytes in the transport's own buffer, which saves a
    /// copy; it is valid until the next receive or send. Null, with nothing taken, when the transport cannot
    /// hold `length` bytes in one piece: call receiveAll() then. Always null by default.
    virtual const std::uint8_t* receiveInPlace(std::uint64_t length);

    /// The bytes that have come and that receiveInPlace() gives out without waiting, none of them taken;
    /// valid until the next receive or send. None by default.
    virtual std::span<const std::uint8_t> held() const noexcept;

    /// Makes a call that waits throw NetworkError. Other threads and signal handlers may call this at any
    /// time. Does nothing by default: such a transport waits for the device as long as it takes.
    virtual void interrupt() noexcept;

    /// Drops the connection and every byte that came over it; the next send() makes a new one.
    /// @return false when the transport cannot make new connections: nothing has changed then. False by
    ///         default.
    virtual bool renew() noexcept;

    /// Whether bytes have arrived that nobody has asked for. Takes none of them and does not block. False by
    /// default.
    virtual bool hasUnaskedBytes() noexcept;

    /// Connects if there is no connection, or if the peer has closed it, as send() does before its first
    /// byte. Does nothing by default.
    /// @throws NetworkError as send() does: for unasked bytes and for a failed connect.
    virtual void ensureConnected();

    /// Identifies the current connection: a new connection has a new number. Always 0 by default.
    virtual std::uint64_t connectionNumber() const noexcept;

    /// While `kept`, send() and ensureConnected() do not replace a connection that has ended. They throw
    /// NetworkError "Connection to device closed unexpectedly." and the system's error for a reset connection
    /// instead, and send nothing: a password must not go over a connection whose key nobody has checked. Does
    /// nothing by default.
    virtual void keepConnection(bool kept) noexcept;

    /// Whether there is a connection, as far as this side knows: asks nobody, so a connection that the peer
    /// has closed counts until the next send. True by default.
    virtual bool isConnected() const noexcept;

    /// Limits every exchange from now on: from send(), reconnecting included, to the last received byte of
    /// the reply. When the time is over, the connection is closed and the waiting call throws NetworkError
    /// "Call to device timed out."; the next exchange connects anew and has the whole limit again. There is
    /// no limit at first. Does nothing by default: such a transport has none.
    /// @throws std::invalid_argument for a limit below 1 ms.
    virtual void setTimeLimit(TimeLimit limit);

    /// The current limit. Empty by default.
    virtual TimeLimit timeLimit() const noexcept;

    /// The system's number of the current connection, for programs that wait for it in an event loop; it is
    /// the transport's to close. -1 while there is no connection. Always -1 by default.
    virtual std::intptr_t descriptor() const noexcept;

protected:
    Transport() = default;
};

} // namespace TAVO
