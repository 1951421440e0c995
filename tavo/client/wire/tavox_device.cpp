#include <tavo/client/wire/tavox_device.h>

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/server_keys.h>
#include <tavo/client/wire/call_exchange.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>

namespace TAVO {

struct TAVOXDevice::Connection {
    Connection(const std::string& host, const std::string& port, std::shared_ptr<Interrupter> interrupter)
        : transport(host, port, std::move(interrupter))
        , exchange(transport) {}

    SocketTransport transport;
    CallExchange exchange;
};

TAVOXDevice::TAVOXDevice(const std::string& host, int port, const std::string& user,
                         const std::string& password, bool, std::shared_ptr<Interrupter> interrupter)
    : host_(host)
    , port_(port)
    , lockUser_(user)
    , lockPassword_(password)
    , connection_(std::make_unique<Connection>(host_, std::to_string(port_), std::move(interrupter))) {}

TAVOXDevice::~TAVOXDevice() {
    try {
        TAVOXDevice::unlock();
    } catch (...) { // an exception that left here would end the application
    }
}

void TAVOXDevice::initalize() {}

void TAVOXDevice::call(std::shared_ptr<Method> method) {
    connection_->exchange.run(lockId_, std::span(&method, 1));
}

void TAVOXDevice::multicall(std::shared_ptr<MulticallQueue> queue) {
    if (!queue)
        throw Error("NULL multicall queue");
    connection_->exchange.run(lockId_, queue->getMethods());
}

void TAVOXDevice::interrupt() noexcept { connection_->transport.interrupt(); }

void TAVOXDevice::callMethods(std::deque<std::shared_ptr<Method>> methods) {
    connection_->exchange.run(lockId_, methods);
}

Device_v1_0& TAVOXDevice::deviceObject() const {
    const auto object = getDevice();
    if (!object)
        throw SpecificationError("device object not found.");
    return *object;
}

void TAVOXDevice::getKey() {
    const auto method = deviceObject().getGetKeyMethod();
    call(method);
    serverKey_ = method->value().key;
}

bool TAVOXDevice::checkTavoKey(bool& first, bool& second) const {
    for (const auto& known : serverKeys()) {
        if (!std::equal(serverKey_.begin(), serverKey_.end(), known.key.begin(), known.key.end()))
            continue;
        first = known.firstFlag;
        second = known.secondFlag;
        return true;
    }
    first = second = false;
    return false;
}

int TAVOXDevice::getMaxPacketSize() {
    throw std::runtime_error("called getMaxPacketSize and don't have implementation");
}

void TAVOXDevice::lock(const std::string& user, const std::string& password) {
    lockUser_ = user;
    lockPassword_ = password;
    lock();
}

void TAVOXDevice::lock() {
    const auto method = deviceObject().getLockMethod(lockUser_, lockPassword_);
    call(method);
    lockId_ = method->value().lockId;
}

void TAVOXDevice::unlock() {
    if (lockId_ == 0)
        return;
    // The destructor too wants the call of this class.
    // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.VirtualCall)
    call(deviceObject().getUnlockMethod(lockUser_, lockPassword_));
    lockId_ = 0;
}

bool TAVOXDevice::login(const std::string& user, const std::string& password) {
    loginUser_ = user;
    loginPassword_ = password;
    call(deviceObject().getLoginMethod(user));
    return false;
}

} // namespace TAVO
