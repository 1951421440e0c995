#include <tavo/client/device/private_v1_0.h>

namespace TAVO {

TAVOXTranscode::MethodRows TAVOXTranscode::private_v1_0::rows() noexcept { return {}; }

PrivateFactory::PrivateFactory()
    : TypeFactory("private", {servedBy<Private_v1_0>("1.0", nullptr)}) {}

} // namespace TAVO
