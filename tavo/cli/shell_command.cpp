#include <tavo/cli/shell_command.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

[[noreturn]] void fail(const std::string& command, int error) {
    throw NetworkError(
        fmt::format("Could not start the command '{}': {}", command, std::generic_category().message(error)));
}

sigset_t setOf(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals)
        sigaddset(&set, signal);
    return set;
}

/// Starts the shell with `socket` as its input and output. Returns errno, or 0.
int spawn(const std::string& command, int socket, pid_t& process) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, socket, STDOUT_FILENO);

    // The terminal sends the first three to the whole job, but releasing the lock still needs the command.
    const auto held = setOf({SIGINT, SIGQUIT, SIGHUP});
    const auto byDefault = setOf({SIGPIPE, SIGTERM});
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &held);
    posix_spawnattr_setsigdefault(&attributes, &byDefault);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::string shell = "sh";
    std::string option = "-c";
    std::string words = command;
    const std::array<char*, 4> arguments = {shell.data(), option.data(), words.data(), nullptr};
    const int error = ::posix_spawn(&process, "/bin/sh", &actions, &attributes, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return error;
}

} // namespace

ShellCommand::ShellCommand(const std::string& command) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        fail(command, errno);
    connection_ = Descriptor(ends[0]);
    const Descriptor far(ends[1]);
    ::fcntl(connection_.number(), F_SETFL, O_NONBLOCK);
    if (const int error = spawn(command, far.number(), process_); error != 0) {
        process_ = -1;
        fail(command, error);
    }
}

ShellCommand::~ShellCommand() { end(Milliseconds(1000)); }

bool ShellCommand::awaitEnd(Milliseconds patience) noexcept {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + patience;
    while (process_ > 0) {
        const auto ended = ::waitpid(process_, &status_, WNOHANG);
        if (ended == process_ || (ended < 0 && errno != EINTR))
            process_ = -1;
        else if (Clock::now() >= deadline)
            return false;
        else
            std::this_thread::sleep_for(Milliseconds(5));
    }
    return true;
}

void ShellCommand::end(Milliseconds patience) noexcept {
    connection_.close();
    if (awaitEnd(patience))
        return;
    ::kill(process_, SIGTERM);
    if (awaitEnd(Milliseconds(500)))
        return;
    ::kill(process_, SIGKILL);
    awaitEnd(Milliseconds(5000));
}

std::string ShellCommand::endText() const {
    if (WIFSIGNALED(status_))
        return fmt::format("was ended by signal {}", WTERMSIG(status_));
    return fmt::format("ended with exit status {}", WEXITSTATUS(status_));
}

} // namespace TAVO::cli
