#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/device/device.h>
#include <tavo/client/export.h>
#include <tavo/client/wire/transport.h>

namespace TAVO {

class Interrupter;

/// A device on the far end of a TCP connection: owns the connection, runs the exchanges, and keeps the lock
/// id and the credentials. Applications get one from DeviceFactory and use it as a Device.
///
/// After an exchange has failed the connection is left as it is: bytes of a reply that were not read make
/// later calls fail with NetworkError "Unexpected data recieved from device.". A connection that the peer has
/// closed is made anew, silently, by the next call; the lock id stays, key check, login and lock are not
/// repeated.
class TAVO_API TAVOXDevice : public Device {
public:
    /// Connects at once.
    /// @param user, password the lock credentials. @param secure is not used by the device itself.
    /// @param interrupter can interrupt the device from here to its end, this connecting included; may be
    ///        empty. @throws NetworkError
    TAVOXDevice(const std::string& host, int port, const std::string& user, const std::string& password,
                bool secure, std::shared_ptr<Interrupter> interrupter = nullptr);
    /// Unlocks, whatever comes of it, and closes the connection. Blocks for as long as the device takes.
    /// Without memory for the call, or behind bytes of a reply that nobody has read, the unlock is left out.
    ~TAVOXDevice() override;
    TAVOXDevice(const TAVOXDevice&) = delete;
    TAVOXDevice& operator=(const TAVOXDevice&) = delete;

protected:
    void initalize() override;

public:
    void call(std::shared_ptr<Method> method) override;
    void multicall(std::shared_ptr<MulticallQueue> queue) override;
    void unlock() override;
    void getKey() override;
    bool checkTavoKey(bool& first, bool& second) const override;
    /// @throws std::runtime_error "called getMaxPacketSize and don't have implementation", always.
    int getMaxPacketSize() override;

protected:
    void lock(const std::string& user, const std::string& password) override;
    void lock() override;
    /// Sends the user's name alone. Returns false, always; a refusal is an exception.
    bool login(const std::string& user, const std::string& password) override;

public:
    void interrupt() noexcept override;

    /// Executes the batch in one exchange and stores each result in its Method.
    ///
    /// Results that were read before a failure stay in their Methods, the others keep what they had.
    /// @throws Error for a null entry, a framing fault, a wrong count of results or an unknown device error;
    ///         SpecificationError for a Method without remote object, and for parameters or results that
    ///         cannot be encoded or decoded; NetworkError; the exception of the error that the device
    ///         reports; and where memory runs out, std::bad_alloc, SpecificationError that ends with
    ///         "std::bad_alloc" for a result that is decoded, and Error "Error writing to output stream for
    ///         method: " and the full name for a large request, of which nothing was sent.
    void callMethods(std::deque<std::shared_ptr<Method>> methods);

private:
    struct Connection;

    Device_v1_0& deviceObject() const;

    std::string host_;
    int port_;
    std::uint32_t lockId_ = 0;
    std::vector<std::uint8_t> serverKey_;
    std::string lockUser_;
    std::string lockPassword_;
    std::string loginUser_;
    std::string loginPassword_;
    std::unique_ptr<Connection> connection_;
};

} // namespace TAVO
