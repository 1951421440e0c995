#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// How often a SocketTransport has asked the operating system for something, since it was made.
struct TransportCounters {
    std::uint64_t connects = 0; ///< attempts to connect, the first one included
    std::uint64_t polls = 0;    ///< looks whether the peer has sent something unasked, and limited waits
    std::uint64_t sends = 0;    ///< sends; one per request unless the system takes a request in pieces
    std::uint64_t receives = 0; ///< receives
};

/// The one TCP connection of a device.
///
/// A request costs one poll and one send, a reply that arrives at once costs one receive: what the system
/// has ready beyond the bytes asked for is read ahead into a buffer of 64 KiB. Every call blocks, with the
/// system's default socket options and, unless there is a time limit, as long as it takes. With a limit each
/// receive costs one poll more. A broken connection never raises a signal, and a signal that interrupts a
/// call does not end it.
///
/// What state a failure leaves, all of them NetworkError:
///  - connecting fails: the transport is closed; the next send connects first.
///  - an unexpected byte is found before a send: the connection stays open, that one byte is taken, nothing
///    is sent.
///  - a send or a receive fails: the connection is not closed here. The next send finds it broken and
///    connects anew without a word.
///  - interrupt() or the time limit ends a call: the transport is closed; the next send connects first. Where
///    both have come, it is the interrupt.
///
/// A new connection is a bare one: nothing that was said on the former one (login, lock) is repeated.
///
/// One thread at a time may use a transport, but for interrupt(); different transports are independent of
/// each other.
class TAVO_API SocketTransport final : public Transport {
public:
    /// Connects to the first address that `host` and `port` resolve to.
    /// @param host name or address of the device.
    /// @param port the port number in decimal.
    /// @param interrupter can interrupt this transport, the connecting included, until it is destroyed; when
    ///        empty, interrupt() alone can.
    /// @throws NetworkError as connect() does, and "Could not initialize WinSock library" where the system
    ///         has a socket library that must be started first and that does not start.
    SocketTransport(const std::string& host, const std::string& port,
                    std::shared_ptr<Interrupter> interrupter = nullptr);
    /// The same with a time limit from the beginning, as setTimeLimit() sets it.
    SocketTransport(const std::string& host, const std::string& port,
                    std::shared_ptr<Interrupter> interrupter, TimeLimit limit);
    /// Closes the connection.
    ~SocketTransport() override;

    /// Connects to the same host and port again, after closing the connection if there is one. Bytes that
    /// were received but not asked for are dropped.
    /// @throws NetworkError "Could not get address info for: ", "Could not create socket to: " or "Could not
    ///         connect to socket to: ", each followed by host, " port ", port and the system's error.
    void connect();

    /// Sends the whole request. Before its first byte leaves, the connection is made when the transport is
    /// closed, and made anew when the peer has closed it; never in the middle of a request.
    /// @throws NetworkError "Unexpected data recieved from device." when there are bytes that nobody has
    ///         asked for, "Error transmitting message call to device." and the system's error when the
    ///         request could not be sent completely; and as connect() does.
    void send(const TAVOX::OutputStream::Chunks& request) override;

    /// As send(), for bytes that lie in one piece.
    void sendAll(const std::uint8_t* bytes, std::uint64_t length);

    /// @throws NetworkError "Connection to device closed unexpectedly." and the system's error when the
    ///         transport is closed, the connection breaks or the peer closes it too early. Bytes that came
    ///         before are lost, `buffer` may hold some of them.
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;

    /// Up to 64 KiB are held in one piece. @throws as receiveAll().
    const std::uint8_t* receiveInPlace(std::uint64_t length) override;

    /// Closes the connection and drops what was received but not asked for. Does nothing when closed.
    void close() noexcept;

    /// Ends a call that waits, see Interrupter: NetworkError "Call to device interrupted." leaves it within
    /// 100 ms. For other threads and signal handlers.
    void interrupt() noexcept override;

    /// As close(). @return true.
    bool renew() noexcept override;

    /// Costs one poll, and one receive when there is something.
    bool hasUnaskedBytes() noexcept override;

    /// Costs one poll, as it does before a send.
    void ensureConnected() override;

    /// 1 for the first connection, and one more for each that was made after it.
    std::uint64_t connectionNumber() const noexcept override;

    /// connect() makes a new connection all the same.
    void keepConnection(bool kept) noexcept override;

    /// Whether the transport is open.
    bool isConnected() const noexcept override;

    /// An exchange begins with send(), ensureConnected() or connect(); one that has begun already is given
    /// the whole limit from here. Only the resolution of the host's name cannot be bounded: it takes as long
    /// as the system takes for it, and the limit is looked at again when it has ended.
    void setTimeLimit(TimeLimit limit) override;
    TimeLimit timeLimit() const noexcept override { return deadline_.limit(); }

    const TransportCounters& counters() const noexcept { return counters_; }

private:
    void beginExchange() noexcept;
    bool isInterrupted() const noexcept;
    [[noreturn]] void endInterrupted();
    [[noreturn]] void endLate();
    void awaitWithinLimit(bool toSend);
    [[noreturn]] void failReceive(int error);
    void connectAnew();
    void connectUnlessKept();
    std::size_t takeReadAhead(std::uint8_t* destination, std::uint64_t length) noexcept;
    void readAhead();
    std::size_t receiveSome(std::uint8_t* destination, std::uint64_t length);
    void prepareToSend();
    std::size_t sendSome(std::span<const std::span<const std::uint8_t>> runs);
    template <class RunIterator>
    void sendRuns(RunIterator run, RunIterator end);

    std::string host_;
    std::string port_;
    std::shared_ptr<Interrupter> interrupter_;
    std::intptr_t socket_;
    Interrupter::Count exchangeBegin_ = 0;
    /// That of the exchange which made the connection.
    Interrupter::Count connectionBegin_ = 0;
    Deadline deadline_;
    std::unique_ptr<std::uint8_t[]> readAhead_;
    std::size_t readAheadBegin_ = 0;
    std::size_t readAheadEnd_ = 0;
    std::uint64_t connectionNumber_ = 0;
    bool kept_ = false;
    TransportCounters counters_;
};

} // namespace TAVO
