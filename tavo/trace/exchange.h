#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <vector>

#include <tavo/trace/exchange_scanner.h>
#include <tavo/trace/names.h>

namespace TAVO::trace {

/// One call of an exchange, with as much of its bytes as was to be kept.
struct RecordedCall {
    CallId id;
    std::uint32_t parameterSize = 0;
    std::vector<std::uint8_t> parameters;
    bool hasResult = false;
    std::uint32_t resultSize = 0;
    std::vector<std::uint8_t> result;

    bool isWhole() const { return parameters.size() == parameterSize && result.size() == resultSize; }
};

/// A request and its reply.
struct Exchange {
    std::uint32_t conversation = 0;
    std::chrono::nanoseconds begin{0};
    std::chrono::nanoseconds end{0};
    std::uint32_t lockId = 0;
    std::vector<RecordedCall> calls;
    bool isAnswered = false;
    std::optional<server::ErrorFrame> error;
};

/// More waits for replies than memory is taken for.
class TooMuchOpen : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Makes exchanges of the bytes of one connection.
class ExchangeRecorder final : private ExchangeReceiver {
public:
    using Visit = std::function<void(Exchange&&, const Names&)>;
    /// A request of more is none.
    static constexpr std::uint32_t mostCalls = 1'000'000;

    /// @param names is taught what the device tells.
    /// @param mostKept how many bytes to keep of each run of parameters and of each result.
    ExchangeRecorder(std::uint32_t conversation, Names& names, std::size_t mostKept, Visit visit)
        : conversation_(conversation)
        , names_(names)
        , mostKept_(mostKept)
        , visit_(std::move(visit))
        , scanner_(*this) {}

    /// @throws std::runtime_error for bytes that are none of this protocol.
    /// @throws TooMuchOpen if too much of it waits for a reply.
    void sent(Bytes bytes, std::chrono::nanoseconds time);
    void received(Bytes bytes, std::chrono::nanoseconds time);
    /// Visits the requests that nobody answered.
    void finish();
    /// How many exchanges were complete.
    std::uint64_t count() const { return count_; }

private:
    void requestArrives() override;
    void requestBegins(std::uint32_t lockId, std::uint32_t callCount) override;
    void callBegins(const CallId& call, std::uint32_t size) override;
    void parameterBytes(Bytes bytes) override;
    void replyBegins(const std::optional<server::ErrorFrame>& error, std::uint32_t resultCount) override;
    void resultBegins(const CallId* call, std::uint32_t size) override;
    void resultBytes(Bytes bytes) override;
    void resultEnds() override;
    void replyEnds() override;

    std::uint32_t conversation_;
    Names& names_;
    std::size_t mostKept_;
    Visit visit_;
    ExchangeScanner scanner_;
    RecordedCall& answered() { return open_.front().calls[results_ - 1]; }

    void hold(std::size_t bytes);

    std::deque<Exchange> open_;
    /// What the calls of open_ take.
    std::size_t openBytes_ = 0;
    std::chrono::nanoseconds now_{0};
    std::size_t results_ = 0;
    /// Whether the result that comes now belongs to the call before results_.
    bool isAnswering_ = false;
    std::size_t mostOfResult_ = 0;
    std::uint64_t count_ = 0;
};

} // namespace TAVO::trace
