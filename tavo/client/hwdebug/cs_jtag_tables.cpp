#include <tavo/client/hwdebug/cs_jtag_tables.h>

namespace TAVO::TAVOXTranscode::csJtag_v1_0 {

namespace {

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

} // namespace TAVO::TAVOXTranscode::csJtag_v1_0
