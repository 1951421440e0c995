// Opens a device through a TLS gateway, with the application's own transport. The gateway in front of the
// appliance may be stunnel with this service:
//
//   [appliance]
//   accept = 6124
//   connect = 192.168.7.20:6123
//   cert = /etc/stunnel/gateway.pem
#include <iostream>
#include <memory>
#include <string>

#include "tls_transport.h"
#include <tavo/client.h>

namespace {

void run(const std::string& host, const std::string& port, const std::string& caFile) {
    TAVO::CoreObjects::registerCoreObjects();
    // From here on the device owns the transport. It checks the certificate before sending the password.
    auto device = TAVO::DeviceFactory::buildDevice(std::make_unique<TlsTransport>(host, port, caFile),
                                                   "engineer", "tavo", false);

    const auto info = device->getDevice()->getInfoMethod();
    device->call(info);
    std::cout << TAVO::DeviceInfo(info->value()).name << '\n';
    for (const auto& child : device->getChildren())
        std::cout << "  " << child->getName() << '\n';
} // unlocked over TLS

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: " << argv[0] << " HOST PORT CA_FILE\n";
        return 2;
    }
    try {
        run(argv[1], argv[2], argv[3]);
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
