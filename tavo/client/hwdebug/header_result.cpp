#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/transcode/internal/conversions.h>

namespace TAVO::HWDebug {

TAVO_FROM_REPLY(HeaderResult, dto::Base::HeaderStatusGetReply);

} // namespace TAVO::HWDebug
