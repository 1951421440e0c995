#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "field_type.h"
#include "received_blocks.h"

#include <tavo/client/transcode/method_row.h>
#include <tavo/client/transcode/value_view.h>

namespace TAVO::python {

/// The content of a view as Python has it: texts as str, blocks as bytes, lists as tuples, records as
/// instances of the class in their type. Blocks that stand for others come from `blocks`.
py::object toPython(const ValueView& view, const FieldType& type, const ReceivedBlocks& blocks);

/// Bytes that need not be UTF-8, with surrogates in place of those that are not.
py::object textOf(std::string_view text);

/// The record of a request, filled from one argument for each field, in wire order.
/// @throws py::error_already_set with a TypeError or ValueError that names the field.
std::shared_ptr<dto::request_packet> makeRequest(const TAVOXTranscode::RequestDescription& description,
                                                 const FieldType& type, const py::tuple& arguments);

} // namespace TAVO::python
