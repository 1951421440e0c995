#include <stdexcept>
#include <string>
#include <utility>

#include <tavo/client/object/method.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

std::string fullNameOf(const Method* method) {
    if (!method)
        throw std::invalid_argument("ExecutionError got an empty pointer to the failed Method");
    return method->getFullName();
}

} // namespace

ExecutionError::ExecutionError(std::shared_ptr<Method> method, unsigned long long index,
                               const std::string& message)
    : Error("Failed to execute " + fullNameOf(method.get()) + ": " + message)
    , method_(std::move(method))
    , index_(index) {}

} // namespace TAVO
