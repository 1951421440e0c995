#pragma once

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value.h>

/// Records to and from Value, from the same field lists as the wire form.
namespace TAVO::TAVOXTranscode {

/// The type of a value in words, as FieldDescription::type has it.
template <class T>
std::string typeText();

template <class Form>
std::vector<FieldDescription> describeFields();

template <class Form>
std::string recordText() {
    std::string text;
    for (const auto& field : describeFields<Form>())
        text += (text.empty() ? "" : ", ") + field.name + ": " + field.type;
    return "{" + text + "}";
}

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
    else if constexpr (ListElement<T>::value)
        return "list of " + typeText<typename ListElement<T>::type>();
    else
        return recordText<T>();
}

template <class Record, class Member>
std::string fieldTypeText(const dto::Field<Record, Member>&) {
    return typeText<Member>();
}

template <class ElementForm, class Record, class Element>
std::string fieldTypeText(const dto::ListField<ElementForm, Record, Element>&) {
    return "list of " + recordText<ElementForm>();
}

template <class Form>
std::vector<FieldDescription> describeFields() {
    std::vector<FieldDescription> fields;
    forEachField<Form>([&](const auto& field) {
        fields.push_back({std::string(field.name), fieldTypeText(field)});
    });
    return fields;
}

// Record to Value.

template <class Form, class Record>
Value recordToValue(const Record& record);

template <class T>
Value toValue(const T& value);

template <class ElementForm, class Element>
Value listToValue(const std::vector<Element>& list) {
    Value::List values;
    for (const auto& element : list) {
        if constexpr (Described<ElementForm>)
            values.push_back(recordToValue<ElementForm>(element));
        else
            values.push_back(toValue<Element>(element));
    }
    return Value(std::move(values));
}

template <class T>
Value toValue(const T& value) {
    if constexpr (std::same_as<T, bool> || std::same_as<T, std::string> || std::same_as<T, Bytes>)
        return Value(value);
    else if constexpr (std::is_arithmetic_v<T> && std::is_signed_v<T>)
        return Value(std::int64_t{value});
    else if constexpr (std::is_arithmetic_v<T>)
        return Value(std::uint64_t{value});
    else if constexpr (ListElement<T>::value)
        return listToValue<typename ListElement<T>::type>(value);
    else
        return recordToValue<T>(value);
}

template <class Record, class Member>
Value fieldToValue(const dto::Field<Record, Member>& field, const Record& record) {
    return toValue(record.*field.member);
}

template <class ElementForm, class Record, class Element>
Value fieldToValue(const dto::ListField<ElementForm, Record, Element>& field, const Record& record) {
    return listToValue<ElementForm>(record.*field.member);
}

template <class Form, class Record>
Value recordToValue(const Record& record) {
    Value::Record members;
    forEachField<Form>([&](const auto& field) {
        members.push_back({std::string(field.name), fieldToValue(field, record)});
    });
    return Value(std::move(members));
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

template <class Form, class Record>
void recordFromValue(const std::string& path, const Value& value, Record& record);

template <class T>
void fromValue(const std::string& path, const Value& value, T& target);

template <class ElementForm, class Element>
void listFromValue(const std::string& path, const Value& value, std::vector<Element>& target) {
    const auto* list = std::get_if<Value::List>(&value.data);
    if (!list)
        refuseValue(path, "a list", value);
    target.resize(list->size());
    for (std::size_t i = 0; i < target.size(); ++i) {
        const auto element = path + "[" + std::to_string(i) + "]";
        if constexpr (Described<ElementForm>)
            recordFromValue<ElementForm>(element, (*list)[i], target[i]);
        else
            fromValue<Element>(element, (*list)[i], target[i]);
    }
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
    } else if constexpr (ListElement<T>::value) {
        listFromValue<typename ListElement<T>::type>(path, value, target);
    } else {
        recordFromValue<T>(path, value, target);
    }
}

template <class Record, class Member>
void fieldFromValue(const std::string& path, const dto::Field<Record, Member>& field, const Value& value,
                    Record& record) {
    fromValue(path, value, record.*field.member);
}

template <class ElementForm, class Record, class Element>
void fieldFromValue(const std::string& path, const dto::ListField<ElementForm, Record, Element>& field,
                    const Value& value, Record& record) {
    listFromValue<ElementForm>(path, value, record.*field.member);
}

template <class Form, class Record>
void recordFromValue(const std::string& path, const Value& value, Record& record) {
    membersOf(path, value, describeFields<Form>());
    forEachField<Form>([&](const auto& field) {
        const auto name = std::string(field.name);
        fieldFromValue(path.empty() ? name : path + "." + name, field, *value.find(name), record);
    });
}

} // namespace TAVO::TAVOXTranscode
