#pragma once

#include <functional>
#include <map>
#include <string>

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/method_row.h>

/// Method tables: per remote type and version, which function writes a method's parameters and which reads
/// its result.
///
/// Every type has a namespace of this shape: an `EncoderList` and a `DecoderList` (maps by method name,
/// compared byte by byte, whose constructors enter the eight methods of every object and then the type's
/// own), the functions themselves by the names `encode_<method>` and `decode_<method>`, `rows()` which
/// describes the type's own methods, and `encoders()` and `decoders()`, the lists that the type's proxies
/// use. Those are filled at load or by the first call, whichever comes first, and neither changed nor
/// destroyed afterwards: any thread may read them, before main and after it.
namespace TAVO::TAVOXTranscode::base_v1_0 {

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

/// The eight methods of every object.
TAVO_API MethodRows rows() noexcept;
TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

TAVO_API extern EncoderFunction &encode_type, &encode_version, &encode_members, &encode_methods,
    &encode_methodsVerbose, &encode_available, &encode_reserve, &encode_unreserve;
TAVO_API extern DecoderFunction &decode_type, &decode_version, &decode_members, &decode_methods,
    &decode_methodsVerbose, &decode_available, &decode_reserve, &decode_unreserve;

} // namespace TAVO::TAVOXTranscode::base_v1_0
