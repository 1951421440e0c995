#include <tavo/client/device/system_v1_0.h>

#include <utility>

#include <tavo/client/transcode/codec.h>

namespace TAVO {

using TAVOXTranscode::makeRequest;

long long PlainResult<long long>::of(const dto::result& outcome) {
    return dto::replyOf<dto::system::TimeGetReply>(outcome).time;
}

System_v1_0::System_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent,
                         const TAVOXTranscode::system_v1_0::EncoderList& encoders,
                         const TAVOXTranscode::system_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

System_v1_0::~System_v1_0() = default;

std::shared_ptr<Method> System_v1_0::getDeviceResetMethod() const { return prepare("deviceReset"); }

std::shared_ptr<Method> System_v1_0::getFirmwareUpdateMethod(std::string name,
                                                             const std::vector<unsigned char>& image) const {
    return prepare("firmwareUpdate", makeRequest<dto::system::FirmwareUpdateRequest>(std::move(name), image));
}

std::shared_ptr<BoundMethod<dto::system::FirmwareStatusReply>>
System_v1_0::getFirmwareStatusMethod(std::string name) const {
    return prepare<dto::system::FirmwareStatusReply>(
        "firmwareStatus", makeRequest<dto::system::FirmwareStatusRequest>(std::move(name)));
}

std::shared_ptr<BoundMethod<long long>> System_v1_0::getTimeGetMethod() const {
    return prepare<long long>("timeGet");
}

std::shared_ptr<Method> System_v1_0::getTimeSetMethod(long long time) const {
    return prepare("timeSet", makeRequest<dto::system::TimeSetRequest>(time));
}

std::shared_ptr<Method> System_v1_0::getUSleepMethod(int microseconds) const {
    return prepare("usleep", makeRequest<dto::system::uSleepRequest>(microseconds));
}

std::shared_ptr<Method> System_v1_0::getUWaitMethod(int microseconds) const {
    return prepare("uwait", makeRequest<dto::system::uWaitRequest>(microseconds));
}

SystemFactory::SystemFactory()
    : ObjectFactory("system") {}

std::shared_ptr<Container> SystemFactory::build(std::shared_ptr<Device> device,
                                                std::shared_ptr<Container> parent, const std::string& name,
                                                std::uint32_t instanceId,
                                                std::shared_ptr<Object_v1_0> probe) {
    requireAtMostOneZero("System", probe->version());
    namespace tables = TAVOXTranscode::system_v1_0;
    return create<System_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO
