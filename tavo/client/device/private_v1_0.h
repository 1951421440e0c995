#pragma once

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>

/// Tables of the "private" object, which has only the eight methods of every object.
namespace TAVO::TAVOXTranscode::private_v1_0 {

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

} // namespace TAVO::TAVOXTranscode::private_v1_0

namespace TAVO {

/// Proxy of the "private" object, which has only the operations of every object. Device::getPrivate() returns
/// it.
class TAVO_API Private_v1_0 : public Proxy<TAVOXTranscode::private_v1_0::rows> {
protected:
    using Proxy::Proxy;
};

/// Serves type "private" of every version, without asking for the version.
class TAVO_API PrivateFactory : public TypeFactory {
public:
    PrivateFactory();
};

} // namespace TAVO
