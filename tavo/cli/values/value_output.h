#pragma once

#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/text_writer.h>
#include <tavo/client/transcode/value_view.h>
#include <tavo/json/value_output.h>

/// Writes the values of any record without copying them.
namespace TAVO::cli {

using json::writeValue;

/// On one line: `name=value` pairs, byte blocks as hexadecimal digits, texts in quotes, lists in brackets,
/// nested records in braces.
void writeValue(TextWriter& text, const ValueView& value);

/// One line for each field of a record, and for each record in a list.
void writeFields(TextWriter& text, const ValueView::Record& record);

} // namespace TAVO::cli
