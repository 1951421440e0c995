#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/cs_jtag_tables.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "csJtag" object, a chip-select wrapper around a "jtag" object of version 1.1.
class TAVO_API CsJtag_v1_0 : public Object_v1_0 {
public:
    ~CsJtag_v1_0() override;

    /// The child "jtag". No call to the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }

protected:
    friend class TAVO::ObjectFactory;
    CsJtag_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                std::shared_ptr<Container> parent, const TAVOXTranscode::csJtag_v1_0::EncoderList& encoders,
                const TAVOXTranscode::csJtag_v1_0::DecoderList& decoders);
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of that class.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
};

/// Serves type "csJtag" of every version.
class TAVO_API CsJtagFactory : public ObjectFactory {
public:
    CsJtagFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
