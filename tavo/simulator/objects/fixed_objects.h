#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <tavo/client/transcode/device_records.h>
#include <tavo/client/transcode/system_records.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// The object "device": identity, key, lock and login.
///
/// Login takes a 16-byte challenge and a response: the bytes of the password, each XORed with the byte of the
/// challenge at the same position. The challenge repeats as needed.
class TAVO_SIMULATOR_API DeviceObject : public SimulatedObject {
public:
    DeviceObject();
    void reset() override;

private:
    struct Login {
        std::string user;
        std::vector<std::uint8_t> challenge;
    };

    dto::Device::InfoReply info(const CallContext& call) const;
    dto::Device::LoginReply login(const dto::Device::LoginRequest& request, const CallContext& call);
    dto::Device::CHAPResponseReply respond(const dto::Device::CHAPResponseRequest& request,
                                           const CallContext& call);

    std::map<std::uint64_t, Login> logins_;
    std::uint64_t challenges_ = 0;
};

/// The object "system": clock, delays, reset and firmware. Times are in microseconds; clock times count from
/// the epoch.
class TAVO_SIMULATOR_API SystemObject : public SimulatedObject {
public:
    SystemObject();

private:
    dto::system::FirmwareStatusReply firmwareStatus(const dto::system::FirmwareStatusRequest& request,
                                                    const CallContext& call) const;
};

} // namespace TAVO::simulator
