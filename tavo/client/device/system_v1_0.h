#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/system_tables.h>

namespace TAVO {

/// Proxy of the "system" object, which controls the appliance itself: reset, firmware, clock and pauses.
/// Device::getSystem() returns it. Use its pauses in a batch, after calls that need time to take effect.
///
/// @code
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(power->getSetMethod(false));
/// queue->add(device->getSystem()->getUSleepMethod(1000));
/// queue->add(power->getSetMethod(true));
/// device->multicall(queue);
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges the arguments and answers with the
/// return code.
class TAVO_API System_v1_0 : public Proxy<TAVOXTranscode::system_v1_0::rows> {
public:
    /// Resets the appliance.
    std::shared_ptr<Method> getDeviceResetMethod() const;
    /// Sends new firmware.
    /// @param name which firmware; the names are the device's to define.
    /// @param image the new content; copied into the call.
    std::shared_ptr<Method> getFirmwareUpdateMethod(std::string name,
                                                    const std::vector<unsigned char>& image) const;
    /// Asks for the status of the firmware of that name. The value holds two numbers, the device's to define.
    std::shared_ptr<BoundMethod<dto::system::FirmwareStatusReply>>
    getFirmwareStatusMethod(std::string name) const;
    /// Asks for the device's clock; its unit is the device's to define.
    std::shared_ptr<BoundMethod<long long>> getTimeGetMethod() const;
    /// Sets the device's clock, in the device's unit.
    std::shared_ptr<Method> getTimeSetMethod(long long time) const;
    /// Makes the device sleep; the call takes as long. 0 and negative numbers are sent like any other.
    std::shared_ptr<Method> getUSleepMethod(int microseconds) const;
    /// Makes the device wait; the call takes as long. How it differs from getUSleepMethod() is the device's
    /// to define.
    std::shared_ptr<Method> getUWaitMethod(int microseconds) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "system" up to version 1.0. Refuses higher versions with SpecificationError "Unknown System
/// object version: " and the version.
class TAVO_API SystemFactory : public TypeFactory {
public:
    SystemFactory();
};

/// The time in a dto::system::TimeGetReply.
template <>
struct TAVO_API PlainResult<long long> {
    static long long of(const dto::result& outcome);
};

} // namespace TAVO
