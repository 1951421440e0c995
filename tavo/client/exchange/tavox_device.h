#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/device.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Interrupter;
class KnownAnswers;

/// A device at the far end of a Transport. Owns the connection, and keeps the lock id and the credentials.
/// DeviceFactory returns one as a Device; name this class only to derive from it, or to open devices in a way
/// of your own.
///
/// A failed exchange may leave bytes of its reply unread. These make later calls throw NetworkError
/// "Unexpected data recieved from device."; open the device anew then.
///
/// When the peer has closed the connection, the next call silently connects anew, with the same lock id;
/// login and lock are not repeated. If DeviceFactory has checked the device's key, "lock" and "unlock", which
/// carry the password, first check the key of the new connection; other calls do not.
class TAVO_API TAVOXDevice : public Device {
public:
    /// Connects to the device: blocks until the connection is made. Asks the device nothing.
    /// @param host name or address of the device.
    /// @param port its TCP port.
    /// @param user, password the credentials for the lock, kept until the end of the device.
    /// @param secure not used here; DeviceFactory acts upon it.
    /// @param interrupter may interrupt the device, from this first connect until its end. May be empty.
    /// @throws NetworkError when the connection cannot be made.
    TAVOXDevice(const std::string& host, int port, const std::string& user, const std::string& password,
                bool secure, std::shared_ptr<Interrupter> interrupter = nullptr);
    /// The same with a time limit, which holds for this first connect already.
    /// @throws std::invalid_argument for a limit below 1 ms.
    TAVOXDevice(const std::string& host, int port, const std::string& user, const std::string& password,
                bool secure, std::shared_ptr<Interrupter> interrupter, TimeLimit limit);
    /// Takes over a transport of the application's own, and does not use it before the first call. What can
    /// be interrupted, limited and connected anew depends on the transport.
    /// @throws std::invalid_argument for an empty pointer.
    TAVOXDevice(std::unique_ptr<Transport> transport, const std::string& user, const std::string& password,
                bool secure);
    /// Gives the lock back if it is held, but for OpenOptions::keepHeldLock, and closes the connection.
    /// Blocks for as long as the device takes, or until the time limit of each exchange. Swallows every
    /// exception.
    ///
    /// If the connection is out of step (it holds unasked bytes, or the last reply was not read to its end),
    /// it is dropped, and "unlock" goes over a new one. "unlock" is not sent when there is no memory for it,
    /// when the transport cannot make a new connection, or when the key of a new connection does not fit.
    ~TAVOXDevice() override;
    TAVOXDevice(const TAVOXDevice&) = delete;
    TAVOXDevice& operator=(const TAVOXDevice&) = delete;

protected:
    /// Does nothing.
    void initalize() override;

public:
    /// Executes one Method in one exchange. Throws what callMethods() throws.
    void call(std::shared_ptr<Method> method) override;
    /// Executes the Methods of the queue in one exchange. Throws what callMethods() throws, and Error "NULL
    /// multicall queue" for an empty pointer.
    void multicall(std::shared_ptr<MulticallQueue> queue) override;
    /// Gives the lock back; does nothing when it is not held. The lock counts as given back whatever the
    /// return code, but not after an exception. Throws what call() throws.
    /// @throws TAVOKeyError "TAVO authentication key not matched!" when the key was checked at the opening,
    ///         and that of a new connection does not fit. Only "getKey" was sent then.
    void unlock() override;
    /// Asks the device for its key and keeps it for checkTavoKey(). Throws what call() throws.
    /// @throws Error "Error executing getKey() method on device: " and the return code in lower-case
    ///         hexadecimal, unless it is 0; the former key stays.
    void getKey() override;
    bool checkTavoKey(bool& first, bool& second) const override;
    /// Not implemented.
    /// @throws std::runtime_error "called getMaxPacketSize and don't have implementation", always.
    int getMaxPacketSize() override;

protected:
    /// Stores the credentials, and takes the lock with them as lock() does.
    void lock(const std::string& user, const std::string& password) override;
    /// Takes the lock with the stored credentials. Throws what call() throws.
    /// @throws Error "Error executing lock() method on device: " and the return code in lower-case
    ///         hexadecimal, unless it is 0; the former lock id stays.
    /// @throws TAVOKeyError as unlock().
    void lock() override;
    /// Sends the user's name, and keeps both. Does not answer the challenge of the device.
    /// @return false, always: a refusal is an exception.
    bool login(const std::string& user, const std::string& password) override;

public:
    /// Interrupts the transport, as far as it supports that.
    void interrupt() noexcept override;
    bool isLocked() const noexcept override;
    std::optional<std::string> lockHolder() override;
    /// What the device gave for the lock, and what each request carries; 0 while the lock is not held.
    std::uint32_t lockId() const noexcept { return lock_.id; }
    /// Asks the transport.
    bool isConnected() const noexcept override;
    /// How many connections the transport has made after the first; 0 when it does not count them.
    std::uint64_t reconnects() const noexcept override;
    /// Sets the limit of the transport, as far as it supports one.
    void setTimeLimit(TimeLimit limit) override;
    /// The limit of the transport.
    TimeLimit timeLimit() const noexcept override;

