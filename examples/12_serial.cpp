// Boots the board and talks to its serial console.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace {

// Makes all calls in one exchange; each must succeed.
void execute(TAVO::Device& device, const std::vector<std::shared_ptr<TAVO::Method>>& methods) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (const auto& method : methods)
        queue->add(method);
    device.multicall(queue);
    for (const auto& method : methods)
        if (method->returnCode() != 0)
            throw std::runtime_error(method->getFullName() + " returned " +
                                     std::to_string(method->returnCode()));
}

// 115200 bits per second, 8 data bits, no parity, 1 stop bit, no flow control, no loopback.
std::shared_ptr<TAVO::Method> openPort(const CommonModules::Com_v1_0& com) {
    return com.getOpenMethod(115200, 8, false, false, 1, false, false, false, false);
}

// Sends as many zero bytes ahead of the text, which a console ignores. The first argument is not sent.
std::shared_ptr<TAVO::Method> type(const CommonModules::Com_v1_0& com, const std::string& line) {
    const auto keys = line + '\r';
    return com.getSendMethod(0, {keys.begin(), keys.end()});
}

void print(const std::vector<int>& received) {
    for (const int byte : received)
        if (byte != '\r')
            std::cout << static_cast<char>(byte);
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);

    const auto power = device->get<CommonModules::Relay_v1_0>("power");
    const auto com = device->get<CommonModules::Com_v1_0>("com");
    const auto receive = com->getRecvMethod(4096); // what has arrived, at most this many bytes

    execute(*device, {openPort(*com), power->getSetMethod(true),
                      device->getSystem()->getUSleepMethod(3'100'000), receive});
    print(receive->value());

    for (const auto* line : {"version", "echo hello"}) {
        execute(*device, {type(*com, line), device->getSystem()->getUSleepMethod(10'000), receive});
        print(receive->value());
    }
    execute(*device, {com->getCloseMethod()});
    std::cout << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " HOST PORT\n";
        return 2;
    }
    try {
        run(argv[1], std::stoi(argv[2]));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
