#include <tavo/simulator/internal/session.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

namespace TAVO::simulator {

namespace {

// How long to keep reading a connection after its last answer: unread input would reset it before the client
// has read the answer.
constexpr std::chrono::seconds farewell{2};
constexpr std::size_t largestPiece = std::size_t{64} * 1024;

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing `received_` would cost each connection
Session::Session(Server& server, server::Socket socket, std::uint64_t number)
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
    server_.clients_.changeHeld(std::exchange(heldBytes_, 0), 0);
    server_.forget(number_);
}

bool Session::note() {
    active_ = std::chrono::steady_clock::now();
    const auto held = assembler_.size() + (runner_ ? runner_->heldBytes() : 0) + response_.bytes.size();
    server_.clients_.changeHeld(std::exchange(heldBytes_, held), held);
    server_.clients_.boundHeld(*this);
    return !closed_;
}

void Session::read() {
    socket_.async_read_some(asio::buffer(received_),
                            [self = shared_from_this()](const asio::error_code& failure, std::size_t count) {
                                if (self->closed_)
                                    return;
                                if (failure)
                                    return self->close();
                                self->take(count);
                            });
}

// On lack of memory, drop this client, not the simulator.
template <class Action>
void Session::attempt(Action action) {
    try {
        action();
    } catch (const std::exception&) {
        close();
    }
}

void Session::take(std::size_t count) {
    attempt([&] {
        assembler_.feed({received_.data(), count});
        if (note())
            serve();
    });
}

void Session::serve() {
    const auto state = assembler_.scan();
    if (state == server::RequestAssembler::State::incomplete)
        return read();
    if (state == server::RequestAssembler::State::tooLarge) {
        assembler_ = {};
        response_ = server_.handler_.refuse(number_);
        return answer();
    }
    runner_ = server_.handler_.begin(number_, assembler_.take());
    proceed();
}

void Session::proceed() {
    auto response = server_.handler_.proceed(*runner_);
    if (!response) {
        if (note())
            asio::post(socket_.get_executor(), [self = shared_from_this()] {
                if (!self->closed_)
                    self->attempt([&] { self->proceed(); });
            });
        return;
    }
    runner_.reset();
    response_ = std::move(*response);
    lockId_ = response_.lockId;
    if (note())
        answer();
}

void Session::answer() {
    if (response_.delay.count() == 0)
        return deliver();
    active_ += response_.delay;
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
    // Asio also calls this before each piece, when the previous piece has been taken.
    const auto goOn = [self = shared_from_this()](const asio::error_code& failure, std::size_t) {
        self->active_ = std::chrono::steady_clock::now();
        return failure ? 0 : largestPiece;
    };
    asio::async_write(socket_, asio::buffer(response_.bytes.data(), bytes), goOn,
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
    active_ = std::chrono::steady_clock::now();
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
        return server_.clients_.closeAll();
    if (response_.closesConnection)
        return closeGently();
    response_ = {};
    if (note())
        attempt([&] { serve(); });
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