    /// The connection, for programs that carry the bytes of others over it. Use it between two calls only,
    /// and read every reply to its end. Lives as long as the device. While there is a trace, what passes over
    /// it is traced: ask for it anew after setTrace().
    Transport& transport() noexcept;

    /// Executes the batch in one exchange and stores each result in its Method. Blocks until then. After a
    /// failure, the results that arrived before it are in their Methods; the other Methods keep what they
    /// had.
    /// @throws Error for a null entry, a malformed reply, a wrong number of results, or a device error
    ///         without a class of its own.
    /// @throws SpecificationError for a Method without a remote object or with one of another TAVOXDevice,
    ///         and for parameters or results that cannot be encoded or decoded.
    /// @throws NetworkError when the connection fails.
    /// @throws ConfigurationError, LockError, SpecificationError, ExecutionError or TAVOLoginError for an
    ///         error that the device reports.
    /// @throws std::bad_alloc when memory runs out. While a result is decoded it is SpecificationError that
    ///         ends with "std::bad_alloc"; for a large request, Error "Error writing to output stream for
    ///         method: " and the full name, with nothing sent.
    void callMethods(std::deque<std::shared_ptr<Method>> methods);

private:
    friend class Device;
    friend class DeviceFactory;
    friend class LevelFetch;

    struct Connection;

    /// The lock, and the credentials that take it and give it back.
    struct Lock {
        std::uint32_t id = 0; ///< 0 while it is not held
        bool lent = false;    ///< the user held it before, so it is not given back unasked
        std::string user;
        std::string password;
    };

    /// The sink of setTrace(); empty without one.
    TraceSink trace() const;
    /// @throws SpecificationError "device object not found." before setDevice().
    const Object_v1_0& requireDeviceObject() const;
    /// Whether the user of lock_ holds the lock already, as far as the device tells.
    bool userHoldsLock();
    /// Makes sure that there is a connection, and that its key fits.
    void checkKeyOfConnection();
    /// call(), but with keyMustFit_ only over a connection whose key has been checked.
    void callWithPassword(const std::shared_ptr<Method>& method);
    /// unlock(), over a new connection when this one is out of step; does nothing when there cannot be a new
    /// one. For the end of the device, and for openings that failed.
    void giveLockBack();
    /// Restores the lock from before an opening that failed.
    void returnTo(Lock& former) noexcept;

    std::string host_;
    int port_ = 0;
    Lock lock_;
    std::vector<std::uint8_t> serverKey_;
    std::uint64_t keyConnection_ = 0;        ///< the number of the connection that serverKey_ came over
    bool keepsHeldLock_ = false;             ///< OpenOptions::keepHeldLock
    std::shared_ptr<Object_v1_0> lockProbe_; ///< the "system" object, for lockHolder()
    bool keyMustFit_ = false;                ///< check the key of a connection before a password goes over it
    std::string loginUser_;
    std::string loginPassword_;
    const KnownAnswers* known_ = nullptr; ///< while the tree is built
    std::unique_ptr<Connection> connection_;
};

} // namespace TAVO
