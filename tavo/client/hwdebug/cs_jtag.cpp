#include <tavo/client/hwdebug/cs_jtag.h>

#include <tavo/client/hwdebug/child.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::csJtag_v1_0 {

MethodRows rows() noexcept { return {}; }

} // namespace TAVO::TAVOXTranscode::csJtag_v1_0

namespace TAVO::HWDebug {

void CsJtag_v1_0::initalize() { jtag_ = requireChild<Jtag_v1_1>(*this, "jtag"); }

CsJtagFactory::CsJtagFactory()
    : TypeFactory("csJtag", {servedBy<CsJtag_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
