#pragma once

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "kelvorUvdMux" object, a multiplexer board. It has the operations and the tables of every
/// object alone; Object_v1_0::methods() tells which methods the device lists beyond them.
class TAVO_API KelvorUvdMux_v1_0 : public Object_v1_0 {
public:
    /// None beside those of every object.
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
