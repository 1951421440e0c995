#include <tavo/client/object/multicall_queue.h>

namespace TAVO {

MulticallQueue::~MulticallQueue() = default;

void MulticallQueue::add(const std::shared_ptr<Method>& method) { methods_.push_back(method); }

} // namespace TAVO
