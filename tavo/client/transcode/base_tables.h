#pragma once

#include <functional>
#include <map>
#include <string>

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/method_row.h>

/// The eight methods that every remote object has, and their tables.
///
/// Every remote type has such a namespace, named after the type and its version. It holds:
///  - the type's methods as Calls, for Object_v1_0::make();
///  - `EncoderList` and `DecoderList`, maps from method name to function, with the eight methods of every
///    object and the type's own;
///  - the functions themselves, `encode_<method>` and `decode_<method>`;
///  - `rows()`, which describes the type's own methods at run time.
namespace TAVO::TAVOXTranscode::base_v1_0 {

/// The name of the object's remote type.
inline constexpr Call<None, dto::Base::TypeReply> type{"type"};
/// The version of the object's type.
inline constexpr Call<None, dto::Base::VersionReply> version{"version"};
/// The children of the object and their instance ids.
inline constexpr Call<None, dto::Base::MembersReply> members{"members"};
/// The methods of the object and their ids, without signatures. Has the id 3 on every object.
inline constexpr Call<None, dto::Base::MethodsReply> methods{"methods"};
/// The methods of the object, their ids and their signatures.
inline constexpr Call<None, dto::Base::MethodsReply> methodsVerbose{"methodsVerbose"};
/// Whether the object is free.
inline constexpr Call<None, dto::Base::AvailableReply> available{"available"};
/// Reserves the object; what that means is the device's to define.
inline constexpr Call<dto::Base::ReserveRequest> reserve{"reserve"};
/// Undoes `reserve`.
inline constexpr Call<> unreserve{"unreserve"};

/// Describes the eight methods of every object. Lives as long as the program.
TAVO_API MethodRows rows() noexcept;

/// Maps method names, compared byte by byte, to encoders. Derive from it for the table of a type of your own:
/// `(*this)["name"] = function`.
class TAVO_API EncoderList : public std::map<std::string, Encoder, std::less<>> {
public:
    /// Holds the eight methods of every object.
    EncoderList();

protected:
    /// Inserts or overwrites one entry for each row.
    void enter(MethodRows entered);
};

/// Maps method names, compared byte by byte, to decoders; the counterpart of EncoderList.
class TAVO_API DecoderList : public std::map<std::string, Decoder, std::less<>> {
public:
    /// Holds the eight methods of every object.
    DecoderList();

protected:
    /// Inserts or overwrites one entry for each row.
    void enter(MethodRows entered);
};

/// The encoders of objects whose type has no tables of its own. Never changed or destroyed: any thread may
/// read them, also before and after main.
TAVO_API const EncoderList& encoders() noexcept;
/// The decoders of objects whose type has no tables of its own, under the same rules as encoders().
TAVO_API const DecoderList& decoders() noexcept;

TAVO_API extern EncoderFunction &encode_type, &encode_version, &encode_members, &encode_methods,
    &encode_methodsVerbose, &encode_available, &encode_reserve, &encode_unreserve;
TAVO_API extern DecoderFunction &decode_type, &decode_version, &decode_members, &decode_methods,
    &decode_methodsVerbose, &decode_available, &decode_reserve, &decode_unreserve;

} // namespace TAVO::TAVOXTranscode::base_v1_0

namespace TAVO::TAVOXTranscode {

/// The encoders of every object, and those of the type that `rows` describes.
template <RowsFunction* rows>
class TAVO_TEMPLATE_API EncoderListOf : public base_v1_0::EncoderList {
public:
    EncoderListOf() { enter(rows()); }
};

/// The decoders of every object, and those of the type that `rows` describes.
template <RowsFunction* rows>
class TAVO_TEMPLATE_API DecoderListOf : public base_v1_0::DecoderList {
public:
    DecoderListOf() { enter(rows()); }
};

} // namespace TAVO::TAVOXTranscode
