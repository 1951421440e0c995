#include <tavo/client/transcode/device_tables.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::device_v1_0 {

constexpr auto table = tableOf(info, rootMembers, lock, unlock, getKey, login, CHAPRespond);

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(info, rootMembers, lock, unlock, getKey, login);
constinit EncoderFunction& encode_CHAPResponse = encoderOf(CHAPRespond);
constinit DecoderFunction& decode_CHAPResponse = decoderOf(CHAPRespond);

} // namespace TAVO::TAVOXTranscode::device_v1_0
