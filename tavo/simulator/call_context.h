#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

#include <tavo/simulator/export.h>
#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

class Appliance;

/// Device error codes that the simulated appliance itself reports.
namespace device_error {

inline constexpr std::uint32_t configuration = 1000;
/// Another user holds the lock; the message is that user's name.
inline constexpr std::uint32_t locked = 1001;
/// No object has the instance id.
inline constexpr std::uint32_t unknownObject = 1002;
/// The object has no method with the id.
inline constexpr std::uint32_t unknownMethod = 1003;
/// The parameters are too short or too long for the method.
inline constexpr std::uint32_t malformedParameters = 1004;
/// The request is larger than the appliance accepts; it closes the connection after the answer.
inline constexpr std::uint32_t requestTooLarge = 1005;
/// A call failed: the last one that has a result.
inline constexpr std::uint32_t execution = 1006;
/// Unknown user, wrong password or wrong response.
inline constexpr std::uint32_t login = 1013;

} // namespace device_error

/// Thrown by a handler to end the call with this return code and a reply of zeros. The rest of the batch
/// still runs.
class TAVO_SIMULATOR_API Refusal : public std::exception {
public:
    explicit Refusal(std::int32_t code);
    ~Refusal() override;
    Refusal(const Refusal&) = default;
    Refusal& operator=(const Refusal&) = default;

    std::int32_t code() const { return code_; }
    const char* what() const noexcept override;

private:
    std::int32_t code_;
};

/// Thrown by a handler to end the request with a device error. The answer holds the results of the calls
/// before this one; with device_error::execution also a result for this call, with the return code `failure`
/// and a reply of zeros. Any other exception from a handler counts as DeviceFault(execution, what()).
class TAVO_SIMULATOR_API DeviceFault : public std::runtime_error {
public:
    DeviceFault(std::uint32_t code, const std::string& message);
    ~DeviceFault() override;
    DeviceFault(const DeviceFault&) = default;
    DeviceFault& operator=(const DeviceFault&) = default;

    std::uint32_t code() const { return code_; }

private:
    std::uint32_t code_;
};

/// What a handler knows about the request it serves, and what it can do to it. Lives for one request: do not
/// keep it.
class TAVO_SIMULATOR_API CallContext {
public:
    CallContext(Appliance& appliance, std::uint32_t lockId, std::uint64_t connection);
    CallContext(const CallContext&) = delete;
    CallContext& operator=(const CallContext&) = delete;
    ~CallContext();

    Appliance& appliance() const { return appliance_; }
    /// The lock id in the request; 0 for a client without lock.
    std::uint32_t lockId() const { return lockId_; }
    /// Number of the connection, counted from 1 over the simulator's lifetime.
    std::uint64_t connection() const { return connection_; }
    /// The lock holder's name if the request carries the holder's lock id, else empty.
    std::string user() const;

    /// The appliance's clock in microseconds since the epoch, including the delays of this request.
    std::int64_t time() const;
    /// Simulated microseconds since the appliance was made, including the delays of this request. Setting the
    /// clock does not change it: measure durations with it.
    std::int64_t elapsed() const;

    /// Lets simulated time pass in this call. It delays the answer to the whole request, by up to
    /// Options::longestDelay; any excess passes at once. Later calls of the batch see the later time. Other
    /// connections are served meanwhile. Negative durations count as 0.
    void delay(std::chrono::microseconds duration);
    std::chrono::microseconds totalDelay() const { return delay_; }

    /// Closes all connections of the appliance after this request has been answered.
    void closeConnections() { closesConnections_ = true; }
    bool closesConnections() const { return closesConnections_; }

private:
    Appliance& appliance_;
    std::uint32_t lockId_;
    std::uint64_t connection_;
    std::chrono::microseconds delay_{0};
    bool closesConnections_ = false;
};

} // namespace TAVO::simulator
