#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/container.h>
#include <tavo/client/object/method.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Object_v1_0;
class Device_v1_0;
class System_v1_0;
class Private_v1_0;

/// The connection to one device, and the root of its object tree. Its children are the device's root members;
/// the three fixed objects are reached through their getters.
///
/// DeviceFactory makes devices. A device, its tree and its Methods belong to one thread at a time, but for
/// interrupt(); different devices may be used by different threads at once. Calls block for as long as the
/// device takes, or until its time limit.
class TAVO_API Device : public Container {
public:
    /// An empty name, no parent, no children, no proxies.
    Device();
    ~Device() override;

protected:
    void initalize() override;

public:
    /// Executes one Method in one exchange.
    /// @throws NetworkError when the connection fails; SpecificationError when parameters cannot be encoded
    /// or the
    ///         result cannot be decoded; ConfigurationError, LockError, SpecificationError, ExecutionError,
    ///         TAVOLoginError or Error for an error that the device reports. Where memory runs out,
    ///         std::bad_alloc, or SpecificationError that ends with it for a result that is decoded.
    virtual void call(std::shared_ptr<Method> method) = 0;
    /// The same, and insists on the method's success.
    /// @throws as call(); Error "Error executing " method "() method on " object ": " and the return code in
    ///         lower-case hexadecimal, unless it is 0.
    void execute(const std::shared_ptr<Method>& method);
    /// The same, and gives the result: the short way to a single value.
    ///
    /// @code
    /// const auto state = device->value(relay->getGetMethod()).state;
    /// @endcode
    template <class Result>
    Result value(const std::shared_ptr<BoundMethod<Result>>& method) {
        execute(method);
        // Whoever else holds the call finds its result there.
        return method.use_count() == 1 ? method->take() : method->value();
    }
    /// Executes all Methods of the queue in one exchange, in order; the queue is left as it was. Results that
    /// arrived before a failure stay in their Methods.
    /// @throws as call().
    virtual void multicall(std::shared_ptr<MulticallQueue> queue) = 0;
    /// Takes the lock again with the stored credentials. @throws as call(), and what the class of devices
    /// adds.
    virtual void relock();
    /// Releases the lock; does nothing when it is not held.
    virtual void unlock() = 0;
    /// Asks the device for its key and keeps it for checkTavoKey().
    virtual void getKey() = 0;
    /// Whether the device's key is one of the known server keys; the outputs are the flags of that entry, or
    /// both false.
    virtual bool checkTavoKey(bool& first, bool& second) const = 0;
    virtual int getMaxPacketSize() = 0;

protected:
    /// Stores the credentials and takes the lock.
    virtual void lock(const std::string& user, const std::string& password) = 0;
    virtual void lock() = 0;
    virtual bool login(const std::string& user, const std::string& password) = 0;

public:
    /// Ends an exchange of this device that waits, within 100 ms: NetworkError "Call to device interrupted."
    /// leaves the call, the connection is closed, and the next call connects anew; lock id and credentials
    /// stay. When no exchange runs, the connection is closed all the same. See Interrupter for all of it, and
    /// for openings.
    ///
    /// The one operation that another thread or a signal handler may call; the device must not be destroyed
    /// meanwhile. Does nothing for a class of devices that knows no better.
    virtual void interrupt() noexcept;
    /// Whether this device holds the lock, as far as is known here: the device is not asked. False for a
    /// class of devices that has no lock.
    virtual bool isLocked() const noexcept;
    /// Whether there is a connection, as far as is known here: one that the peer has ended meanwhile counts
    /// until the next call, which makes it anew. False for a class of devices that has no connection.
    virtual bool isConnected() const noexcept;
    /// How often the connection was made anew since the device was made. What a connection carries alone,
    /// such as a login, was lost each time; the lock stays. 0 for a class of devices that has no connection.
    virtual std::uint64_t reconnects() const noexcept;
    /// From now on no exchange of this device may take longer, the sending, the waiting for the reply and a
    /// connect within it included. Beyond the limit NetworkError "Call to device timed out." leaves the call,
    /// the connection is closed, and the next call connects anew; lock id and credentials stay. What the
    /// device was told may have its effect there all the same. A call of several exchanges, such as
    /// toString() of an object or the release of the device, has the limit for each of them. Only the
    /// resolution of a host name takes its own time. An empty limit, as at first, lets the device take as
    /// long as it takes.
    ///
    /// Does nothing for a class of devices that knows no better.
    /// @throws std::invalid_argument that names a limit below 1 ms.
    virtual void setTimeLimit(TimeLimit limit);
    /// The limit that holds. Empty for a class of devices, and over a transport, that knows of none.
    virtual TimeLimit timeLimit() const noexcept;

    /// The "device" object; empty until it is set.
    std::shared_ptr<Device_v1_0> getDevice() const { return device_; }
    /// The "system" object; empty until it is set.
    std::shared_ptr<System_v1_0> getSystem() const { return system_; }
    /// The "private" object; empty until it is set.
    std::shared_ptr<Private_v1_0> getPrivate() const { return private_; }
    void setDevice(std::shared_ptr<Device_v1_0> object);
    void setSystem(std::shared_ptr<System_v1_0> object);
    void setPrivate(std::shared_ptr<Private_v1_0> object);

protected:
    /// The same object as getDevice(), for calls on it.
    const std::shared_ptr<Object_v1_0>& deviceObject() const { return deviceObject_; }

private:
    friend class DeviceFactory;

    std::shared_ptr<Object_v1_0> deviceObject_;
    std::shared_ptr<Device_v1_0> device_;
    std::shared_ptr<System_v1_0> system_;
    std::shared_ptr<Private_v1_0> private_;
};

} // namespace TAVO
