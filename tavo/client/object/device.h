#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/container.h>
#include <tavo/client/object/method.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/trace.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Object_v1_0;
class Device_v1_0;
class System_v1_0;
class Private_v1_0;

/// The connection to one device, and the root of its object tree: its children are the device's root members,
/// and getDevice(), getSystem() and getPrivate() are the three fixed objects. DeviceFactory makes devices.
///
/// @code
/// const auto relay = device->get<CommonModules::Relay_v1_0>("bench.lamp");
/// device->execute(relay->getSetMethod(true));
/// const bool on = device->value(relay->getGetMethod()).state;
/// @endcode
///
/// A device, its tree and its Methods belong to one thread at a time, except for interrupt(); different
/// devices are independent. Calls block for as long as the device takes, or until the time limit.
///
/// Derive your own class to log or forward calls. Where it says "by default" below, that is what Device
/// itself does, and a class of your own may do better.
class TAVO_API Device : public Container {
public:
    /// A device without a name, a parent, children or fixed objects.
    Device();
    ~Device() override;

protected:
    /// Does nothing: a device is its own root.
    void initalize() override;

public:
    /// Executes one Method in one exchange and stores the result in it. The return code is not checked: look
    /// at Method::returnCode, or use execute().
    /// @throws NetworkError when the connection fails.
    /// @throws SpecificationError when parameters cannot be encoded or the result cannot be decoded.
    /// @throws Error or a class derived from it for an error that the device reports; see docs/errors.md.
    /// @throws std::bad_alloc when memory runs out; while a result is decoded, SpecificationError that ends
    ///         with "std::bad_alloc".
    virtual void call(std::shared_ptr<Method> method) = 0;
    /// Like call(), but a return code other than 0 is an error.
    /// @throws Error "Error executing " method "() method on " object ": " and the return code in lower-case
    ///         hexadecimal; and what call() throws.
    void execute(const std::shared_ptr<Method>& method);
    /// Like execute(), and returns the result: the short way to a single value.
    ///
    /// @code
    /// const auto state = device->value(relay->getGetMethod()).state;
    /// @endcode
    template <class Result>
    Result value(const std::shared_ptr<BoundMethod<Result>>& method) {
        execute(method);
        // Others who hold the Method expect its result there.
        return method.use_count() == 1 ? method->take() : method->value();
    }
    /// Executes all Methods of the queue in one exchange, in order, and leaves the queue as it was. Results
    /// that arrived before a failure stay in their Methods. Return codes are not checked. Throws what call()
    /// throws; TAVOXDevice adds Error "NULL multicall queue" for an empty pointer.
    virtual void multicall(std::shared_ptr<MulticallQueue> queue) = 0;
    /// Takes the lock again, with the credentials of the opening. By default it calls lock(). Throws what
    /// call() throws; TAVOXDevice adds TAVOKeyError, and Error for a return code other than 0.
    virtual void relock();
    /// Gives the lock back; does nothing when it is not held. The destructor of a TAVOXDevice does it as
    /// well, but swallows exceptions. Throws what call() throws; TAVOXDevice adds TAVOKeyError.
    virtual void unlock() = 0;
    /// Asks the device for its key and keeps it for checkTavoKey(). Throws what call() throws; TAVOXDevice
    /// adds Error for a return code other than 0.
    virtual void getKey() = 0;
    /// Whether the key that getKey() got is one of serverKeys(). Asks nobody.
    /// @param[out] first, second the two flags of that server key; false when there is none.
    virtual bool checkTavoKey(bool& first, bool& second) const = 0;
    /// Not implemented by TAVOXDevice, where it always throws.
    virtual int getMaxPacketSize() = 0;

protected:
    /// Stores the credentials and takes the lock with them. Called by DeviceFactory.
    virtual void lock(const std::string& user, const std::string& password) = 0;
    /// Takes the lock with the stored credentials.
    virtual void lock() = 0;
    /// Logs the user in. Called by DeviceFactory::authenticate, which returns the result.
    virtual bool login(const std::string& user, const std::string& password) = 0;

public:
    /// Makes a call that waits throw NetworkError "Call to device interrupted." within 100 ms, and closes the
    /// connection. The next call connects anew, with the same lock id. While no call is running, the
    /// connection is closed all the same. Interrupter says more, and interrupts openings.
    ///
    /// The only operation for other threads and signal handlers; keep the device alive meanwhile. Does
    /// nothing by default.
    virtual void interrupt() noexcept;
    /// Whether this device holds the lock, as far as this side knows: asks nobody. False by default.
    virtual bool isLocked() const noexcept;
    /// Asks the device which user holds its lock, without taking it or using the lock id: "timeGet" of the
    /// "system" object is called as a stranger would call it, which devices refuse while somebody holds the
    /// lock. Two exchanges, later one.
    /// @return the user's name, which may be the own one; empty when nobody holds the lock, or when the
    ///         device allows the call all the same. Always empty by default.
    /// @throws NetworkError when the connection fails; Error when the device cannot carry out the call.
    virtual std::optional<std::string> lockHolder();
    /// Whether there is a connection, as far as this side knows: asks nobody, so a connection that the peer
    /// has closed counts until the next call, which connects anew. False by default.
    virtual bool isConnected() const noexcept;
    /// How often the connection has been replaced since the device was opened. Each time the login was lost,
    /// but not the lock id. 0 by default.
    virtual std::uint64_t reconnects() const noexcept;
    /// Limits every exchange of this device from now on: sending, waiting for the reply, and connecting
    /// within it. When the time is over, the call throws NetworkError "Call to device timed out.", the
    /// connection is closed, and the next call connects anew, with the same lock id. The device may carry the
    /// call out all the same. An operation of several exchanges, such as Object_v1_0::toString, has the limit
    /// for each of them. Resolving a host name is not limited. An empty limit, as at first, waits as long as
    /// it takes.
    ///
    /// Does nothing by default.
    /// @throws std::invalid_argument for a limit below 1 ms.
    virtual void setTimeLimit(TimeLimit limit);
    /// The current limit; empty when there is none, or the transport does not support any. Empty by default.
    virtual TimeLimit timeLimit() const noexcept;

