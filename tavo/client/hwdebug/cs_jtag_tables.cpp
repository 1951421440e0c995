#include <tavo/client/hwdebug/cs_jtag_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::csJtag_v1_0 {

const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

} // namespace TAVO::TAVOXTranscode::csJtag_v1_0
