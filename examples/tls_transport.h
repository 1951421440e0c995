// A transport of the application's own: TLS with OpenSSL, to an appliance behind a TLS gateway such as
// stunnel. For POSIX systems.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <tavo/client.h>

/// Connects when first needed and again after the connection has ended, like SocketTransport. Sends nothing
/// before the far end has shown a certificate that the CA signed for the right name. Every failure is a
/// NetworkError and leaves the transport closed.
///
/// interrupt() ends any wait, connecting included, except the resolution of the host name. If nothing waits,
/// the next request goes over a new connection.
class TlsTransport final : public TAVO::Transport {
public:
    /// @param caFile certificates in PEM form that may sign for the far end.
    /// @param name host name or address that the certificate must be for; `host` if empty.
    /// @throws NetworkError if the file cannot be used.
    TlsTransport(std::string host, std::string port, const std::string& caFile, std::string name = "")
        : host_(std::move(host))
        , port_(std::move(port))
        , name_(name.empty() ? host_ : std::move(name)) {
        if (!context_ || SSL_CTX_set_min_proto_version(context_.get(), TLS1_2_VERSION) != 1 ||
            SSL_CTX_load_verify_locations(context_.get(), caFile.c_str(), nullptr) != 1)
            throw TAVO::NetworkError("Could not use the certificates in " + caFile + ": " + reason());
        SSL_CTX_set_verify(context_.get(), SSL_VERIFY_PEER, nullptr);
        SSL_CTX_set_mode(context_.get(), SSL_MODE_ENABLE_PARTIAL_WRITE);
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            throw TAVO::NetworkError("Could not create a pipe" + systemText(errno));
        alarm_ = Descriptor(ends[0]);
        alarmEntry_ = Descriptor(ends[1]);
    }
    ~TlsTransport() override { close(); }

    void send(const TAVOX::OutputStream::Chunks& request) override {
        ensureConnected();
        for (auto rest : request)
            while (!rest.empty()) {
                std::size_t sent = 0;
                if (!finished([&] { return SSL_write_ex(tls_.get(), rest.data(), rest.size(), &sent); }))
                    fail("Error transmitting message call to device.");
                rest = rest.subspan(sent);
            }
    }

    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        while (length > 0) {
            const auto limit =
                static_cast<std::size_t>(std::min<std::uint64_t>(length, std::numeric_limits<int>::max()));
            std::size_t received = 0;
            if (!tls_ || !finished([&] { return SSL_read_ex(tls_.get(), buffer, limit, &received); }))
                fail("Connection to device closed unexpectedly.");
            buffer += received;
            length -= received;
        }
    }

    void interrupt() noexcept override {
        const int before = errno;
        [[maybe_unused]] const auto written = ::write(alarmEntry_.number(), "", 1);
        errno = before;
    }

    bool renew() noexcept override {
        close();
        return true;
    }

    bool hasUnaskedBytes() noexcept override { return tls_ && idleState() == IdleState::unaskedBytes; }

    void ensureConnected() override {
        if (takeInterrupts())
            close();
        if (tls_) {
            const auto state = idleState();
            if (state == IdleState::open)
                return;
            close();
            if (state == IdleState::unaskedBytes)
                throw TAVO::NetworkError("Unexpected data recieved from device.");
        }
        if (kept_)
            throw TAVO::NetworkError("Connection to device closed unexpectedly." + systemText(ECONNRESET));
        connect();
    }

    std::uint64_t connectionNumber() const noexcept override { return connectionNumber_; }

    void keepConnection(bool kept) noexcept override { kept_ = kept; }

    bool isConnected() const noexcept override { return tls_ != nullptr; }

