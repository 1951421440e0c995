#include "config.h"

#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <tavo/config/effective.h>
#include <tavo/config/fault.h>

#include "values.h"

namespace TAVO::python {

namespace {

/// The user's file, without faults.
config::ConfigFile soundConfig() {
    auto file = config::readConfig();
    config::refuseFaults(file);
    return file;
}

py::object textOrNone(const std::optional<std::string>& text) { return text ? textOf(*text) : py::none(); }

const config::ValueSource& sourceOf(const config::Effective& effective, const std::string& name) {
    for (const auto& value : effective.values)
        if (value.name == name)
            return value.source;
    throw std::logic_error("there is no value " + name);
}

/// (host, port, user, password file, secure, seconds, warning)
py::tuple settings(const std::string& host, std::optional<std::uint16_t> port,
                   std::optional<std::string> user, std::optional<std::string> passwordFile,
                   std::optional<bool> secure, std::optional<double> timeout) {
    config::Given given;
    given.host = host;
    given.port = port;
    given.user = std::move(user);
    given.passwordFile = std::move(passwordFile);
    given.secure = secure;
    given.timeout = timeout;
    given.prefix = "";
    const auto file = soundConfig();
    const auto effective = config::effectiveSettings(given, file);
    const auto& found = effective.settings;
    if (found.host.empty())
        throw config::Fault("'host' is missing; use host=, TAVO_HOST, or a host in [defaults] of the "
                            "configuration file");
    if (found.via)
        throw config::Fault(sourceOf(effective, "via").name + ": '" + host +
                            "' is reached through a command, which this package cannot do; run 'tavo share' "
                            "and open what it offers");
    // The limit that is built in is the tool's.
    const bool isLimited = found.timeoutIsChosen && found.timeout > 0;
    return py::make_tuple(textOf(found.host), found.port, textOrNone(found.user),
                          textOrNone(found.passwordFile), found.secure,
                          isLimited ? py::object(py::float_(found.timeout)) : py::none(),
                          textOf(config::ownershipProblem(file)));
}

std::vector<std::string> hosts(const std::string& group) {
    std::vector<std::string> names;
    for (const auto& device : config::devicesInGroup(soundConfig(), group))
        names.push_back(device.name);
    return names;
}

} // namespace

void addConfig(py::module_& module) {
    py::register_exception_translator([](std::exception_ptr failure) {
        try {
            if (failure)
                std::rethrow_exception(failure);
        } catch (const config::Fault& fault) {
            PyErr_SetObject(PyExc_ValueError, textOf(fault.what()).ptr());
        }
    });
    module.def("settings", settings);
    module.def("hosts", hosts);
}

} // namespace TAVO::python
