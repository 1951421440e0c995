#pragma once

#include <tavo/client/transcode/method_row.h>

/// The library's own record encoders and record decoders: those that row() makes of a record's field list.
/// They touch nothing but the record and the stream, read and write it once from front to back, and keep
/// nothing. So the exchange may spare them copies that a function of an application's own must be given, and
/// can tell from a record how far its decoder has come.
namespace TAVO::TAVOXTranscode {

/// Remembers the functions of those rows that row() made; called by every table that is filled from rows.
void rememberRecordFunctions(MethodRows rows);

/// These lock and search: ask only where blocks are long, or something has failed.
bool isRecordEncoder(Encoder encoder) noexcept;
bool isRecordDecoder(Decoder decoder) noexcept;
/// The record that the decoder reads; null for a decoder that is none of them, or reads a status alone.
const ReplyDescription* recordOf(Decoder decoder) noexcept;

} // namespace TAVO::TAVOXTranscode
