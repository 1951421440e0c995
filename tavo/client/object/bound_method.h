#pragma once

#include <concepts>
#include <tuple>
#include <type_traits>
#include <utility>

#include <tavo/client/object/method.h>

namespace TAVO {

/// How a result becomes a plain value such as `long long` or a vector of bytes: specialise it with
/// `static T of(const dto::result&)` for a type that is neither a reply record nor constructible from a
/// dto::result. The library has one for each plain value that its proxies return.
template <class T>
struct PlainResult;

/// Whether a BoundMethod has a plain value of that type.
template <class T>
concept Plain = !std::derived_from<T, dto::reply_packet> && !std::constructible_from<T, const dto::result&>;

/// Whether a plain value can be made of a field: a number of a number, a list element by element.
template <class T, class Field>
consteval bool isMadeOf() {
    if constexpr (requires {
                      typename T::value_type;
                      typename Field::value_type;
                  })
        return std::convertible_to<typename Field::value_type, typename T::value_type>;
    else
        return std::convertible_to<Field, T>;
}

/// The plain value of the single field of a `Reply`.
/// @throws std::runtime_error as dto::replyOf.
template <Plain T, class Reply>
T onlyFieldOf(const dto::result& outcome) {
    const auto& field = dto::replyOf<Reply>(outcome).*std::get<0>(Reply::fields()).member;
    if constexpr (requires { typename T::value_type; })
        return T(field.begin(), field.end());
    else
        return static_cast<T>(field);
}

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
            return conversion_.of ? conversion_.of(outcome) : PlainResult<T>::of(outcome);
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

    /// Lets the plain value be that of the single field of a `Reply`, where it can be made of it. The reply
    /// need not be one that PlainResult knows.
    template <class Reply>
    void takeOnlyFieldOf() requires Plain<T> {
        using Field =
            std::remove_cvref_t<decltype(std::declval<Reply>().*std::get<0>(Reply::fields()).member)>;
        if constexpr (isMadeOf<T, Field>())
            conversion_.of = onlyFieldOf<T, Reply>;
    }

private:
    struct PlainConversion {
        T (*of)(const dto::result&) = nullptr;
    };
    struct NoConversion {};
    [[no_unique_address]] std::conditional_t<Plain<T>, PlainConversion, NoConversion> conversion_;
};

} // namespace TAVO
