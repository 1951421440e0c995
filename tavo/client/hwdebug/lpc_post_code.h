#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/lpc_post_code_records.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/header_status_tables.h>

/// The methods of the "lpcPostCode" object for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. The enableGet and enableSet of headerStatus_v1_1 belong to them as well.
namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

using headerStatus_v1_1::enableSet, headerStatus_v1_1::enableGet;
/// @name Codes and their FIFO
/// @{
inline constexpr Call<None, dto::lpcPostCode::PostCodeGetReply> postCodeGet{"postCodeGet"};
inline constexpr Call<None, dto::lpcPostCode::FifoSizeGetReply> fifoSizeGet{"fifoSizeGet"};
inline constexpr Call<None, dto::lpcPostCode::FifoGetReply> fifoGet{"fifoGet"};
inline constexpr Call<> fifoClear{"fifoClear"};
inline constexpr Call<None, dto::lpcPostCode::FifoStatusReply> fifoStatusGet{"fifoStatusGet"};
inline constexpr Call<> fifoStatusClear{"fifoStatusClear"};
/// @}
/// @name Options
/// @{
inline constexpr Call<dto::lpcPostCode::OptionPortSetRequest> optionPortSet{"optionPortSet"};
inline constexpr Call<None, dto::lpcPostCode::OptionPortGetReply> optionPortGet{"optionPortGet"};
inline constexpr Call<dto::lpcPostCode::OptionPassiveSetRequest> optionPassiveSet{"optionPassiveSet"};
inline constexpr Call<None, dto::lpcPostCode::OptionPassiveGetReply> optionPassiveGet{"optionPassiveGet"};
inline constexpr Call<dto::lpcPostCode::OptionFifoCircularSetRequest> optionFifoCircularSet{
    "optionFifoCircularSet"};
inline constexpr Call<None, dto::lpcPostCode::OptionFifoCircularGetReply> optionFifoCircularGet{
    "optionFifoCircularGet"};
inline constexpr Call<dto::lpcPostCode::OptionFifoDiscardSetRequest> optionFifoDiscardSet{
    "optionFifoDiscardSet"};
inline constexpr Call<None, dto::lpcPostCode::OptionFifoDiscardGetReply> optionFifoDiscardGet{
    "optionFifoDiscardGet"};
inline constexpr Call<dto::lpcPostCode::OptionFifoAutoResetSetRequest> optionFifoAutoResetSet{
    "optionFifoAutoResetSet"};
inline constexpr Call<None, dto::lpcPostCode::OptionFifoAutoResetGetReply> optionFifoAutoResetGet{
    "optionFifoAutoResetGet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_postCodeGet, &encode_fifoSizeGet, &encode_fifoGet, &encode_fifoClear,
    &encode_fifoStatusGet, &encode_fifoStatusClear, &encode_optionPortSet, &encode_optionPortGet,
    &encode_optionPassiveSet, &encode_optionPassiveGet, &encode_optionFifoCircularSet,
    &encode_optionFifoCircularGet, &encode_optionFifoDiscardSet, &encode_optionFifoDiscardGet,
    &encode_optionFifoAutoResetSet, &encode_optionFifoAutoResetGet, &encode_enableSet, &encode_enableGet;
TAVO_API extern DecoderFunction &decode_postCodeGet, &decode_fifoSizeGet, &decode_fifoGet, &decode_fifoClear,
    &decode_fifoStatusGet, &decode_fifoStatusClear, &decode_optionPortSet, &decode_optionPortGet,
    &decode_optionPassiveSet, &decode_optionPassiveGet, &decode_optionFifoCircularSet,
    &decode_optionFifoCircularGet, &decode_optionFifoDiscardSet, &decode_optionFifoDiscardGet,
    &decode_optionFifoAutoResetSet, &decode_optionFifoAutoResetGet, &decode_enableSet, &decode_enableGet;

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0

namespace TAVO::HWDebug {

/// Proxy of an "lpcPostCode" object, which captures the POST codes that a target's firmware writes, usually
/// to port 0x80, into a FIFO. Use it to follow a boot. It has no operations but those of every object: build
/// its calls with make() and the methods of lpcPostCode_v1_0.
///
/// @code
/// namespace calls = TAVO::TAVOXTranscode::lpcPostCode_v1_0;
/// const auto last = device->value(postCode->make(calls::postCodeGet)).postCode;
/// device->execute(postCode->make(calls::optionFifoCircularSet, 1));
/// @endcode
class TAVO_API LpcPostCode_v1_0 : public Proxy<TAVOXTranscode::lpcPostCode_v1_0::rows> {
protected:
    using Proxy::Proxy;
};

/// Serves type "lpcPostCode" up to version 1.0. Refuses higher versions with SpecificationError "Unknown
/// lpcPostCode object version: " and the version.
class TAVO_API LpcPostCodeFactory : public TypeFactory {
public:
    LpcPostCodeFactory();
};

} // namespace TAVO::HWDebug
