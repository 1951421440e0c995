#include <tavo/cli/via_transport.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>

#include <tavo/cli/failure.h>
#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

using Milliseconds = ShellCommand::Milliseconds;

constexpr Milliseconds usualPatience(1000);

/// Nothing that a shell gives a meaning, not even within quotes, and no option of the command.
bool isHarmless(std::string_view host) {
    constexpr std::string_view letters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._:%-";
    return !host.empty() && host.front() != '-' && host.find_first_not_of(letters) == std::string_view::npos;
}

} // namespace

std::string viaCommand(const std::string& pattern, const std::string& host, int port) {
    std::string command;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (pattern[at] != '%') {
            command += pattern[at];
            continue;
        }
        const char kind = ++at < pattern.size() ? pattern[at] : '\0';
        if (kind == 'h' && !isHarmless(host))
            throw Failure(ExitCode::usage,
                          fmt::format("the host '{}' cannot stand for %h in a command: it may hold letters, "
                                      "digits and . _ : % -",
                                      host));
        if (kind == 'h')
            command += host;
        else if (kind == 'p')
            command += std::to_string(port);
        else if (kind == '%')
            command += '%';
        else
            throw Failure(
                ExitCode::usage,
                "behind a percent sign, --via takes h for the host, p for the port, or another one");
    }
    return command;
}

ViaTransport::ViaTransport(std::string command, std::shared_ptr<Stop> stop)
    : command_(std::move(command))
    , stop_(std::move(stop)) {}

ViaTransport::~ViaTransport() = default;

void ViaTransport::start() {
    close(usualPatience);
    ++starts_;
    running_.emplace(command_);
}

void ViaTransport::close(Milliseconds patience) noexcept {
    readBegin_ = readEnd_ = 0;
    if (running_)
        running_->end(patience);
    running_.reset();
}

void ViaTransport::giveUp(const char* why) {
    close(Milliseconds(0));
    throw NetworkError(why);
}

void ViaTransport::interrupt() noexcept { stop_->interrupt(); }

bool ViaTransport::renew() noexcept {
    close(usualPatience);
    return true;
}

bool ViaTransport::atEnd() const noexcept {
    std::uint8_t next = 0;
    const auto got = ::recv(running_->connection(), &next, 1, MSG_PEEK);
    return got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR);
}

bool ViaTransport::hasUnaskedBytes() noexcept {
    if (readBegin_ != readEnd_)
        return true;
    std::uint8_t next = 0;
    return running_ && ::recv(running_->connection(), &next, 1, MSG_PEEK) > 0;
}

void ViaTransport::ensureConnected() {
    deadline_.start();
    if (const auto interrupts = stop_->interrupts_.load();
        std::exchange(seenInterrupts_, interrupts) != interrupts)
        close(Milliseconds(0));
    if (running_ && hasUnaskedBytes()) {
        std::uint8_t stray = 0;
        if (takeReadAhead(&stray, 1) == 0)
            static_cast<void>(::recv(running_->connection(), &stray, 1, 0));
        throw NetworkError("Unexpected data recieved from device.");
    }
    if (running_ && !atEnd())
        return;
    if (kept_)
        failBroken("Connection to device closed unexpectedly.");
    start();
}

void ViaTransport::failBroken(const std::string& what) {
    std::string fate = "is not running";
    if (running_)
        fate = running_->awaitEnd(usualPatience) ? running_->endText() : "closed its output";
    close(Milliseconds(0));
    throw NetworkError(fmt::format("{} The command '{}' {}.", what, command_, fate));
}

void ViaTransport::await(short event) {
    constexpr Milliseconds step(50);
    pollfd watched{running_->connection(), event, 0};
    Milliseconds pause;
    do {
        if (stop_->interrupts_ != seenInterrupts_)
            giveUp("Call to device interrupted.");
        if (deadline_.isOver())
            giveUp("Call to device timed out.");
        pause = std::min(deadline_.left().value_or(step), step);
    } while (::poll(&watched, 1, static_cast<int>(pause.count())) <= 0);
}

void ViaTransport::send(const TAVOX::OutputStream::Chunks& request) {
    ensureConnected();
    for (const auto& chunk : request)
        sendAll(chunk.data(), chunk.size());
}

void ViaTransport::sendAll(const std::uint8_t* bytes, std::size_t length) {
    while (length > 0) {
        await(POLLOUT);
        const auto sent = ::send(running_->connection(), bytes, length, MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN && errno != EINTR)
            failBroken("Error transmitting message call to device.");
        const auto part = static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
        bytes += part;
        length -= part;
    }
}

std::size_t ViaTransport::takeReadAhead(std::uint8_t* buffer, std::size_t length) noexcept {
    const auto taken = std::min(length, readEnd_ - readBegin_);
    std::memcpy(buffer, readAhead_.data() + readBegin_, taken);
    readBegin_ += taken;
    return taken;
}

std::size_t ViaTransport::receiveSome(std::uint8_t* buffer, std::size_t length) {
    for (;;) {
        await(POLLIN);
        const auto got = ::recv(running_->connection(), buffer, length, 0);
        if (got > 0)
            return static_cast<std::size_t>(got);
        if (got == 0 || (errno != EAGAIN && errno != EINTR))
            failBroken("Connection to device closed unexpectedly.");
    }
}

void ViaTransport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    if (length == 0)
        return;
    if (!running_)
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
