#include <iostream>
#include <tavo/client.h>

int main(int, char** argv) {
    TAVO::CoreObjects::registerCoreObjects();
    auto device = TAVO::DeviceFactory::buildDevice(argv[1], std::stoi(argv[2]), "engineer", "tavo", false);

    auto info = device->getDevice()->getInfoMethod();
    auto time = device->getSystem()->getTimeGetMethod();
    auto batch = std::make_shared<TAVO::MulticallQueue>();
    batch->add(info);
    batch->add(time);
    device->multicall(batch); // both calls in one exchange

    std::cout << TAVO::DeviceInfo(info->value()).name << " at " << time->value() << '\n';
} // the device is unlocked and closed here
