// Powers the board and reads the IDCODEs of its JTAG chain.
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

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

// The bit at this position; the first bit shifted is at 0.
bool bitAt(const Bytes& bits, std::size_t place) { return (bits.at(place / 8) >> place % 8 & 1) != 0; }

// After a reset each device sends its IDCODE, lowest bit first, which is 1; a device without IDCODE sends a
// single 0. After the last device come the ones that were shifted in.
std::vector<std::uint32_t> idcodesIn(const Bytes& captured) {
    constexpr std::uint32_t allOnes = 0xFFFFFFFF;
    std::vector<std::uint32_t> idcodes;
    for (std::size_t place = 0; place + 32 <= captured.size() * 8;) {
        if (!bitAt(captured, place)) {
            idcodes.push_back(0);
            ++place;
            continue;
        }
        std::uint32_t idcode = 0;
        for (unsigned bit = 0; bit < 32; ++bit)
            idcode |= std::uint32_t{bitAt(captured, place + bit)} << bit;
        if (idcode == allOnes)
            break;
        idcodes.push_back(idcode);
        place += 32;
    }
    return idcodes;
}

void print(std::size_t device, std::uint32_t idcode) {
    std::cout << "device " << device << ": ";
    if (idcode == 0) {
        std::cout << "no IDCODE\n";
        return;
    }
    std::cout << std::hex << std::uppercase << std::setfill('0') << "IDCODE " << std::setw(8) << idcode
              << ", manufacturer " << std::setw(3) << (idcode >> 1 & 0x7FF) << ", part " << std::setw(4)
              << (idcode >> 12 & 0xFFFF) << ", version " << (idcode >> 28) << std::dec << '\n';
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);

    const auto power = device->get<CommonModules::Relay_v1_0>("power");
    const auto jtag = device->get<TAVO::HWDebug::CpuDebug_v1_1>("cpu0")->getJtag();

    constexpr int testLogicReset = 0;
    constexpr int mostDevices = 16;
    const Bytes ones(mostDevices * 32 / 8, 0xFF);
    const auto shift = jtag->getShiftDRMethod(mostDevices * 32, ones);
    execute(*device, {power->getSetMethod(true),
                      device->getSystem()->getUSleepMethod(250'000), // until the board is out of reset
                      jtag->getOptionTckFrequencySetMethod(10'000'000),
                      jtag->getTapStateSetMethod(testLogicReset), shift});

    const auto idcodes = idcodesIn(shift->value().data);
    std::cout << idcodes.size() << " devices, the first one next to TDO\n";
    for (std::size_t i = 0; i < idcodes.size(); ++i)
        print(i, idcodes[i]);
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
