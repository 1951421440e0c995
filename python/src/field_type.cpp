#include "field_type.h"

#include <charconv>
#include <stdexcept>
#include <utility>

namespace TAVO::python {

namespace {

constexpr std::string_view listPrefix = "list of ";

[[noreturn]] void refuse(const std::string& words) {
    throw std::invalid_argument("there is no field type '" + words + "'");
}

/// Where the type that begins at `begin` ends: before a comma or the end of the record that holds it.
std::size_t endOfType(const std::string& words, std::size_t begin) {
    std::size_t depth = 0;
    for (auto at = begin; at < words.size(); ++at) {
        if (words[at] == '{')
            ++depth;
        else if (words[at] == '}' && depth-- == 0)
            return at;
        else if (words[at] == ',' && depth == 0)
            return at;
    }
    return words.size();
}

std::vector<FieldType> fieldsIn(const std::string& words) {
    std::vector<FieldType> fields;
    const auto end = words.size() - 1;
    for (std::size_t at = 1; at < end;) {
        const auto colon = words.find(": ", at);
        if (colon == std::string::npos)
            refuse(words);
        const auto typeEnd = endOfType(words, colon + 2);
        fields.push_back(
            FieldType::parse(words.substr(at, colon - at), words.substr(colon + 2, typeEnd - colon - 2)));
        at = typeEnd + 2;
    }
    return fields;
}

std::string capitalised(std::string name) {
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z')
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

} // namespace

FieldType FieldType::parse(std::string name, const std::string& words) {
    FieldType type;
    type.name = std::move(name);
    type.words = words;
    if (words == "bool") {
        type.kind = Kind::boolean;
    } else if (words == "text") {
        type.kind = Kind::text;
    } else if (words == "bytes") {
        type.kind = Kind::bytes;
    } else if (words.starts_with(listPrefix)) {
        type.kind = Kind::list;
        type.parts.push_back(parse("", words.substr(listPrefix.size())));
    } else if (words.starts_with('{') && words.ends_with('}')) {
        type.kind = Kind::record;
        type.parts = fieldsIn(words);
    } else if (words.starts_with('i') || words.starts_with('u')) {
        type.kind = Kind::integer;
        type.isSigned = words[0] == 'i';
        const auto* const end = words.data() + words.size();
        const auto [rest, error] = std::from_chars(words.data() + 1, end, type.bits);
        if (error != std::errc() || rest != end || type.bits == 0 || type.bits > 64 || type.bits % 8 != 0)
            refuse(words);
    } else {
        refuse(words);
    }
    return type;
}

FieldType FieldType::ofRecord(const std::vector<FieldDescription>& fields) {
    FieldType type;
    type.kind = Kind::record;
    for (const auto& field : fields) {
        type.words += (type.words.empty() ? "" : ", ") + field.name + ": " + field.type;
        type.parts.push_back(parse(field.name, field.type));
    }
    type.words = "{" + type.words + "}";
    return type;
}

void FieldType::makeClasses(const std::string& className, const py::object& make) {
    if (kind == Kind::list)
        parts.front().makeClasses(className, make);
    if (kind != Kind::record)
        return;
    py::list fields;
    for (auto& part : parts) {
        part.makeClasses(className + capitalised(part.name), make);
        auto key = py::reinterpret_steal<py::object>(PyUnicode_InternFromString(part.name.c_str()));
        fields.append(py::make_tuple(key, part.words));
        keys.push_back(std::move(key));
    }
    recordClass = make(className, fields);
}

} // namespace TAVO::python
