#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include <tavo/cli/progress.h>

namespace TAVO::cli {

/// Progress of a transfer in one line: "writing [########------------]  40 %, 3.2 of 8.0 MiB, 5.1 MiB/s".
std::string progressText(std::string_view what, std::uint64_t done, std::uint64_t total,
                         std::chrono::duration<double> elapsed);

/// Shows that line for a transfer that starts now.
class ProgressBar {
public:
    ProgressBar(std::string_view what, std::uint64_t total)
        : what_(what)
        , total_(total) {
        show(0);
    }

    void show(std::uint64_t done) {
        progress_.show(progressText(what_, done, total_, std::chrono::steady_clock::now() - start_));
    }

private:
    std::string what_;
    std::uint64_t total_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    Progress progress_;
};

} // namespace TAVO::cli
