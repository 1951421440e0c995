#include <tavo/cli/line_source.h>

#include <cerrno>
#include <chrono>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

std::optional<std::string> TextLines::next() {
    std::string line;
    return std::getline(text_, line) ? std::optional(std::move(line)) : std::nullopt;
}

std::optional<std::string> InputLines::next() {
    std::string line;
    for (;;) {
        char byte = '\0';
        if (!InterruptWatch::waitForInput(STDIN_FILENO, std::chrono::hours(1)))
            continue;
        const auto got = ::read(STDIN_FILENO, &byte, 1);
        if (got < 0 && errno != EINTR && errno != EAGAIN)
            throw Failure(ExitCode::usage, fmt::format("cannot read standard input: {}",
                                                       std::generic_category().message(errno)));
        if (got == 0)
            return line.empty() ? std::nullopt : std::optional(line);
        if (got == 1 && byte == '\n')
            return line;
        if (got == 1)
            line += byte;
    }
}

} // namespace TAVO::cli
