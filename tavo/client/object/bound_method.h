#pragma once

#include <concepts>
#include <tuple>
#include <type_traits>
#include <utility>

#include <tavo/client/object/method.h>
#include <tavo/client/transcode/immortal.h>

namespace TAVO {

/// Converts a result to a plain value, such as `long long` or a vector of bytes. Specialise it with a
/// `static T of(const dto::result&)` for a type that is neither a reply record nor constructible from a
/// dto::result. The library has a specialisation for each plain value that its proxies return.
template <class T>
struct PlainResult;

/// A type that BoundMethod converts by PlainResult: no reply record, and not constructible from a
/// dto::result.
template <class T>
concept Plain = !std::derived_from<T, dto::reply_packet> && !std::constructible_from<T, const dto::result&>;

/// Whether a field converts to a `T`: a number to a number, a list element by element.
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

/// The only field of a `Reply`, converted to a `T`.
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

/// A Method that knows the type of its result. The `get...Method` operations of proxies and Object_v1_0::make
/// return one. `T` is a reply record, a user-level record that is constructible from a dto::result, or a
/// plain value with a PlainResult.
///
/// @code
/// const auto method = relay->getGetMethod();
/// device->call(method);
/// if (method->returnCode() == 0)
///     use(method->value().state);
/// @endcode
template <class T>
class BoundMethod : public Method {
public:
    using Method::Method;
    BoundMethod(const BoundMethod&) = default;
    virtual ~BoundMethod() = default;

    /// A copy of the result as a `T`. Ignores the return code: check returnCode() first.
    ///
    /// Before the first execution it returns a default `T`, and writes a line to the standard error stream.
    /// @throws std::runtime_error "Can't convert Result to desire type" (not a TAVO::Error) when the stored
    ///         reply is of another type. Then a line that names both types goes to the standard error stream.
    T value() const {
        if (!isResultSet()) {
            reportNotExecuted(*this);
            return T();
        }
        const auto& outcome = storedResult();
        if constexpr (std::derived_from<T, dto::reply_packet>) {
            return storedReply();
        } else if constexpr (std::constructible_from<T, const dto::result&>) {
            return T(outcome);
        } else {
            return conversion_.of ? conversion_.of(outcome) : PlainResult<T>::of(outcome);
        }
    }

    /// The result where it lies, for large ones, which value() copies. Valid until the Method is executed
    /// again, loses its result or is destroyed. Only for a `T` that is a reply record; otherwise like
    /// value().
    const T& reply() const requires std::derived_from<T, dto::reply_packet> {
        if (isResultSet())
            return storedReply();
        reportNotExecuted(*this);
        return immortal<const T>();
    }

    /// Like value(), but takes the result out: a reply record that nothing else shares is moved instead of
    /// copied, and the Method has no result afterwards. When it throws, the result stays.
    /// @throws std::runtime_error as value().
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

    /// Makes value() return the only field of a `Reply` instead of asking PlainResult, if the field converts
    /// to a `T`. Called by Object_v1_0::make.
    template <class Reply>
    void takeOnlyFieldOf() requires Plain<T> {
        using Field =
            std::remove_cvref_t<decltype(std::declval<Reply>().*std::get<0>(Reply::fields()).member)>;
        if constexpr (isMadeOf<T, Field>())
            conversion_.of = onlyFieldOf<T, Reply>;
    }

private:
    const T& storedReply() const {
        const auto& outcome = storedResult();
        if (const auto* stored = dto::recordIn<T>(outcome.reply.get()))
            return *stored;
        dto::refuseResult("Can't convert result ", outcome, typeid(T), getFullName());
    }

    struct PlainConversion {
        T (*of)(const dto::result&) = nullptr;
    };
    struct NoConversion {};
    [[no_unique_address]] std::conditional_t<Plain<T>, PlainConversion, NoConversion> conversion_;
};

} // namespace TAVO
