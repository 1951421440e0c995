#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/lpc_post_code_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of an "lpcPostCode" object, which captures POST codes. It has the operations of every object alone:
/// its methods are called by name.
class TAVO_API LpcPostCode_v1_0 : public Object_v1_0 {
public:
    ~LpcPostCode_v1_0() override;

protected:
    friend class TAVO::ObjectFactory;
    LpcPostCode_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                     std::shared_ptr<Container> parent,
                     const TAVOXTranscode::lpcPostCode_v1_0::EncoderList& encoders,
                     const TAVOXTranscode::lpcPostCode_v1_0::DecoderList& decoders);
};

/// Serves type "lpcPostCode" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown lpcPostCode object version: " and the version.
class TAVO_API LpcPostCodeFactory : public ObjectFactory {
public:
    LpcPostCodeFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
