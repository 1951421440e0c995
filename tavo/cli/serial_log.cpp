#include <tavo/cli/serial_log.h>

#include <cerrno>
#include <chrono>
#include <exception>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/values/moment.h>
#include <tavo/cli/values/sink.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

namespace {

/// A line that does not end is cut into pieces of this size.
constexpr std::size_t longestLine = 4096;

std::int64_t now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
}

[[noreturn]] void refuse(ExitCode code, const std::string& path, int error) {
    throw Failure(code, fmt::format("cannot write '{}': {}", path, std::generic_category().message(error)));
}

} // namespace

SerialLog::SerialLog(const std::string& path)
    : path_(path)
    , file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666)) {
    if (file_ < 0)
        refuse(ExitCode::usage, path_, errno);
}

SerialLog::~SerialLog() {
    try {
        write(sent_);
        write(received_);
    } catch (const std::exception&) {
    }
    ::close(file_);
}

void SerialLog::add(Line& line, std::string_view bytes) {
    for (const char byte : bytes) {
        if (line.text.empty())
            line.time = now();
        line.text += byte;
        if (byte == '\n' || line.text.size() == longestLine)
            write(line);
    }
}

void SerialLog::write(Line& line) {
    if (line.text.empty())
        return;
    auto text = std::string_view(line.text);
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    if (text.ends_with('\r'))
        text.remove_suffix(1);
    Sink sink(file_);
    sink.write(
        fmt::format("{} {} {}\n", momentText(line.time, ClockUnit::microseconds), line.mark, visible(text)));
    sink.flush();
    line.text.clear();
    if (sink.error() != 0)
        refuse(ExitCode::protocol, path_, sink.error());
}

} // namespace TAVO::cli
