#include <tavo/cli/values/field_text.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

#include <tavo/cli/values/json_value.h>
#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

struct IntegerType {
    std::string_view name;
    std::int64_t lowest;
    std::uint64_t highest;
};

template <class T>
constexpr IntegerType integerType(std::string_view name) {
    using Limits = std::numeric_limits<T>;
    return {name, std::is_signed_v<T> ? static_cast<std::int64_t>(Limits::min()) : 0,
            static_cast<std::uint64_t>(Limits::max())};
}

constexpr IntegerType integerTypes[] = {
    integerType<std::uint8_t>("u8"),  integerType<std::int32_t>("i32"),  integerType<std::uint32_t>("u32"),
    integerType<std::int64_t>("i64"), integerType<std::uint64_t>("u64"),
};

const IntegerType* findIntegerType(std::string_view name) {
    for (const auto& type : integerTypes)
        if (type.name == name)
            return &type;
    return nullptr;
}

[[noreturn]] void refuse(const FieldDescription& field, const std::string& wanted, const std::string& text) {
    throw std::invalid_argument(fmt::format("'{}' must be {}, not '{}'", field.name, wanted, text));
}

Value parseInteger(const FieldDescription& field, const IntegerType& type, const std::string& text) {
    const auto wanted = fmt::format("a number from {} to {}", type.lowest, type.highest);
    WholeNumber number;
    try {
        number = parseWholeNumber(text);
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(fmt::format("'{}' must be {}: {}", field.name, wanted, error.what()));
    }
    if (!number.isWithin(type.lowest, type.highest))
        refuse(field, wanted, text);
    if (type.lowest == 0)
        return Value(number.magnitude);
    return Value(number.value());
}

Value parseFlag(const FieldDescription& field, const std::string& text) {
    if (text == "true" || text == "1")
        return Value(true);
    if (text == "false" || text == "0")
        return Value(false);
    refuse(field, "true, false, 1 or 0", text);
}

Value parseBytes(const FieldDescription& field, const std::string& text) {
    try {
        return Value(bytesFromHex(text));
    } catch (const std::invalid_argument&) {
        refuse(field, "pairs of hexadecimal digits", text);
    }
}

Value parseJson(const FieldDescription& field, const std::string& text) {
    const auto document = [&] {
        try {
            return json::parseDocument(text);
        } catch (const json::NotJson&) {
            refuse(field, fmt::format("a {} in JSON", field.type), text);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(fmt::format("'{}' {}", field.name, error.what()));
        }
    }();
    try {
        return fromJson(document.root());
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(fmt::format("'{}': {}", field.name, error.what()));
    }
}

} // namespace

Value parseField(const FieldDescription& field, const std::string& text) {
    if (field.type == "bool")
        return parseFlag(field, text);
    if (const auto* type = findIntegerType(field.type))
        return parseInteger(field, *type, text);
    if (field.type == "text")
        return Value(text);
    if (field.type == "bytes")
        return parseBytes(field, text);
    return parseJson(field, text);
}

std::string fieldsText(const std::vector<FieldDescription>& fields) {
    std::string text;
    for (const auto& field : fields)
        text += fmt::format("{}{}: {}", text.empty() ? "" : ", ", field.name, field.type);
    return text;
}

} // namespace TAVO::cli
