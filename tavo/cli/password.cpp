#include <tavo/cli/password.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <tavo/cli/descriptor.h>
#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

/// Blocks the signals that would end or stop the process and makes them readable instead.
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
    Secret line;
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
        answer.line.append(c);
    }
}

Answer askOnce(int terminal, const std::string& prompt) {
    const HeldSignals signals;
    const EchoOff echo(terminal);
    if (::write(terminal, prompt.data(), prompt.size()) < 0)
        throw Failure(ExitCode::usage, "cannot write to the terminal");
    return readLine(terminal, signals);
}

Secret ask(const std::string& user) {
    const Descriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC));
    if (!terminal.isOpen())
        throw Failure(ExitCode::usage, "no password: there is no terminal to ask at; use --password-file or "
                                       "the environment variable TAVO_PASSWORD");
    for (;;) {
        auto answer = askOnce(terminal.number(), fmt::format("Password of {}: ", user));
        if (answer.signal == 0)
            return std::move(answer.line);
        // The terminal is restored, so let the signal act. After a stop, ask again.
        std::raise(answer.signal);
    }
}

std::string unreadableText(const std::string& path) {
    return fmt::format("cannot read '{}': {}", path, std::generic_category().message(errno));
}

[[noreturn]] void refuseFile(const std::string& path) {
    throw Failure(ExitCode::usage, unreadableText(path));
}

/// Empty unless others may access the file.
std::string openToOthersText(int file, const std::string& path) {
    struct stat found {};
    if (::fstat(file, &found) != 0)
        refuseFile(path);
    if (!S_ISREG(found.st_mode) || (found.st_mode & (S_IRWXG | S_IRWXO)) == 0)
        return "";
    return fmt::format("the password file '{}' is accessible to others: its mode is {:04o}, not 0600", path,
                       found.st_mode & mode_t{07777});
}

/// Byte by byte, so that no buffer keeps a copy.
Secret firstLine(int file, const std::string& path) {
    Secret line;
    for (;;) {
        char c = 0;
        const auto got = ::read(file, &c, 1);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            refuseFile(path);
        if (got == 0 || c == '\n')
            break;
        line.append(c);
    }
    if (line.text().ends_with('\r'))
        line.removeLast();
    return line;
}

Secret passwordIn(const std::string& path, bool strict, const std::function<void(std::string_view)>& warn) {
    const bool isInput = path == "-";
    const Descriptor opened(isInput ? -1 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const int file = isInput ? STDIN_FILENO : opened.number();
    if (file < 0)
        refuseFile(path);
    const auto problem = openToOthersText(file, path);
    if (!problem.empty() && strict)
        throw Failure(ExitCode::usage, problem);
    if (!problem.empty())
        warn(problem);
    return firstLine(file, path);
}

} // namespace

PasswordFileProblem problemOfPasswordFile(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return {unreadableText(path), true};
    return {openToOthersText(file.number(), path), false};
}

std::optional<Secret> takePasswordOfEnvironment() {
    constexpr const char* name = "TAVO_PASSWORD";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread
    auto* value = std::getenv(name);
    if (value == nullptr)
        return std::nullopt;
    Secret password(value);
    // The system shows this memory to anybody who may read the process's environment.
    ::explicit_bzero(value, password.text().size());
    ::unsetenv(name); // NOLINT(concurrency-mt-unsafe): the process has one thread
    return password;
}

Secret findPassword(const PasswordSources& sources, const std::string& user,
                    const std::function<void(std::string_view)>& warn) {
    if (sources.file)
        return passwordIn(*sources.file, sources.strict, warn);
    if (sources.environment)
        return sources.environment->copy();
    return ask(user);
}

} // namespace TAVO::cli
