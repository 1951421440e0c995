#include <tavo/client/device/core_objects.h>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>

namespace TAVO {

void CoreObjects::registerCoreObjects() {
    registerFactories<DeviceObjectFactory, PrivateFactory, SystemFactory>();
}

} // namespace TAVO
