#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <tavo/client/export.h>
#include <tavo/client/object/object.h>

namespace TAVO {

/// Base of the proxy class of one remote type and version, whose methods are those of `rows`, the function of
/// that name in the type's namespace. Gives the class the constructor that every proxy has.
///
/// @code
/// class Lamp_v1_0 : public TAVO::Proxy<lamp_v1_0::rows> {
/// public:
///     std::shared_ptr<TAVO::Method> getDimMethod(int percent) const { return make(lamp_v1_0::dim, percent);
///     }
///
/// protected:
///     using Proxy::Proxy;
/// };
/// @endcode
template <TAVOXTranscode::RowsFunction* rows, class Base = Object_v1_0>
class TAVO_TEMPLATE_API Proxy : public Base {
public:
    /// The tables of the type; a class that adds methods of its own hands over tables derived from these.
    using EncoderList = TAVOXTranscode::EncoderListOf<rows>;
    using DecoderList = TAVOXTranscode::DecoderListOf<rows>;

    /// The type's own methods at run time.
    static TAVOXTranscode::MethodRows methodRows() noexcept { return rows(); }

protected:
    friend class ObjectFactory;

    /// As Object_v1_0's constructor.
    Proxy(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
          std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders)
        : Base(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}
};

} // namespace TAVO
