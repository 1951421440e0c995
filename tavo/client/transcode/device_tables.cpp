#include <tavo/client/transcode/device_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::device_v1_0 {

namespace {

using namespace dto::Device;

constexpr MethodRow table[] = {
    row<None, InfoReply>("info"),
    row<None, RootMembersReply>("rootMembers"),
    row<LockRequest, LockReply>("lock"),
    row<UnLockRequest, None>("unlock"),
    row<None, KeyReply>("getKey"),
    row<LoginRequest, LoginReply>("login"),
    row<CHAPResponseRequest, CHAPResponseReply>("CHAPRespond"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_info = encoderOf(table, "info");
constinit EncoderFunction& encode_rootMembers = encoderOf(table, "rootMembers");
constinit EncoderFunction& encode_lock = encoderOf(table, "lock");
constinit EncoderFunction& encode_unlock = encoderOf(table, "unlock");
constinit EncoderFunction& encode_getKey = encoderOf(table, "getKey");
constinit EncoderFunction& encode_login = encoderOf(table, "login");
constinit EncoderFunction& encode_CHAPResponse = encoderOf(table, "CHAPRespond");
constinit DecoderFunction& decode_info = decoderOf(table, "info");
constinit DecoderFunction& decode_rootMembers = decoderOf(table, "rootMembers");
constinit DecoderFunction& decode_lock = decoderOf(table, "lock");
constinit DecoderFunction& decode_unlock = decoderOf(table, "unlock");
constinit DecoderFunction& decode_getKey = decoderOf(table, "getKey");
constinit DecoderFunction& decode_login = decoderOf(table, "login");
constinit DecoderFunction& decode_CHAPResponse = decoderOf(table, "CHAPRespond");

} // namespace TAVO::TAVOXTranscode::device_v1_0
