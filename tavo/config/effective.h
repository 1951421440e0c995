#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tavo/config/config_file.h>

/// What holds in the end, of what the arguments, the environment and the configuration file say.
namespace TAVO::config {

/// Where a value comes from.
struct ValueSource {
    enum class Kind { builtIn, option, environment, file };

    Kind kind = Kind::builtIn;
    /// The option, the variable, or "path:line:column".
    std::string name = {};
};

struct EffectiveValue {
    /// As in the file.
    std::string name;
    /// std::monostate for none.
    std::variant<std::monostate, bool, std::uint16_t, double, std::string> value;
    ValueSource source;
};

/// What the arguments say.
struct Given {
    /// As parseHostAddress() takes it; may be empty.
    std::string host;
    std::optional<std::uint16_t> port;
    std::optional<std::string> user;
    std::optional<std::string> passwordFile;
    /// The command through which the device is reached.
    std::optional<std::string> via;
    std::optional<bool> secure;
    /// In seconds.
    std::optional<double> timeout;
    /// Whether environment and file count.
    bool usesSurroundings = true;
    /// Before the names of the arguments, in messages.
    std::string prefix = "--";
};

struct Settings {
    /// Empty if nothing names one.
    std::string host;
    std::uint16_t port = 0;
    std::optional<std::string> user;
    /// None if the variable TAVO_PASSWORD holds the password.
    std::optional<std::string> passwordFile;
    std::optional<std::string> via;
    bool secure = false;
    /// In seconds; 0 is none.
    double timeout = 0;
    /// Whether the user stated it.
    bool timeoutIsChosen = false;
};

struct Effective {
    Settings settings;
    /// The section of the file that holds, if one does.
    std::optional<std::string> device;
    std::vector<EffectiveValue> values;
};

/// An argument beats the environment, which beats the section of the device, which beats [defaults].
/// @throws Fault for values that contradict each other, and for bad ones in the environment.
Effective effectiveSettings(const Given& given, const ConfigFile& config);

/// A message if others may write the file, which may name a command to run; else empty.
std::string ownershipProblem(const ConfigFile& config);

} // namespace TAVO::config
