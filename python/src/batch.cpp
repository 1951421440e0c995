#include "batch.h"

#include <utility>

#include <tavo/client/object/multicall_queue.h>

namespace TAVO::python {

Call::Call(std::shared_ptr<Node> node, std::shared_ptr<RemoteMethod> spec, std::shared_ptr<Method> method)
    : node_(std::move(node))
    , spec_(std::move(spec))
    , method_(std::move(method)) {}

void Call::end(std::optional<Failure> failure, std::shared_ptr<const ReceivedBlocks> blocks) {
    ended_ = true;
    blocks_ = std::move(blocks);
    batchFailure_ = std::move(failure);
}

std::optional<Failure> Call::failure() const {
    if (!ended_)
        return Failure::ofThisSide("the batch has not been executed");
    if (batchFailure_)
        return batchFailure_;
    if (!method_->isResultSet())
        return Failure::ofThisSide("the batch was not sent");
    if (method_->returnCode() != 0)
        return Failure::refused(method_->returnCode(), method_->getFullName());
    return std::nullopt;
}

py::object Call::code() const {
    if (!ended_ || batchFailure_ || !method_->isResultSet())
        return py::none();
    return py::int_(method_->returnCode());
}

py::object Call::value() {
    if (const auto known = failure())
        known->raise();
    if (!value_) {
        value_ = replyOf(*method_, *spec_, *blocks_);
        blocks_ = nullptr;
    }
    return value_;
}

py::object Call::error() const {
    const auto known = failure();
    return known ? known->toPython() : py::none();
}

Batch::Batch(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)) {}

void Batch::requireUnsent() const {
    if (sent_)
        Failure::ofThisSide("the batch has ended").raise();
}

std::shared_ptr<Call> Batch::add(const std::shared_ptr<Node>& node,
                                 const std::shared_ptr<RemoteMethod>& method, const py::tuple& arguments) {
    requireUnsent();
    if (node->connection() != connection_)
        throw std::invalid_argument("the batch is of another device than " + node->object()->getFullName());
    auto call = std::make_shared<Call>(node, method, node->prepare(*method, arguments));
    calls_.push_back(call);
    return call;
}

void Batch::run() {
    requireUnsent();
    sent_ = true;
    const auto queue = std::make_shared<MulticallQueue>();
    for (const auto& call : calls_)
        queue->add(call->method());
    std::exception_ptr failure;
    const auto blocks = std::make_shared<ReceivedBlocks>();
    const auto calls = std::exchange(calls_, {});
    if (calls.empty())
        return;
    const auto endAll = [&](const std::optional<Failure>& why) {
        // The device executes the calls before the failed one, and may have an unfinished result of that.
        const auto failed = why ? why->failedIndex.value_or(calls.size()) : calls.size();
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const bool executed = i < failed && calls[i]->method()->isResultSet();
            calls[i]->end(executed ? std::nullopt : why, blocks);
        }
    };
    try {
        connection_->run(
            [&](Device& device) {
                try {
                    device.multicall(queue);
                } catch (...) {
                    failure = std::current_exception();
                    throw;
                }
            },
            *blocks);
    } catch (...) {
        endAll(failure ? Failure::of(failure) : std::nullopt);
        throw;
    }
    endAll(std::nullopt);
}

void Batch::abandon() {
    sent_ = true;
    for (const auto& call : std::exchange(calls_, {}))
        call->end(std::nullopt, nullptr);
}

} // namespace TAVO::python
