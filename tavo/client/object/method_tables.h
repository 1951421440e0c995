#pragma once

#include <span>
#include <string>
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
    /// Which versions of an object have these methods; null for all.
    bool (*serves)(const Version&);
};

/// All types whose TypeFactory is part of the program: those of the groups that were registered, and an
/// application's own. "base" 1.0 holds the eight methods of every object, "headerStatus" 1.1 the functions
/// that several debug modules share. Valid until a factory is constructed or destroyed.
TAVO_API std::span<const ObjectTable> objectTables() noexcept;

/// The table that serves objects of that type and version; null when there is none. Of two factories of one
/// type, the later one's.
TAVO_API const ObjectTable* findObjectTable(std::string_view type, const Version& version);

/// The rows of exactly that type and version; empty when there are none.
TAVO_API TAVOXTranscode::MethodRows methodRows(std::string_view type, std::string_view version) noexcept;

/// The row that describes what `object` uses for the named method: its request and reply records. Null when
/// the object's tables have no such method, or hold functions for it that are in none of objectTables().
/// Whether the device lists the method plays no part: see Object_v1_0::hasMethod.
TAVO_API const TAVOXTranscode::MethodRow* findMethodRow(const Object_v1_0& object, std::string_view name);

/// The same for a method that must be there.
/// @throws SpecificationError as Object_v1_0::getEncoder and getDecoder, and "No description for Method: "
///         and the name for functions that are in no table of a TypeFactory.
TAVO_API const TAVOXTranscode::MethodRow& describeMethod(const Object_v1_0& object, const std::string& name);

} // namespace TAVO
