#pragma once

#include <span>
#include <string>
#include <string_view>

#include <tavo/client/export.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/method_row.h>

// The methods of all remote types as data: for tools that make calls by name, and for simulators.
namespace TAVO {

/// The methods of one remote type and version, without the eight of every object.
struct ObjectTable {
    std::string_view type;           ///< the name of the remote type, such as "relay"
    std::string_view version;        ///< the version of these methods, such as "1.0"
    TAVOXTranscode::MethodRows rows; ///< live as long as the program
    /// Whether objects of the given version have these methods; null: all have.
    bool (*serves)(const Version&);
};

/// Every type that has a TypeFactory: those of the registered groups, and the application's own. Besides,
/// "base" 1.0 holds the eight methods of every object, and "headerStatus" 1.1 the functions that several
/// debug modules share. Valid until a factory is constructed or destroyed; until then any thread may read it.
TAVO_API std::span<const ObjectTable> objectTables() noexcept;

/// The table of objects of that type and version; null when there is none. If two factories serve the type,
/// that of the later one. Valid as objectTables().
TAVO_API const ObjectTable* findObjectTable(std::string_view type, const Version& version);

/// The rows of the table with exactly these two names, such as "relay" and "1.0"; empty when there is none.
TAVO_API TAVOXTranscode::MethodRows methodRows(std::string_view type, std::string_view version) noexcept;

/// The row of the functions that `object` has for the named method; it describes request and reply. Null when
/// the object's tables have no such method, or its functions are in none of objectTables(). Does not tell
/// whether the device lists the method: see Object_v1_0::hasMethod.
TAVO_API const TAVOXTranscode::MethodRow* findMethodRow(const Object_v1_0& object, std::string_view name);

/// Like findMethodRow(), but for a method that must be there.
/// @throws SpecificationError as Object_v1_0::getEncoder and Object_v1_0::getDecoder; "No description for
///         Method: " and the name when the functions are in none of objectTables().
TAVO_API const TAVOXTranscode::MethodRow& describeMethod(const Object_v1_0& object, const std::string& name);

} // namespace TAVO
