// Linked with the library alone: calling the three registrations must bring every factory into the program.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <tavo/client.h>

int main() {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();

    const std::vector<std::string> expected = {"cmosRelay", "device", "private", "relay", "system"};
    auto registered = TAVO::ObjectFactory::registeredTypes();
    std::sort(registered.begin(), registered.end());
    if (registered != expected) {
        std::cerr << "registered are:";
        for (const auto& type : registered)
            std::cerr << ' ' << type;
        std::cerr << '\n';
        return 1;
    }
    return 0;
}
