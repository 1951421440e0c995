#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/system_tables.h>

namespace TAVO {

/// Proxy of the "system" object, which controls the appliance itself. Its operations build calls and send
/// nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API System_v1_0 : public Proxy<TAVOXTranscode::system_v1_0::rows> {
public:
    std::shared_ptr<Method> getDeviceResetMethod() const;
    /// The image is copied. Which firmware a name stands for is the device's to define.
    std::shared_ptr<Method> getFirmwareUpdateMethod(std::string name,
                                                    const std::vector<unsigned char>& image) const;
    std::shared_ptr<BoundMethod<dto::system::FirmwareStatusReply>>
    getFirmwareStatusMethod(std::string name) const;
    /// The device's clock; its unit is the device's to define.
    std::shared_ptr<BoundMethod<long long>> getTimeGetMethod() const;
    std::shared_ptr<Method> getTimeSetMethod(long long time) const;
    /// Any number of microseconds, 0 and negative ones included: the device decides.
    std::shared_ptr<Method> getUSleepMethod(int microseconds) const;
    std::shared_ptr<Method> getUWaitMethod(int microseconds) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "system" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown System object version: " and the version.
class TAVO_API SystemFactory : public TypeFactory {
public:
    SystemFactory();
};

template <>
struct TAVO_API PlainResult<long long> {
    static long long of(const dto::result& outcome);
};

} // namespace TAVO
