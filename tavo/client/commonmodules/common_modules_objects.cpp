#include <tavo/client/commonmodules/common_modules_objects.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/transcode/internal/immortal.h>

namespace CommonModules {

void CommonModulesObjects::registerCoreObjects() {
    TAVO::immortal<RelayFactory>().registerFactory();
    TAVO::immortal<CmosRelayFactory>().registerFactory();
    TAVO::immortal<ComFactory>().registerFactory();
    TAVO::immortal<Cfa633Factory>().registerFactory();
}

} // namespace CommonModules
