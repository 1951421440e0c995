#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

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
};

/// Carries out one request on the appliance.
class CallRunner {
public:
    using Log = std::function<void(CallRecord)>;

    /// @param faults those of this request.
    CallRunner(Appliance& appliance, std::uint64_t request, std::uint64_t connection,
               std::vector<Fault> faults, const Log& log);

    /// @param request a complete request.
    Response run(std::span<const std::uint8_t> request);
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

    TAVOX::OutputStream results_;
    std::uint32_t resultCount_ = 0;
    std::optional<Error> error_;
};

} // namespace TAVO::simulator