    /// Tells `sink` every byte that this device sends and receives from now on, until another one is set; an
    /// empty one, as at first, ends the trace. OpenOptions traces an opening as well. TraceSink says what it
    /// is told, and what becomes of what it throws.
    ///
    /// An exchange checks its connection once more while it is traced, so a reconnect and the exchange behind
    /// it have a time limit each. Call it between two exchanges. Costs nothing while there is no sink.
    ///
    /// Works for a TAVOXDevice and classes derived from it. Does nothing for others.
    void setTrace(TraceSink sink);

    /// The "device" object; empty until setDevice().
    std::shared_ptr<Device_v1_0> getDevice() const { return device_; }
    /// The "system" object; empty until setSystem(), also after DeviceFactory::queryDevice.
    std::shared_ptr<System_v1_0> getSystem() const { return system_; }
    /// The "private" object; empty until setPrivate(), also after DeviceFactory::queryDevice.
    std::shared_ptr<Private_v1_0> getPrivate() const { return private_; }
    /// Sets the "device" object, which lock(), getKey() and the like call. DeviceFactory does so.
    void setDevice(std::shared_ptr<Device_v1_0> object);
    /// Sets the "system" object. DeviceFactory does so.
    void setSystem(std::shared_ptr<System_v1_0> object);
    /// Sets the "private" object. DeviceFactory does so.
    void setPrivate(std::shared_ptr<Private_v1_0> object);

protected:
    /// The same object as getDevice(), as the class that calls are made on; empty until setDevice().
    const std::shared_ptr<Object_v1_0>& deviceObject() const { return deviceObject_; }

private:
    friend class DeviceFactory;

    std::shared_ptr<Object_v1_0> deviceObject_;
    std::shared_ptr<Device_v1_0> device_;
    std::shared_ptr<System_v1_0> system_;
    std::shared_ptr<Private_v1_0> private_;
};

} // namespace TAVO
