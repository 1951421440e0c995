#include <tavo/client/commonmodules/common_modules_objects.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>

namespace CommonModules {

void CommonModulesObjects::registerCoreObjects() {
    TAVO::registerFactories<RelayFactory, CmosRelayFactory, ComFactory, Cfa633Factory>();
}

} // namespace CommonModules
