#include <tavo/cli/password.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/files.h>

namespace TAVO::cli {

namespace {

class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

/// Holds back the signals that would end or stop the process and makes them readable instead.
class HeldSignals {
public:
    HeldSignals()
        : signals_(held())
        , descriptor_(::signalfd(-1, &signals_, SFD_CLOEXEC)) {
        if (!descriptor_.isOpen())
            throw Failure(ExitCode::protocol,
                          fmt::format("cannot watch signals: {}", std::generic_category().message(errno)));
        ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    int descriptor() const { return descriptor_.number(); }
    int take() const {
        signalfd_siginfo info{};
        const auto got = ::read(descriptor_.number(), &info, sizeof info);
        return got == static_cast<ssize_t>(sizeof info) ? static_cast<int>(info.ssi_signo) : 0;
    }

private:
    static sigset_t held() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGALRM})
            sigaddset(&signals, signal);
        return signals;
    }

    sigset_t signals_;
    sigset_t before_{};
    Descriptor descriptor_;
};

class EchoOff {
public:
    explicit EchoOff(int terminal)
        : terminal_(terminal) {
        if (::tcgetattr(terminal_, &before_) != 0)
            throw Failure(ExitCode::usage, "cannot switch off the echo of the terminal");
        auto quiet = before_;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        quiet.c_lflag |= static_cast<tcflag_t>(ECHONL);
        ::tcsetattr(terminal_, TCSAFLUSH, &quiet);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() { ::tcsetattr(terminal_, TCSAFLUSH, &before_); }

private:
    int terminal_;
    termios before_{};
};

struct Answer {
    std::string line;
    int signal = 0;
};

Answer readLine(int terminal, const HeldSignals& signals) {
    Answer answer;
    for (;;) {
        pollfd watched[] = {{signals.descriptor(), POLLIN, 0}, {terminal, POLLIN, 0}};
        if (::poll(watched, 2, -1) < 0 && errno != EINTR)
            throw Failure(ExitCode::usage, "cannot read from the terminal");
        if (watched[0].revents != 0) {
            answer.signal = signals.take();
            return answer;
        }
        if (watched[1].revents == 0)
            continue;
        char c = 0;
        const auto got = ::read(terminal, &c, 1);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw Failure(ExitCode::usage, "no password was typed");
        if (c == '\n')
            return answer;
        answer.line += c;
    }
}

Answer askOnce(int terminal, const std::string& prompt) {
    const HeldSignals signals;
    const EchoOff echo(terminal);
    if (::write(terminal, prompt.data(), prompt.size()) < 0)
        throw Failure(ExitCode::usage, "cannot write to the terminal");
    return readLine(terminal, signals);
}

std::string ask(const std::string& user) {
    const Descriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC));
    if (!terminal.isOpen())
        throw Failure(ExitCode::usage, "no password: there is no terminal to ask at; use --password-file or "
                                       "the environment variable TAVO_PASSWORD");
    for (;;) {
        auto answer = askOnce(terminal.number(), fmt::format("Password of {}: ", user));
        if (answer.signal == 0)
            return std::move(answer.line);
        // The terminal is itself again, so the signal may do what it does; after a stop it is asked again.
        std::raise(answer.signal);
    }
}

std::string firstLine(const std::string& file) {
    auto line = readFile(file);
    line.resize(std::min(line.find('\n'), line.size()));
    if (line.ends_with('\r'))
        line.pop_back();
    return line;
}

} // namespace

std::string findPassword(const std::optional<std::string>& file, const std::string& user) {
    if (file)
        return firstLine(*file);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the tool never changes its environment
    if (const auto* variable = std::getenv("TAVO_PASSWORD"))
        return variable;
    return ask(user);
}

} // namespace TAVO::cli
