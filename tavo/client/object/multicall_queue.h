#pragma once

#include <deque>
#include <memory>

#include <tavo/client/export.h>
#include <tavo/client/object/method.h>

namespace TAVO {

/// Collects Methods for Device::multicall, which executes them in one exchange, in order. A Method may be in
/// it more than once. Copies share the Methods. One thread at a time.
class TAVO_API MulticallQueue {
public:
    MulticallQueue() = default;
    MulticallQueue(const MulticallQueue&) = default;
    MulticallQueue& operator=(const MulticallQueue&) = default;
    virtual ~MulticallQueue();

    /// Appends. Virtual, so that an application can filter or log what it adds.
    virtual void add(const std::shared_ptr<Method>& method);

    /// The queue itself, to read or to edit between exchanges.
    std::deque<std::shared_ptr<Method>>& getMethods() { return methods_; }
    const std::deque<std::shared_ptr<Method>>& getMethods() const { return methods_; }

private:
    std::deque<std::shared_ptr<Method>> methods_;
};

} // namespace TAVO
