#include <atomic>
#include <chrono>
#include <memory>
#include <string>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tavo/client/version_number.h>

#include "batch.h"
#include "checked.h"
#include "config.h"
#include "helpers.h"
#include "simulator.h"
#include "values.h"

namespace py = pybind11;
using namespace TAVO::python;

namespace {

py::list fieldsOf(const FieldType& record) {
    py::list fields;
    for (const auto& field : record.parts)
        fields.append(py::make_tuple(field.name, field.words));
    return fields;
}

std::optional<std::int64_t> limitOf(Connection& connection) {
    const auto limit = connection.device().timeLimit();
    return limit ? std::optional<std::int64_t>(limit->count()) : std::nullopt;
}

void setLimit(Connection& connection, std::optional<std::int64_t> milliseconds) {
    connection.run([&](TAVO::Device& device) {
        device.setTimeLimit(milliseconds ? TAVO::TimeLimit(std::chrono::milliseconds(*milliseconds))
                                         : std::nullopt);
    });
}

void addConnection(py::module_& module) {
    py::class_<TAVO::Interrupter, std::shared_ptr<TAVO::Interrupter>>(module, "Interrupter")
        .def(py::init<>())
        .def("interrupt", checked(&TAVO::Interrupter::interrupt));
    py::class_<Connection, std::shared_ptr<Connection>>(module, "Connection")
        .def("close", checked(&Connection::close))
        .def("interrupt", checked(&Connection::interrupt))
        .def_property_readonly("closed", checked(&Connection::isClosed))
        .def_property("milliseconds", limitOf, setLimit)
        .def("relock", [](Connection& self) { self.run([](TAVO::Device& device) { device.relock(); }); })
        .def("unlock", [](Connection& self) { self.run([](TAVO::Device& device) { device.unlock(); }); })
        .def_property_readonly("locked", [](Connection& self) { return self.device().isLocked(); })
        .def_property_readonly("connected", [](Connection& self) { return self.device().isConnected(); })
        .def_property_readonly("reconnects", [](Connection& self) { return self.device().reconnects(); })
        .def("lock_holder",
             [](Connection& self) {
                 std::optional<std::string> holder;
                 self.run([&](TAVO::Device& device) { holder = device.lockHolder(); });
                 return holder ? textOf(*holder) : py::none();
             })
        .def("key",
             [](Connection& self) -> std::optional<std::pair<bool, bool>> {
                 std::pair<bool, bool> flags;
                 bool known = false;
                 self.run([&](TAVO::Device& device) {
                     device.getKey();
                     known = device.checkTavoKey(flags.first, flags.second);
                 });
                 return known ? std::optional(flags) : std::nullopt;
             })
        .def("top", &Node::topOf)
        .def("find", &Node::find, py::arg());
    module.def(
        "open",
        [](std::string host, int port, std::string user, std::string password, bool secure,
           std::optional<std::int64_t> milliseconds, std::vector<std::string> only,
           std::shared_ptr<TAVO::Interrupter> interrupter) {
            return Connection::open({.host = std::move(host),
                                     .port = port,
                                     .user = std::move(user),
                                     .password = std::move(password),
                                     .secure = secure,
                                     .milliseconds = milliseconds,
                                     .only = std::move(only)},
                                    std::move(interrupter));
        },
        py::arg(), py::arg(), py::arg(), py::arg(), py::arg(), py::arg(), py::arg(), py::arg().none(false));
    module.def("close_all", &Connection::closeAll);
    module.def("forget_all", &Connection::forgetAll);
}

void addCalls(py::module_& module) {
    py::class_<RemoteMethod, std::shared_ptr<RemoteMethod>>(module, "RemoteMethod")
        .def_readonly("name", &RemoteMethod::name)
        .def_property_readonly("request", [](const RemoteMethod& self) { return fieldsOf(self.request); })
        .def_property_readonly("reply",
                               [](const RemoteMethod& self) -> py::object {
                                   return self.reply ? py::object(fieldsOf(*self.reply)) : py::none();
                               })
        .def("make_classes", [](RemoteMethod& self, const std::string& name, const py::object& make) {
            if (!self.reply)
                return py::object(py::none());
            self.reply->makeClasses(name, make);
            return self.reply->recordClass;
        });
    module.def("tables", tables);

    py::class_<Node, std::shared_ptr<Node>>(module, "Node")
        .def("call", checked(&Node::call))
        .def("child", checked(&Node::child))
        .def("children", checked(&Node::children))
        .def("table", checked(&Node::table))
        .def("has_method",
             [](const Node& self, const std::string& name) { return self.object()->hasMethod(name); })
        .def_property_readonly("connection", checked(&Node::connection))
        .def_property_readonly("name", [](const Node& self) { return textOf(self.object()->getName()); })
        .def_property_readonly("full_name",
                               [](const Node& self) { return textOf(self.object()->getFullName()); })
        .def_property_readonly("known_type",
                               [](const Node& self) { return textOf(self.object()->knownType()); })
        .def_property_readonly("instance_id",
                               [](const Node& self) { return self.object()->getInstanceID(); });

    py::class_<Call, std::shared_ptr<Call>>(module, "Call")
        .def_property_readonly("code", checked(&Call::code))
        .def_property_readonly("value", checked(&Call::value))
        .def_property_readonly("error", checked(&Call::error));
    py::class_<Batch, std::shared_ptr<Batch>>(module, "Batch")
        .def(py::init<std::shared_ptr<Connection>>(), py::arg().none(false))
        .def("add", checked(&Batch::add), py::arg().none(false), py::arg().none(false), py::arg())
        .def("size", checked(&Batch::size))
        .def("run", checked(&Batch::run))
        .def("abandon", checked(&Batch::abandon));
}

} // namespace

PYBIND11_MODULE(_core, module) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    process::watchForks();
    addConnection(module);
    addCalls(module);
    addHelpers(module);
    addSimulator(module);
    addConfig(module);
}
