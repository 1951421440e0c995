#include <tavo/client/transcode/codec.h>

#include <stdexcept>
#include <string>

#include <tavo/client/transcode/internal/error_line.h>
#include <tavo/client/transcode/internal/type_name.h>

namespace TAVO::dto {

request_packet::~request_packet() = default;
reply_packet::~reply_packet() = default;

void refuseResult(const char* opening, const result& outcome, const std::type_info& desired,
                  const std::string& method) {
    writeErrorLine(opening + readableNameOf(outcome.reply.get()) + " to desired " + readableName(desired) +
                   (method.empty() ? "" : " in call to " + method));
    throw std::runtime_error("Can't convert Result to desire type");
}

} // namespace TAVO::dto

namespace TAVO::TAVOXTranscode {

void encodeNothing(TAVOX::OutputStream&, const dto::Params&) {}

void refuseParams(const dto::Params& params, const std::type_info& desired) {
    writeErrorLine("const Can't convert " + readableNameOf(params.request.get()) + " to desired " +
                   readableName(desired));
    throw std::runtime_error("Can't convert Params to desire type");
}

dto::result decodeStatus(TAVOX::InputStream& in) { return {in.readInt32(), nullptr}; }

} // namespace TAVO::TAVOXTranscode
