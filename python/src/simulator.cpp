#include "simulator.h"

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <pybind11/stl.h>

#include <tavo/simulator/models/eeprom.h>
#include <tavo/simulator/models/serial_console.h>
#include <tavo/simulator/objects/com.h>
#include <tavo/simulator/objects/i2c.h>
#include <tavo/simulator/objects/lpc.h>
#include <tavo/simulator/objects/relay.h>
#include <tavo/simulator/simulator.h>

#include "inherited_sockets.h"
#include "process.h"
#include "values.h"

namespace TAVO::python {

namespace {

using simulator::Appliance;

struct ValueConverter {
    py::object operator()(bool value) const { return py::bool_(value); }
    py::object operator()(std::int64_t value) const { return py::int_(value); }
    py::object operator()(std::uint64_t value) const { return py::int_(value); }
    py::object operator()(const std::string& value) const { return textOf(value); }
    py::object operator()(const Value::Bytes& value) const {
        return py::bytes(reinterpret_cast<const char*>(value.data()), value.size());
    }
    py::object operator()(const Value::List& value) const {
        py::list items;
        for (const auto& item : value)
            items.append(std::visit(*this, item.data));
        return items;
    }
    py::object operator()(const Value::Record& value) const {
        py::dict fields;
        for (const auto& field : value)
            fields[textOf(field.name)] = std::visit(*this, field.value.data);
        return fields;
    }
};

std::vector<std::uint8_t> bytesIn(const py::buffer& buffer) {
    const auto content = buffer.request();
    if (content.itemsize != 1 || content.ndim != 1 || content.strides[0] != 1)
        throw py::type_error("the bytes must be contiguous in memory");
    const auto* begin = static_cast<const std::uint8_t*>(content.ptr);
    return {begin, begin + content.size};
}

py::bytes toBytes(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class PythonSimulator;

/// Used with the GIL only; never destroyed, because simulators may outlive the module.
std::set<PythonSimulator*>& simulators() {
    static auto& all = *new std::set<PythonSimulator*>;
    return all;
}

/// A simulated appliance of this process; left alone in processes that are forked off, which lack its thread.
class PythonSimulator {
public:
    PythonSimulator(std::string topology, const std::vector<std::string>& faults, std::string host,
                    std::uint16_t port, int serverKey)
        : host_(std::move(host)) {
        simulator::Options options{.host = host_, .port = port, .topology = std::move(topology)};
        options.serverKey = serverKey;
        simulator_ = std::make_unique<simulator::Simulator>(std::move(options));
        simulator::FaultScript script;
        for (const auto& fault : faults)
            script.add(fault);
        simulator_->setFaults(std::move(script));
        simulators().insert(this);
    }
    PythonSimulator(const PythonSimulator&) = delete;
    PythonSimulator& operator=(const PythonSimulator&) = delete;
    ~PythonSimulator() {
        simulators().erase(this);
        if (generation_ != process::generation()) {
            (void)simulator_.release();
            return;
        }
        const NoGil outside;
        simulator_.reset();
    }

    /// Runs `action` with the simulator, without the GIL.
    template <class Action>
    auto with(Action action) {
        if (generation_ != process::generation())
            throw std::runtime_error("the simulator is in another process, before a fork");
        if (process::isEndedByAnother())
            throw std::runtime_error("the interpreter is ending");
        const NoGil outside;
        return action(*simulator_);
    }
    /// Runs `action` with the simulated object of that class and full name.
    template <class Object, class Action>
    auto at(const std::string& name, Action action) {
        return with([&](simulator::Simulator& served) {
            return served.inspect([&](Appliance& appliance) { return action(appliance.get<Object>(name)); });
        });
    }
    template <class Action>
    auto atEeprom(const std::string& bus, std::uint8_t address, Action action) {
        return at<simulator::I2c>(
            bus, [&](simulator::I2c& i2c) { return action(i2c.bus().at<simulator::Eeprom>(address)); });
    }

    void start() {
        const auto where = with([this](simulator::Simulator& served) {
            served.start();
            return ListeningAddress(host_, served.port());
        });
        where_ = where;
    }
    void stop() {
        with([](simulator::Simulator& served) { served.stop(); });
        where_ = {};
    }
    /// Lets go of the sockets of all simulators, in a process that was forked off.
    static void forgetAll() {
        for (auto* each : simulators())
            std::exchange(each->where_, {}).closeSockets();
    }

private:
    const std::string host_;
    ListeningAddress where_;
    std::unique_ptr<simulator::Simulator> simulator_;
    const unsigned generation_ = process::generation();
};

void failNext(PythonSimulator& served, const std::string& fault, std::uint64_t ahead) {
    const auto parsed = simulator::FaultScript().add("1:" + fault).faultsAt(1).front();
    served.with([&](simulator::Simulator& simulated) { simulated.failNext(parsed, ahead); });
}

py::list calls(PythonSimulator& served) {
    const auto records = served.with([](simulator::Simulator& simulated) { return simulated.calls(); });
    py::list all;
    for (const auto& record : records)
        all.append(py::make_tuple(record.object, record.method,
                                  std::visit(ValueConverter(), record.parameters.data), record.returnCode,
                                  record.request));
    return all;
}

std::vector<int> postCodes(PythonSimulator& served, const std::string& name) {
    return served.at<simulator::LpcPostCode>(name, [](simulator::LpcPostCode& receiver) {
        std::vector<int> codes;
        for (const auto& entry : receiver.postCodes().entries())
            codes.push_back(entry.code);
        return codes;
    });
}

} // namespace

void addSimulator(py::module_& module) {
    using simulator::Simulator;
    module.def("forget_simulators", &PythonSimulator::forgetAll);
    py::class_<PythonSimulator>(module, "Simulator")
        .def(py::init<std::string, const std::vector<std::string>&, std::string, std::uint16_t, int>())
        .def("start", &PythonSimulator::start)
        .def("stop", &PythonSimulator::stop)
        .def("port",
             [](PythonSimulator& self) { return self.with([](Simulator& served) { return served.port(); }); })
        .def("fail_next", failNext)
        .def("calls", calls)
        .def("clear_calls",
             [](PythonSimulator& self) { self.with([](Simulator& served) { served.clearCalls(); }); })
        .def("counts",
             [](PythonSimulator& self) {
                 const auto [requests, accepted, open] = self.with([](Simulator& served) {
                     return std::tuple(served.requestCount(), served.connectionCount(),
                                       served.openConnections());
                 });
                 return py::make_tuple(requests, accepted, open);
             })
        .def("lock_holder",
             [](PythonSimulator& self) -> std::optional<std::string> {
                 const auto holder = self.with([](Simulator& served) { return served.lockHolder(); });
                 return holder ? std::optional(holder->user) : std::nullopt;
             })
        .def("advance",
             [](PythonSimulator& self, double seconds) {
                 if (!(seconds >= 0 && seconds < 1e9))
                     throw py::value_error("the clock advances by 0 to 1e9 seconds");
                 const std::chrono::microseconds duration(static_cast<std::int64_t>(seconds * 1e6));
                 self.with([&](Simulator& served) {
                     served.inspect([&](Appliance& appliance) { appliance.clock().advance(duration); });
                 });
             })
        .def("relay",
             [](PythonSimulator& self, const std::string& name) {
                 return self.at<simulator::Relay>(name,
                                                  [](simulator::Relay& relay) { return relay.state(); });
             })
        .def("set_relay",
             [](PythonSimulator& self, const std::string& name, bool state) {
                 self.at<simulator::Relay>(name, [&](simulator::Relay& relay) { relay.set(state); });
             })
        .def("post_codes", postCodes)
        .def("write_post_code",
             [](PythonSimulator& self, const std::string& name, std::uint8_t code) {
                 self.at<simulator::LpcPostCode>(
                     name, [&](simulator::LpcPostCode& receiver) { receiver.postCodes().write(code); });
             })
        .def("eeprom",
             [](PythonSimulator& self, const std::string& bus, std::uint8_t address) {
                 return toBytes(
                     self.atEeprom(bus, address, [](simulator::Eeprom& eeprom) { return eeprom.content(); }));
             })
        .def("set_eeprom",
             [](PythonSimulator& self, const std::string& bus, std::uint8_t address,
                const py::buffer& content) {
                 const auto bytes = bytesIn(content);
                 self.atEeprom(bus, address, [&](simulator::Eeprom& eeprom) { eeprom.setContent(bytes); });
             })
        .def("type_at_console", [](PythonSimulator& self, const std::string& name, const py::buffer& typed) {
            const auto bytes = bytesIn(typed);
            self.at<simulator::Com>(name, [&](simulator::Com& com) {
                for (const auto byte : bytes)
                    com.port().console().type(byte);
            });
        });
}

} // namespace TAVO::python
