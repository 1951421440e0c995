#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/commonmodules/cfa633_tables.h>
#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>

namespace CommonModules {

/// Proxy of a "cfa633" object, a character display. Its operations build calls and
/// send nothing; each throws TAVO::SpecificationError when the device does not list the method.
class TAVO_API Cfa633_v1_0 : public TAVO::Object_v1_0 {
public:
    ~Cfa633_v1_0() override;

    /// The text travels as it is. Which of the two integers is the row is the device's to define.
    std::shared_ptr<TAVO::Method> getLcdPrintMethod(int first, int second, std::string text) const;
    std::shared_ptr<TAVO::Method> getLcdClearMethod() const;
    std::shared_ptr<TAVO::Method> getLcdBackLightMethod(int level) const;

protected:
    friend class TAVO::ObjectFactory;
    Cfa633_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name, std::uint32_t instanceId,
                std::shared_ptr<TAVO::Container> parent,
                const TAVOXTranscode::cfa633_v1_0::EncoderList& encoders,
                const TAVOXTranscode::cfa633_v1_0::DecoderList& decoders);
};

/// Serves type "cfa633" up to version 1.0.
/// A higher version is refused: TAVO::SpecificationError "Unknown cfa633 object version: " and the version.
class TAVO_API Cfa633Factory : public TAVO::ObjectFactory {
public:
    Cfa633Factory();

private:
    friend class CommonModulesObjects;
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override;
};

} // namespace CommonModules
