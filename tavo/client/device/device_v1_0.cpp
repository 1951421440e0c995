#include <tavo/client/device/device_v1_0.h>

#include <utility>

#include <tavo/client/object/device.h>
#include <tavo/client/transcode/convert_record.h>

namespace TAVO {

namespace device_v1_0 = TAVOXTranscode::device_v1_0;

BoardInfo::BoardInfo(const dto::Device::BoardInfo& reply) { TAVOXTranscode::convertRecord(reply, *this); }

FirmwareInfo::FirmwareInfo(const dto::Device::FirmwareInfo& reply) {
    TAVOXTranscode::convertRecord(reply, *this);
}

DeviceInfo::DeviceInfo(const dto::Device::InfoReply& reply) { TAVOXTranscode::convertRecord(reply, *this); }

std::vector<unsigned char> PlainResult<std::vector<unsigned char>>::of(const dto::result& outcome) {
    const auto& text = dto::replyOf<dto::Device::CHAPResponseReply>(outcome).text;
    return {text.begin(), text.end()};
}

std::shared_ptr<BoundMethod<dto::Device::InfoReply>> Device_v1_0::getInfoMethod() const {
    return make(device_v1_0::info);
}

std::shared_ptr<BoundMethod<dto::Device::RootMembersReply>> Device_v1_0::getRootMembersMethod() const {
    return make(device_v1_0::rootMembers);
}

std::shared_ptr<BoundMethod<dto::Device::LockReply>>
Device_v1_0::getLockMethod(const std::string& user, const std::string& password) const {
    return make(device_v1_0::lock, user, password);
}

std::shared_ptr<Method> Device_v1_0::getUnlockMethod(const std::string& user,
                                                     const std::string& password) const {
    return make(device_v1_0::unlock, user, password);
}

std::shared_ptr<BoundMethod<dto::Device::KeyReply>> Device_v1_0::getGetKeyMethod() const {
    return make(device_v1_0::getKey);
}

std::shared_ptr<BoundMethod<dto::Device::LoginReply>>
Device_v1_0::getLoginMethod(const std::string& user) const {
    return make(device_v1_0::login, user);
}

std::shared_ptr<BoundMethod<std::vector<unsigned char>>>
Device_v1_0::getCHAPResponseMethod(std::vector<unsigned char> response, int number) const {
    dto::Device::CHAPResponseRequest request;
    request.response = std::move(response);
    request.number = number;
    return make<std::vector<unsigned char>>(device_v1_0::CHAPRespond, std::move(request));
}

std::shared_ptr<BoundMethod<dto::Base::IntegerReply>> Device_v1_0::getMaxPacketSizeMethod() const {
    // No table has it, so building the call always throws.
    return make(TAVOXTranscode::Call<TAVOXTranscode::None, dto::Base::IntegerReply>{"getMaxPacketSize"});
}

// Defined here because device.cpp must not know the proxy class.
void Device::setDevice(std::shared_ptr<Device_v1_0> object) {
    deviceObject_ = object;
    device_ = std::move(object);
}

DeviceObjectFactory::DeviceObjectFactory()
    : TypeFactory("device", {servedBy<Device_v1_0>("1.0", isAtMostOneZero)}, "Device") {}

} // namespace TAVO
