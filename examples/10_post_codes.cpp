// Powers the board and follows its boot by POST codes.
//
// "lpcPostCode" has no operations of its own, so the calls are made from its method constants.
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace {

using TAVO::dto::lpcPostCode::FifoGetReply;

constexpr int lastCode = 0xAA;

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

void print(const TAVO::dto::lpcPostCode::FifoEntry& entry) {
    std::cout << std::fixed << std::setprecision(3) << static_cast<double>(entry.value) / 1e6 << " s  "
              << std::hex << std::uppercase << std::setw(2) << std::setfill('0') << int{entry.byte1}
              << std::dec << '\n';
}

// Returns whether the boot has ended.
bool printAll(const FifoGetReply& reply) {
    bool ended = false;
    for (const auto& entry : reply.entries) {
        print(entry);
        ended = ended || entry.byte1 == lastCode;
    }
    return ended;
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);

    const auto power = device->get<CommonModules::Relay_v1_0>("power");
    const auto postCode = device->get<TAVO::HWDebug::Lpc_v1_0>("lpc")->getLpcPostCode();

    const auto entries =
        std::make_shared<TAVO::BoundMethod<FifoGetReply>>("fifoGet", *postCode, TAVO::dto::Params{});
    const auto clear = std::make_shared<TAVO::Method>("fifoClear", *postCode, TAVO::dto::Params{});
    const auto wait = device->getSystem()->getUSleepMethod(500'000);

    execute(*device, {power->getSetMethod(false), clear, power->getSetMethod(true)});
    for (int halfSeconds = 0; halfSeconds < 20; ++halfSeconds) {
        execute(*device, {wait, entries, clear}); // reads the codes and removes them in one exchange
        if (printAll(entries->value())) {
            std::cout << "the board has booted\n";
            return;
        }
    }
    throw std::runtime_error("the board did not boot in 10 s");
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
