#include <tavo/client/transcode/device_tables.h>

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_info = encoderOf(table, "info");
EncoderFunction& encode_rootMembers = encoderOf(table, "rootMembers");
EncoderFunction& encode_lock = encoderOf(table, "lock");
EncoderFunction& encode_unlock = encoderOf(table, "unlock");
EncoderFunction& encode_getKey = encoderOf(table, "getKey");
EncoderFunction& encode_login = encoderOf(table, "login");
EncoderFunction& encode_CHAPResponse = encoderOf(table, "CHAPRespond");
DecoderFunction& decode_info = decoderOf(table, "info");
DecoderFunction& decode_rootMembers = decoderOf(table, "rootMembers");
DecoderFunction& decode_lock = decoderOf(table, "lock");
DecoderFunction& decode_unlock = decoderOf(table, "unlock");
DecoderFunction& decode_getKey = decoderOf(table, "getKey");
DecoderFunction& decode_login = decoderOf(table, "login");
DecoderFunction& decode_CHAPResponse = decoderOf(table, "CHAPRespond");

} // namespace TAVO::TAVOXTranscode::device_v1_0
