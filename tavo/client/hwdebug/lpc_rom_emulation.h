#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/lpc_rom_emulation_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Results of LpcRomEmulation_v1_0.
namespace LpcRomEmulation_v1_0_Structs {

/// The bytes of the SRAM.
struct TAVO_API SramGet {
    SramGet() = default;
    SramGet(const dto::lpcRomEmulation::SramGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit SramGet(const dto::result& outcome);

    std::vector<std::uint8_t> data;
    bool operator==(const SramGet&) const = default;
};

} // namespace LpcRomEmulation_v1_0_Structs

/// Proxy of an "lpcRomEmulation" object, which serves the target's boot ROM from memory in the device. Its
/// operations build calls and send nothing; each throws SpecificationError when the device does not list the
/// method.
class TAVO_API LpcRomEmulation_v1_0 : public Object_v1_0 {
public:
    ~LpcRomEmulation_v1_0() override;

    std::shared_ptr<BoundMethod<LpcRomEmulation_v1_0_Structs::SramGet>> getSramGetMethod(int offset,
                                                                                         int length) const;
    std::shared_ptr<Method> getSramSetMethod(int offset, const std::vector<std::uint8_t>& data) const;
    std::shared_ptr<BoundMethod<dto::lpcRomEmulation::SramSizeGetReply>> getSramSizeGetMethod() const;
    std::shared_ptr<BoundMethod<dto::lpcRomEmulation::OptionRomTypeGetReply>>
    getOptionRomTypeGetMethod() const;
    /// Only the low eight bits of the type travel.
    std::shared_ptr<Method> getOptionRomTypeSetMethod(int romType) const;
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;

protected:
    friend class TAVO::ObjectFactory;
    LpcRomEmulation_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent,
                         const TAVOXTranscode::lpcRomEmulation_v1_0::EncoderList& encoders,
                         const TAVOXTranscode::lpcRomEmulation_v1_0::DecoderList& decoders);
};

/// Serves type "lpcRomEmulation" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown lpcRomEmulation object version: " and the
/// version.
class TAVO_API LpcRomEmulationFactory : public ObjectFactory {
public:
    LpcRomEmulationFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
