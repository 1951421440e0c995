#include <tavo/cli/diagnosed_settings.h>

#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <tavo/cli/config/effective.h>
#include <tavo/cli/password.h>
#include <tavo/config/environment.h>

namespace TAVO::cli {

namespace {

using State = Finding::State;

/// "option --host", "lab.toml:3:8"
std::string sourceText(const ValueSource& source) {
    switch (source.kind) {
    case ValueSource::Kind::builtIn:
        return "default";
    case ValueSource::Kind::option:
        return "option " + source.name;
    case ValueSource::Kind::environment:
        return "variable " + source.name;
    case ValueSource::Kind::file:
        break;
    }
    return source.name;
}

class Settings {
public:
    Settings(const ConnectionOptions& given, Diagnosis& diagnosis)
        : given_(given)
        , diagnosis_(diagnosis) {}

    std::optional<ConnectionOptions> examine() {
        checkConfiguration();
        if (diagnosis_.hasFailed())
            diagnosis_.skip("settings", "the configuration has to be mended first");
        else
            checkSettings();
        if (hasDevice_)
            checkPassword();
        else
            diagnosis_.skip("password", "no device is known");
        return hasDevice_ ? std::optional(options_) : std::nullopt;
    }

private:
    void checkConfiguration() {
        constexpr auto check = "configuration";
        if (given_.simulated) {
            diagnosis_.skip(check, "a simulated device has nothing from the file");
            return;
        }
        try {
            config_ = readConfig();
            requireSound(config_);
            std::string warning;
            requireOwnConfig(config_, given_.strict, [&](std::string_view text) { warning = text; });
            const auto path = config_.path.empty() ? "no place for a file" : config_.path;
            const nlohmann::json facts{{"exists", config_.exists}, {"file", config_.path}};
            if (!warning.empty())
                diagnosis_.add(
                    {check, State::warning, warning, fmt::format("chmod go-w '{}'", config_.path), facts});
            else
                diagnosis_.add({check, State::ok,
                                config_.exists ? fmt::format("{}, {} devices", path, config_.devices.size())
                                               : fmt::format("{}: there is none, and none is needed", path),
                                "", facts});
        } catch (const Failure& failure) {
            diagnosis_.addFailure(check, failure, "'tavo config check' names every fault");
        }
    }

    void checkSettings() {
        constexpr auto check = "settings";
        try {
            effective_ = effectiveOptions(given_, config_);
        } catch (const Failure& failure) {
            diagnosis_.addFailure(check, failure, "'tavo config show' tells where each value comes from");
            return;
        }
        options_ = effective_.connection;
        if (!options_.simulated && options_.host.empty()) {
            diagnosis_.addFailure(
                check, Failure(ExitCode::usage, "nothing names a device"),
                "--host DEVICE, or the variable TAVO_HOST, or a host in [defaults] of the configuration");
            return;
        }
        hasDevice_ = true;
        std::vector<std::string> parts;
        nlohmann::json facts = nlohmann::json::object();
        for (const auto& value : effective_.values) {
            if (value.value.is_null() || value.source.kind == ValueSource::Kind::builtIn)
                continue;
            const auto text = value.value.is_string() ? value.value.get<std::string>() : value.value.dump();
            parts.push_back(fmt::format("{} {} ({})", value.name, text, sourceText(value.source)));
            facts[value.name] = {{"value", value.value}, {"source", sourceText(value.source)}};
        }
        if (effective_.device)
            parts.insert(parts.begin(), fmt::format("device {}", *effective_.device));
        if (options_.simulated)
            parts.insert(parts.begin(), "a simulated device");
        diagnosis_.add(
            {check, State::ok, fmt::format("{}", fmt::join(parts, ", ")), "", {{"values", facts}}});
    }

    /// Finds out where the password would come from, without asking for it or reading it.
    void checkPassword() {
        constexpr auto check = "password";
        if (options_.simulated && !options_.passwordFile) {
            diagnosis_.add({check, State::ok, "that of the simulated device"});
            return;
        }
        if (!options_.user) {
            diagnosis_.add({check, State::warning, "no user is named: only what needs no lock works",
                            "--user USER, or the variable TAVO_USER, or a user in the configuration"});
            return;
        }
        if (options_.passwordFile)
            checkPasswordFile(check, *options_.passwordFile);
        else if (config::environmentVariable("TAVO_PASSWORD"))
            diagnosis_.add({check, State::ok, "of the variable TAVO_PASSWORD"});
        else if (::access("/dev/tty", R_OK | W_OK) == 0 && ::isatty(STDERR_FILENO) == 1)
            diagnosis_.add({check, State::ok, "the tool will ask for it at the terminal"});
        else
            diagnosis_.add({check, State::warning, "there is none, and no terminal to ask at",
                            "--password-file FILE, or the variable TAVO_PASSWORD"});
    }

    void checkPasswordFile(const char* check, const std::string& path) {
        if (path == "-") {
            diagnosis_.add({check, State::ok, "from standard input"});
            return;
        }
        const auto problem = problemOfPasswordFile(path);
        const nlohmann::json facts{{"file", path}};
        if (problem.text.empty())
            diagnosis_.add(
                {check, State::ok, fmt::format("in {}, which only the user can read", path), "", facts});
        else if (problem.isFatal || options_.strict)
            // Nothing behind it needs the password.
            diagnosis_.addFailure(check, Failure(ExitCode::usage, problem.text),
                                  problem.isFatal ? "name another file with --password-file"
                                                  : fmt::format("chmod 600 '{}'", path));
        else
            diagnosis_.add({check, State::warning, problem.text, fmt::format("chmod 600 '{}'", path), facts});
    }

    const ConnectionOptions& given_;
    Diagnosis& diagnosis_;
    ConfigFile config_;
    Effective effective_;
    ConnectionOptions options_;
    bool hasDevice_ = false;
};

} // namespace

std::optional<ConnectionOptions> diagnoseSettings(const ConnectionOptions& given, Diagnosis& diagnosis) {
    return Settings(given, diagnosis).examine();
}

} // namespace TAVO::cli
