#include <tavo/cli/stream_transport.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/socket.h>

#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

constexpr std::chrono::milliseconds usualPatience(1000);

} // namespace

StreamTransport::StreamTransport(std::shared_ptr<Stop> stop)
    : stop_(std::move(stop)) {}

void StreamTransport::start() {
    close(usualPatience);
    ++connections_;
    socket_ = openStream();
}

void StreamTransport::close(Milliseconds patience) noexcept {
    readBegin_ = readEnd_ = 0;
    socket_ = -1;
    closeStream(patience);
}

void StreamTransport::giveUp(const char* why) {
    close(Milliseconds(0));
    throw NetworkError(why);
}

void StreamTransport::interrupt() noexcept { stop_->interrupt(); }

bool StreamTransport::renew() noexcept {
    close(usualPatience);
    return true;
}

bool StreamTransport::atEnd() const noexcept {
    std::uint8_t next = 0;
    const auto got = ::recv(socket_, &next, 1, MSG_PEEK);
    return got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR);
}

bool StreamTransport::hasUnaskedBytes() noexcept {
    if (readBegin_ != readEnd_)
        return true;
    std::uint8_t next = 0;
    return isConnected() && ::recv(socket_, &next, 1, MSG_PEEK) > 0;
}

void StreamTransport::ensureConnected() {
    deadline_.start();
    if (const auto interrupts = stop_->interrupts_.load();
        std::exchange(seenInterrupts_, interrupts) != interrupts)
        close(Milliseconds(0));
    if (isConnected() && hasUnaskedBytes()) {
        std::uint8_t stray = 0;
        if (takeReadAhead(&stray, 1) == 0)
            static_cast<void>(::recv(socket_, &stray, 1, 0));
        throw NetworkError("Unexpected data recieved from device.");
    }
    if (isConnected() && !atEnd())
        return;
    if (kept_)
        failBroken("Connection to device closed unexpectedly.");
    start();
}

void StreamTransport::failBroken(const std::string& what) {
    const auto end = fate();
    close(Milliseconds(0));
    throw NetworkError(end.empty() ? what : what + " " + end);
}

void StreamTransport::await(short event) {
    constexpr Milliseconds step(50);
    pollfd watched{socket_, event, 0};
    Milliseconds pause;
    do {
        if (stop_->interrupts_ != seenInterrupts_)
            giveUp("Call to device interrupted.");
        if (deadline_.isOver())
            giveUp("Call to device timed out.");
        pause = std::min(deadline_.left().value_or(step), step);
    } while (::poll(&watched, 1, static_cast<int>(pause.count())) <= 0);
}

void StreamTransport::send(const TAVOX::OutputStream::Chunks& request) {
    ensureConnected();
    for (const auto& chunk : request)
        sendAll(chunk.data(), chunk.size());
}

void StreamTransport::sendAll(const std::uint8_t* bytes, std::size_t length) {
    while (length > 0) {
        await(POLLOUT);
        const auto sent = ::send(socket_, bytes, length, MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN && errno != EINTR)
            failBroken("Error transmitting message call to device.");
        const auto part = static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
        bytes += part;
        length -= part;
    }
}

std::size_t StreamTransport::takeReadAhead(std::uint8_t* buffer, std::size_t length) noexcept {
    const auto taken = std::min(length, readEnd_ - readBegin_);
    std::memcpy(buffer, readAhead_.data() + readBegin_, taken);
    readBegin_ += taken;
    return taken;
}

std::size_t StreamTransport::receiveSome(std::uint8_t* buffer, std::size_t length) {
    for (;;) {
        await(POLLIN);
        const auto got = ::recv(socket_, buffer, length, 0);
        if (got > 0)
            return static_cast<std::size_t>(got);
        if (got == 0 || (errno != EAGAIN && errno != EINTR))
            failBroken("Connection to device closed unexpectedly.");
    }
}

void StreamTransport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    if (length == 0)
        return;
    if (!isConnected())
        failBroken("Connection to device closed unexpectedly.");
    auto rest = static_cast<std::size_t>(length);
    for (;;) {
        const auto taken = takeReadAhead(buffer, rest);
        buffer += taken;
        rest -= taken;
        if (rest == 0)
            return;
        if (rest >= readAhead_.size()) {
            const auto got = receiveSome(buffer, rest);
            buffer += got;
            rest -= got;
        } else {
            readBegin_ = 0;
            readEnd_ = 0;
            readEnd_ = receiveSome(readAhead_.data(), readAhead_.size());
        }
    }
}

} // namespace TAVO::cli
