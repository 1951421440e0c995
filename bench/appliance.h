#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <tuple>
#include <vector>

#include <tests/support/fake_appliance.h>

namespace bench {

using support::Bytes;

/// Size of a request before its calls, and of a call before its parameters.
inline constexpr std::size_t requestHeadSize = 8;
inline constexpr std::size_t callHeadSize = 12;
/// Size of a reply without error before its results.
inline constexpr std::size_t replyHeadSize = 12;

/// Distinguishes requests whose calls are all equal by the first. Requests of different calls have none with
/// parameters.
struct RequestKey {
    std::uint32_t count = 0;
    std::uint32_t instanceId = 0;
    std::uint32_t methodId = 0;
    std::uint32_t parameterSize = 0;
    std::uint32_t firstParameter = 0; ///< the first four bytes of the parameters, 0 if there are fewer
    auto operator<=>(const RequestKey&) const = default;

    bool mayHaveDifferentCalls() const { return count > 1 && parameterSize == 0; }

    /// The bytes needed before key and length of a request are known.
    static constexpr std::size_t smallestRequest = requestHeadSize + callHeadSize;
    static constexpr std::size_t longestKey = smallestRequest + 4;
    /// `bytes` holds the request up to longestKey, or the whole request.
    static RequestKey of(const std::uint8_t* bytes);
    static std::uint64_t requestLength(const std::uint8_t* bytes);
};

/// The objects of the measured device and its prepared replies. Besides the fixed objects there are gauges in
/// groups of ten: a root member with nine members.
class Appliance {
public:
    explicit Appliance(std::size_t gauges);

    std::size_t gauges() const { return gauges_; }
    static constexpr std::uint32_t firstGauge = 16;
    static constexpr std::uint32_t groupSize = 10;
    static constexpr std::uint32_t lockId = 0x51; ///< returned by "lock"

    /// A request of `count` equal calls, as the library sends it.
    Bytes request(std::uint32_t lock, std::uint32_t instanceId, const char* method,
                  const Bytes& parameters = {}, std::uint32_t count = 1);
    /// All requests for opening and locking this device with these credentials, in order.
    std::vector<Bytes> openingRequests(const std::string& user, const std::string& password);

    /// The reply to a request. Made on first use, then never changed. Thread-safe.
    const Bytes& reply(const RequestKey& key);
    const Bytes& replyTo(const Bytes& request);
    /// The same for a request of different calls.
    const Bytes& replyToDifferentCalls(const Bytes& request);

private:
    void addObjectRequests(std::vector<Bytes>& requests, std::uint32_t lock, std::uint32_t id,
                           std::initializer_list<const char*> methods);

    std::mutex mutex_;
    support::FakeAppliance objects_;
    std::size_t gauges_;
    std::map<RequestKey, Bytes> replies_;
    std::map<Bytes, Bytes> repliesToDifferentCalls_;
};

} // namespace bench
