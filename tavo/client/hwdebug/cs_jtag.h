#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>

/// Tables of the "csJtag" object, which has only the eight methods of every object.
namespace TAVO::TAVOXTranscode::csJtag_v1_0 {

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

} // namespace TAVO::TAVOXTranscode::csJtag_v1_0

namespace TAVO::HWDebug {

/// Proxy of a "csJtag" object, a chip-select wrapper around a "jtag" object of any version but 1.0. Use it to
/// reach that object; it has no other operations.
///
/// @code
/// const auto csJtag = device->get<CsJtag_v1_0>("csJtag");
/// const auto state = device->value(csJtag->getJtag()->tapStateGetMethod()).state;
/// @endcode
class TAVO_API CsJtag_v1_0 : public Proxy<TAVOXTranscode::csJtag_v1_0::rows> {
public:
    /// The child "jtag". Does not call the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }

protected:
    using Proxy::Proxy;
    /// Finds the child.
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_1.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
};

/// Serves type "csJtag" of every version.
class TAVO_API CsJtagFactory : public TypeFactory {
public:
    CsJtagFactory();
};

} // namespace TAVO::HWDebug
