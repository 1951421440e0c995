#include <tavo/client/commonmodules/common_modules_objects.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>

namespace CommonModules {

namespace {

RelayFactory relayFactory;
CmosRelayFactory cmosRelayFactory;
ComFactory comFactory;
Cfa633Factory cfa633Factory;

} // namespace

void CommonModulesObjects::registerCoreObjects() {
    relayFactory.registerFactory();
    cmosRelayFactory.registerFactory();
    comFactory.registerFactory();
    cfa633Factory.registerFactory();
}

} // namespace CommonModules
