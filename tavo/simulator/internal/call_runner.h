#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tavo/client/wire/output_stream.h>
#include <tavo/server/frames.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/fault_script.h>
#include <tavo/simulator/simulator.h>

namespace TAVO::simulator {

/// An answer as bytes, and how to deliver it.
struct Response {
    std::vector<std::uint8_t> bytes;
    std::chrono::microseconds delay{0};
    /// The fault in its delivery, if any.
    std::optional<Fault> spoilt;
    bool closesConnection = false;
    bool closesAllConnections = false;
    /// The client's lock id: from its request, or newly granted.
    std::uint32_t lockId = 0;
};

/// Carries out one request on the appliance, all at once or in pieces.
class CallRunner {
public:
    using Log = std::function<void(CallRecord)>;
    using Deadline = std::chrono::steady_clock::time_point;

    /// @param faults faults of this request. @param log empty if nobody listens to calls.
    /// @param mostAnswerBytes once the answer has reached this size, no further call is carried out.
    CallRunner(Appliance& appliance, std::uint64_t request, std::uint64_t connection,
               std::vector<Fault> faults, const Log& log,
               std::size_t mostAnswerBytes = Options().mostAnswerBytes);

    /// @param request a complete request.
    Response run(std::span<const std::uint8_t> request);

    /// Takes a complete request, without carrying out any of it.
    void begin(std::vector<std::uint8_t> request);
    /// Carries out at least one of the remaining calls. Returns whether none remains.
    bool proceed(Deadline deadline);
    /// The answer, once no call remains. @throws std::bad_alloc
    Response finish();
    /// Memory taken by request and answer, in bytes.
    std::size_t heldBytes() const;

    /// The answer to a request that is too large to read.
    Response refuse();

private:
    void read(std::span<const std::uint8_t> request);
    template <class Kind>
    const Kind* fault() const;
    const faults::ReturnCode* forcedReturn() const;
    void carryOut(const server::CallFrame& call, CallContext& context);
    dto::result invoke(const SimulatedObject::Method& method, const server::CallFrame& call,
                       CallContext& context, CallRecord& record);
    void addResult(const TAVOXTranscode::MethodRow* row, const dto::result& result);
    Response response() const;

    Appliance& appliance_;
    std::uint64_t request_;
    std::uint64_t connection_;
    std::vector<Fault> faults_;
    const Log& log_;
    std::size_t mostAnswerBytes_;

    std::vector<std::uint8_t> requestBytes_;
    server::RequestFrame frame_;
    std::uint32_t lockTaken_ = 0;
    // The number of results to produce.
    std::uint32_t wanted_ = 0;
    std::chrono::microseconds delay_{0};
    bool closesAllConnections_ = false;

    TAVOX::OutputStream results_;
    std::uint32_t resultCount_ = 0;
    std::optional<server::ErrorFrame> error_;
};

} // namespace TAVO::simulator
