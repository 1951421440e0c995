#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

#include <tavo/client/object/method.h>

namespace TAVO {

/// How a result becomes a plain value such as `long long` or a vector of bytes: specialise it with
/// `static T of(const dto::result&)` for a type that is neither a reply record nor constructible from a
/// dto::result.
template <class T>
struct PlainResult;

/// Writes "Method " name " has not been executed.  Can't return valid results" to the standard error stream.
TAVO_API void reportNotExecuted(const Method& method);

/// A Method that knows the type of its result. `T` is a reply record, a user-level record that is
/// constructible from a dto::result, or a plain value with a PlainResult.
template <class T>
class BoundMethod : public Method {
public:
    using Method::Method;
    BoundMethod(const BoundMethod&) = default;
    virtual ~BoundMethod() = default;

    /// The result as a `T`. The return code plays no part: look at returnCode().
    ///
    /// Before execution a line goes to the standard error stream and the value is a default `T`.
    /// @throws std::runtime_error "Can't convert Result to desire type" (not a TAVO::Error) when the stored
    ///         reply is of another type; a line naming both types goes to the standard error stream, with the
    ///         method's full name where `T` is a reply record.
    T value() const {
        if (!isResultSet()) {
            reportNotExecuted(*this);
            return T();
        }
        const auto& outcome = storedResult();
        if constexpr (std::derived_from<T, dto::reply_packet>) {
            if (const auto* reply = dto::recordIn<T>(outcome.reply.get()))
                return *reply;
            dto::refuseResult("Can't convert result ", outcome, typeid(T), getFullName());
        } else if constexpr (std::constructible_from<T, const dto::result&>) {
            return T(outcome);
        } else {
            return PlainResult<T>::of(outcome);
        }
    }

    /// The same, taken out: a reply record that nothing else shares is moved instead of copied, which counts
    /// for large ones. When it succeeds the Method is as before its execution.
    /// @throws as value().
    T take() {
        if constexpr (std::derived_from<T, dto::reply_packet>) {
            const auto& reply = storedResult().reply;
            if (isResultSet() && reply.use_count() == 1 && dto::recordIn<T>(reply.get())) {
                T taken = std::move(static_cast<T&>(*reply));
                clearResult();
                return taken;
            }
        }
        T taken = value();
        clearResult();
        return taken;
    }
};

} // namespace TAVO
