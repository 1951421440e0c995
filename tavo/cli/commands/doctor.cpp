#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/stat.h>

#include <tavo/cli/diagnosed_settings.h>
#include <tavo/cli/diagnosis.h>
#include <tavo/cli/host_lookup.h>
#include <tavo/cli/session.h>
#include <tavo/cli/share/share_socket.h>
#include <tavo/cli/values/duration.h>
#include <tavo/client/version_number.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using State = Finding::State;

constexpr const char* simulatedText = "the device is simulated inside the tool";

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::string shown(double milliseconds) { return fmt::format("{:.2f} ms", milliseconds); }

/// Goes through everything between the user and the device, in the order in which it breaks.
class Doctor {
public:
    Doctor(const ConnectionOptions& given, Output& output)
        : given_(given)
        , diagnosis_(output) {}

    void examine() {
        if (const auto found = diagnoseSettings(given_, diagnosis_)) {
            options_ = *found;
            hasDevice_ = true;
            if (const auto seconds = options_.timeout.value_or(0); seconds > 0)
                limit_ = std::chrono::milliseconds(std::max(std::llround(seconds * 1000), 1LL));
        }
        // Before the device is asked anything.
        constexpr Step local[]{{"time limit", &Doctor::checkTimeLimit},
                               {"share", &Doctor::checkShare},
                               {"name", &Doctor::checkName},
                               {"connection", &Doctor::checkConnection}};
        for (const auto& [check, look] : local)
            runOrSkip(check, look);
        if (mayAsk())
            session_.emplace(optionsOfSession(), [](std::string_view) {});
        constexpr Step asking[]{{"protocol", &Doctor::checkProtocol},
                                {"key", &Doctor::checkKey},
                                {"round trip", &Doctor::checkRoundTrip},
                                {"versions", &Doctor::checkVersions},
                                {"lock", &Doctor::checkLock}};
        for (const auto& [check, look] : asking)
            runOrSkip(check, look);
        diagnosis_.finish();
    }

private:
    struct Step {
        const char* check;
        void (Doctor::*look)();
    };

    bool mayAsk() const { return !isCut_ && hasDevice_; }

    /// What needs something that has failed is not tried.
    void runOrSkip(const char* check, void (Doctor::*look)()) {
        if (mayAsk())
            (this->*look)();
        else
            skip(check, hasDevice_ ? "what comes before it has failed" : "no device is known");
    }
    void skip(const char* check, const std::string& why) { diagnosis_.skip(check, why); }

    /// To ask the device itself, with a limit for every exchange, and without looking up its name again.
    ConnectionOptions optionsOfSession() const {
        auto options = options_;
        options.direct = true;
        options.timeout = std::chrono::duration<double>(limit_).count();
        if (!address_.empty())
            options.host = address_;
        return options;
    }

    /// A failure without which the following checks make no sense.
    void cut(const char* check, const std::exception& cause, const std::string& hint) {
        diagnosis_.addFailure(check, cause, hint);
        isCut_ = true;
    }

    void checkTimeLimit() {
        constexpr auto check = "time limit";
        const auto seconds = options_.timeout.value_or(0);
        const nlohmann::json facts{{"seconds", seconds}};
        if (seconds > 0)
            diagnosis_.add({check, State::ok,
                            fmt::format("{} for each exchange{}", durationText(seconds),
                                        options_.timeoutIsChosen ? "" : ", the default"),
                            "", facts});
        else
            diagnosis_.add({check, State::warning, "none: a device that falls silent stops the tool",
                            "--timeout DURATION", facts});
    }

