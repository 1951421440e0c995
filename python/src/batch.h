#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "failure.h"
#include "node.h"

namespace TAVO::python {

/// A call of a batch.
class Call {
public:
    Call(std::shared_ptr<Node> node, std::shared_ptr<RemoteMethod> spec, std::shared_ptr<Method> method);

    const std::shared_ptr<Method>& method() const { return method_; }
    /// The batch has ended: empty if this call has been executed.
    /// @param blocks of all results of the batch.
    void end(std::optional<Failure> failure, std::shared_ptr<const ReceivedBlocks> blocks);

    /// The return code; None before the batch has been executed, or if the call has no result.
    py::object code() const;
    /// The reply. @throws py::error_already_set with error().
    py::object value();
    /// None, or a new exception that says why there is no value.
    py::object error() const;

private:
    std::optional<Failure> failure() const;

    std::shared_ptr<Node> node_; ///< the method refers to its object
    std::shared_ptr<RemoteMethod> spec_;
    std::shared_ptr<Method> method_;
    bool ended_ = false;
    std::optional<Failure> batchFailure_;
    std::shared_ptr<const ReceivedBlocks> blocks_;
    py::object value_;
};

/// Calls that go to the device in one exchange.
class Batch {
public:
    explicit Batch(std::shared_ptr<Connection> connection);

    std::shared_ptr<Call> add(const std::shared_ptr<Node>& node, const std::shared_ptr<RemoteMethod>& method,
                              const py::tuple& arguments);
    std::size_t size() const { return calls_.size(); }
    /// Executes all calls, once. Nothing is sent if there are none.
    void run();
    /// Forgets the calls unsent.
    void abandon();

private:
    void requireUnsent() const;

    std::shared_ptr<Connection> connection_;
    std::vector<std::shared_ptr<Call>> calls_;
    bool sent_ = false;
};

} // namespace TAVO::python
