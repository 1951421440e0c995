#include <tavo/simulator/objects/fixed_objects.h>

#include <utility>

#include <tavo/client/version_number.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/internal/limits.h>
#include <tavo/simulator/internal/scramble.h>

namespace TAVO::simulator {

namespace {

// The client library's table has no such method, although its proxy builds it and appliances list it.
constexpr auto maxPacketSizeRow = TAVOXTranscode::row<None, dto::Base::IntegerReply>("getMaxPacketSize");

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
    on<None, InfoReply>(
        "info", [this](CallContext& call) { return info(call); }, Access::open);
    on<None, RootMembersReply>(
        "rootMembers",
        [this] {
            RootMembersReply reply;
            for (const auto& member : appliance().rootMembers())
                reply.members.push_back({member->name(), member->instanceId()});
            return reply;
        },
        Access::open);
    on<LockRequest, LockReply>(
        "lock",
        [this](const LockRequest& request) {
            LockReply reply;
            reply.lockId = appliance().lock().take(request.user, request.password);
            return reply;
        },
        Access::open);
    on<UnLockRequest, None>(
        "unlock",
        [this](const UnLockRequest& request) { appliance().lock().release(request.user, request.password); },
        Access::open);
    on<None, KeyReply>(
        "getKey",
        [this] {
            KeyReply reply;
            reply.key = appliance().key();
            return reply;
        },
        Access::open);
    on<LoginRequest, LoginReply>(
        "login", [this](const LoginRequest& request, CallContext& call) { return login(request, call); },
        Access::open);
    on<CHAPResponseRequest, CHAPResponseReply>(
        "CHAPRespond",
        [this](const CHAPResponseRequest& request, CallContext& call) { return respond(request, call); },
        Access::open);
    on<None, dto::Base::IntegerReply>(
        "getMaxPacketSize",
        [] {
            dto::Base::IntegerReply reply;
            reply.value = limits::parameterBytes;
            return reply;
        },
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
    dto::Device::LoginReply reply;
    reply.challenge = challengeNumber(++challenges_);
    logins_.insert_or_assign(call.connection(), Login{request.user, reply.challenge});
    if (logins_.size() > mostPendingLogins)
        logins_.erase(logins_.begin());
    return reply;
}

dto::Device::CHAPResponseReply DeviceObject::respond(const dto::Device::CHAPResponseRequest& request,
                                                     const CallContext& call) {
    const auto pending = logins_.extract(call.connection());
    if (!pending)
        throw DeviceFault(device_error::login, "No login has begun on this connection");
    const auto& [user, challenge] = pending.mapped();
    if (request.response != responseTo(challenge, appliance().lock().accounts().at(user)))
        throw DeviceFault(device_error::login, "Wrong response of user '" + user + "'");
    dto::Device::CHAPResponseReply reply;
    reply.text = "Welcome, " + user;
    return reply;
}

SystemObject::SystemObject()
    : SimulatedObject("system", "1.0") {
    using namespace dto::system;
    on<None, TimeGetReply>("timeGet", [](CallContext& call) {
        TimeGetReply reply;
        reply.time = call.time();
        return reply;
    });
    on<TimeSetRequest, None>("timeSet", [this](const TimeSetRequest& request, CallContext& call) {
        // What this batch has slept so far comes on top once it is answered.
        const auto slept = static_cast<std::uint64_t>(call.totalDelay().count());
        appliance().clock().setTime(
            static_cast<std::int64_t>(static_cast<std::uint64_t>(request.time) - slept));
    });
    on<uSleepRequest, None>(
        "usleep", [](const uSleepRequest& request, CallContext& call) { wait(call, request.microseconds); });
    on<uWaitRequest, None>(
        "uwait", [](const uWaitRequest& request, CallContext& call) { wait(call, request.microseconds); });
    on<None, None>("deviceReset", [this](CallContext& call) {
        appliance().reset();
        call.closeConnections();
    });
    on<FirmwareUpdateRequest, None>(
        "firmwareUpdate", [this](const FirmwareUpdateRequest& request, CallContext& call) {
            appliance().firmware().update(request.name, request.image, call.elapsed());
        });
    on<FirmwareStatusRequest, FirmwareStatusReply>(
        "firmwareStatus", [this](const FirmwareStatusRequest& request, CallContext& call) {
            return firmwareStatus(request, call);
        });
}

dto::system::FirmwareStatusReply
SystemObject::firmwareStatus(const dto::system::FirmwareStatusRequest& request,
                             const CallContext& call) const {
    const auto& firmware = appliance().firmware().at(request.name, call.elapsed());
    dto::system::FirmwareStatusReply reply;
    reply.first = static_cast<std::uint32_t>(firmware.state);
    reply.second = firmware.percent;
    return reply;
}

} // namespace TAVO::simulator
