#include <tavo/client/transcode/value_codec.h>

#include <algorithm>

namespace TAVO::TAVOXTranscode {

std::string recordText(const std::vector<FieldDescription>& fields) {
    std::string text;
    for (const auto& field : fields)
        text += (text.empty() ? "" : ", ") + field.name + ": " + field.type;
    return "{" + text + "}";
}

void refuseValue(const std::string& path, const std::string& type, const Value& value) {
    const auto place = path.empty() ? "the value" : "'" + path + "'";
    throw std::invalid_argument(place + " must be " + type + ", not " + value.toString());
}

IntegerValue integerOf(const Value& value) {
    if (const auto* boolean = std::get_if<bool>(&value.data))
        return {true, false, *boolean ? 1u : 0u};
    if (const auto* number = std::get_if<std::int64_t>(&value.data))
        return {true, *number < 0, static_cast<std::uint64_t>(*number)};
    if (const auto* number = std::get_if<std::uint64_t>(&value.data))
        return {true, false, *number};
    return {};
}

const Value::Record& membersOf(const std::string& path, const Value& value,
                               const std::vector<FieldDescription>& expected) {
    const auto* members = std::get_if<Value::Record>(&value.data);
    if (!members)
        refuseValue(path, "a record", value);
    const auto prefix = path.empty() ? std::string() : path + ".";
    for (const auto& member : *members) {
        const auto isNamed = [&](const auto& named) { return named.name == member.name; };
        if (std::none_of(expected.begin(), expected.end(), isNamed))
            throw std::invalid_argument("there is no field '" + prefix + member.name + "'");
        if (std::count_if(members->begin(), members->end(), isNamed) > 1)
            throw std::invalid_argument("field '" + prefix + member.name + "' is given twice");
    }
    for (const auto& field : expected)
        if (!value.find(field.name))
            throw std::invalid_argument("field '" + prefix + field.name + "' (" + field.type +
                                        ") is missing");
    return *members;
}

} // namespace TAVO::TAVOXTranscode
