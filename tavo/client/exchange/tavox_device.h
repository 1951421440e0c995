#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/device.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Interrupter;

/// A device on the far end of a connection: owns the connection, runs the exchanges, and keeps the lock id
/// and the credentials. Applications get one from DeviceFactory and use it as a Device.
///
/// After an exchange has failed the connection is left as it is: bytes of a reply that were not read make
/// later calls fail with NetworkError "Unexpected data recieved from device.". A connection that the peer has
/// closed is made anew, silently, by the next call; the lock id stays, login and lock are not repeated. Where
/// DeviceFactory has checked the device's key, a new connection is asked for its key, and it is checked,
/// before "lock" or "unlock" take the password over it; the other calls do not wait for that.
class TAVO_API TAVOXDevice : public Device {
public:
    /// Connects at once.
    /// @param user, password the lock credentials. @param secure is not used by the device itself.
    /// @param interrupter can interrupt the device from here to its end, this connecting included; may be
    ///        empty. @throws NetworkError
    TAVOXDevice(const std::string& host, int port, const std::string& user, const std::string& password,
                bool secure, std::shared_ptr<Interrupter> interrupter = nullptr);
    /// The same with a time limit from the beginning, this connecting included.
    TAVOXDevice(const std::string& host, int port, const std::string& user, const std::string& password,
                bool secure, std::shared_ptr<Interrupter> interrupter, TimeLimit limit);
    /// Runs over a connection of the application's own, first used by the first exchange. Interrupting and
    /// reconnecting are the transport's.
    /// @throws std::invalid_argument for an empty pointer.
    TAVOXDevice(std::unique_ptr<Transport> transport, const std::string& user, const std::string& password,
                bool secure);
    /// Unlocks, whatever comes of it, and closes the connection. Blocks for as long as the device takes, or
    /// until the time limit of each exchange.
    ///
    /// When bytes have come that nobody asked for, or the last reply was not read to its end, the connection
    /// is given up first and the unlock goes over a new one, with the same lock id. It is left out without
    /// memory for the call, when the transport cannot make a new connection, and when the key that a new
    /// connection shows does not fit where the key was checked before.
    ~TAVOXDevice() override;
    TAVOXDevice(const TAVOXDevice&) = delete;
    TAVOXDevice& operator=(const TAVOXDevice&) = delete;

protected:
    void initalize() override;

public:
    void call(std::shared_ptr<Method> method) override;
    void multicall(std::shared_ptr<MulticallQueue> queue) override;
    /// Whatever return code the device answers, the lock is not held afterwards.
    /// @throws TAVOKeyError "TAVO authentication key not matched!" when a connection was made anew, the key
    ///         was checked before, and the new one does not fit. Nothing was sent then but "getKey".
    void unlock() override;
    /// @throws Error "Error executing getKey() method on device: " and the return code in lower-case
    ///         hexadecimal, unless it is 0; the key that was there stays.
    void getKey() override;
    bool checkTavoKey(bool& first, bool& second) const override;
    /// @throws std::runtime_error "called getMaxPacketSize and don't have implementation", always.
    int getMaxPacketSize() override;

protected:
    /// @throws Error "Error executing lock() method on device: " and the return code in lower-case
    ///         hexadecimal, unless it is 0; the lock id that was there stays. TAVOKeyError as unlock().
    void lock(const std::string& user, const std::string& password) override;
    void lock() override;
    /// Sends the user's name alone. Returns false, always; a refusal is an exception.
    bool login(const std::string& user, const std::string& password) override;

public:
    void interrupt() noexcept override;
    bool isLocked() const noexcept override;
    bool isConnected() const noexcept override;
    /// One less than the number of the transport's connection: 0 where the transport counts none.
    std::uint64_t reconnects() const noexcept override;
    /// That of the transport.
    void setTimeLimit(TimeLimit limit) override;
    TimeLimit timeLimit() const noexcept override;

    /// Executes the batch in one exchange and stores each result in its Method.
    ///
    /// Results that were read before a failure stay in their Methods, the others keep what they had.
    /// @throws Error for a null entry, a framing fault, a wrong count of results or an unknown device error;
    ///         SpecificationError for a Method without remote object, for one whose object belongs to another
    ///         TAVOXDevice, and for parameters or results that cannot be encoded or decoded; NetworkError;
    ///         the exception of the error that the device reports; and where memory runs out, std::bad_alloc,
    ///         SpecificationError that ends with "std::bad_alloc" for a result that is decoded, and Error
    ///         "Error writing to output stream for method: " and the full name for a large request, of which
    ///         nothing was sent.
    void callMethods(std::deque<std::shared_ptr<Method>> methods);

private:
    friend class DeviceFactory;

    struct Connection;

    /// The lock, and the credentials that take it and give it back.
    struct Lock {
        std::uint32_t id = 0; ///< 0 while it is not held
        std::string user;
        std::string password;
    };

    /// @throws SpecificationError "device object not found." before there is one.
    const Object_v1_0& requireDeviceObject() const;
    /// Makes sure of a connection whose key fits.
    void checkKeyOfConnection();
    /// Over a connection whose key fits, where that is wanted.
    void callWithPassword(const std::shared_ptr<Method>& method);
    /// unlock() at the end of a device or of an opening that failed: over a new connection when this one is
    /// out of step. Does nothing when there can be no new one.
    void giveLockBack();
    /// After an opening that failed, to what was before it.
    void returnTo(Lock& former) noexcept;

    std::string host_;
    int port_ = 0;
    Lock lock_;
    std::vector<std::uint8_t> serverKey_;
    std::uint64_t keyConnection_ = 0; ///< the connection over which the key came
    bool keyMustFit_ = false;         ///< on every connection that the password goes over
    std::string loginUser_;
    std::string loginPassword_;
    std::unique_ptr<Connection> connection_;
};

} // namespace TAVO
