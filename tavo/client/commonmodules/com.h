#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/commonmodules/com_tables.h>
#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::dto {

/// As many zero bytes as there are integers, then the low eight bits of each of them.
TAVO_API std::vector<std::uint8_t> convert_to_byte_array(const std::vector<int>& integers);

} // namespace TAVO::dto

namespace CommonModules {

/// Proxy of a "com" object, the appliance's serial port. Its operations build calls and
/// send nothing; each throws TAVO::SpecificationError when the device does not list the method.
class TAVO_API Com_v1_0 : public TAVO::Object_v1_0 {
public:
    ~Com_v1_0() override;

    /// Opens the port. What each of the nine line settings means is the device's to define.
    std::shared_ptr<TAVO::Method> getOpenMethod(int value1, int value2, bool flag1, bool flag2, int value3,
                                                bool flag3, bool flag4, bool flag5, bool flag6) const;
    std::shared_ptr<TAVO::Method> getCloseMethod() const;
    /// Sends the bytes that TAVO::dto::convert_to_byte_array() makes of `data`. The first argument goes
    /// nowhere.
    std::shared_ptr<TAVO::Method> getSendMethod(int ignored, std::vector<int> data) const;
    /// The value holds one integer, 0 to 255, for each received byte.
    std::shared_ptr<TAVO::BoundMethod<std::vector<int>>> getRecvMethod(int value) const;

protected:
    friend class TAVO::ObjectFactory;
    Com_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name, std::uint32_t instanceId,
             std::shared_ptr<TAVO::Container> parent, const TAVOXTranscode::com_v1_0::EncoderList& encoders,
             const TAVOXTranscode::com_v1_0::DecoderList& decoders);
};

/// Serves type "com" up to version 1.0.
/// A higher version is refused: TAVO::SpecificationError "Unknown com object version: " and the version.
class TAVO_API ComFactory : public TAVO::ObjectFactory {
public:
    ComFactory();

private:
    friend class CommonModulesObjects;
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override;
};

} // namespace CommonModules

namespace TAVO {

template <>
struct TAVO_API PlainResult<std::vector<int>> {
    static std::vector<int> of(const dto::result& outcome);
};

} // namespace TAVO
