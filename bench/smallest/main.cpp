#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>

/// Opens a device and nothing else, to see how large the library makes a program.
int main(int, char** argv) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::DeviceFactory::buildDevice(argv[1], TAVO::DeviceFactory::DefaultPort, argv[2], argv[3], false);
}
