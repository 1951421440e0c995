#include <tavo/cli/via_transport.h>

#include <string_view>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

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
    : StreamTransport(std::move(stop))
    , command_(std::move(command)) {}

ViaTransport::~ViaTransport() = default;

int ViaTransport::openStream() {
    running_.emplace(command_);
    return running_->connection();
}

void ViaTransport::closeStream(Milliseconds patience) noexcept {
    if (running_)
        running_->end(patience);
    running_.reset();
}

std::string ViaTransport::fate() {
    constexpr Milliseconds patience(1000);
    std::string end = "is not running";
    if (running_)
        end = running_->awaitEnd(patience) ? running_->endText() : "closed its output";
    return fmt::format("The command '{}' {}.", command_, end);
}

} // namespace TAVO::cli
