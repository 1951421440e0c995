#include <tavo/trace/exchange.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TAVO::trace {

namespace {

constexpr std::size_t mostOpen = 1000;
constexpr std::size_t mostOpenBytes = std::size_t{256} << 20;
constexpr std::size_t longestLesson = std::size_t{16} << 20;

std::size_t bytesOf(const Exchange& exchange) {
    std::size_t bytes = 0;
    for (const auto& call : exchange.calls)
        bytes += sizeof call + call.parameters.size();
    return bytes;
}

void keep(std::vector<std::uint8_t>& kept, Bytes bytes, std::size_t most) {
    const auto taken = bytes.first(std::min(bytes.size(), most - std::min(most, kept.size())));
    kept.insert(kept.end(), taken.begin(), taken.end());
}

} // namespace

void ExchangeRecorder::sent(Bytes bytes, std::chrono::nanoseconds time) {
    now_ = time;
    scanner_.sent(bytes);
}

void ExchangeRecorder::received(Bytes bytes, std::chrono::nanoseconds time) {
    now_ = time;
    scanner_.received(bytes);
}

void ExchangeRecorder::finish() {
    for (auto& exchange : std::exchange(open_, {}))
        visit_(std::move(exchange), names_);
}

void ExchangeRecorder::requestArrives() {
    open_.emplace_back();
    open_.back().conversation = conversation_;
    open_.back().begin = open_.back().end = now_;
}

void ExchangeRecorder::requestBegins(std::uint32_t lockId, std::uint32_t callCount) {
    if (scanner_.unanswered() > mostOpen)
        throw std::runtime_error("more than " + std::to_string(mostOpen) + " requests without a reply");
    if (callCount > mostCalls)
        throw std::runtime_error("a request of " + std::to_string(callCount) + " calls");
    open_.back().lockId = lockId;
}

void ExchangeRecorder::hold(std::size_t bytes) {
    openBytes_ += bytes;
    if (openBytes_ > mostOpenBytes)
        throw TooMuchOpen("more than " + std::to_string(mostOpenBytes >> 20) +
                          " MiB of requests without a reply");
}

void ExchangeRecorder::callBegins(const CallId& call, std::uint32_t size) {
    hold(sizeof(RecordedCall));
    auto& calls = open_.back().calls;
    calls.emplace_back();
    calls.back().id = call;
    calls.back().parameterSize = size;
}

void ExchangeRecorder::parameterBytes(Bytes bytes) {
    auto& kept = open_.back().calls.back().parameters;
    const auto before = kept.size();
    keep(kept, bytes, mostKept_);
    hold(kept.size() - before);
}

void ExchangeRecorder::replyBegins(const std::optional<server::ErrorFrame>& error, std::uint32_t) {
    open_.front().error = error;
    results_ = 0;
}

void ExchangeRecorder::resultBegins(const CallId* call, std::uint32_t size) {
    isAnswering_ = call && results_ < open_.front().calls.size();
    ++results_;
    if (!isAnswering_)
        return;
    answered().hasResult = true;
    answered().resultSize = size;
    mostOfResult_ = names_.teaches(*call) ? std::max(mostKept_, longestLesson) : mostKept_;
}

void ExchangeRecorder::resultBytes(Bytes bytes) {
    if (isAnswering_)
        keep(answered().result, bytes, mostOfResult_);
}

void ExchangeRecorder::resultEnds() {
    if (!std::exchange(isAnswering_, false))
        return;
    const auto& call = answered();
    if (names_.teaches(call.id) && call.result.size() == call.resultSize)
        names_.learn(call.id, call.result);
}

void ExchangeRecorder::replyEnds() {
    auto exchange = std::move(open_.front());
    open_.pop_front();
    openBytes_ -= bytesOf(exchange);
    exchange.isAnswered = true;
    exchange.end = now_;
    ++count_;
    visit_(std::move(exchange), names_);
}

} // namespace TAVO::trace
