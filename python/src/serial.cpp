#include "serial.h"

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include <pybind11/stl.h>

#include <tavo/toolkit/serial_link.h>

#include "checked.h"
#include "failure.h"
#include "node.h"

namespace TAVO::python {

namespace {

using SharedStop = std::shared_ptr<Stop>;

std::shared_ptr<CommonModules::Com_v1_0> portOf(const Node& node) {
    auto port = std::dynamic_pointer_cast<CommonModules::Com_v1_0>(node.object());
    if (!port)
        Failure::ofThisSide(node.object()->getFullName() + " is of another type").raise();
    return port;
}

dto::com::OpenRequest settingsOf(int baud, int bits, bool parity, bool even, int stopBits, bool rtsCts,
                                 bool dtrDsr, bool xonXoff, bool loopback) {
    dto::com::OpenRequest settings;
    settings.value1 = baud;
    settings.value2 = bits;
    settings.flag1 = parity;
    settings.flag2 = even;
    settings.value3 = stopBits;
    settings.flag3 = rtsCts;
    settings.flag4 = dtrDsr;
    settings.flag5 = xonXoff;
    settings.flag6 = loopback;
    return settings;
}

using Settings = std::tuple<int, int, bool, bool, int, bool, bool, bool, bool>;

/// A serial port that is open, for as long as Python or the connection knows it.
class OpenPort final : public LeftOpen {
public:
    explicit OpenPort(Connection& connection)
        : access_(connection) {}
    OpenPort(const OpenPort&) = delete;
    OpenPort& operator=(const OpenPort&) = delete;
    /// There may be no device any more, and nobody's turn.
    ~OpenPort() override {
        if (link_)
            link_->abandon();
    }

    void open(const std::shared_ptr<CommonModules::Com_v1_0>& port, const dto::com::OpenRequest& settings) {
        link_.emplace(access_, port, settings);
        try {
            // A signal may have come when the port was open already.
            access_.throwIfStopped();
        } catch (...) {
            link_.reset();
            throw;
        }
    }
    std::string exchange(const std::string& bytes) { return link_->exchange(bytes); }
    void close() override { link_->close(); }

private:
    ConnectionAccess access_;
    std::optional<toolkit::SerialLink> link_;
};

/// The same in Python. The connection closes it at its end, if nobody has.
class Serial {
public:
    Serial(std::shared_ptr<Node> node, const Settings& settings, const SharedStop& stop)
        : node_(std::move(node))
        , open_(std::make_shared<OpenPort>(*node_->connection())) {
        const auto port = portOf(*node_);
        node_->connection()->help(stop, [&] { open_->open(port, std::apply(settingsOf, settings)); });
        node_->connection()->leave(*port, open_);
    }

    py::bytes exchange(const std::string& bytes, const SharedStop& stop) {
        std::string received;
        node_->connection()->help(stop, [&] { received = open_->exchange(bytes); });
        return received;
    }
    void close(const SharedStop& stop) {
        node_->connection()->help(stop, [&] { open_->close(); });
        node_->connection()->forget(*open_);
    }

private:
    std::shared_ptr<Node> node_;
    std::shared_ptr<OpenPort> open_;
};

void sendBreak(const Node& node, const Settings& settings, const SharedStop& stop) {
    const auto port = portOf(node);
    ConnectionAccess access(*node.connection());
    node.connection()->help(stop,
                            [&] { toolkit::sendBreak(access, port, std::apply(settingsOf, settings)); });
}

} // namespace

void addSerial(py::module_& module) {
    py::class_<Serial, std::shared_ptr<Serial>>(module, "SerialLink")
        .def(py::init<std::shared_ptr<Node>, const Settings&, const SharedStop&>(), py::arg().none(false),
             py::arg(), py::arg())
        .def("exchange", checked(&Serial::exchange))
        .def("close", checked(&Serial::close));
    module.def("send_break", sendBreak);
}

} // namespace TAVO::python
