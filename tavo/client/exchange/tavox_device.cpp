#include <tavo/client/exchange/tavox_device.h>

#include <algorithm>
#include <span>
#include <stdexcept>
#include <typeinfo>
#include <utility>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/exchange/internal/known_answers.h>
#include <tavo/client/exchange/server_keys.h>
#include <tavo/client/object/internal/return_code.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/immortal.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/internal/traced_transport.h>
#include <tavo/client/wire/socket_transport.h>

namespace TAVO {

namespace device_v1_0 = TAVOXTranscode::device_v1_0;
namespace system_v1_0 = TAVOXTranscode::system_v1_0;

namespace {

constexpr std::uint32_t systemInstanceId = 1;

/// Forbids the transport to reconnect while it lives, if `kept`.
class KeptConnection {
public:
    KeptConnection(Transport& transport, bool kept)
        : transport_(transport) {
        transport_.keepConnection(kept);
    }
    KeptConnection(const KeptConnection&) = delete;
    KeptConnection& operator=(const KeptConnection&) = delete;
    ~KeptConnection() { transport_.keepConnection(false); }

private:
    Transport& transport_;
};

/// Makes the calls of its lifetime those of a stranger.
class WithoutLockId {
public:
    explicit WithoutLockId(std::uint32_t& lockId)
        : lockId_(lockId)
        , held_(std::exchange(lockId, 0)) {}
    WithoutLockId(const WithoutLockId&) = delete;
    WithoutLockId& operator=(const WithoutLockId&) = delete;
    ~WithoutLockId() { lockId_ = held_; }

private:
    std::uint32_t& lockId_;
    std::uint32_t held_;
};

std::unique_ptr<Transport> required(std::unique_ptr<Transport> transport) {
    if (!transport)
        throw std::invalid_argument("TAVOXDevice got an empty pointer to the transport");
    return transport;
}

} // namespace

struct TAVOXDevice::Connection {
    Connection(std::unique_ptr<Transport> usedTransport, const TAVOXDevice& device)
        : transport(std::move(usedTransport))
        , exchange(*transport, device, typeid(TAVOXDevice)) {}

    bool isInStep() const noexcept { return exchange.isInStep() && !transport->hasUnaskedBytes(); }

    /// The one that goes through the trace, if there is a trace.
    Transport& used() const noexcept {
        if (traced && traced->sink())
            return *traced;
        return *transport;
    }

    void setTrace(TraceSink sink) {
        if (!traced && sink)
            traced = std::make_unique<TracedTransport>(*transport);
        if (traced)
            traced->setSink(std::move(sink));
        exchange.setTransport(used());
    }

