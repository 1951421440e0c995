#include <tests/support/process.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace support {

namespace {

void check(bool good, const char* what) {
    if (!good)
        throw std::runtime_error(std::string("Cannot ") + what);
}

std::vector<std::string> environmentOf(const ProcessSetup& setup) {
    auto changed = setup.environment;
    changed.try_emplace("LC_ALL", "C");
    // An empty file, for the tool; that of the user is not for tests.
    changed.try_emplace("TAVO_CONFIG", "/dev/null");
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        const auto name = std::string(text.substr(0, text.find('=')));
        if (!name.starts_with("TAVO_") && !changed.contains(name))
            variables.emplace_back(text);
    }
    for (const auto& [name, value] : changed)
        variables.push_back(name + "=" + value);
    return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

int fileHolding(const std::string& content) {
    const int file = ::memfd_create("input", MFD_CLOEXEC);
    check(file >= 0, "make a file");
    check(::write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size()),
          "write a file");
    ::lseek(file, 0, SEEK_SET);
    return file;
}

/// Reads once; false at the end of the stream.
bool readInto(int stream, std::string& text) {
    std::array<char, 4096> part{};
    const auto got = ::read(stream, part.data(), part.size());
    if (got > 0)
        text.append(part.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
}

int millisecondsTo(std::chrono::steady_clock::time_point deadline) {
    const auto left = deadline - std::chrono::steady_clock::now();
    const auto count = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
    return count < 0 ? 0 : static_cast<int>(count);
}

} // namespace

Process::Process(const ProcessSetup& setup) {
    std::array<int, 2> output{}, errors{};
    check(::pipe2(output.data(), O_CLOEXEC) == 0 && ::pipe2(errors.data(), O_CLOEXEC) == 0, "make a pipe");
    const int input = fileHolding(setup.input);

    if (setup.outputUnread) {
        ::close(output[0]);
        output[0] = -1;
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (setup.terminal)
        posix_spawn_file_actions_addopen(&actions, 0, setup.terminal->c_str(), O_RDWR, 0);
    else
        posix_spawn_file_actions_adddup2(&actions, input, 0);
    if (setup.outputFile)
        posix_spawn_file_actions_addopen(&actions, 1, setup.outputFile->c_str(), O_WRONLY, 0);
    else if (setup.withoutOutput)
        posix_spawn_file_actions_addclose(&actions, 1);
    else
        posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_adddup2(&actions, setup.errorsOnTerminal ? 0 : errors[1], 2);
    // Else a server of the test would go on listening in the process after it was stopped.
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    // A program that was started in the background of a script would pass on an ignored SIGINT.
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> words = {setup.program};
    words.insert(words.end(), setup.arguments.begin(), setup.arguments.end());
    auto variables = environmentOf(setup);
    const int error = ::posix_spawn(&pid_, setup.program.c_str(), &actions, &attributes,
                                    pointersTo(words).data(), pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    for (const int mine : {input, output[1], errors[1]})
        ::close(mine);
    output_ = output[0];
    errors_ = errors[0];
    if (error != 0)
        pid_ = -1;
    check(error == 0, "start the program");
}

Process::~Process() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    for (const int stream : {output_, errors_})
        if (stream >= 0)
            ::close(stream);
}

void Process::signal(int number) const { ::kill(pid_, number); }

bool Process::readSome(Clock::time_point deadline) {
    std::array<pollfd, 2> watched = {{{output_, POLLIN, 0}, {errors_, POLLIN, 0}}};
    const auto closeEnded = [](int& stream, const pollfd& seen, std::string& text) {
        if (stream >= 0 && seen.revents != 0 && !readInto(stream, text)) {
            ::close(stream);
            stream = -1;
        }
    };
    const int ready = ::poll(watched.data(), watched.size(), millisecondsTo(deadline));
    if (ready == 0)
        giveUp();
    closeEnded(output_, watched[0], outcome_.output);
    closeEnded(errors_, watched[1], outcome_.errors);
    return output_ >= 0 || errors_ >= 0;
}

std::string Process::firstLine() {
    const auto deadline = Clock::now() + processPatience;
    while (outcome_.output.find('\n') == std::string::npos)
        if (!readSome(deadline))
            throw std::runtime_error("The program ended without a line: " + outcome_.errors);
    return outcome_.output.substr(0, outcome_.output.find('\n'));
}

int Process::reap(Clock::time_point deadline) {
    int status = 0;
    rusage usage{};
    while (::wait4(pid_, &status, WNOHANG, &usage) == 0) {
        if (Clock::now() >= deadline)
            giveUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    pid_ = -1;
    outcome_.peakKilobytes = static_cast<std::size_t>(usage.ru_maxrss);
    return status;
}

ProcessOutcome Process::wait() {
    const auto deadline = Clock::now() + processPatience;
    while (readSome(deadline)) {
    }
    const int status = reap(deadline);
    outcome_.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return outcome_;
}

void Process::giveUp() {
    throw std::runtime_error("The program does not end; it wrote: " + outcome_.output + outcome_.errors);
}

PseudoTerminal::PseudoTerminal()
    : far_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    check(far_ >= 0 && ::grantpt(far_) == 0 && ::unlockpt(far_) == 0, "make a terminal");
    name_ = ::ptsname(far_);
    // Held open, so that the terminal and its settings outlive the process.
    near_ = ::open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    check(near_ >= 0, "open a terminal");
}

PseudoTerminal::~PseudoTerminal() {
    ::close(near_);
    ::close(far_);
}

void PseudoTerminal::type(const std::string& text) const {
    check(::write(far_, text.data(), text.size()) == static_cast<ssize_t>(text.size()), "type");
}

const std::string& PseudoTerminal::waitFor(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + processPatience;
    while (shown_.find(text) == std::string::npos) {
        pollfd watched{far_, POLLIN, 0};
        if (::poll(&watched, 1, millisecondsTo(deadline)) == 0)
            throw std::runtime_error("The terminal does not show '" + text + "' but: " + shown_);
        readInto(far_, shown_);
    }
    return shown_;
}

void PseudoTerminal::makeCooked() const {
    termios settings{};
    check(::tcgetattr(near_, &settings) == 0, "look at the terminal");
    settings.c_lflag |= static_cast<tcflag_t>(ECHO | ICANON | ISIG);
    check(::tcsetattr(near_, TCSANOW, &settings) == 0, "set the terminal");
}

bool PseudoTerminal::echoes() const {
    termios settings{};
    check(::tcgetattr(near_, &settings) == 0, "look at the terminal");
    return (settings.c_lflag & static_cast<tcflag_t>(ECHO)) != 0;
}

} // namespace support
