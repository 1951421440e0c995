#pragma once

#include <vector>

#include <tavo/client/transcode/value_view.h>
#include <tavo/json/json_writer.h>

/// Writes the values of any record as JSON without copying them.
namespace TAVO::json {

/// Writes JSON that fromJson() reads back: an object for a record, its members in alphabetical order.
void writeValue(JsonWriter& json, const ValueView& value);

/// The same, but a block of bytes becomes `{"block": index}`, and is appended to `blocks` as it lies.
void writeValue(JsonWriter& json, const ValueView& value, std::vector<ValueView::Bytes>& blocks);

} // namespace TAVO::json
