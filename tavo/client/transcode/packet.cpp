#include <tavo/client/transcode/codec.h>

#include <stdexcept>
#include <string>

#include <tavo/client/transcode/internal/error_line.h>

namespace TAVO::dto {

request_packet::~request_packet() = default;
reply_packet::~reply_packet() = default;

void refuseResult(const char* opening, const std::type_info& desired) {
    writeErrorLine(std::string(opening) + typeid(std::shared_ptr<reply_packet>).name() + " to desired " +
                   desired.name());
    throw std::runtime_error("Can't convert Result to desire type");
}

} // namespace TAVO::dto

namespace TAVO::TAVOXTranscode {

void encodeNothing(TAVOX::OutputStream&, const dto::Params&) {}

void refuseParams(const std::type_info& desired) {
    writeErrorLine(std::string("const Can't convert ") + typeid(std::shared_ptr<dto::request_packet>).name() +
                   " to desired " + desired.name());
    throw std::runtime_error("Can't convert Params to desire type");
}

dto::result decodeStatus(TAVOX::InputStream& in) { return {in.readInt32(), nullptr}; }

} // namespace TAVO::TAVOXTranscode
