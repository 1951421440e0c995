#pragma once

#include <tavo/client/transcode/base_tables.h>

/// Tables of the "cpuDebug" object, version 1.0: the eight methods of every object and nothing else.
namespace TAVO::TAVOXTranscode::cpuDebug_v1_0 {

class TAVO_API EncoderList : public base_v1_0::EncoderList {};
class TAVO_API DecoderList : public base_v1_0::DecoderList {};

TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_0

/// Method tables of the "cpuDebug" object, version 1.1. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::cpuDebug_v1_1 {

class TAVO_API EncoderList : public base_v1_0::EncoderList {
public:
    EncoderList();
};

class TAVO_API DecoderList : public base_v1_0::DecoderList {
public:
    DecoderList();
};

TAVO_API MethodRows rows() noexcept;
TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

TAVO_API extern EncoderFunction& encode_headerStatusGet;
TAVO_API extern DecoderFunction& decode_headerStatusGet;

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_1
