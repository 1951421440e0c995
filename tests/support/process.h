#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/// Programs under test, as processes of their own. Every wait ends after `processPatience`: what still runs
/// then is killed, and the wait throws std::runtime_error.
namespace support {

inline constexpr std::chrono::seconds processPatience{60};

struct ProcessSetup {
    std::string program;
    std::vector<std::string> arguments;
    /// What can be read from the standard input.
    std::string input = {};
    /// Added to the environment of the tests, which is passed on with LC_ALL=C, and of the variables
    /// that begin with TAVO_ with nothing but TAVO_CONFIG, an empty file.
    std::map<std::string, std::string> environment = {};
    /// Opened as the standard output instead of a pipe.
    std::optional<std::string> outputFile = {};
    /// Runs without a standard output.
    bool withoutOutput = false;
    /// Nobody reads the pipe that is the standard output.
    bool outputUnread = false;
    /// A terminal to be opened as the standard input; it becomes the process's own. Without one the process
    /// has none.
    std::optional<std::string> terminal = {};
    /// Whether that is the standard error as well.
    bool errorsOnTerminal = false;
};

struct ProcessOutcome {
    /// -1 when a signal ended it.
    int exitCode = -1;
    /// 0 unless a signal ended it.
    int signal = 0;
    std::string output;
    std::string errors;
    /// The most memory that it held at once, at least as much as the tests hold when they start it.
    std::size_t peakKilobytes = 0;
};

class Process {
public:
    explicit Process(const ProcessSetup& setup);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    /// Kills it when it still runs.
    ~Process();

    pid_t id() const { return pid_; }
    void signal(int number) const;
    /// The first line of the standard output, without its end, as soon as it is there.
    std::string firstLine();
    /// Reads everything, then waits for the end.
    ProcessOutcome wait();

private:
    using Clock = std::chrono::steady_clock;

    /// Reads what comes next; false when both streams have ended.
    bool readSome(Clock::time_point deadline);
    int reap(Clock::time_point deadline);
    [[noreturn]] void giveUp();

    pid_t pid_ = -1;
    int output_ = -1;
    int errors_ = -1;
    ProcessOutcome outcome_;
};

inline ProcessOutcome runProcess(const ProcessSetup& setup) { return Process(setup).wait(); }

/// A terminal without a screen: the far end of one that a process runs on.
class PseudoTerminal {
public:
    PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal();

    /// For ProcessSetup::terminal.
    const std::string& name() const { return name_; }
    void type(const std::string& text) const;
    /// What was shown so far, once it contains `text`.
    const std::string& waitFor(const std::string& text);
    bool echoes() const;
    /// Sets it as a shell does for itself: by lines, and what is typed is shown.
    void makeCooked() const;

private:
    int far_ = -1;
    int near_ = -1;
    std::string name_;
    std::string shown_;
};

} // namespace support
