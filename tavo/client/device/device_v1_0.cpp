#include <tavo/client/device/device_v1_0.h>

#include <utility>

#include <tavo/client/transcode/codec.h>

namespace TAVO {

using TAVOXTranscode::makeRequest;

BoardInfo::BoardInfo(const dto::Device::BoardInfo& reply)
    : field1(reply.field1)
    , field2(reply.field2)
    , field3(reply.field3)
    , field4(reply.field4) {}

FirmwareInfo::FirmwareInfo(const dto::Device::FirmwareInfo& reply)
    : name(reply.name)
    , version(reply.version) {}

DeviceInfo::DeviceInfo(const dto::Device::InfoReply& reply)
    : name(reply.name)
    , version(reply.version)
    , firmware(reply.firmware.begin(), reply.firmware.end())
    , boards(reply.boards.begin(), reply.boards.end()) {}

std::vector<unsigned char> PlainResult<std::vector<unsigned char>>::of(const dto::result& outcome) {
    const auto& text = dto::replyOf<dto::Device::CHAPResponseReply>(outcome).text;
    return {text.begin(), text.end()};
}

Device_v1_0::Device_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent,
                         const TAVOXTranscode::device_v1_0::EncoderList& encoders,
                         const TAVOXTranscode::device_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Device_v1_0::~Device_v1_0() = default;

std::shared_ptr<BoundMethod<dto::Device::InfoReply>> Device_v1_0::getInfoMethod() const {
    return prepare<dto::Device::InfoReply>("info");
}

std::shared_ptr<BoundMethod<dto::Device::RootMembersReply>> Device_v1_0::getRootMembersMethod() const {
    return prepare<dto::Device::RootMembersReply>("rootMembers");
}

std::shared_ptr<BoundMethod<dto::Device::LockReply>>
Device_v1_0::getLockMethod(const std::string& user, const std::string& password) const {
    return prepare<dto::Device::LockReply>("lock", makeRequest<dto::Device::LockRequest>(user, password));
}

std::shared_ptr<Method> Device_v1_0::getUnlockMethod(const std::string& user,
                                                     const std::string& password) const {
    return prepare("unlock", makeRequest<dto::Device::UnLockRequest>(user, password));
}

std::shared_ptr<BoundMethod<dto::Device::KeyReply>> Device_v1_0::getGetKeyMethod() const {
    return prepare<dto::Device::KeyReply>("getKey");
}

std::shared_ptr<BoundMethod<dto::Device::LoginReply>>
Device_v1_0::getLoginMethod(const std::string& user) const {
    return prepare<dto::Device::LoginReply>("login", makeRequest<dto::Device::LoginRequest>(user));
}

std::shared_ptr<BoundMethod<std::vector<unsigned char>>>
Device_v1_0::getCHAPResponseMethod(std::vector<unsigned char> response, int number) const {
    auto request = std::make_shared<dto::Device::CHAPResponseRequest>();
    request->response = std::move(response);
    request->number = number;
    return prepare<std::vector<unsigned char>>("CHAPRespond", {std::move(request)});
}

std::shared_ptr<BoundMethod<dto::Base::IntegerReply>> Device_v1_0::getMaxPacketSizeMethod() const {
    return prepare<dto::Base::IntegerReply>("getMaxPacketSize");
}

DeviceObjectFactory::DeviceObjectFactory()
    : ObjectFactory("device") {}

std::shared_ptr<Container> DeviceObjectFactory::build(std::shared_ptr<Device> device,
                                                      std::shared_ptr<Container> parent,
                                                      const std::string& name, std::uint32_t instanceId,
                                                      std::shared_ptr<Object_v1_0> probe) {
    requireAtMostOneZero("Device", probe->version());
    namespace tables = TAVOXTranscode::device_v1_0;
    return create<Device_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO
