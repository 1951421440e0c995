#pragma once

#include <string>
#include <vector>

#include <tavo/client/transcode/value.h>

namespace TAVO::cli {

/// Parses `text` as the value of a field, by the field's type:
///
/// | type           | text                                                                    |
/// |----------------|-------------------------------------------------------------------------|
/// | bool           | true, false, 1, 0                                                       |
/// | integers | decimal, or hexadecimal after 0x; negative if the type is signed |
/// | text           | as it stands                                                            |
/// | bytes          | pairs of hexadecimal digits                                             |
/// | lists, records | JSON                                                                    |
///
/// @throws std::invalid_argument that names the field and the expected form.
Value parseField(const FieldDescription& field, const std::string& text);

/// The fields as a parameter list: "state: bool, value: i32".
std::string fieldsText(const std::vector<FieldDescription>& fields);

} // namespace TAVO::cli
