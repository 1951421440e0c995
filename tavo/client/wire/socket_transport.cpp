#include <tavo/client/wire/socket_transport.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/internal/socket.h>

namespace TAVO {

namespace {

constexpr std::size_t readAheadCapacity = std::size_t{64} * 1024;

/// How long a wait goes on before the function of Interrupter::endWhen() is asked again.
constexpr std::chrono::milliseconds longestStep(50);

const char* introduction(sockets::ConnectStep step) {
    switch (step) {
    case sockets::ConnectStep::resolve:
        return "Could not get address info for: ";
    case sockets::ConnectStep::createSocket:
        return "Could not create socket to: ";
    case sockets::ConnectStep::connect:
    case sockets::ConnectStep::givenUp:
        break;
    }
    return "Could not connect to socket to: ";
}

/// Some systems would truncate such a number to 16 bits and connect there.
bool isBeyondAllPorts(const std::string& port) {
    std::uint64_t number = 0;
    const auto* const textEnd = port.data() + port.size();
    const auto [end, error] = std::from_chars(port.data(), textEnd, number);
    return end == textEnd && (error == std::errc::result_out_of_range || number > 0xFFFF);
}

} // namespace

SocketTransport::SocketTransport(const std::string& host, const std::string& port,
                                 std::shared_ptr<Interrupter> interrupter)
    : SocketTransport(host, port, std::move(interrupter), std::nullopt) {}

SocketTransport::SocketTransport(const std::string& host, const std::string& port,
                                 std::shared_ptr<Interrupter> interrupter, TimeLimit limit)
    : host_(host)
    , port_(port)
    , interrupter_(interrupter ? std::move(interrupter) : std::make_shared<Interrupter>())
    , socket_(sockets::closedHandle)
    , deadline_(limit)
    , readAhead_(std::make_unique_for_overwrite<std::uint8_t[]>(2 * readAheadCapacity)) {
    if (!sockets::startUp())
        throw NetworkError("Could not initialize WinSock library");
    connect();
}

SocketTransport::~SocketTransport() { close(); }

bool SocketTransport::isConnected() const noexcept { return socket_ != sockets::closedHandle; }

void SocketTransport::close() noexcept {
    readAheadBegin_ = readAheadEnd_ = 0;
    if (!isConnected())
        return;
    interrupter_->withdraw(socket_);
    sockets::close(socket_);
    socket_ = sockets::closedHandle;
}

void SocketTransport::interrupt() noexcept { interrupter_->interrupt(); }

void SocketTransport::setTimeLimit(TimeLimit limit) { deadline_.setLimit(limit); }

void SocketTransport::beginExchange() noexcept {
    exchangeBegin_ = interrupter_->beginExchange();
    deadline_.start();
}

bool SocketTransport::isInterrupted() const noexcept {
    return interrupter_->isInterruptedSince(exchangeBegin_);
}

void SocketTransport::endInterrupted() {
    close();
    throw NetworkError("Call to device interrupted.");
}

void SocketTransport::endLate() {
    close();
    throw NetworkError("Call to device timed out.");
}

bool SocketTransport::waitsInSteps() const noexcept { return deadline_.limit() || interrupter_->asks(); }

void SocketTransport::awaitReady(bool toSend) {
    const auto readiness = toSend ? sockets::Readiness::toSend : sockets::Readiness::toReceive;
    bool ready = false;
    while (!ready) {
        if (isInterrupted())
            endInterrupted();
        if (deadline_.isOver())
            endLate();
        ++counters_.polls;
        const auto left = deadline_.left().value_or(longestStep);
        ready = sockets::awaitReady(socket_, readiness,
                                    interrupter_->asks() ? std::min(left, longestStep) : left);
        if (interrupter_->asks())
            ask(!ready);
    }
}

// A peer that sends a little at a time must not keep the question from being asked.
void SocketTransport::ask(bool now) {
    const auto time = std::chrono::steady_clock::now();
    if (!now && time - asked_ < longestStep)
        return;
    asked_ = time;
    interrupter_->ask();
    if (isInterrupted())
        endInterrupted();
}

void SocketTransport::failReceive(sockets::ErrorCode error) {
    readAheadBegin_ = readAheadEnd_ = 0;
    if (isInterrupted())
        endInterrupted();
    throw NetworkError("Connection to device closed unexpectedly." + sockets::errorText(error));
}

void SocketTransport::connect() {
    beginExchange();
    connectAnew();
}

void SocketTransport::connectAnew() {
    close();
    connectionBegin_ = exchangeBegin_;
    ++counters_.connects;
    const auto givesUp = [this] {
        interrupter_->ask();
        return isInterrupted() || deadline_.isOver();
    };
    std::optional<sockets::ConnectFailure> failure;
    if (isBeyondAllPorts(port_))
        failure = {sockets::ConnectStep::resolve, sockets::noSuchPortText()};
    else if (!givesUp())
        failure = sockets::connect(host_, port_, socket_, givesUp);
    if (isConnected()) {
        ++connectionNumber_;
        interrupter_->publish(socket_);
    }
    if (isInterrupted())
        endInterrupted();
    if (deadline_.isOver() && (!failure || failure->step == sockets::ConnectStep::givenUp))
        endLate();
    if (failure)
        throw NetworkError(introduction(failure->step) + host_ + " port " + port_ + failure->errorText);
}

bool SocketTransport::renew() noexcept {
    close();
    return true;
}

bool SocketTransport::hasUnaskedBytes() noexcept {
    if (readAheadBegin_ < readAheadEnd_)
        return true;
    if (!isConnected())
        return false;
    ++counters_.polls;
    if (!sockets::pollReadable(socket_))
        return false;
    ++counters_.receives;
    // An error is not reported here: the next send or receive meets it as the end of the connection.
    const auto received =
        sockets::receiveOnce(socket_, readAhead_.get() + readAheadCapacity, readAheadCapacity);
    readAheadBegin_ = readAheadCapacity;
    readAheadEnd_ = readAheadCapacity + received.bytes;
    return received.bytes > 0;
}

void SocketTransport::ensureConnected() { prepareToSend(); }

std::uint64_t SocketTransport::connectionNumber() const noexcept { return connectionNumber_; }

void SocketTransport::keepConnection(bool kept) noexcept { kept_ = kept; }

void SocketTransport::connectUnlessKept() {
    if (kept_) {
        close();
        failReceive(sockets::connectionReset());
    }
    connectAnew();
}

void SocketTransport::prepareToSend() {
    beginExchange();
    if (isInterrupted())
        endInterrupted();
    // An interrupt from before this exchange costs the connection, not the exchange.
    if (connectionBegin_ != exchangeBegin_)
        close();
    if (!isConnected()) {
        connectUnlessKept();
        return;
    }
    if (interrupter_->publish(socket_) && isInterrupted())
        endInterrupted();
    std::uint8_t stray = 0;
    bool unexpectedData = takeReadAhead(&stray, 1) > 0;
    if (!unexpectedData) {
        ++counters_.polls;
        if (!sockets::pollReadable(socket_))
            return;
        ++counters_.receives;
        const auto received = sockets::receiveOnce(socket_, &stray, 1);
        unexpectedData = received.error == 0 && received.bytes > 0;
    }
    if (unexpectedData)
        throw NetworkError("Unexpected data recieved from device.");
    connectUnlessKept();
}

std::size_t SocketTransport::sendSome(std::span<const std::span<const std::uint8_t>> runs) {
    while (true) {
        ++counters_.sends;
        const auto sent = waitsInSteps() ? sockets::sendWithoutWaiting(socket_, runs)
                                         : sockets::sendGathered(socket_, runs);
        if (sent.error != 0) {
            if (isInterrupted())
                endInterrupted();
            throw NetworkError("Error transmitting message call to device." + sockets::errorText(sent.error));
        }
        if (sent.bytes > 0 || !waitsInSteps())
            return sent.bytes;
        awaitReady(true);
    }
}

template <class RunIterator>
void SocketTransport::sendRuns(RunIterator run, RunIterator end) {
    std::size_t sentOfFirst = 0;
    while (true) {
        std::array<sockets::Run, sockets::maximumRuns> batch;
        std::size_t runs = 0;
        std::size_t skipped = sentOfFirst;
        for (auto next = run; next != end && runs < batch.size(); ++next) {
            const auto rest = (*next).subspan(skipped);
            skipped = 0;
            if (!rest.empty())
                batch[runs++] = rest;
        }
        if (runs == 0)
            return;

        sentOfFirst += sendSome(std::span(batch).first(runs));
        while (run != end && sentOfFirst >= (*run).size()) {
            sentOfFirst -= (*run).size();
            ++run;
        }
    }
}

void SocketTransport::send(const TAVOX::OutputStream::Chunks& request) {
    prepareToSend();
    sendRuns(request.begin(), request.end());
}

void SocketTransport::sendAll(const std::uint8_t* bytes, std::uint64_t length) {
    prepareToSend();
    const sockets::Run whole(bytes, static_cast<std::size_t>(length));
    sendRuns(&whole, &whole + 1);
}

std::size_t SocketTransport::takeReadAhead(std::uint8_t* destination, std::uint64_t length) noexcept {
    const auto taken =
        static_cast<std::size_t>(std::min<std::uint64_t>(length, readAheadEnd_ - readAheadBegin_));
    if (taken > 0)
        std::memcpy(destination, readAhead_.get() + readAheadBegin_, taken);
    readAheadBegin_ += taken;
    return taken;
}

std::size_t SocketTransport::receiveSome(std::uint8_t* destination, std::uint64_t length) {
    if (waitsInSteps())
        awaitReady(false);
    ++counters_.receives;
    const auto limit =
        static_cast<std::size_t>(std::min<std::uint64_t>(length, std::numeric_limits<std::size_t>::max()));
    const auto received = sockets::receiveOnce(socket_, destination, limit);
    if (received.error != 0)
        failReceive(received.error);
    if (received.bytes == 0)
        failReceive(sockets::connectionReset());
    return received.bytes;
}

void SocketTransport::readAhead() {
    // The rest moves to just before the second half of the buffer, so that the receive gets a whole half.
    const auto left = readAheadEnd_ - readAheadBegin_;
    const auto begin = readAheadCapacity - left;
    if (left > 0)
        std::memmove(readAhead_.get() + begin, readAhead_.get() + readAheadBegin_, left);
    readAheadBegin_ = begin;
    readAheadEnd_ = readAheadCapacity;
    readAheadEnd_ += receiveSome(readAhead_.get() + readAheadEnd_, readAheadCapacity);
}

const std::uint8_t* SocketTransport::receiveInPlace(std::uint64_t length) {
    if (length > readAheadCapacity)
        return nullptr;
    while (readAheadEnd_ - readAheadBegin_ < length) {
        if (!isConnected())
            failReceive(sockets::notConnected());
        const auto room = 2 * readAheadCapacity - readAheadEnd_;
        const auto missing = length - (readAheadEnd_ - readAheadBegin_);
        if (readAheadBegin_ == readAheadEnd_ || room < missing)
            readAhead();
        else
            readAheadEnd_ += receiveSome(readAhead_.get() + readAheadEnd_, room);
    }
    const auto* bytes = readAhead_.get() + readAheadBegin_;
    readAheadBegin_ += static_cast<std::size_t>(length);
    return bytes;
}

void SocketTransport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    if (length == 0)
        return;
    if (!isConnected())
        failReceive(sockets::notConnected());
    while (true) {
        const auto taken = takeReadAhead(buffer, length);
        buffer += taken;
        length -= taken;
        if (length == 0)
            return;

        if (length < readAheadCapacity) {
            readAhead();
        } else {
            const auto received = receiveSome(buffer, length);
            buffer += received;
            length -= received;
        }
    }
}

} // namespace TAVO
