#pragma once

#include <tavo/client/transcode/method_row.h>

/// The library's own record encoders and decoders: those that rowOf() makes from the `fields()` of a record.
/// They touch only record and stream, go through each once from front to back, and keep nothing. So the
/// exchange can spare them copies that an application's own functions need, and can tell from a record how
/// far its decoder got.
namespace TAVO::TAVOXTranscode {

/// Remembers the functions of those rows that rowOf() made. Every table that is filled from rows calls it.
void rememberRecordFunctions(MethodRows rows);

// These lock and search: call them only for large blocks, or after a failure.
bool isRecordEncoder(Encoder encoder) noexcept;
bool isRecordDecoder(Decoder decoder) noexcept;
/// The record that the decoder reads; null when it is no record decoder, or reads a status alone.
const ReplyDescription* recordOf(Decoder decoder) noexcept;

} // namespace TAVO::TAVOXTranscode
