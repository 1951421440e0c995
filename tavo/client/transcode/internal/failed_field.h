#pragma once

#include <cstdint>
#include <string>

#include <tavo/client/transcode/method_row.h>

namespace TAVO::TAVOXTranscode {

/// The path of the field whose value begins at `offset` of a result, such as "members[3].name"; "return code"
/// for the first four bytes.
/// @param outcome what a record decoder read from the result; must be complete up to the offset.
/// @param record  the record that the decoder reads; null for a status alone.
std::string fieldAt(std::uint64_t offset, const dto::result& outcome, const ReplyDescription* record);

} // namespace TAVO::TAVOXTranscode
