#include <tavo/cli/progress.h>

#include <cstdio>

#include <unistd.h>

#include <tavo/cli/values/visible_text.h>
#include <tavo/config/environment.h>

namespace TAVO::cli {

namespace {

constexpr const char* clearLine = "\r\x1b[K";

bool terminalHasCursor() { return config::environmentVariable("TERM").value_or("dumb") != "dumb"; }

} // namespace

Progress::Progress()
    : onTerminal_(::isatty(STDERR_FILENO) == 1 && terminalHasCursor()) {}

Progress::~Progress() {
    if (shown_)
        std::fputs(clearLine, stderr);
}

void Progress::show(std::string_view text) {
    if (!onTerminal_)
        return;
    std::fputs((clearLine + visible(text)).c_str(), stderr);
    std::fflush(stderr);
    shown_ = true;
}

} // namespace TAVO::cli
