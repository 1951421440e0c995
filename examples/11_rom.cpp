// Boots the board from a ROM image in the appliance: loads it, reads it back, compares.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
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

Bytes imageFrom(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    Bytes image{std::istreambuf_iterator<char>(in), {}};
    if (image.empty())
        throw std::runtime_error("cannot read an image from " + file);
    return image;
}

Bytes someImage() {
    Bytes image(256 * 1024);
    std::mt19937 numbers(1);
    for (auto& byte : image)
        byte = static_cast<std::uint8_t>(numbers());
    return image;
}

// Places the image at the end, where the processor fetches its first instruction.
int offsetOf(const Bytes& image, int romSize) {
    if (image.size() > static_cast<std::size_t>(romSize))
        throw std::runtime_error("the image does not fit into " + std::to_string(romSize) + " bytes");
    return romSize - static_cast<int>(image.size());
}

void run(const std::string& host, int port, const Bytes& image) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);

    const auto power = device->get<CommonModules::Relay_v1_0>("power");
    const auto rom = device->get<TAVO::HWDebug::Lpc_v1_0>("lpc")->getLpcRomEmulation();

    const auto size = rom->getSramSizeGetMethod();
    execute(*device, {size});
    const auto offset = offsetOf(image, size->value().size);
    std::cout << "the ROM holds " << size->value().size << " bytes\n";

    // Takes a single exchange, however large the image is.
    const auto readBack = rom->getSramGetMethod(offset, static_cast<int>(image.size()));
    execute(*device, {power->getSetMethod(false), rom->getSramSetMethod(offset, image), readBack});
    if (readBack->value().data != image)
        throw std::runtime_error("what was read back differs from the image");
    std::cout << image.size() << " bytes loaded at " << offset << " and verified\n";

    execute(*device, {rom->getEnableSetMethod(true), power->getSetMethod(true)});
    std::cout << "the board boots from it\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        std::cerr << "usage: " << argv[0] << " HOST PORT [IMAGE]\n";
        return 2;
    }
    try {
        run(argv[1], std::stoi(argv[2]), argc == 4 ? imageFrom(argv[3]) : someImage());
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
