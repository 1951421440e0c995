#pragma once

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "kelvorUvdMux" object, a multiplexer board. It has only the operations and the tables of every
/// object; Object_v1_0::methods() tells which other methods the device lists.
class TAVO_API KelvorUvdMux_v1_0 : public Object_v1_0 {
public:
    /// Empty: the type has only the methods of every object.
    static TAVOXTranscode::MethodRows methodRows() noexcept { return {}; }

protected:
    friend class TAVO::ObjectFactory;
    using Object_v1_0::Object_v1_0;
};

/// Serves type "kelvorUvdMux" of every version.
class TAVO_API KelvorUvdMuxFactory : public TypeFactory {
public:
    KelvorUvdMuxFactory();
};

} // namespace TAVO::HWDebug
