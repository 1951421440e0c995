#include <tavo/config/effective.h>

#include <initializer_list>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>
#include <sys/stat.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/config/environment.h>
#include <tavo/config/fault.h>
#include <tavo/config/whole_number.h>

namespace TAVO::config {

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
        throw Fault(fmt::format("{}: {}", source.name, error.what()));
    }
}

class Resolution {
public:
    Resolution(const Given& given, const ConfigFile& config)
        : config_(config)
        , given_(given) {}

    Effective resolve() {
        chooseHost();
        choosePort();
        auto& settings = result_.settings;
        settings.user = take("user", best<std::string>({{given_.user, argument("user")},
                                                        {variable("TAVO_USER"), environment("TAVO_USER")},
                                                        ofDevice(&ConfigSection::user),
                                                        ofDefaults(&ConfigSection::user),
                                                        {}}));
        choosePasswordFile();
        settings.via = take("via", best<std::string>({{given_.via, argument("via")},
                                                      ofDevice(&ConfigSection::via),
                                                      ofDefaults(&ConfigSection::via),
                                                      {}}));
        result_.values.push_back({"secure", settings.secure, secureSource_});
        const auto timeout = best<double>({{given_.timeout, argument("timeout")},
                                           ofDevice(&ConfigSection::timeout),
                                           ofDefaults(&ConfigSection::timeout),
                                           {defaultTimeout, {}}});
        settings.timeout = *take("timeout", timeout);
        settings.timeoutIsChosen = timeout.source.kind != Kind::builtIn;
        return std::move(result_);
    }

private:
    static constexpr double defaultTimeout = 10;

    ValueSource argument(const char* name) const { return {Kind::option, given_.prefix + name}; }
    static ValueSource environment(const char* name) { return {Kind::environment, name}; }
    ValueSource file(ConfigPlace place) const { return {Kind::file, config_.textOf(place)}; }

    std::optional<std::string> variable(const char* name) const {
        return given_.usesSurroundings ? environmentVariable(name) : std::nullopt;
    }

    template <class Value>
    Candidate<Value> ofSection(const ConfigSection* section,
                               std::optional<Configured<Value>> ConfigSection::*member) const {
        if (section == nullptr || !given_.usesSurroundings || !(section->*member))
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
        EffectiveValue value{name, {}, chosen.source};
        if (chosen.value)
            value.value = *chosen.value;
        result_.values.push_back(std::move(value));
        return chosen.value;
    }

    static Candidate<HostAddress> addressIn(const std::optional<std::string>& text, ValueSource source) {
        if (!text || text->empty())
            return {};
        return {parseFrom(source, [&] { return parseHostAddress(*text); }), source};
    }

    void chooseHost() {
        named_ = best<HostAddress>({addressIn(given_.host, argument("host")),
                                    addressIn(variable("TAVO_HOST"), environment("TAVO_HOST")),
                                    ofDefaults(&ConfigSection::host),
                                    {}});
        auto address = named_;
        const auto* device =
            named_.value && given_.usesSurroundings ? config_.find(named_.value->host) : nullptr;
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
        result_.settings.host = address.value->host;
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
            throw Fault(fmt::format("{} is {}, but {} says port {}", port.source.name, *port.value,
                                    named.source.name, *named.value));
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
        const Candidate<std::uint16_t> optional{given_.port, argument("port")};
        requireAgreement(optional, portNamed(Kind::option));
        const auto environmental = portOfEnvironment();
        requireAgreement(environmental, portNamed(Kind::environment));
        const auto usual =
            result_.settings.secure ? DeviceFactory::DefaultSecurePort : DeviceFactory::DefaultPort;
        result_.settings.port = *take("port", best<std::uint16_t>({optional,
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
        const auto chosen =
            best<bool>({{given_.secure, argument(given_.secure.value_or(true) ? "secure" : "no-secure")},
                        ofDevice(&ConfigSection::secure),
                        ofDefaults(&ConfigSection::secure),
                        {false, {}}});
        result_.settings.secure = *chosen.value;
        secureSource_ = chosen.source;
    }

    /// The password of the environment beats a file that only the configuration names.
    void choosePasswordFile() {
        if (!given_.passwordFile && variable("TAVO_PASSWORD")) {
            take<std::string>("password-file", {std::nullopt, environment("TAVO_PASSWORD")});
            return;
        }
        result_.settings.passwordFile =
            take("password-file", best<std::string>({{given_.passwordFile, argument("password-file")},
                                                     ofDevice(&ConfigSection::passwordFile),
                                                     ofDefaults(&ConfigSection::passwordFile),
                                                     {}}));
    }

    const ConfigFile& config_;
    const Given& given_;
    const ConfigSection* device_ = nullptr;
    Candidate<HostAddress> named_;
    ValueSource secureSource_;
    Effective result_;
};

} // namespace

Effective effectiveSettings(const Given& given, const ConfigFile& config) {
    return Resolution(given, config).resolve();
}

std::string ownershipProblem(const ConfigFile& config) {
    struct stat found {};
    if (!config.exists || ::stat(config.path.c_str(), &found) != 0 || !S_ISREG(found.st_mode) ||
        (found.st_mode & (S_IWGRP | S_IWOTH)) == 0)
        return "";
    return fmt::format("others may write the configuration file '{}': its mode is {:04o}", config.path,
                       found.st_mode & mode_t{07777});
}

} // namespace TAVO::config
