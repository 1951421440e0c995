#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

/// How many system calls a SocketTransport has made since it was constructed.
struct TransportCounters {
    std::uint64_t connects = 0; ///< attempts to connect, the first one included
    std::uint64_t polls = 0;    ///< checks for unasked bytes, and waits under a time limit
    std::uint64_t sends = 0;    ///< one per request, unless the system takes it in pieces
    std::uint64_t receives = 0; ///< one per reply, if it arrives at once and fits in the buffer
};

/// A TCP connection (RFC 9293) to one device, which connects anew when the peer has closed it. Devices made
/// from a host name use one; construct it yourself only to hand it to a CallExchange or to DeviceFactory.
///
/// A request costs one poll and one send. A reply that arrives at once costs one receive, since whatever the
/// system has ready is read ahead into a buffer of 64 KiB. Socket options are the system's defaults. Calls
/// block as long as it takes; with a time limit, or Interrupter::endWhen, each receive costs one more poll. A
/// broken connection never raises a signal, and signals do not end a wait.
///
/// Every failure is a NetworkError, and what it leaves behind depends on its cause:
///  - connecting fails: the transport is closed, and the next send connects first.
///  - bytes are there that nobody asked for, found before a send: one of them is taken, nothing is sent, and
///    the connection stays open.
///  - a send or a receive fails: the connection stays open here. The next send finds it broken and silently
///    connects anew.
///  - interrupt() or the time limit ends a call: the transport is closed, and the next send connects first.
///    If both have come, the exception is that of the interrupt.
///
/// A new connection starts from nothing: login and lock are not repeated.
///
/// One thread at a time, except for interrupt(); different transports are independent of each other.
class TAVO_API SocketTransport final : public Transport {
public:
    /// Connects to the first address that `host` and `port` resolve to. Blocks until the connection is made.
    /// @param host name or address of the device.
    /// @param port the port number in decimal.
    /// @param interrupter may interrupt this transport, from this first connect until its end. When empty,
    ///        only interrupt() can.
    /// @throws NetworkError as connect() does; on Windows also "Could not initialize WinSock library".
    SocketTransport(const std::string& host, const std::string& port,
                    std::shared_ptr<Interrupter> interrupter = nullptr);
    /// The same with a time limit, which holds for this first connect already.
    /// @throws std::invalid_argument for a limit below 1 ms.
    SocketTransport(const std::string& host, const std::string& port,
                    std::shared_ptr<Interrupter> interrupter, TimeLimit limit);
    /// Closes the connection.
    ~SocketTransport() override;

    /// Closes the connection, if there is one, and connects to the same host and port again. Drops bytes that
    /// were received but not asked for.
    /// @throws NetworkError "Could not get address info for: ", "Could not create socket to: " or "Could not
    ///         connect to socket to: ", each followed by host, " port ", port and the system's error.
    void connect();

    /// Sends the whole request. Connects first if the transport is closed or the peer has closed the
    /// connection, but never in the middle of a request.
    /// @throws NetworkError "Unexpected data recieved from device." when there are bytes that nobody has
    ///         asked for; "Error transmitting message call to device." and the system's error when not all
    ///         could be sent; and as connect().
    void send(const TAVOX::OutputStream::Chunks& request) override;

    /// Like send(), for bytes in one piece.
    void sendAll(const std::uint8_t* bytes, std::uint64_t length);

    /// Blocks until `length` bytes have arrived and stores them at `buffer`.
    /// @throws NetworkError "Connection to device closed unexpectedly." and the system's error when the
    ///         transport is closed, the connection breaks, or the peer closes it too early. What came before
    ///         is lost, though `buffer` may hold some of it.
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;

    /// Holds up to 64 KiB in one piece; null for more.
    /// @throws NetworkError as receiveAll().
    const std::uint8_t* receiveInPlace(std::uint64_t length) override;
    std::span<const std::uint8_t> held() const noexcept override {
        return {readAhead_.get() + readAheadBegin_, readAheadEnd_ - readAheadBegin_};
    }

    /// Closes the connection and drops what was received but not asked for. Does nothing when closed.
    void close() noexcept;

    /// Makes a call that waits throw NetworkError "Call to device interrupted." within 100 ms; see
    /// Interrupter::interrupt(). Safe in other threads and in signal handlers.
    void interrupt() noexcept override;

    /// Like close().
    /// @return true: the next send() makes a new connection.
    bool renew() noexcept override;

    /// Whether bytes have arrived that nobody has asked for. Costs one poll, and one receive if there are
    /// any.
    bool hasUnaskedBytes() noexcept override;

    /// Connects if there is no connection, or if the peer has closed it. Costs one poll otherwise.
    void ensureConnected() override;

    /// How many connections have been made: 1 for the first.
    std::uint64_t connectionNumber() const noexcept override;

    /// Keeps send() from replacing the connection; an explicit connect() still does.
    void keepConnection(bool kept) noexcept override;

    /// Whether the transport is open.
    bool isConnected() const noexcept override;

    /// An exchange begins with send(), ensureConnected() or connect(). One that is under way gets the whole
    /// limit from now on. Resolving the host name cannot be cut short: the limit is checked afterwards.
    void setTimeLimit(TimeLimit limit) override;
    /// The current limit; empty without one.
    TimeLimit timeLimit() const noexcept override { return deadline_.limit(); }

    /// The socket. Blocking, and bytes that were received from it already are in held().
    std::intptr_t descriptor() const noexcept override { return socket_; }

    /// The system calls so far. Lives as long as the transport, and keeps counting.
    const TransportCounters& counters() const noexcept { return counters_; }

private:
    void beginExchange() noexcept;
    bool isInterrupted() const noexcept;
    [[noreturn]] void endInterrupted();
    [[noreturn]] void endLate();
    /// Whether waits have an end besides the peer's answer, so that no send or receive may block.
    bool waitsInSteps() const noexcept;
    void awaitReady(bool toSend);
    /// Asks the function of Interrupter::endWhen(), if it was not asked just before, or at once.
    void ask(bool now);
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
    /// The value of exchangeBegin_ when the connection was made.
    Interrupter::Count connectionBegin_ = 0;
    Deadline deadline_;
    /// When the function of Interrupter::endWhen() was asked last.
    std::chrono::steady_clock::time_point asked_;
    std::unique_ptr<std::uint8_t[]> readAhead_;
    std::size_t readAheadBegin_ = 0;
    std::size_t readAheadEnd_ = 0;
    std::uint64_t connectionNumber_ = 0;
    bool kept_ = false;
    TransportCounters counters_;
};

} // namespace TAVO
