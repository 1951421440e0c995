#include <tavo/client/commonmodules/common_modules_objects.h>

#include <tavo/client/commonmodules/relay.h>

namespace CommonModules {

namespace {

RelayFactory relayFactory;
CmosRelayFactory cmosRelayFactory;

} // namespace

void CommonModulesObjects::registerCoreObjects() {
    relayFactory.registerFactory();
    cmosRelayFactory.registerFactory();
}

} // namespace CommonModules
