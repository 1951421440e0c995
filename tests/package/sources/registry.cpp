// Linked with the library alone: calling the three registrations must bring every factory into the program.
#include <iostream>
#include <set>
#include <string>

#include <tavo/client.h>

int main() {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();

    // The types that have golden bytes, and those that have no methods of their own.
    const std::set<std::string> expected = {GOLDEN_TYPES, "csJtag", "kelvorUvdMux", "private"};
    const auto types = TAVO::ObjectFactory::registeredTypes();
    const std::set<std::string> registered(types.begin(), types.end());
    if (registered != expected) {
        std::cerr << "registered are:";
        for (const auto& type : registered)
            std::cerr << ' ' << type;
        std::cerr << '\n';
        return 1;
    }
    return 0;
}
