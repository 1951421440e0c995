#pragma once

#include <span>
#include <string_view>

#include <tavo/client/export.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/method_row.h>

/// The methods of all object types as data: for tools that make calls by name, and for whoever plays the
/// device.
namespace TAVO {

/// The methods of one remote type and version, without the eight of every object.
struct ObjectTable {
    std::string_view type;
    std::string_view version;
    TAVOXTranscode::MethodRows rows;
};

/// All types that the library knows, those of one group together. "base" 1.0 holds the eight methods of every
/// object, "headerStatus" 1.1 the functions that several debug modules share.
TAVO_API std::span<const ObjectTable> objectTables() noexcept;

/// The rows of that type and version; empty when there are none.
TAVO_API TAVOXTranscode::MethodRows methodRows(std::string_view type, std::string_view version) noexcept;

/// The row that describes what `object` uses for the named method: its request and reply records.
/// @throws SpecificationError as Object_v1_0::getEncoder and getDecoder, and "No description for Method: "
/// and the
///         name for functions that are in no table of the library (a table that an application made).
TAVO_API const TAVOXTranscode::MethodRow& describeMethod(const Object_v1_0& object, const std::string& name);

} // namespace TAVO
