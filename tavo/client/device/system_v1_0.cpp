#include <tavo/client/device/system_v1_0.h>

#include <utility>

namespace TAVO {

namespace system_v1_0 = TAVOXTranscode::system_v1_0;

long long PlainResult<long long>::of(const dto::result& outcome) {
    return dto::replyOf<dto::system::TimeGetReply>(outcome).time;
}

std::shared_ptr<Method> System_v1_0::getDeviceResetMethod() const { return make(system_v1_0::deviceReset); }

std::shared_ptr<Method> System_v1_0::getFirmwareUpdateMethod(std::string name,
                                                             const std::vector<unsigned char>& image) const {
    return make(system_v1_0::firmwareUpdate, std::move(name), image);
}

std::shared_ptr<BoundMethod<dto::system::FirmwareStatusReply>>
System_v1_0::getFirmwareStatusMethod(std::string name) const {
    return make(system_v1_0::firmwareStatus, std::move(name));
}

std::shared_ptr<BoundMethod<long long>> System_v1_0::getTimeGetMethod() const {
    return make<long long>(system_v1_0::timeGet);
}

std::shared_ptr<Method> System_v1_0::getTimeSetMethod(long long time) const {
    return make(system_v1_0::timeSet, time);
}

std::shared_ptr<Method> System_v1_0::getUSleepMethod(int microseconds) const {
    return make(system_v1_0::usleep, microseconds);
}

std::shared_ptr<Method> System_v1_0::getUWaitMethod(int microseconds) const {
    return make(system_v1_0::uwait, microseconds);
}

SystemFactory::SystemFactory()
    : TypeFactory("system", {servedBy<System_v1_0>("1.0", isAtMostOneZero)}, "System") {}

} // namespace TAVO
