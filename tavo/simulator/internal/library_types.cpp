#include <tavo/simulator/internal/library_types.h>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/hwdebug/hwd_objects.h>

namespace TAVO::simulator {

void registerLibraryTypes() {
    CoreObjects::registerCoreObjects();
    HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
}

} // namespace TAVO::simulator
