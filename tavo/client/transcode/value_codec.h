#pragma once

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value.h>

/// Value to records, and records in words, from the same field lists as the wire form.
namespace TAVO::TAVOXTranscode {

/// The type of a value in words, as FieldDescription::type has it.
template <class T>
std::string typeText();

template <class Record>
std::vector<FieldDescription> describeFields();

/// The fields in braces: "{name: type, ...}".
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

// Value to record. All throw std::invalid_argument naming the field and what it must be.

[[noreturn]] TAVO_API void refuseValue(const std::string& path, const std::string& type, const Value& value);

/// The integer in a Value (a bool counts as 0 or 1), in -2^63 to 2^64-1, as its sign and its 64 bits.
struct IntegerValue {
    bool present = false;
    bool negative = false;
    std::uint64_t bits = 0;
};
TAVO_API IntegerValue integerOf(const Value& value);

/// The fields of `value`, which must be exactly those in `expected`, in any order.
TAVO_API const Value::Record& membersOf(const std::string& path, const Value& value,
                                        const std::vector<FieldDescription>& expected);

template <class Record>
void recordFromValue(const std::string& path, const Value& value, Record& record);

template <class T>
void fromValue(const std::string& path, const Value& value, T& target);

template <class Element>
void listFromValue(const std::string& path, const Value& value, std::vector<Element>& target) {
    const auto* list = std::get_if<Value::List>(&value.data);
    if (!list)
        refuseValue(path, "a list", value);
    target.resize(list->size());
    for (std::size_t i = 0; i < target.size(); ++i)
        fromValue<Element>(path + "[" + std::to_string(i) + "]", (*list)[i], target[i]);
}

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
