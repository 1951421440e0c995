#include <tavo/cli/raw_terminal.h>

#include <cerrno>

#include <termios.h>
#include <unistd.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

termios before{};
termios raw{};
volatile std::sig_atomic_t rawDescriptor = -1;

struct sigaction actionOf(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    // Neither handler may interrupt the other.
    sigemptyset(&action.sa_mask);
    sigaddset(&action.sa_mask, SIGTSTP);
    sigaddset(&action.sa_mask, SIGCONT);
    return action;
}

/// Stops the process as an unhandled SIGTSTP does. Returns when the process continues.
void stopByDefault() {
    struct sigaction handler {};
    const auto byDefault = actionOf(SIG_DFL);
    ::sigaction(SIGTSTP, &byDefault, &handler);
    sigset_t stop;
    sigset_t mask;
    sigemptyset(&stop);
    sigaddset(&stop, SIGTSTP);
    static_cast<void>(std::raise(SIGTSTP));
    ::pthread_sigmask(SIG_UNBLOCK, &stop, &mask); // stops here
    ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    ::sigaction(SIGTSTP, &handler, nullptr);
}

void takeTerminal(int /*signal*/) {
    const int error = errno;
    if (rawDescriptor >= 0)
        ::tcsetattr(rawDescriptor, TCSANOW, &raw);
    errno = error;
}

void giveBackAndStop(int /*signal*/) {
    const int error = errno;
    if (rawDescriptor >= 0)
        ::tcsetattr(rawDescriptor, TCSANOW, &before);
    stopByDefault();
    takeTerminal(SIGCONT); // even if the process was not stopped
    errno = error;
}

} // namespace

RawTerminal::RawTerminal(int descriptor) {
    if (::isatty(descriptor) != 1)
        return;
    if (::tcgetattr(descriptor, &before) != 0)
        throw Failure(ExitCode::usage, "cannot read the terminal settings");
    raw = before;
    ::cfmakeraw(&raw);
    rawDescriptor = descriptor;
    if (::tcsetattr(descriptor, TCSAFLUSH, &raw) != 0) {
        restore();
        throw Failure(ExitCode::usage, "cannot change the terminal settings");
    }
    taken_ = true;
    const auto stop = actionOf(giveBackAndStop);
    const auto proceed = actionOf(takeTerminal);
    ::sigaction(SIGTSTP, &stop, &stopBefore_);
    if (stopBefore_.sa_handler == SIG_IGN)
        ::sigaction(SIGTSTP, &stopBefore_, nullptr);
    ::sigaction(SIGCONT, &proceed, &continueBefore_);
}

RawTerminal::~RawTerminal() {
    if (taken_) {
        ::sigaction(SIGTSTP, &stopBefore_, nullptr);
        ::sigaction(SIGCONT, &continueBefore_, nullptr);
    }
    restore();
}

void RawTerminal::restore() {
    const int descriptor = rawDescriptor;
    rawDescriptor = -1;
    if (descriptor >= 0)
        ::tcsetattr(descriptor, TCSANOW, &before);
}

} // namespace TAVO::cli
