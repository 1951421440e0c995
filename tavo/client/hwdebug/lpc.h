#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tavo/client/hwdebug/lpc_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of an "lpc" object, which attaches to a target's LPC bus.
class TAVO_API Lpc_v1_0 : public Object_v1_0 {
public:
    ~Lpc_v1_0() override;

    /// The child "lpcPostCode". No call to the device.
    std::shared_ptr<LpcPostCode_v1_0> getLpcPostCode() const { return postCode_; }
    /// The child "lpcRomEmulation". No call to the device.
    std::shared_ptr<LpcRomEmulation_v1_0> getLpcRomEmulation() const { return romEmulation_; }
    std::shared_ptr<BoundMethod<dto::lpc::HeaderConnectionsReply>> getHeaderConnectGetMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    Lpc_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
             std::shared_ptr<Container> parent, const TAVOXTranscode::lpc_v1_0::EncoderList& encoders,
             const TAVOXTranscode::lpc_v1_0::DecoderList& decoders);
    /// @throws SpecificationError "lpc rom emulation object not found." without a child "lpcRomEmulation",
    /// and then "lpc post code object not found." without a child "lpcPostCode".
    void initalize() override;

private:
    std::shared_ptr<LpcRomEmulation_v1_0> romEmulation_;
    std::shared_ptr<LpcPostCode_v1_0> postCode_;
};

/// Serves type "lpc" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown lpc object version: " and the version.
class TAVO_API LpcFactory : public ObjectFactory {
public:
    LpcFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
