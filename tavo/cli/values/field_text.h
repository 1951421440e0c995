#pragma once

#include <string>
#include <vector>

#include <tavo/client/transcode/value.h>

namespace TAVO::cli {

/// The value that `text` stands for in a field of the described type:
///
/// | type           | text                                                                    |
/// |----------------|-------------------------------------------------------------------------|
/// | bool           | true, false, 1, 0                                                       |
/// | integers       | decimal, or hexadecimal after 0x; negative where the type is signed     |
/// | text           | as it stands                                                            |
/// | bytes          | pairs of hexadecimal digits                                             |
/// | lists, records | JSON                                                                    |
///
/// @throws std::invalid_argument that names the field and what it must be.
Value parseField(const FieldDescription& field, const std::string& text);

/// The fields as a method's parameters in words: "state: bool, value: i32".
std::string fieldsText(const std::vector<FieldDescription>& fields);

} // namespace TAVO::cli
