#include <tavo/client/hwdebug/lpc.h>

#include <tavo/client/hwdebug/child.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::lpc_v1_0 {

TAVO_METHODS(headerConnectGet);

} // namespace TAVO::TAVOXTranscode::lpc_v1_0

namespace TAVO::HWDebug {

namespace lpc_v1_0 = TAVOXTranscode::lpc_v1_0;

void Lpc_v1_0::initalize() {
    romEmulation_ = requireChild<LpcRomEmulation_v1_0>(*this, "lpcRomEmulation", "lpc rom emulation");
    postCode_ = requireChild<LpcPostCode_v1_0>(*this, "lpcPostCode", "lpc post code");
}

std::shared_ptr<BoundMethod<dto::lpc::HeaderConnectionsReply>> Lpc_v1_0::getHeaderConnectGetMethod() const {
    return make(lpc_v1_0::headerConnectGet);
}

LpcFactory::LpcFactory()
    : TypeFactory("lpc", {servedBy<Lpc_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace TAVO::HWDebug
