#include <tavo/client/hwdebug/header_result.h>

namespace TAVO::HWDebug {

HeaderResult::HeaderResult(const dto::Base::HeaderStatusGetReply& reply)
    : headers(reply.headers)
    , connections(reply.connections) {}

HeaderResult::HeaderResult(const dto::result& outcome)
    : HeaderResult(dto::replyOf<dto::Base::HeaderStatusGetReply>(outcome)) {}

} // namespace TAVO::HWDebug
