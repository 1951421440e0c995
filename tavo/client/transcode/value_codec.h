#pragma once

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value.h>

namespace TAVO::TAVOXTranscode {

/// The type of a field in words, as in FieldDescription::type.
template <class T>
std::string typeText();

/// The fields of a `Record` in words, in wire order.
template <class Record>
std::vector<FieldDescription> describeFields();

/// A record type in words: "{name: type, ...}".
TAVO_API std::string recordText(const std::vector<FieldDescription>& fields);

template <class T>
std::string typeText() {
    if constexpr (std::same_as<T, bool>)
        return "bool";
    else if constexpr (std::is_arithmetic_v<T>)
        return std::string(std::is_signed_v<T> ? "i" : "u") + std::to_string(8 * sizeof(T));
    else if constexpr (std::same_as<T, std::string>)
        return "text";
    else if constexpr (std::same_as<T, Bytes>)
        return "bytes";
    else if constexpr (isList<T>)
        return "list of " + typeText<typename T::value_type>();
    else
        return recordText(describeFields<T>());
}

/// One field in words.
template <class Record, class Member>
FieldDescription describeField(const dto::Field<Record, Member>& field) {
    return {std::string(field.name), typeText<Member>()};
}

template <class Record>
std::vector<FieldDescription> describeFields() {
    std::vector<FieldDescription> fields;
    forEachField<Record>([&](const auto& field) { fields.push_back(describeField(field)); });
    return fields;
}

// Below, `path` names the value in error messages, such as "members[3].name"; empty for the whole record.

/// Refuses a value that is no `type`.
/// @throws std::invalid_argument that names the path, the type and the value, always.
[[noreturn]] TAVO_API void refuseValue(const std::string& path, const std::string& type, const Value& value);

/// The integer in a Value, from -2^63 to 2^64-1.
struct IntegerValue {
    bool present = false;   ///< false when the Value holds no integer
    bool negative = false;  ///< whether `bits` are those of a negative std::int64_t
    std::uint64_t bits = 0; ///< the number, or its two's complement
};
/// The integer that `value` holds; a bool counts as 0 or 1.
TAVO_API IntegerValue integerOf(const Value& value);

/// The fields of `value`, which must be those in `expected` and no others, in any order.
/// @return a part of `value`.
/// @throws std::invalid_argument that names the path, when `value` is no Value::Record, or a field is
///         unknown, missing or given twice.
TAVO_API const Value::Record& membersOf(const std::string& path, const Value& value,
                                        const std::vector<FieldDescription>& expected);

/// Sets every field of `record` from a Value::Record.
/// @throws std::invalid_argument as membersOf() and fromValue().
template <class Record>
void recordFromValue(const std::string& path, const Value& value, Record& record);

/// Sets `target` from a value of its type.
/// @throws std::invalid_argument that names the path and the type, when `value` has another type or does not
///         fit in `target`.
template <class T>
void fromValue(const std::string& path, const Value& value, T& target);

/// Sets a list from a Value::List.
/// @throws std::invalid_argument as fromValue().
template <class Element>
void listFromValue(const std::string& path, const Value& value, std::vector<Element>& target) {
    const auto* list = std::get_if<Value::List>(&value.data);
    if (!list)
        refuseValue(path, "a list", value);
    target.resize(list->size());
    for (std::size_t i = 0; i < target.size(); ++i)
        fromValue<Element>(path + "[" + std::to_string(i) + "]", (*list)[i], target[i]);
}

/// Sets an integer or a bool.
/// @throws std::invalid_argument when `value` holds no integer, or one that does not fit in a `T`.
template <class T>
void integerFromValue(const std::string& path, const Value& value, T& target) {
    using Limits = std::numeric_limits<T>;
    const auto integer = integerOf(value);
    const bool fits = integer.negative ? std::is_signed_v<T> && static_cast<std::int64_t>(integer.bits) >=
                                                                    static_cast<std::int64_t>(Limits::min())
                                       : integer.bits <= static_cast<std::uint64_t>(Limits::max());
    if (!integer.present || !fits)
        refuseValue(path, typeText<T>(), value);
    target = static_cast<T>(integer.bits);
}

template <class T>
void fromValue(const std::string& path, const Value& value, T& target) {
    if constexpr (std::is_arithmetic_v<T>) {
        integerFromValue(path, value, target);
    } else if constexpr (std::same_as<T, std::string> || std::same_as<T, Bytes>) {
        const auto* content = std::get_if<T>(&value.data);
        if (!content)
            refuseValue(path, typeText<T>(), value);
        target = *content;
    } else if constexpr (isList<T>) {
        listFromValue(path, value, target);
    } else {
        recordFromValue(path, value, target);
    }
}

template <class Record>
void recordFromValue(const std::string& path, const Value& value, Record& record) {
    membersOf(path, value, describeFields<Record>());
    forEachField<Record>([&](const auto& field) {
        const auto name = std::string(field.name);
        fromValue(path.empty() ? name : path + "." + name, *value.find(name), record.*field.member);
    });
}

} // namespace TAVO::TAVOXTranscode