    std::unique_ptr<Transport> transport;
    /// Stays once it is made: a program may hold it.
    std::unique_ptr<TracedTransport> traced;
    CallExchange exchange;
};

void Device::setTrace(TraceSink sink) {
    if (auto* const device = dynamic_cast<TAVOXDevice*>(this))
        device->connection_->setTrace(std::move(sink));
}

TAVOXDevice::TAVOXDevice(const std::string& host, int port, const std::string& user,
                         const std::string& password, bool secure, std::shared_ptr<Interrupter> interrupter)
    : TAVOXDevice(host, port, user, password, secure, std::move(interrupter), std::nullopt) {}

TAVOXDevice::TAVOXDevice(const std::string& host, int port, const std::string& user,
                         const std::string& password, bool secure, std::shared_ptr<Interrupter> interrupter,
                         TimeLimit limit)
    : TAVOXDevice(
          std::make_unique<SocketTransport>(host, std::to_string(port), std::move(interrupter), limit), user,
          password, secure) {
    host_ = host;
    port_ = port;
}

TAVOXDevice::TAVOXDevice(std::unique_ptr<Transport> transport, const std::string& user,
                         const std::string& password, bool)
    : lock_{0, false, user, password}
    , connection_(std::make_unique<Connection>(required(std::move(transport)), *this)) {}

TAVOXDevice::~TAVOXDevice() {
    try {
        if (lock_.id != 0 && !lock_.lent)
            giveLockBack();
    } catch (...) { // an exception that left here would end the application
    }
}

void TAVOXDevice::initalize() {}

void TAVOXDevice::call(std::shared_ptr<Method> method) {
    const auto* known = known_ && method ? known_->find(*method) : nullptr;
    if (known) {
        connection_->exchange.answer(method, *known);
        return;
    }
    connection_->exchange.run(lock_.id, std::span(&method, 1));
}

void TAVOXDevice::multicall(std::shared_ptr<MulticallQueue> queue) {
    if (!queue)
        throw Error("NULL multicall queue");
    connection_->exchange.run(lock_.id, queue->getMethods());
}

void TAVOXDevice::interrupt() noexcept { connection_->transport->interrupt(); }

bool TAVOXDevice::isLocked() const noexcept { return lock_.id != 0; }

std::optional<std::string> TAVOXDevice::lockHolder() {
    if (!lockProbe_)
        lockProbe_ = std::make_shared<Object_v1_0>(requireDeviceObject().device(), "system", systemInstanceId,
                                                   nullptr, immortal<system_v1_0::EncoderList>(),
                                                   immortal<system_v1_0::DecoderList>());
    const auto asked = lockProbe_->make(system_v1_0::timeGet);
    const WithoutLockId stranger(lock_.id);
    try {
        call(asked);
    } catch (const LockError& refusal) {
        return refusal.lockingUser();
    }
    return std::nullopt;
}

bool TAVOXDevice::userHoldsLock() {
    try {
        return lockHolder() == lock_.user;
    } catch (const Error& failure) {
        if (!failure.facts().connectionUsable)
            throw;
        return false; // a device that does not tell
    }
}

bool TAVOXDevice::isConnected() const noexcept { return connection_->transport->isConnected(); }

std::uint64_t TAVOXDevice::reconnects() const noexcept {
    const auto connections = connection_->transport->connectionNumber();
    return connections > 0 ? connections - 1 : 0;
}

void TAVOXDevice::setTimeLimit(TimeLimit limit) { connection_->transport->setTimeLimit(limit); }

TimeLimit TAVOXDevice::timeLimit() const noexcept { return connection_->transport->timeLimit(); }

Transport& TAVOXDevice::transport() noexcept { return connection_->used(); }

void TAVOXDevice::callMethods(std::deque<std::shared_ptr<Method>> methods) {
    connection_->exchange.run(lock_.id, methods);
}

TraceSink TAVOXDevice::trace() const { return connection_->traced ? connection_->traced->sink() : nullptr; }

const Object_v1_0& TAVOXDevice::requireDeviceObject() const {
    if (!deviceObject())
        throw SpecificationError("device object not found.");
    return *deviceObject();
}

void TAVOXDevice::getKey() {
    const auto method = requireDeviceObject().make(device_v1_0::getKey);
    call(method); // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall): the destructor too wants this class's
    requireSuccess(*method, "device");
    serverKey_ = method->value().key;
    keyConnection_ = connection_->transport->connectionNumber();
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

void TAVOXDevice::checkKeyOfConnection() {
    // A device may close the connection after each key; give up then.
    constexpr int mostKeys = 3;
    auto& transport = *connection_->transport;
    for (int keys = 0; keys < mostKeys; ++keys) {
        transport.ensureConnected();
        if (transport.connectionNumber() == keyConnection_)
            break;
        TAVOXDevice::getKey();
    }
    if (bool first = false, second = false; !TAVOXDevice::checkTavoKey(first, second))
        throw TAVOKeyError("TAVO authentication key not matched!");
}

void TAVOXDevice::callWithPassword(const std::shared_ptr<Method>& method) {
    if (keyMustFit_)
        checkKeyOfConnection();
    const KeptConnection kept(*connection_->transport, keyMustFit_);
    call(method); // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall): the destructor too wants this class's
}

void TAVOXDevice::lock(const std::string& user, const std::string& password) {
    lock_.user = user;
    lock_.password = password;
    lock();
}

void TAVOXDevice::lock() {
    if (keepsHeldLock_ && (lock_.id == 0 || lock_.lent))
        lock_.lent = userHoldsLock();
    const auto method = requireDeviceObject().make(device_v1_0::lock, lock_.user, lock_.password);
    callWithPassword(method);
    requireSuccess(*method, "device");
    lock_.id = method->value().lockId;
}

void TAVOXDevice::unlock() {
    if (lock_.id == 0)
        return;
    callWithPassword(requireDeviceObject().make(device_v1_0::unlock, lock_.user, lock_.password));
    lock_.id = 0;
    lock_.lent = false;
}

void TAVOXDevice::giveLockBack() {
    if (connection_->isInStep() || connection_->transport->renew())
        unlock(); // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall): the destructor too wants this class's
}

void TAVOXDevice::returnTo(Lock& former) noexcept {
    if (former.id == 0 && lock_.lent)
        lock_.id = 0;
    else if (former.id == 0)
        try {
            giveLockBack();
        } catch (...) { // the destructor tries once more
        }
    // A lock that is still held must be given back with the credentials that took it.
    if (lock_.id == former.id)
        std::swap(lock_, former);
}

bool TAVOXDevice::login(const std::string& user, const std::string& password) {
    loginUser_ = user;
    loginPassword_ = password;
    call(requireDeviceObject().make(device_v1_0::login, user));
    return false;
}

} // namespace TAVO
