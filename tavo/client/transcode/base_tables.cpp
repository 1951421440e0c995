#include <tavo/client/transcode/base_tables.h>

#include <tavo/client/transcode/internal/immortal.h>
#include <tavo/client/transcode/internal/record_functions.h>

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

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

void EncoderList::enter(MethodRows methods) {
    rememberRecordFunctions(methods);
    for (const auto& method : methods)
        (*this)[std::string(method.name)] = method.encoder;
}

void DecoderList::enter(MethodRows methods) {
    rememberRecordFunctions(methods);
    for (const auto& method : methods)
        (*this)[std::string(method.name)] = method.decoder;
}

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_type = encoderOf(table, "type");
constinit EncoderFunction& encode_version = encoderOf(table, "version");
constinit EncoderFunction& encode_members = encoderOf(table, "members");
constinit EncoderFunction& encode_methods = encoderOf(table, "methods");
constinit EncoderFunction& encode_methodsVerbose = encoderOf(table, "methodsVerbose");
constinit EncoderFunction& encode_available = encoderOf(table, "available");
constinit EncoderFunction& encode_reserve = encoderOf(table, "reserve");
constinit EncoderFunction& encode_unreserve = encoderOf(table, "unreserve");
constinit DecoderFunction& decode_type = decoderOf(table, "type");
constinit DecoderFunction& decode_version = decoderOf(table, "version");
constinit DecoderFunction& decode_members = decoderOf(table, "members");
constinit DecoderFunction& decode_methods = decoderOf(table, "methods");
constinit DecoderFunction& decode_methodsVerbose = decoderOf(table, "methodsVerbose");
constinit DecoderFunction& decode_available = decoderOf(table, "available");
constinit DecoderFunction& decode_reserve = decoderOf(table, "reserve");
constinit DecoderFunction& decode_unreserve = decoderOf(table, "unreserve");

} // namespace TAVO::TAVOXTranscode::base_v1_0
