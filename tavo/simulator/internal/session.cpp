#include <tavo/simulator/internal/session.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/write.hpp>

namespace TAVO::simulator {

namespace {

// How long a connection that was told to go is read on, so that what it still sends cannot reset it before
// the client has read the answer.
constexpr std::chrono::seconds farewell{2};

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing `received_` would cost each connection
Session::Session(Server& server, asio::ip::tcp::socket socket, std::uint64_t number)
    : server_(server)
    , socket_(std::move(socket))
    , timer_(socket_.get_executor())
    , number_(number) {}

void Session::start() {
    asio::error_code ignored;
    socket_.set_option(asio::ip::tcp::no_delay(true), ignored);
    read();
}

void Session::close() {
    if (std::exchange(closed_, true))
        return;
    asio::error_code ignored;
    socket_.close(ignored);
    timer_.cancel();
    server_.forget(number_);
}

void Session::read() {
    socket_.async_read_some(asio::buffer(received_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                                if (self->closed_)
                                    return;
                                if (failure)
                                    return self->close();
                                self->assembler_.feed({self->received_.data(), count});
                                self->serve();
                            });
}

void Session::serve() {
    try {
        const auto state = assembler_.scan();
        if (state == RequestAssembler::State::incomplete)
            return read();
        if (state == RequestAssembler::State::tooLarge)
            response_ = server_.handler_.refuse(number_);
        else
            response_ = server_.handler_.handle(number_, assembler_.take());
    } catch (const std::exception&) { // out of memory: this client has to go, not the simulator
        return close();
    }
    answer();
}

void Session::answer() {
    if (response_.delay.count() == 0)
        return deliver();
    timer_.expires_after(response_.delay);
    timer_.async_wait([self = shared_from_this()](const asio::error_code&) {
        if (!self->closed_)
            self->deliver();
    });
}

void Session::deliver() {
    const auto& spoilt = response_.spoilt;
    const auto whole = response_.bytes.size();
    if (!spoilt)
        write(whole, false);
    else if (const auto* dribbled = std::get_if<faults::Dribble>(&*spoilt))
        dribble(0, dribbled->pause);
    else if (const auto* cut = std::get_if<faults::Cut>(&*spoilt))
        write(std::min(cut->bytes, whole), true);
    else if (std::holds_alternative<faults::Silent>(*spoilt))
        delivered();
    else if (std::holds_alternative<faults::Reset>(*spoilt))
        reset();
    else
        close();
}

void Session::write(std::size_t bytes, bool thenClose) {
    asio::async_write(socket_, asio::buffer(response_.bytes.data(), bytes),
                      [self = shared_from_this(), thenClose](const asio::error_code& failure, std::size_t) {
                          if (self->closed_)
                              return;
                          if (failure || thenClose)
                              return self->close();
                          self->delivered();
                      });
}

void Session::dribble(std::size_t sent, std::chrono::microseconds pause) {
    if (sent == response_.bytes.size())
        return delivered();
    asio::async_write(socket_, asio::buffer(response_.bytes.data() + sent, 1),
                      [self = shared_from_this(), sent, pause](const asio::error_code& failure, std::size_t) {
                          if (self->closed_)
                              return;
                          if (failure)
                              return self->close();
                          self->timer_.expires_after(pause);
                          self->timer_.async_wait([self, sent, pause](const asio::error_code&) {
                              if (!self->closed_)
                                  self->dribble(sent + 1, pause);
                          });
                      });
}

void Session::delivered() {
    if (response_.closesAllConnections)
        return server_.closeAll();
    if (response_.closesConnection)
        return closeGently();
    serve();
}

void Session::reset() {
    asio::error_code ignored;
    socket_.set_option(asio::socket_base::linger(true, 0), ignored);
    close();
}

void Session::closeGently() {
    asio::error_code ignored;
    socket_.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    timer_.expires_after(farewell);
    timer_.async_wait([self = shared_from_this()](const asio::error_code&) { self->close(); });
    discard();
}

void Session::discard() {
    socket_.async_read_some(asio::buffer(received_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
                                if (self->closed_)
                                    return;
                                if (failure)
                                    return self->close();
                                self->discard();
                            });
}

} // namespace TAVO::simulator
