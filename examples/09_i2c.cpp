// Identifies a memory module, measures the temperature, and stores a note in an EEPROM.
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int sensor = 0x48;
constexpr int memoryModule = 0x50;
constexpr int noteEeprom = 0x54;

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

// The checksum that a DDR3 module has in bytes 126 and 127.
unsigned checksumOf(const Bytes& spd) {
    const std::size_t covered = (spd.at(0) & 0x80) != 0 ? 117 : 126;
    unsigned checksum = 0;
    for (std::size_t i = 0; i < covered; ++i) {
        checksum ^= unsigned{spd.at(i)} << 8;
        for (int bit = 0; bit < 8; ++bit)
            checksum = (checksum << 1 ^ ((checksum & 0x8000) != 0 ? 0x1021 : 0)) & 0xFFFF;
    }
    return checksum;
}

void printModule(const Bytes& spd) {
    const auto stored = unsigned{spd.at(126)} | unsigned{spd.at(127)} << 8;
    std::cout << "memory module " << std::string(spd.begin() + 128, spd.begin() + 146) << ", checksum "
              << (stored == checksumOf(spd) ? "good" : "BAD") << '\n';
}

// Half degrees, left-aligned.
double degreesIn(const Bytes& temperature) {
    const auto bits = unsigned{temperature.at(0)} << 8 | temperature.at(1);
    return static_cast<std::int16_t>(bits) / 256.0;
}

void readBoard(TAVO::Device& device, const TAVO::HWDebug::I2c_v1_0& i2c) {
    const auto power = device.get<CommonModules::Relay_v1_0>("power");
    // Writes the start address, then reads. The second argument is not sent.
    const auto spd = i2c.getTransferMethod(memoryModule, 0, {0}, 256);
    const auto temperature = i2c.getTransferMethod(sensor, 0, {0}, 2);
    execute(device,
            {power->getSetMethod(true), device.getSystem()->getUSleepMethod(250'000), spd, temperature});
    printModule(spd->value().data);
    std::cout << degreesIn(temperature->value().data) << " degrees\n";
}

void keepNote(TAVO::Device& device, const TAVO::HWDebug::I2c_v1_0& i2c, const std::string& note) {
    const Bytes place = {0x01, 0x00};
    auto written = place;
    written.insert(written.end(), note.begin(), note.end());
    const auto write = i2c.getTransferMethod(noteEeprom, 0, written, 0);
    const auto read = i2c.getTransferMethod(noteEeprom, 0, place, static_cast<int>(note.size()));
    // While an EEPROM stores data it does not acknowledge its address, so let the bus retry until it does.
    execute(device, {i2c.getOptionAddressRetryLimitSetMethod(100), write, read});
    const auto kept = read->value().data;
    std::cout << "kept: " << std::string(kept.begin(), kept.end()) << '\n';
}

void askNobody(TAVO::Device& device, const TAVO::HWDebug::I2c_v1_0& i2c) {
    const auto read = i2c.getReadMethod(0x33, true, true, 1);
    device.call(read);
    std::cout << "address 0x33: " << (read->returnCode() == 0 ? "somebody" : "nobody") << " answers\n";
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);

    const auto i2c = device->get<TAVO::HWDebug::I2c_v1_0>("i2c");
    readBoard(*device, *i2c);
    keepNote(*device, *i2c, "fan replaced");
    askNobody(*device, *i2c);
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