    void checkName() {
        constexpr auto check = "name";
        if (!isPlainNetwork(check))
            return;
        const InterruptWatch watch;
        try {
            const auto start = Clock::now();
            const auto addresses = addressesOf(options_.host, options_.port.value(), limit_);
            diagnosis_.add({check,
                            State::ok,
                            fmt::format("{} is {}", options_.host, fmt::join(addresses, ", ")),
                            "",
                            {{"addresses", addresses}, {"milliseconds", millisecondsSince(start)}}});
            // The one that the library takes; nothing has to be looked up again.
            address_ = addresses.front();
        } catch (const NetworkError& error) {
            cut(check, error, "check the spelling, 'tavo hosts', and the name service of this machine");
        }
    }

    void checkConnection() {
        constexpr auto check = "connection";
        if (!isPlainNetwork(check))
            return;
        const auto port = options_.port.value();
        InterruptWatch watch;
        try {
            const auto start = Clock::now();
            watch.await([&] {
                const SocketTransport connected(address_, std::to_string(port), watch.interrupter(), limit_);
            });
            const auto time = millisecondsSince(start);
            diagnosis_.add({check,
                            State::ok,
                            fmt::format("{} port {} accepts, after {}", address_, port, shown(time)),
                            "",
                            {{"milliseconds", time}, {"port", port}}});
        } catch (const NetworkError& error) {
            cut(check, error,
                "is the device on, is the port right (6123, or 6124 with --secure), is a firewall between?");
        }
    }

    /// Whether the tool itself connects to a host.
    bool isPlainNetwork(const char* check) {
        if (options_.simulated)
            skip(check, simulatedText);
        else if (options_.via)
            skip(check, fmt::format("the device is reached through a command: {}", *options_.via));
        return !options_.simulated && !options_.via;
    }

    void checkShare() {
        constexpr auto check = "share";
        if (options_.simulated || !options_.user) {
            skip(check, options_.simulated ? simulatedText : "no user is named");
            return;
        }
        const auto path = share_socket::pathFor(options_.host, options_.port.value(), *options_.user,
                                                options_.via.value_or(""));
        const nlohmann::json facts{{"path", path}};
        struct stat found {};
        if (path.empty())
            skip(check, "XDG_RUNTIME_DIR names no folder for shares");
        else if (share_socket::connect(path).isOpen())
            diagnosis_.add({check, State::ok, fmt::format("one runs at {}", path),
                            options_.direct ? "commands go round it: --direct" : "", facts});
        else if (::lstat(path.c_str(), &found) == 0)
            diagnosis_.add({check, State::warning, fmt::format("nobody listens at {}", path),
                            "a share that was killed has left it; the next 'tavo share' replaces it", facts});
        else
            diagnosis_.add(
                {check, State::ok, "none runs; commands connect to the device themselves", "", facts});
    }

    void checkProtocol() {
        constexpr auto check = "protocol";
        try {
            isKeyKnown_ = session_->identify(descriptor_);
        } catch (const TAVOKeyError& error) {
            diagnosis_.add({.check = check, .text = "the device speaks TAVOX"});
            keyError_ = describeFailure(error).message;
            return;
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            cut(check, error,
                options_.via ? "does the command of --via lead to the device?"
                             : "is this the device's port? Something else may listen there");
            return;
        }
        diagnosis_.add({.check = check, .text = "the device speaks TAVOX"});
    }

    void checkKey() {
        constexpr auto check = "key";
        const auto* const hint = "a build with -D TAVO_SERVER_KEYS_FILE=... knows other keys";
        if (!keyError_.empty())
            cut(check, Failure(ExitCode::notAuthorised, keyError_), hint);
        else if (!isKeyKnown_)
            diagnosis_.add({check,
                            State::warning,
                            "it is none of those that this build knows; with --secure "
                            "no command works",
                            hint,
                            {{"known", false}}});
        else
            diagnosis_.add(
                {check,
                 State::ok,
                 fmt::format("known, flags {:d} {:d}", descriptor_.firstKeyFlag, descriptor_.secondKeyFlag),
                 "",
                 {{"flags", {descriptor_.firstKeyFlag, descriptor_.secondKeyFlag}}, {"known", true}}});
    }

