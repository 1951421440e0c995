#include <tavo/client/transcode/value.h>

#include <cstdio>

namespace TAVO {

Value::Value() = default;
Value::Value(const Value&) = default;
Value::Value(Value&&) noexcept = default;
Value& Value::operator=(const Value&) = default;
Value& Value::operator=(Value&&) noexcept = default;
Value::~Value() = default;

bool Value::operator==(const Value& other) const { return data == other.data; }

namespace {

std::string hexadecimal(unsigned char byte) {
    char text[3];
    std::snprintf(text, sizeof text, "%02x", byte);
    return text;
}

std::string quoted(const std::string& text) {
    std::string quote = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quote += std::string("\\") + c;
        else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            quote += "\\x" + hexadecimal(static_cast<unsigned char>(c));
        else
            quote += c;
    }
    return quote + "\"";
}

std::string membersText(const Value::Record& record) {
    std::string text;
    for (const auto& member : record) {
        text += text.empty() ? "" : " ";
        text += member.name + "=";
        const bool nested = std::holds_alternative<Value::Record>(member.value.data);
        text += nested ? "{" + member.value.toString() + "}" : member.value.toString();
    }
    return text;
}

struct Printer {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(std::uint64_t value) const { return std::to_string(value); }
    std::string operator()(const std::string& value) const { return quoted(value); }
    std::string operator()(const Value::Bytes& value) const {
        std::string text;
        for (const auto byte : value)
            text += hexadecimal(byte);
        return text;
    }
    std::string operator()(const Value::List& value) const {
        std::string text;
        for (const auto& element : value) {
            text += text.empty() ? "" : ", ";
            const bool nested = std::holds_alternative<Value::Record>(element.data);
            text += nested ? "{" + element.toString() + "}" : element.toString();
        }
        return "[" + text + "]";
    }
    std::string operator()(const Value::Record& value) const { return membersText(value); }
};

} // namespace

std::string Value::toString() const { return std::visit(Printer{}, data); }

const Value* Value::find(std::string_view name) const {
    if (const auto* record = std::get_if<Record>(&data))
        for (const auto& member : *record)
            if (member.name == name)
                return &member.value;
    return nullptr;
}

} // namespace TAVO