private:
    template <class Object, void (*release)(Object*)>
    struct Release {
        void operator()(Object* object) const { release(object); }
    };
    template <class Object, void (*release)(Object*)>
    using Owned = std::unique_ptr<Object, Release<Object, release>>;

    /// A descriptor that closes itself.
    class Descriptor {
    public:
        explicit Descriptor(int number = -1)
            : number_(number) {}
        Descriptor(Descriptor&& other) noexcept
            : number_(std::exchange(other.number_, -1)) {}
        Descriptor& operator=(Descriptor&& other) noexcept {
            std::swap(number_, other.number_);
            return *this;
        }
        ~Descriptor() {
            if (number_ >= 0)
                ::close(number_);
        }
        int number() const { return number_; }

    private:
        int number_;
    };

    enum class IdleState { open, unaskedBytes, ended };

    static std::string systemText(int code) {
        return "[ErrorCode " + std::to_string(code) + ":" + std::generic_category().message(code) + "]";
    }

    /// OpenSSL's text for its latest failure.
    static std::string reason() {
        const auto code = ERR_get_error();
        ERR_clear_error();
        if (ERR_SYSTEM_ERROR(code))
            return std::generic_category().message(ERR_GET_REASON(code));
        const char* text = ERR_reason_error_string(code);
        return text ? text : "the connection has ended";
    }

    // OpenSSL's own sockets raise SIGPIPE when the peer has gone, which would end the application.
    static int writeBytes(BIO* bio, const char* bytes, int length) {
        const auto socket = static_cast<Descriptor*>(BIO_get_data(bio))->number();
        const auto sent = ::send(socket, bytes, static_cast<std::size_t>(length), MSG_NOSIGNAL);
        BIO_clear_retry_flags(bio);
        if (sent < 0 && (errno == EAGAIN || errno == EINTR))
            BIO_set_retry_write(bio);
        return static_cast<int>(sent);
    }
    static int readBytes(BIO* bio, char* bytes, int length) {
        const auto socket = static_cast<Descriptor*>(BIO_get_data(bio))->number();
        const auto received = ::recv(socket, bytes, static_cast<std::size_t>(length), 0);
        BIO_clear_retry_flags(bio);
        if (received < 0 && (errno == EAGAIN || errno == EINTR))
            BIO_set_retry_read(bio);
        return static_cast<int>(received);
    }
    static long control(BIO*, int command, long, void*) { return command == BIO_CTRL_FLUSH ? 1 : 0; }

    static BIO_METHOD* socketMethod() {
        static const Owned<BIO_METHOD, BIO_meth_free> method = [] {
            Owned<BIO_METHOD, BIO_meth_free> made(
                BIO_meth_new(BIO_get_new_index() | BIO_TYPE_SOURCE_SINK, "socket without signals"));
            BIO_meth_set_write(made.get(), writeBytes);
            BIO_meth_set_read(made.get(), readBytes);
            BIO_meth_set_ctrl(made.get(), control);
            return made;
        }();
        return method.get();
    }

    /// Repeats an OpenSSL operation until it makes progress. Returns false if it fails.
    template <class Operation>
    bool finished(Operation operation) {
        while (true) {
            ERR_clear_error();
            const int outcome = operation();
            if (outcome > 0)
                return true;
            switch (SSL_get_error(tls_.get(), outcome)) {
            case SSL_ERROR_WANT_READ:
                wait(POLLIN);
                break;
            case SSL_ERROR_WANT_WRITE:
                wait(POLLOUT);
                break;
            default:
                return false;
            }
        }
    }

    /// Waits for the socket or an interrupt.
    void wait(short events) {
        pollfd entries[] = {{socket_.number(), events, 0}, {alarm_.number(), POLLIN, 0}};
        while (::poll(entries, 2, -1) < 0)
            if (errno != EINTR)
                fail("Could not wait for the device.");
        if (takeInterrupts()) {
            drop();
            throw TAVO::NetworkError("Call to device interrupted.");
        }
    }

    bool takeInterrupts() const noexcept {
        bool any = false;
        char bytes[64];
        while (::read(alarm_.number(), bytes, sizeof bytes) > 0)
            any = true;
        return any;
    }

    /// Only bytes of the protocol count as unasked: TLS also sends some of its own.
    IdleState idleState() noexcept {
        char byte = 0;
        ERR_clear_error();
        const int outcome = SSL_peek(tls_.get(), &byte, 1);
        if (outcome > 0)
            return IdleState::unaskedBytes;
        const int error = SSL_get_error(tls_.get(), outcome);
        return error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE ? IdleState::open
                                                                             : IdleState::ended;
    }

    void connect() {
        connectSocket();
        tls_.reset(SSL_new(context_.get()));
        Owned<BIO, BIO_free_all> bio(BIO_new(socketMethod()));
        if (!tls_ || !bio || !setName())
            fail("Could not prepare TLS with " + address());
        BIO_set_data(bio.get(), &socket_);
        BIO_set_init(bio.get(), 1);
        auto* owned = bio.release();
        SSL_set_bio(tls_.get(), owned, owned);
        if (!finished([this] { return SSL_connect(tls_.get()); })) {
            const auto verdict = SSL_get_verify_result(tls_.get());
            if (verdict != X509_V_OK)
                fail("Could not trust " + address() + ", " + X509_verify_cert_error_string(verdict));
            fail("Could not agree on TLS with " + address());
        }
        ++connectionNumber_;
    }

    /// Requires a certificate for this name, and tells a gateway with several which one to use.
    bool setName() {
        if (X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(tls_.get()), name_.c_str()) == 1)
            return true;
        return SSL_set1_host(tls_.get(), name_.c_str()) == 1 &&
               SSL_set_tlsext_host_name(tls_.get(), name_.c_str()) == 1;
    }

    void connectSocket() {
        addrinfo hints{};
        hints.ai_socktype = SOCK_STREAM;
        addrinfo* found = nullptr;
        if (const int code = ::getaddrinfo(host_.c_str(), port_.c_str(), &hints, &found); code != 0)
            throw TAVO::NetworkError("Could not get address info for: " + address() + "[ErrorCode " +
                                     std::to_string(code) + ":" + ::gai_strerror(code) + "]");
        const Owned<addrinfo, ::freeaddrinfo> addresses(found);
        int error = 0;
        for (const auto* next = found; next; next = next->ai_next) {
            socket_ = Descriptor(::socket(next->ai_family, next->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK,
                                          next->ai_protocol));
            error = socket_.number() < 0 ? errno : connectTo(*next);
            if (error == 0)
                return;
        }
        drop();
        throw TAVO::NetworkError("Could not connect to socket to: " + address() + systemText(error));
    }

    int connectTo(const addrinfo& address) {
        int error = 0;
        socklen_t size = sizeof error;
        if (::connect(socket_.number(), address.ai_addr, address.ai_addrlen) != 0) {
            if (errno != EINPROGRESS)
                return errno;
            wait(POLLOUT);
            ::getsockopt(socket_.number(), SOL_SOCKET, SO_ERROR, &error, &size);
        }
        // A request takes several TLS records. None of them should wait for the acknowledgement of the one
        // before.
        const int enabled = 1;
        ::setsockopt(socket_.number(), IPPROTO_TCP, TCP_NODELAY, &enabled, sizeof enabled);
        return error;
    }

    std::string address() const { return host_ + " port " + port_; }

    [[noreturn]] void fail(const std::string& what) {
        const auto text = what + "[" + reason() + "]";
        drop();
        throw TAVO::NetworkError(text);
    }

    /// Shuts TLS down if the connection is still up.
    void close() noexcept {
        if (tls_ && idleState() != IdleState::ended)
            SSL_shutdown(tls_.get());
        drop();
    }
    void drop() noexcept {
        tls_.reset();
        socket_ = Descriptor();
        ERR_clear_error();
    }

    std::string host_;
    std::string port_;
    std::string name_;
    Owned<SSL_CTX, SSL_CTX_free> context_{SSL_CTX_new(TLS_client_method())};
    Descriptor alarm_; ///< readable after an interrupt
    Descriptor alarmEntry_;
    Descriptor socket_;
    Owned<SSL, SSL_free> tls_;
    std::uint64_t connectionNumber_ = 0;
    bool kept_ = false;
};