    void checkRoundTrip() {
        constexpr auto check = "round trip";
        constexpr std::size_t count = 9;
        std::vector<double> times;
        try {
            while (times.size() < count) {
                const auto start = Clock::now();
                info_ = session_->value(*session_->device().getDevice(), TAVOXTranscode::device_v1_0::info);
                times.push_back(millisecondsSince(start));
            }
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            cut(check, error, "the connection breaks while it is used; try again, and look at the network");
            return;
        }
        std::sort(times.begin(), times.end());
        const auto median = times[count / 2];
        const auto longest = times.back();
        const bool isSlow = longest * 2 > static_cast<double>(limit_.count());
        diagnosis_.add({check,
                        isSlow ? State::warning : State::ok,
                        fmt::format("{} (median of {}, {} to {})", shown(median), count, shown(times.front()),
                                    shown(longest)),
                        isSlow ? "close to the time limit: raise --timeout" : "",
                        {{"longest", longest}, {"median", median}, {"shortest", times.front()}}});
    }

    void checkVersions() {
        std::vector<std::string> firmware;
        nlohmann::json parts = nlohmann::json::array();
        for (const auto& part : info_.firmware) {
            const auto version = Version(part.version).text;
            firmware.push_back(fmt::format("{} {}", part.name, version));
            parts.push_back({{"name", part.name}, {"version", version}});
        }
        diagnosis_.add(
            {"versions",
             State::ok,
             fmt::format("device {} {}, firmware {}; tool {}", info_.name, Version(info_.version).text,
                         firmware.empty() ? "unknown" : fmt::format("{}", fmt::join(firmware, ", ")),
                         ClientLibraryVersion),
             "",
             {{"device", info_.name},
              {"firmware", parts},
              {"tool", ClientLibraryVersion},
              {"version", Version(info_.version).text}}});
    }

    void checkLock() {
        constexpr auto check = "lock";
        std::optional<std::string> holder;
        try {
            holder = session_->lockHolder();
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            cut(check, error, "");
            return;
        }
        const nlohmann::json facts{{"user", holder ? nlohmann::json(*holder) : nullptr}};
        if (!holder)
            diagnosis_.add({check, State::ok, "nobody holds it, as far as the device tells", "", facts});
        else if (options_.user == holder)
            diagnosis_.add({check, State::ok, fmt::format("{} holds it already", *holder),
                            "if no program of that user runs any more, 'tavo lock release' gives it back",
                            facts});
        else
            diagnosis_.add({check, State::failed, fmt::format("{} holds it", *holder),
                            "ask that user, or wait with --wait-lock DURATION or 'tavo lock wait'", facts,
                            ExitCode::notAuthorised});
    }

    ConnectionOptions given_;
    Diagnosis diagnosis_;
    ConnectionOptions options_;
    /// Of each wait, also where the user wants none.
    std::chrono::milliseconds limit_{10000};
    std::string address_;
    bool hasDevice_ = false;
    /// Whether the device cannot be asked any more.
    bool isCut_ = false;
    std::optional<Session> session_;
    Device_Factory_Structs::TavoDeviceDescriptor descriptor_;
    bool isKeyKnown_ = false;
    std::string keyError_;
    dto::Device::InfoReply info_;
};

void examine(const ConnectionOptions& given, Output& output) {
    if (InterruptWatch::isThere())
        throw Failure(ExitCode::usage, "a shell has its device open already; run 'tavo doctor' beside it");
    Doctor(given, output).examine();
}

} // namespace

std::vector<Command> doctorCommands() {
    auto doctor = command("doctor", "Find out why a device cannot be used, and what to do about it", examine);
    doctor.footer =
        "Checks what lies between the user and the device, in the order in which it breaks, takes no lock\n"
        "and changes nothing. Each check that waits ends after --timeout. The exit status is that of\n"
        "the first check that failed.";
    return {std::move(doctor)};
}

} // namespace TAVO::cli
