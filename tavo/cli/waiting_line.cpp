#include <tavo/cli/waiting_line.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <utility>

#include <unistd.h>

#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

namespace {

constexpr std::chrono::seconds patience(1);

} // namespace

WaitingLine::WaitingLine(std::string text)
    : text_(std::move(text)) {
    if (::isatty(STDERR_FILENO) != 1)
        return;
    // Signals are for the threads that know about them.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { wait(); });
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

WaitingLine::~WaitingLine() {
    {
        const std::lock_guard lock(mutex_);
        over_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void WaitingLine::wait() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return over_; }))
        std::fputs((visible(text_) + "\n").c_str(), stderr);
}

} // namespace TAVO::cli
