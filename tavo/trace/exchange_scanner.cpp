#include <tavo/trace/exchange_scanner.h>

#include <stdexcept>

namespace TAVO::trace {

void ExchangeScanner::sent(Bytes bytes) {
    while (!bytes.empty()) {
        if (!isWithinRequest_) {
            requests_.emplace_back();
            isWithinRequest_ = true;
            receiver_.requestArrives();
        }
        bytes = bytes.subspan(request_.feed(bytes, *this));
        if (!request_.isComplete())
            return;
        request_ = {};
        isWithinRequest_ = false;
        receiver_.requestEnds();
    }
}

void ExchangeScanner::received(Bytes bytes) {
    while (!bytes.empty()) {
        if (requests_.empty())
            throw std::runtime_error("a reply without a request");
        bytes = bytes.subspan(reply_.feed(bytes, *this));
        if (!reply_.isComplete())
            return;
        // A device may refuse a request before it has all of it.
        if (requests_.size() == 1 && isWithinRequest_)
            throw std::runtime_error("a reply to a part of a request");
        reply_ = {};
        requests_.pop_front();
        receiver_.replyEnds();
    }
}

void ExchangeScanner::callBegins(std::uint32_t instanceId, std::uint32_t methodId, std::uint32_t size) {
    const CallId call{instanceId, methodId};
    requests_.back().push_back(call);
    receiver_.callBegins(call, size);
}

void ExchangeScanner::head(Bytes, const std::optional<server::ErrorFrame>& error, std::uint32_t resultCount) {
    results_ = 0;
    receiver_.replyBegins(error, resultCount);
}

void ExchangeScanner::resultBegins(std::uint32_t size) {
    const auto& calls = requests_.front();
    const auto* call = results_ < calls.size() ? &calls[results_] : nullptr;
    ++results_;
    receiver_.resultBegins(call, size);
}

} // namespace TAVO::trace
