#include <tests/simulator/raw_client.h>

#include <chrono>
#include <stdexcept>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/write.hpp>

namespace support {

struct RawClient::Connection {
    asio::io_context context;
    asio::ip::tcp::socket socket{context};
    asio::error_code failure;
    std::size_t moved = 0;

    auto outcome() {
        return [this](const asio::error_code& error, std::size_t count) {
            failure = error;
            moved = count;
        };
    }

    // False when it has not come to an end in time, and then it is given up.
    bool runs() {
        context.restart();
        context.run_for(std::chrono::seconds(20));
        if (context.stopped())
            return true;
        socket.close();
        context.run();
        return false;
    }
};

RawClient::RawClient(std::uint16_t port)
    : connection_(std::make_unique<Connection>()) {
    asio::error_code failure;
    connection_->socket.connect({asio::ip::address_v4::loopback(), port}, failure);
    if (failure)
        throw std::runtime_error("cannot connect: " + failure.message());
}

RawClient::~RawClient() = default;

bool RawClient::send(const Bytes& bytes) {
    asio::async_write(connection_->socket, asio::buffer(bytes), connection_->outcome());
    if (!connection_->runs())
        throw std::runtime_error("the peer takes nothing");
    return !connection_->failure;
}

void RawClient::finishSending() {
    asio::error_code ignored;
    connection_->socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
}

Bytes RawClient::receive() {
    Bytes bytes(1 << 20);
    connection_->socket.async_read_some(asio::buffer(bytes), connection_->outcome());
    if (!connection_->runs())
        throw std::runtime_error("nothing to receive");
    const auto& failure = connection_->failure;
    if (failure && failure != asio::error::eof)
        throw std::runtime_error(failure == asio::error::connection_reset ? "reset" : "nothing to receive");
    bytes.resize(connection_->moved);
    return bytes;
}

Bytes RawClient::receive(std::size_t count) {
    Bytes bytes;
    while (bytes.size() < count) {
        const auto piece = receive();
        if (piece.empty())
            break;
        bytes.insert(bytes.end(), piece.begin(), piece.end());
    }
    return bytes;
}

Bytes RawClient::receiveToEnd() { return receive(SIZE_MAX); }

bool RawClient::hasEnded() {
    try {
        return receive().empty();
    } catch (const std::runtime_error& failure) {
        return std::string(failure.what()) == "reset";
    }
}

bool RawClient::hasInput() {
    std::uint8_t next = 0;
    asio::error_code failure;
    connection_->socket.non_blocking(true);
    connection_->socket.receive(asio::buffer(&next, 1), asio::socket_base::message_peek, failure);
    return !failure || failure == asio::error::eof;
}

} // namespace support
