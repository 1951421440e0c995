#include <tavo/client/transcode/base_tables.h>

namespace TAVO::TAVOXTranscode::base_v1_0 {

namespace {

using namespace dto::Base;

constexpr MethodRow table[] = {
    row<None, TypeReply>("type"),
    row<None, VersionReply>("version"),
    row<None, MembersReply>("members"),
    row<None, MethodsReply, BriefMethodsForm>("methods"),
    row<None, MethodsReply>("methodsVerbose"),
    row<None, AvailableReply>("available"),
    row<ReserveRequest, None>("reserve"),
    row<None, None>("unreserve"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

void EncoderList::enter(MethodRows methods) {
    for (const auto& method : methods)
        (*this)[std::string(method.name)] = method.encoder;
}

void DecoderList::enter(MethodRows methods) {
    for (const auto& method : methods)
        (*this)[std::string(method.name)] = method.decoder;
}

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_type = encoderOf(table, "type");
EncoderFunction& encode_version = encoderOf(table, "version");
EncoderFunction& encode_members = encoderOf(table, "members");
EncoderFunction& encode_methods = encoderOf(table, "methods");
EncoderFunction& encode_methodsVerbose = encoderOf(table, "methodsVerbose");
EncoderFunction& encode_available = encoderOf(table, "available");
EncoderFunction& encode_reserve = encoderOf(table, "reserve");
EncoderFunction& encode_unreserve = encoderOf(table, "unreserve");
DecoderFunction& decode_type = decoderOf(table, "type");
DecoderFunction& decode_version = decoderOf(table, "version");
DecoderFunction& decode_members = decoderOf(table, "members");
DecoderFunction& decode_methods = decoderOf(table, "methods");
DecoderFunction& decode_methodsVerbose = decoderOf(table, "methodsVerbose");
DecoderFunction& decode_available = decoderOf(table, "available");
DecoderFunction& decode_reserve = decoderOf(table, "reserve");
DecoderFunction& decode_unreserve = decoderOf(table, "unreserve");

} // namespace TAVO::TAVOXTranscode::base_v1_0
