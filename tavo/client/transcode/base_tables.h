#pragma once

#include <functional>
#include <map>
#include <string>

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/method_row.h>

/// Method tables: per remote type and version, which function writes a method's parameters and which reads
/// its result.
///
/// Every type has a namespace of this shape, named after the type and its version: its methods as Calls; an
/// `EncoderList` and a `DecoderList`, maps by method name, compared byte by byte, whose constructors enter
/// the eight methods of every object and then the type's own; the functions themselves by the names
/// `encode_<method>` and `decode_<method>`; and `rows()`, which describes the type's own methods at run time.
namespace TAVO::TAVOXTranscode::base_v1_0 {

inline constexpr Call<None, dto::Base::TypeReply> type{"type"};
inline constexpr Call<None, dto::Base::VersionReply> version{"version"};
inline constexpr Call<None, dto::Base::MembersReply> members{"members"};
/// The entries of the reply travel without their signatures.
inline constexpr Call<None, dto::Base::MethodsReply> methods{"methods"};
inline constexpr Call<None, dto::Base::MethodsReply> methodsVerbose{"methodsVerbose"};
inline constexpr Call<None, dto::Base::AvailableReply> available{"available"};
inline constexpr Call<dto::Base::ReserveRequest> reserve{"reserve"};
inline constexpr Call<> unreserve{"unreserve"};

/// The eight methods of every object.
TAVO_API MethodRows rows() noexcept;

/// Method name to encoder. Derive from it to make the table of a type of your own: `(*this)["name"] =
/// function`.
class TAVO_API EncoderList : public std::map<std::string, Encoder, std::less<>> {
public:
    EncoderList();

protected:
    /// Inserts or overwrites one entry for each row.
    void enter(MethodRows methods);
};

/// Method name to decoder.
class TAVO_API DecoderList : public std::map<std::string, Decoder, std::less<>> {
public:
    DecoderList();

protected:
    void enter(MethodRows methods);
};

/// The tables of objects whose type has none of its own. Any thread may read them, before main and after it.
TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

TAVO_API extern EncoderFunction &encode_type, &encode_version, &encode_members, &encode_methods,
    &encode_methodsVerbose, &encode_available, &encode_reserve, &encode_unreserve;
TAVO_API extern DecoderFunction &decode_type, &decode_version, &decode_members, &decode_methods,
    &decode_methodsVerbose, &decode_available, &decode_reserve, &decode_unreserve;

} // namespace TAVO::TAVOXTranscode::base_v1_0

namespace TAVO::TAVOXTranscode {

/// The `EncoderList` of the type that these rows describe.
template <RowsFunction* rows>
class TAVO_TEMPLATE_API EncoderListOf : public base_v1_0::EncoderList {
public:
    EncoderListOf() { enter(rows()); }
};

/// The `DecoderList` of the type that these rows describe.
template <RowsFunction* rows>
class TAVO_TEMPLATE_API DecoderListOf : public base_v1_0::DecoderList {
public:
    DecoderListOf() { enter(rows()); }
};

} // namespace TAVO::TAVOXTranscode
