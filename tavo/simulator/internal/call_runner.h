#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tavo/client/wire/input_stream.h>
#include <tavo/client/wire/output_stream.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/fault_script.h>
#include <tavo/simulator/simulator.h>

namespace TAVO::simulator {

/// An answer as bytes, and what is to happen with it.
struct Response {
    std::vector<std::uint8_t> bytes;
    std::chrono::microseconds delay{0};
    /// How its delivery goes wrong.
    std::optional<Fault> spoilt;
    bool closesConnection = false;
    bool closesAllConnections = false;
    /// The lock id that the client has: the one that its request carried, or that it has been given.
    std::uint32_t lockId = 0;
};

/// Carries out one request on the appliance, all at once or a piece at a time.
class CallRunner {
public:
    using Log = std::function<void(CallRecord)>;
    using Deadline = std::chrono::steady_clock::time_point;

    /// @param faults those of this request. @param log empty when nobody wants to know of the calls.
    /// @param mostAnswerBytes no call is carried out when its answer has reached this size.
    CallRunner(Appliance& appliance, std::uint64_t request, std::uint64_t connection,
               std::vector<Fault> faults, const Log& log,
               std::size_t mostAnswerBytes = Options().mostAnswerBytes);

    /// @param request a complete request.
    Response run(std::span<const std::uint8_t> request);

    /// Takes a complete request and carries out nothing of it.
    void begin(std::vector<std::uint8_t> request);
    /// Carries out at least one of the calls that are left. Returns whether none is left then.
    bool proceed(Deadline deadline);
    /// The answer, when no call is left. @throws std::bad_alloc
    Response finish();
    /// Bytes that request and answer take.
    std::size_t heldBytes() const;

    /// The answer to a request that is too large to be read.
    Response refuse();

private:
    struct Error {
        std::uint32_t code = 0;
        std::uint32_t position = 0;
        std::string message;
    };
    struct Call {
        std::uint32_t instanceId = 0;
        std::uint32_t methodId = 0;
        std::span<const std::uint8_t> parameters;
    };

    void read(std::span<const std::uint8_t> request);
    template <class Kind>
    const Kind* fault() const;
    const faults::ReturnCode* forcedReturn() const;
    void carryOut(const Call& call, CallContext& context);
    dto::result invoke(const SimulatedObject::Method& method, const Call& call, CallContext& context,
                       CallRecord& record);
    void addResult(const TAVOXTranscode::MethodRow* row, const dto::result& result);
    Response response() const;

    Appliance& appliance_;
    std::uint64_t request_;
    std::uint64_t connection_;
    std::vector<Fault> faults_;
    const Log& log_;
    std::size_t mostAnswerBytes_;

    std::vector<std::uint8_t> requestBytes_;
    TAVOX::InputStream in_{nullptr, 0};
    std::uint32_t lockId_ = 0;
    std::uint32_t lockTaken_ = 0;
    // How many results there are to be.
    std::uint32_t wanted_ = 0;
    std::chrono::microseconds delay_{0};
    bool closesAllConnections_ = false;

    TAVOX::OutputStream results_;
    std::uint32_t resultCount_ = 0;
    std::optional<Error> error_;
};

} // namespace TAVO::simulator
