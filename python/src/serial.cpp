#include "serial.h"

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include <pybind11/stl.h>

#include <tavo/toolkit/serial_link.h>

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

/// A serial port that is open.
class Serial {
public:
    Serial(std::shared_ptr<Node> node, const Settings& settings, const SharedStop& stop)
        : node_(std::move(node))
        , access_(*node_->connection()) {
        const auto port = portOf(*node_);
        node_->connection()->help(stop,
                                  [&] { link_.emplace(access_, port, std::apply(settingsOf, settings)); });
    }
    Serial(const Serial&) = delete;
    Serial& operator=(const Serial&) = delete;
    /// There may be no device any more, and nobody's turn.
    ~Serial() {
        if (link_)
            link_->abandon();
    }

    py::bytes exchange(const std::string& bytes, const SharedStop& stop) {
        std::string received;
        node_->connection()->help(stop, [&] { received = link_->exchange(bytes); });
        return received;
    }
    void close(const SharedStop& stop) {
        node_->connection()->help(stop, [&] { link_->close(); });
    }

private:
    std::shared_ptr<Node> node_;
    ConnectionAccess access_;
    std::optional<toolkit::SerialLink> link_;
};

void sendBreak(const std::shared_ptr<Node>& node, const Settings& settings, const SharedStop& stop) {
    const auto port = portOf(*node);
    ConnectionAccess access(*node->connection());
    node->connection()->help(stop,
                             [&] { toolkit::sendBreak(access, port, std::apply(settingsOf, settings)); });
}

} // namespace

void addSerial(py::module_& module) {
    py::class_<Serial>(module, "SerialLink")
        .def(py::init<std::shared_ptr<Node>, const Settings&, const SharedStop&>())
        .def("exchange", &Serial::exchange)
        .def("close", &Serial::close);
    module.def("send_break", sendBreak);
}

} // namespace TAVO::python
