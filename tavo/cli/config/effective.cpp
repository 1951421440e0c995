#include <tavo/cli/config/effective.h>

#include <utility>
#include <variant>

#include <tavo/cli/config/fault_as_failure.h>

namespace TAVO::cli {

namespace {

config::Given givenBy(const ConnectionOptions& options) {
    config::Given given;
    given.host = options.host;
    given.port = options.port;
    given.user = options.user;
    given.passwordFile = options.passwordFile;
    given.via = options.via;
    if (options.secure || options.notSecure)
        given.secure = options.secure;
    given.timeout = options.timeout;
    given.usesSurroundings = !options.simulated;
    return given;
}

void put(const config::Settings& settings, ConnectionOptions& options) {
    if (!settings.host.empty())
        options.host = settings.host;
    options.port = settings.port;
    options.user = settings.user;
    options.passwordFile = settings.passwordFile;
    options.via = settings.via;
    options.secure = settings.secure;
    options.timeout = settings.timeout;
    options.timeoutIsChosen = settings.timeoutIsChosen;
}

nlohmann::json documentOf(const config::EffectiveValue& value) {
    return std::visit(
        [](const auto& content) {
            if constexpr (std::same_as<std::decay_t<decltype(content)>, std::monostate>)
                return nlohmann::json();
            else
                return nlohmann::json(content);
        },
        value.value);
}

} // namespace

Effective effectiveOptions(const ConnectionOptions& given, const ConfigFile& config) {
    const auto found = withFailures([&] { return config::effectiveSettings(givenBy(given), config); });
    Effective effective{given, found.device, {}};
    put(found.settings, effective.connection);
    for (const auto& value : found.values)
        effective.values.push_back({value.name, documentOf(value), value.source});
    return effective;
}

ConnectionOptions connectionFor(const ConnectionOptions& given,
                                const std::function<void(std::string_view)>& warn) {
    if (given.simulated)
        return effectiveOptions(given, {}).connection;
    const auto config = readConfig();
    requireSound(config);
    requireOwnConfig(config, given.strict, warn);
    auto connection = effectiveOptions(given, config).connection;
    if (connection.host.empty())
        throw Failure(ExitCode::usage, "--host or --sim is required, or the variable TAVO_HOST, or a host in "
                                       "[defaults] of the configuration file (see --help)");
    return connection;
}

void requireOwnConfig(const ConfigFile& config, bool strict,
                      const std::function<void(std::string_view)>& warn) {
    const auto problem = config::ownershipProblem(config);
    if (problem.empty())
        return;
    if (strict)
        throw Failure(ExitCode::usage, problem);
    warn(problem);
}

} // namespace TAVO::cli
