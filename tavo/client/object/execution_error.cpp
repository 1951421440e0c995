#include <utility>

#include <tavo/client/object/method.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

ExecutionError::ExecutionError(std::shared_ptr<Method> method, unsigned long long index,
                               const std::string& message)
    : Error("Failed to execute " + method->getFullName() + ": " + message)
    , method_(std::move(method))
    , index_(index) {}

} // namespace TAVO
