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

    const std::vector<std::string> expected = {
        "cfa633",       "cmosRelay", "com",         "cpuDebug",
        "csJtag",       "device",    "gpuDebug",    "gpuScan",
        "hdt",          "i2c",       "jtag",        "kelvorGpuDebugMux",
        "kelvorUvdMux", "lpc",       "lpcPostCode", "lpcRomEmulation",
        "private",      "relay",     "system"};
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
