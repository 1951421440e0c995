#pragma once

#include <tavo/client/transcode/base_tables.h>

/// Tables of the "csJtag" object: the eight methods of every object and nothing else.
namespace TAVO::TAVOXTranscode::csJtag_v1_0 {

class TAVO_API EncoderList : public base_v1_0::EncoderList {};
class TAVO_API DecoderList : public base_v1_0::DecoderList {};

TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

} // namespace TAVO::TAVOXTranscode::csJtag_v1_0
