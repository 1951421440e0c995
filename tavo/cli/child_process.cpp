#include <tavo/cli/child_process.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <system_error>

#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

namespace {

pid_t start(const std::vector<std::string>& words) {
    std::vector<std::string> copies = words;
    std::vector<char*> arguments;
    arguments.reserve(copies.size() + 1);
    for (auto& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    sigset_t byDefault;
    sigemptyset(&byDefault);
    sigaddset(&byDefault, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &byDefault);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    const int error =
        ::posix_spawnp(&process, words.front().c_str(), nullptr, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0)
        throw Failure(ExitCode::usage, fmt::format("cannot start '{}': {}", words.front(),
                                                   std::generic_category().message(error)));
    return process;
}

/// Whether the terminal has sent the signal to the program too.
bool comesFromTheTerminal(int signal) {
    return (signal == SIGINT || signal == SIGQUIT) && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

/// Its status once it has ended.
std::optional<int> ended(pid_t process) {
    int status = 0;
    if (::waitpid(process, &status, WNOHANG) != process)
        return std::nullopt;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

int runProgram(const std::vector<std::string>& words) {
    constexpr InterruptWatch::Milliseconds step(10);
    // If they are ignored, the system does not keep the status.
    std::signal(SIGCHLD, SIG_DFL);
    const auto process = start(words);
    for (;;) {
        if (const auto status = ended(process))
            return *status;
        try {
            InterruptWatch::pause(step);
        } catch (const Interrupted& interrupted) {
            if (!comesFromTheTerminal(interrupted.signal))
                ::kill(process, interrupted.signal);
            int status = 0;
            while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
                ;
            throw;
        }
    }
}

} // namespace TAVO::cli
