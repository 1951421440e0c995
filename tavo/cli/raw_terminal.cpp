#include <tavo/cli/raw_terminal.h>

#include <csignal>

#include <termios.h>
#include <unistd.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

termios before{};
volatile std::sig_atomic_t rawDescriptor = -1;

} // namespace

RawTerminal::RawTerminal(int descriptor) {
    if (::isatty(descriptor) != 1)
        return;
    if (::tcgetattr(descriptor, &before) != 0)
        throw Failure(ExitCode::usage, "cannot look at the terminal");
    rawDescriptor = descriptor;
    auto raw = before;
    ::cfmakeraw(&raw);
    if (::tcsetattr(descriptor, TCSAFLUSH, &raw) != 0) {
        restore();
        throw Failure(ExitCode::usage, "cannot set the terminal");
    }
}

RawTerminal::~RawTerminal() { restore(); }

void RawTerminal::restore() {
    if (rawDescriptor >= 0)
        ::tcsetattr(rawDescriptor, TCSANOW, &before);
    rawDescriptor = -1;
}

} // namespace TAVO::cli
