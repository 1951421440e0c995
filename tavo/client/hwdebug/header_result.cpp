#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/transcode/convert_record.h>

namespace TAVO::HWDebug {

HeaderResult::HeaderResult(const dto::Base::HeaderStatusGetReply& reply) {
    TAVOXTranscode::convertRecord(reply, *this);
}

HeaderResult::HeaderResult(const dto::result& outcome)
    : HeaderResult(dto::replyOf<dto::Base::HeaderStatusGetReply>(outcome)) {}

} // namespace TAVO::HWDebug
