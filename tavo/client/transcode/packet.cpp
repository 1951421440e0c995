#include <tavo/client/transcode/codec.h>

#include <stdexcept>
#include <string>

#include <tavo/client/transcode/internal/error_line.h>
#include <tavo/client/wire/internal/readable_name.h>

namespace TAVO {

namespace {

template <class Packet>
std::string nameOfRecord(const Packet* packet) {
    return packet ? readableName(typeid(*packet)) : "no record";
}

} // namespace

namespace dto {

request_packet::~request_packet() = default;
reply_packet::~reply_packet() = default;

void refuseResult(const char* opening, const result& outcome, const std::type_info& desired,
                  const std::string& method) {
    writeErrorLine(opening + nameOfRecord(outcome.reply.get()) + " to desired " + readableName(desired) +
                   (method.empty() ? "" : " in call to " + method));
    throw std::runtime_error("Can't convert Result to desire type");
}

} // namespace dto

namespace TAVOXTranscode {

void encodeNothing(TAVOX::OutputStream&, const dto::Params&) {}

void refuseParams(const dto::Params& params, const std::type_info& desired) {
    writeErrorLine("const Can't convert " + nameOfRecord(params.request.get()) + " to desired " +
                   readableName(desired));
    throw std::runtime_error("Can't convert Params to desire type");
}

dto::result decodeStatus(TAVOX::InputStream& in) { return {in.readInt32(), nullptr}; }

} // namespace TAVOXTranscode

} // namespace TAVO
