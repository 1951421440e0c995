// Identifies a device, opens it and prints the tree of its objects.
#include <iostream>
#include <string>

#include <tavo/client.h>

namespace {

void printVersions(const TAVO::DeviceInfo& info) {
    std::cout << info.name << ", version " << info.version.text << '\n';
    for (const auto& firmware : info.firmware)
        std::cout << "  firmware " << firmware.name << ' ' << firmware.version.text << '\n';
}

// Type and version take one exchange each; everything else is known since the opening.
void printTree(const TAVO::Container& node, const std::string& indentation) {
    for (const auto& child : node.getChildren()) {
        std::cout << indentation << child->getName();
        if (const auto object = std::dynamic_pointer_cast<TAVO::Object_v1_0>(child))
            std::cout << ": " << object->type() << ' ' << object->version().text;
        std::cout << '\n';
        printTree(*child, indentation + "  ");
    }
}

void openDevice(const std::string& host, int port) {
    // Registers the object types that get their own proxies: once, before opening the first device.
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();

    // Connects and checks the server key. Takes no lock, so this works while somebody else holds the device.
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    auto device = TAVO::DeviceFactory::queryDevice(host, port, descriptor);
    const auto info = device->getDevice()->getInfoMethod();
    device->call(info);
    printVersions(info->value());

    // Takes the lock and builds the tree.
    TAVO::DeviceFactory::openDevice(device, "engineer", "tavo");
    printTree(*device, "  ");
} // the last pointer to the device goes: this releases the lock and closes the connection

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " HOST PORT\n";
        return 2;
    }
    try {
        openDevice(argv[1], std::stoi(argv[2]));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
