#include <tavo/cli/progress_bar.h>

#include <fmt/format.h>

namespace TAVO::cli {

std::string progressText(std::string_view what, std::uint64_t done, std::uint64_t total,
                         std::chrono::duration<double> elapsed) {
    constexpr std::uint64_t width = 20;
    constexpr double mebi = 1024 * 1024;
    const auto filled = total == 0 ? width : done * width / total;
    auto text = fmt::format("{} [{:#<{}}{:-<{}}] {:3} %, {:.1f} of {:.1f} MiB", what, "", filled, "",
                            width - filled, total == 0 ? 100 : done * 100 / total,
                            static_cast<double>(done) / mebi, static_cast<double>(total) / mebi);
    if (done != 0 && elapsed.count() > 0)
        text += fmt::format(", {:.1f} MiB/s", static_cast<double>(done) / mebi / elapsed.count());
    return text;
}

} // namespace TAVO::cli
