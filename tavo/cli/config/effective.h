#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/cli/config/config_file.h>
#include <tavo/cli/session.h>
#include <tavo/config/effective.h>

/// What holds in the end, of what the arguments, the environment and the configuration file say.
namespace TAVO::cli {

using config::ValueSource;

struct EffectiveValue {
    /// As in the file.
    std::string name;
    /// Null for none.
    nlohmann::json value;
    ValueSource source;
};

struct Effective {
    /// Complete but for the host, which is empty if nothing names one.
    ConnectionOptions connection;
    /// The section of the file that holds, if one does.
    std::optional<std::string> device;
    std::vector<EffectiveValue> values;
};

/// A simulated device has nothing from environment and file.
/// @throws Failure (usage) for values that contradict each other, and for bad ones in the environment.
Effective effectiveOptions(const ConnectionOptions& given, const ConfigFile& config);

/// The same, with the user's file, for a command that needs a device.
/// @param warn gets a message if others may write the file.
/// @throws Failure (usage) also if the file is at fault, or nothing names a device.
ConnectionOptions connectionFor(const ConnectionOptions& given,
                                const std::function<void(std::string_view)>& warn);

/// @param warn gets a message if others may write the file, which may name a command to run.
/// @throws Failure (usage) instead if `strict`.
void requireOwnConfig(const ConfigFile& config, bool strict,
                      const std::function<void(std::string_view)>& warn);

} // namespace TAVO::cli
