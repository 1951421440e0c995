#include <tavo/cli/option_list.h>

#include <limits>
#include <type_traits>

namespace TAVO::cli {

namespace {

template <class T>
struct ValueOf {
    using Type = T;
    static constexpr bool repeated = false;
};
template <class T>
struct ValueOf<std::optional<T>> : ValueOf<T> {};
template <class T>
struct ValueOf<std::vector<T>> : ValueOf<T> {
    static constexpr bool repeated = true;
};

template <class Target>
constexpr ValueKind kindOf(const Target*) {
    using Value = typename ValueOf<Target>::Type;
    if constexpr (std::is_same_v<Target, bool>)
        return ValueKind::flag;
    else if constexpr (std::is_floating_point_v<Value>)
        return ValueKind::number;
    else if constexpr (std::is_integral_v<Value>)
        return ValueKind::integer;
    else
        return ValueKind::text;
}

template <class Target>
constexpr bool isRepeatedTarget(const Target*) {
    return ValueOf<Target>::repeated;
}

constexpr double largest = std::numeric_limits<double>::max();

} // namespace

NumberLimits positive() {
    return {Interval<double>{std::numeric_limits<double>::min(), largest}, "POSITIVE", "above 0"};
}

NumberLimits notNegative() { return {Interval<double>{0, largest}, "NONNEGATIVE", "0 and above"}; }

bool Option::isRepeated() const {
    return std::visit([](const auto* value) { return isRepeatedTarget(value); }, target);
}

ValueKind Option::kind() const {
    const auto ofTarget = std::visit([](const auto* value) { return kindOf(value); }, target);
    return rules.kind.value_or(ofTarget);
}

} // namespace TAVO::cli
