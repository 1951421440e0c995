#include <tavo/cli/jtag_serve/clock_dump.h>

#include <ios>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

ClockDump::ClockDump(std::string path, const std::string& scope)
    : path_(std::move(path))
    , file_(path_, std::ios::binary | std::ios::trunc)
    , writer_({scope}, [this](std::string_view text) {
        file_.write(text.data(), static_cast<std::streamsize>(text.size()));
    }) {
    flush();
}

void ClockDump::flush() {
    writer_.flush();
    file_.flush();
    if (!file_)
        throw Failure(ExitCode::usage, fmt::format("cannot write '{}'", path_));
}

} // namespace TAVO::cli
