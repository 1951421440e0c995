#pragma once

#include <tavo/client/transcode/method_row.h>

/// The reply to "methods": a dto::Base::MethodsReply whose entries travel without their signatures, which a
/// `fields()` cannot express. Reading one leaves the signatures empty.
namespace TAVO::TAVOXTranscode {

dto::result decodeBriefMethods(TAVOX::InputStream& in);

extern const ReplyDescription briefMethodsDescription;

} // namespace TAVO::TAVOXTranscode
