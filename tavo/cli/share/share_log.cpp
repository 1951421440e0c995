#include <tavo/cli/share/share_log.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include <fmt/chrono.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

std::string now() {
    const auto time = std::chrono::system_clock::now();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
    return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(std::chrono::system_clock::to_time_t(time)),
                       milliseconds);
}

} // namespace

ShareLog::ShareLog(const std::string& path) {
    if (path.empty())
        return;
    out_.open(path, std::ios::app);
    if (!out_)
        throw Failure(ExitCode::usage,
                      fmt::format("cannot write {}: {}", path, std::generic_category().message(errno)));
}

void ShareLog::event(std::string_view what, nlohmann::json more) {
    if (!isOpen())
        return;
    more["time"] = now();
    more["event"] = what;
    out_ << more.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

void ShareLog::request(const ShareClient& client, const Turn& turn, const std::vector<std::string>& calls,
                       bool wasAnswered) {
    const std::chrono::duration<double, std::milli> taken = Turn::Clock::now() - turn.begin();
    nlohmann::json entry{{"client", client.number()},
                         {"peer", client.peer()},
                         {"calls", calls},
                         {"count", turn.plan().callCount()},
                         {"device", turn.plan().callsForDevice()},
                         {"milliseconds", taken.count()}};
    if (turn.errorCode() != 0)
        entry["error"] = turn.errorCode();
    if (!wasAnswered)
        entry["lost"] = true;
    event("request", std::move(entry));
}

} // namespace TAVO::cli
