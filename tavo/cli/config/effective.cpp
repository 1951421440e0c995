#include <tavo/cli/config/effective.h>

#include <initializer_list>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>
#include <sys/stat.h>

#include <tavo/cli/config/environment.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

using Kind = ValueSource::Kind;

/// What one source says, if anything.
template <class Value>
struct Candidate {
    std::optional<Value> value;
    ValueSource source;
};

/// The first that says anything; else the last, which is built in.
template <class Value>
const Candidate<Value>& best(std::initializer_list<Candidate<Value>> candidates) {
    for (const auto& candidate : candidates)
        if (candidate.value)
            return candidate;
    return *(candidates.end() - 1);
}

template <class Value>
auto parseFrom(const ValueSource& source, const Value& parse) {
    try {
        return parse();
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, fmt::format("{}: {}", source.name, error.what()));
    }
}

class Resolution {
public:
    Resolution(const ConnectionOptions& given, const ConfigFile& config)
        : config_(config)
        , given_(given)
        , usesSurroundings_(!given.simulated) {
        result_.connection = given;
    }

    Effective resolve() {
        chooseHost();
        choosePort();
        auto& connection = result_.connection;
        connection.user = take("user", best<std::string>({{given_.user, option("--user")},
                                                          {variable("TAVO_USER"), environment("TAVO_USER")},
                                                          ofDevice(&ConfigSection::user),
                                                          ofDefaults(&ConfigSection::user),
                                                          {}}));
        choosePasswordFile();
        connection.via = take("via", best<std::string>({{given_.via, option("--via")},
                                                        ofDevice(&ConfigSection::via),
                                                        ofDefaults(&ConfigSection::via),
                                                        {}}));
        result_.values.push_back({"secure", connection.secure, secureSource_});
        const auto timeout = best<double>({{given_.timeout, option("--timeout")},
                                           ofDevice(&ConfigSection::timeout),
                                           ofDefaults(&ConfigSection::timeout),
                                           {defaultTimeout, {}}});
        connection.timeout = take("timeout", timeout);
        connection.timeoutIsChosen = timeout.source.kind != Kind::builtIn;
        return std::move(result_);
    }

private:
    static constexpr double defaultTimeout = 10;

    static ValueSource option(const char* name) { return {Kind::option, name}; }
    static ValueSource environment(const char* name) { return {Kind::environment, name}; }
    ValueSource file(ConfigPlace place) const { return {Kind::file, config_.textOf(place)}; }

    std::optional<std::string> variable(const char* name) const {
        return usesSurroundings_ ? environmentVariable(name) : std::nullopt;
    }

    template <class Value>
    Candidate<Value> ofSection(const ConfigSection* section,
                               std::optional<Configured<Value>> ConfigSection::*member) const {
        if (section == nullptr || !usesSurroundings_ || !(section->*member))
            return {};
        return {(section->*member)->value, file((section->*member)->place)};
    }
    template <class Value>
    Candidate<Value> ofDevice(std::optional<Configured<Value>> ConfigSection::*member) const {
        return ofSection(device_, member);
    }
    template <class Value>
    Candidate<Value> ofDefaults(std::optional<Configured<Value>> ConfigSection::*member) const {
        return ofSection(&config_.defaults, member);
    }

    template <class Value>
    std::optional<Value> take(const char* name, const Candidate<Value>& chosen) {
        result_.values.push_back(
            {name, chosen.value ? nlohmann::json(*chosen.value) : nlohmann::json(), chosen.source});
        return chosen.value;
    }

    static Candidate<HostAddress> addressIn(const std::optional<std::string>& text, ValueSource source) {
        if (!text || text->empty())
            return {};
        return {parseFrom(source, [&] { return parseHostAddress(*text); }), source};
    }

    void chooseHost() {
        named_ = best<HostAddress>({addressIn(given_.host, option("--host")),
                                    addressIn(variable("TAVO_HOST"), environment("TAVO_HOST")),
                                    ofDefaults(&ConfigSection::host),
                                    {}});
        auto address = named_;
        const auto* device = named_.value && usesSurroundings_ ? config_.find(named_.value->host) : nullptr;
        if (device != nullptr) {
            result_.device = device->name;
            device_ = &device->section;
            if (device_->host)
                address = ofDevice(&ConfigSection::host);
        }
        if (!address.value) {
            take<std::string>("host", {});
            return;
        }
        result_.connection.host = address.value->host;
        take<std::string>("host", {address.value->host, address.source});
    }

