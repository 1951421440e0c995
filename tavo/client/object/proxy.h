#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <tavo/client/export.h>
#include <tavo/client/object/object.h>

namespace TAVO {

/// Base of a proxy class for one remote type and version: derive from it for a type of your own. Provides the
/// tables and the constructor that every proxy has.
/// @tparam rows the function of that name in the type's namespace, which describes its methods.
/// @tparam Base the proxy class to build on.
///
/// @code
/// class Lamp_v1_0 : public TAVO::Proxy<lamp_v1_0::rows> {
/// public:
///     std::shared_ptr<TAVO::Method> getDimMethod(int percent) const {
///         return make(lamp_v1_0::dim, percent);
///     }
///
/// protected:
///     using Proxy::Proxy;
/// };
/// @endcode
template <TAVOXTranscode::RowsFunction* rows, class Base = Object_v1_0>
class TAVO_TEMPLATE_API Proxy : public Base {
public:
    /// The encoders of the type. A class that adds methods passes the constructor a table derived from this.
    using EncoderList = TAVOXTranscode::EncoderListOf<rows>;
    /// The decoders of the type. A class that adds methods passes the constructor a table derived from this.
    using DecoderList = TAVOXTranscode::DecoderListOf<rows>;

    /// Describes the type's own methods. Lives as long as the program.
    static TAVOXTranscode::MethodRows methodRows() noexcept { return rows(); }

protected:
    friend class ObjectFactory;

    /// Like the constructor of Object_v1_0: asks the device for the object's methods.
    Proxy(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
          std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders)
        : Base(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}
};

} // namespace TAVO
