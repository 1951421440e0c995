#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "kelvorUvdMux" object. It has the operations and the tables of every object alone.
class TAVO_API KelvorUvdMux_v1_0 : public Object_v1_0 {
public:
    ~KelvorUvdMux_v1_0() override;

protected:
    friend class TAVO::ObjectFactory;
    KelvorUvdMux_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                      std::shared_ptr<Container> parent, const EncoderList& encoders,
                      const DecoderList& decoders);
};

/// Serves type "kelvorUvdMux" of every version.
class TAVO_API KelvorUvdMuxFactory : public ObjectFactory {
public:
    KelvorUvdMuxFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