    /// The port in the address that names the device, if that comes from a source of this kind.
    Candidate<std::uint16_t> portNamed(Kind kind) const {
        if (!named_.value || named_.source.kind != kind)
            return {};
        return {named_.value->port, named_.source};
    }
    static Candidate<std::uint16_t> portIn(const Candidate<HostAddress>& address) {
        return {address.value ? address.value->port : std::nullopt, address.source};
    }

    static void requireAgreement(const Candidate<std::uint16_t>& port,
                                 const Candidate<std::uint16_t>& named) {
        if (port.value && named.value && *port.value != *named.value)
            throw Failure(ExitCode::usage, fmt::format("{} is {}, but {} says port {}", port.source.name,
                                                       *port.value, named.source.name, *named.value));
    }

    Candidate<std::uint16_t> portOfEnvironment() const {
        const auto source = environment("TAVO_PORT");
        const auto text = variable("TAVO_PORT");
        if (!text)
            return {};
        const auto parse = [&] { return static_cast<std::uint16_t>(parseWholeNumber(*text, 1, 65535)); };
        return {parseFrom(source, parse), source};
    }

    void choosePort() {
        chooseSecurity();
        const Candidate<std::uint16_t> optional{given_.port, option("--port")};
        requireAgreement(optional, portNamed(Kind::option));
        const auto environmental = portOfEnvironment();
        requireAgreement(environmental, portNamed(Kind::environment));
        const auto usual =
            result_.connection.secure ? DeviceFactory::DefaultSecurePort : DeviceFactory::DefaultPort;
        result_.connection.port =
            take("port", best<std::uint16_t>({optional,
                                              portNamed(Kind::option),
                                              environmental,
                                              portNamed(Kind::environment),
                                              ofDevice(&ConfigSection::port),
                                              portIn(ofDevice(&ConfigSection::host)),
                                              portNamed(Kind::file),
                                              ofDefaults(&ConfigSection::port),
                                              {static_cast<std::uint16_t>(usual), {}}}));
    }

    void chooseSecurity() {
        std::optional<bool> given;
        if (given_.secure || given_.notSecure)
            given = given_.secure;
        const auto chosen = best<bool>({{given, option(given_.notSecure ? "--no-secure" : "--secure")},
                                        ofDevice(&ConfigSection::secure),
                                        ofDefaults(&ConfigSection::secure),
                                        {false, {}}});
        result_.connection.secure = *chosen.value;
        secureSource_ = chosen.source;
    }

    /// The password of the environment beats a file that only the configuration names.
    void choosePasswordFile() {
        if (!given_.passwordFile && variable("TAVO_PASSWORD")) {
            take<std::string>("password-file", {std::nullopt, environment("TAVO_PASSWORD")});
            return;
        }
        result_.connection.passwordFile =
            take("password-file", best<std::string>({{given_.passwordFile, option("--password-file")},
                                                     ofDevice(&ConfigSection::passwordFile),
                                                     ofDefaults(&ConfigSection::passwordFile),
                                                     {}}));
    }

    const ConfigFile& config_;
    const ConnectionOptions& given_;
    bool usesSurroundings_;
    const ConfigSection* device_ = nullptr;
    Candidate<HostAddress> named_;
    ValueSource secureSource_;
    Effective result_;
};

} // namespace

Effective effectiveOptions(const ConnectionOptions& given, const ConfigFile& config) {
    return Resolution(given, config).resolve();
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
    struct stat found {};
    if (!config.exists || ::stat(config.path.c_str(), &found) != 0 || !S_ISREG(found.st_mode) ||
        (found.st_mode & (S_IWGRP | S_IWOTH)) == 0)
        return;
    const auto message = fmt::format("others may write the configuration file '{}': its mode is {:04o}",
                                     config.path, found.st_mode & mode_t{07777});
    if (strict)
        throw Failure(ExitCode::usage, message);
    warn(message);
}

} // namespace TAVO::cli
