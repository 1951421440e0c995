#include <tavo/simulator/objects/fixed_objects.h>

#include <utility>

#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/transcode/table.h>
#include <tavo/client/version_number.h>
#include <tavo/server/limits.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/internal/scramble.h>

namespace TAVO::simulator {

namespace {

namespace device_v1_0 = TAVOXTranscode::device_v1_0;
namespace system_v1_0 = TAVOXTranscode::system_v1_0;

// The client library's table lacks this method, although its proxy builds it and appliances list it.
constexpr TAVOXTranscode::Call<None, dto::Base::IntegerReply> getMaxPacketSize{"getMaxPacketSize"};
constexpr auto maxPacketSizeRow = TAVOXTranscode::rowOf(getMaxPacketSize);

constexpr std::size_t mostPendingLogins = 1024;

std::vector<std::uint8_t> challengeNumber(std::uint64_t number) {
    std::vector<std::uint8_t> bytes;
    for (const auto seed : {2 * number, 2 * number + 1})
        for (int shift = 0; shift < 64; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(scrambled(seed) >> shift));
    return bytes;
}

std::vector<std::uint8_t> responseTo(const std::vector<std::uint8_t>& challenge,
                                     const std::string& password) {
    std::vector<std::uint8_t> response(password.begin(), password.end());
    for (std::size_t i = 0; i < response.size(); ++i)
        response[i] = static_cast<std::uint8_t>(response[i] ^ challenge[i % challenge.size()]);
    return response;
}

void wait(CallContext& call, std::int32_t microseconds) {
    if (microseconds < 0)
        throw Refusal(return_code::badArgument);
    call.delay(std::chrono::microseconds(microseconds));
}

} // namespace

DeviceObject::DeviceObject()
    : SimulatedObject("device", "1.0") {
    using namespace dto::Device;
    addMethod(maxPacketSizeRow);
    on(
        device_v1_0::info, [this](CallContext& call) { return info(call); }, Access::open);
    on(
        device_v1_0::rootMembers,
        [this] {
            RootMembersReply reply;
            for (const auto& member : appliance().rootMembers())
                reply.members.push_back({member->name(), member->instanceId()});
            return reply;
        },
        Access::open);
    on(
        device_v1_0::lock,
        [this](const LockRequest& request) {
            return makeRecord<LockReply>(appliance().lock().take(request.user, request.password));
        },
        Access::open);
    on(
        device_v1_0::unlock,
        [this](const UnLockRequest& request) { appliance().lock().release(request.user, request.password); },
        Access::open);
    on(
        device_v1_0::getKey, [this] { return makeRecord<KeyReply>(appliance().key()); }, Access::open);
    on(
        device_v1_0::login,
        [this](const LoginRequest& request, CallContext& call) { return login(request, call); },
        Access::open);
    on(
        device_v1_0::CHAPRespond,
        [this](const CHAPResponseRequest& request, CallContext& call) { return respond(request, call); },
        Access::open);
    on(
        getMaxPacketSize, [] { return makeRecord<dto::Base::IntegerReply>(server::limits::parameterBytes); },
        Access::open);
}

void DeviceObject::reset() { logins_.clear(); }

dto::Device::InfoReply DeviceObject::info(const CallContext& call) const {
    dto::Device::InfoReply reply;
    reply.name = "tavo-sim";
    reply.version = {ClientLibraryMajorVersion, ClientLibraryMinorVersion, ClientLibraryBugfixVersion};
    for (const auto& [name, firmware] : appliance().firmware().all(call.elapsed()))
        reply.firmware.push_back({name, firmware.version});
    reply.boards = {{"mainboard", "rev C", "SIM-0001", "simulated"},
                    {"breakout", "rev A", "SIM-0002", "simulated"}};
    return reply;
}

dto::Device::LoginReply DeviceObject::login(const dto::Device::LoginRequest& request,
                                            const CallContext& call) {
    if (!appliance().lock().accounts().contains(request.user))
        throw DeviceFault(device_error::login, "Unknown user '" + request.user + "'");
    auto challenge = challengeNumber(++challenges_);
    logins_.insert_or_assign(call.connection(), Login{request.user, challenge});
    if (logins_.size() > mostPendingLogins)
        logins_.erase(logins_.begin());
    return makeRecord<dto::Device::LoginReply>(std::move(challenge));
}

dto::Device::CHAPResponseReply DeviceObject::respond(const dto::Device::CHAPResponseRequest& request,
                                                     const CallContext& call) {
    const auto pending = logins_.extract(call.connection());
    if (!pending)
        throw DeviceFault(device_error::login, "No login has begun on this connection");
    const auto& [user, challenge] = pending.mapped();
    if (request.response != responseTo(challenge, appliance().lock().accounts().at(user)))
        throw DeviceFault(device_error::login, "Wrong response of user '" + user + "'");
    return makeRecord<dto::Device::CHAPResponseReply>("Welcome, " + user);
}

SystemObject::SystemObject()
    : SimulatedObject("system", "1.0") {
    using namespace dto::system;
    on(system_v1_0::timeGet, [](CallContext& call) { return makeRecord<TimeGetReply>(call.time()); });
    on(system_v1_0::timeSet, [this](const TimeSetRequest& request, CallContext& call) {
        // The delays of this batch so far are added once it is answered.
        const auto slept = static_cast<std::uint64_t>(call.totalDelay().count());
        appliance().clock().setTime(
            static_cast<std::int64_t>(static_cast<std::uint64_t>(request.time) - slept));
    });
    on(system_v1_0::usleep,
       [](const uSleepRequest& request, CallContext& call) { wait(call, request.microseconds); });
    on(system_v1_0::uwait,
       [](const uWaitRequest& request, CallContext& call) { wait(call, request.microseconds); });
    on(system_v1_0::deviceReset, [this](CallContext& call) {
        appliance().reset();
        call.closeConnections();
    });
    on(system_v1_0::firmwareUpdate, [this](const FirmwareUpdateRequest& request, CallContext& call) {
        appliance().firmware().update(request.name, request.image, call.elapsed());
    });
    on(system_v1_0::firmwareStatus, [this](const FirmwareStatusRequest& request, CallContext& call) {
        return firmwareStatus(request, call);
    });
}

dto::system::FirmwareStatusReply
SystemObject::firmwareStatus(const dto::system::FirmwareStatusRequest& request,
                             const CallContext& call) const {
    const auto& firmware = appliance().firmware().at(request.name, call.elapsed());
    return makeRecord<dto::system::FirmwareStatusReply>(firmware.state, firmware.percent);
}

} // namespace TAVO::simulator
