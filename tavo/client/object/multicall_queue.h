#pragma once

#include <deque>
#include <memory>

#include <tavo/client/export.h>
#include <tavo/client/object/method.h>

namespace TAVO {

/// Collects Methods for Device::multicall, which executes them in order in one exchange: use it to save round
/// trips. A Method may be in it more than once. Keeps its Methods alive; copies share them. One thread at a
/// time.
///
/// @code
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(relay->getSetMethod(true));
/// queue->add(relay->getGetMethod());
/// device->multicall(queue);
/// @endcode
class TAVO_API MulticallQueue {
public:
    MulticallQueue() = default;
    MulticallQueue(const MulticallQueue&) = default;
    MulticallQueue& operator=(const MulticallQueue&) = default;
    virtual ~MulticallQueue();

    /// Appends the Method. Virtual, so that an application can filter or log what is added.
    virtual void add(const std::shared_ptr<Method>& method);

    /// The Methods in the order of their execution, to read or to edit between exchanges. An empty pointer
    /// among them makes Device::multicall throw.
    std::deque<std::shared_ptr<Method>>& getMethods() { return methods_; }
    /// The Methods in the order of their execution.
    const std::deque<std::shared_ptr<Method>>& getMethods() const { return methods_; }

private:
    std::deque<std::shared_ptr<Method>> methods_;
};

} // namespace TAVO
