#include <tavo/client/hwdebug/hwd_objects.h>

namespace TAVO::HWDebug {

void HwdObjects::registerCoreObjects() {}

} // namespace TAVO::HWDebug
