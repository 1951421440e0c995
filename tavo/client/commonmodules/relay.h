#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/commonmodules/relay_tables.h>
#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>

namespace CommonModules {

/// Proxy of a "relay" object, a switched output of the appliance. Its operations build calls and send
/// nothing; each throws TAVO::SpecificationError when the device does not list the method.
class TAVO_API Relay_v1_0 : public TAVO::Object_v1_0 {
public:
    ~Relay_v1_0() override;

    /// Remote method "set".
    std::shared_ptr<TAVO::Method> getSetMethod(bool state) const;
    /// A text such as "on" would be true, whatever it says.
    template <class T>
    std::shared_ptr<TAVO::Method> getSetMethod(T* text) const = delete;
    /// Remote method "toggle". What the integer means (a duration, a count) is the device's to define.
    std::shared_ptr<TAVO::Method> getToggleMethod(int value) const;
    /// Remote method "get".
    std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> getGetMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    Relay_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name, std::uint32_t instanceId,
               std::shared_ptr<TAVO::Container> parent,
               const TAVOXTranscode::relay_v1_0::EncoderList& encoders,
               const TAVOXTranscode::relay_v1_0::DecoderList& decoders);
};

/// Serves type "relay" of every version.
class TAVO_API RelayFactory : public TAVO::ObjectFactory {
public:
    RelayFactory();

private:
    friend class CommonModulesObjects;
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override;
};

/// Proxy of a "cmosRelay" object, which clears a target board's CMOS settings.
class TAVO_API CmosRelay_v1_0 : public TAVO::Object_v1_0 {
public:
    ~CmosRelay_v1_0() override;

    /// Remote method "cmosClear". What the integer means is the device's to define.
    std::shared_ptr<TAVO::Method> getCmosClearMethod(int value) const;

protected:
    friend class TAVO::ObjectFactory;
    CmosRelay_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<TAVO::Container> parent,
                   const TAVOXTranscode::cmosRelay_v1_0::EncoderList& encoders,
                   const TAVOXTranscode::cmosRelay_v1_0::DecoderList& decoders);
};

/// Serves type "cmosRelay" up to version 1.0.
/// A higher version is refused: TAVO::SpecificationError "Unknown cmosRelay object version: " and the
/// version.
class TAVO_API CmosRelayFactory : public TAVO::ObjectFactory {
public:
    CmosRelayFactory();

private:
    friend class CommonModulesObjects;
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override;
};

} // namespace CommonModules
