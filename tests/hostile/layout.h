#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <tests/support/wire_bytes.h>

/// Replies written down field by field, so that a test knows what each byte belongs to.
namespace hostile {

using support::Bytes;

struct Field {
    std::string name;
    Bytes bytes;
    /// Says how many bytes or entries follow.
    bool announces = false;
};

using Layout = std::vector<Field>;

inline Layout together(std::initializer_list<Layout> parts) {
    Layout all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Bytes bytesOf(const Layout& layout) {
    Bytes bytes;
    for (const auto& field : layout)
        bytes.insert(bytes.end(), field.bytes.begin(), field.bytes.end());
    return bytes;
}

inline Layout number(const std::string& name, std::uint32_t value) {
    return {{name, support::u32(value), false}};
}

inline Layout longNumber(const std::string& name, std::uint64_t value) {
    return {{name,
             support::joined({support::u32(static_cast<std::uint32_t>(value >> 32)),
                              support::u32(static_cast<std::uint32_t>(value))}),
             false}};
}

inline Layout byte(const std::string& name, std::uint8_t value) { return {{name, {value}, false}}; }

inline Layout flag(const std::string& name, bool value) {
    return {{name, {static_cast<std::uint8_t>(value)}, false}};
}

inline Layout announced(const std::string& name, std::uint32_t value) {
    return {{name, support::u32(value), true}};
}

inline Layout block(const std::string& name, const Bytes& content) {
    return together({announced("length of " + name, static_cast<std::uint32_t>(content.size())),
                     {{name, content, false}}});
}

inline Layout text(const std::string& name, const std::string& content) {
    return block(name, {content.begin(), content.end()});
}

inline Layout versionOf(std::uint32_t major, std::uint32_t minor, std::uint32_t bugfix) {
    return together({number("major", major), number("minor", minor), number("bugfix", bugfix)});
}

/// A list of these elements.
inline Layout list(const std::string& name, const std::vector<Layout>& elements) {
    auto all = announced("count of " + name, static_cast<std::uint32_t>(elements.size()));
    for (const auto& element : elements)
        all.insert(all.end(), element.begin(), element.end());
    return all;
}

/// A list of names with numbers.
inline Layout names(const std::vector<std::pair<std::string, std::uint32_t>>& entries) {
    std::vector<Layout> elements;
    for (const auto& [name, id] : entries)
        elements.push_back(together({text("name " + name, name), number("id of " + name, id)}));
    return list("names", elements);
}

/// A result with the return code 0.
inline Layout result(const std::string& call, const Layout& content = {}) {
    return together(
        {announced("result size of " + call, static_cast<std::uint32_t>(4 + bytesOf(content).size())),
         number("return code of " + call, 0), content});
}

inline Layout deviceError(std::uint32_t code, const std::string& message) {
    const auto content =
        together({number("first word", 0), number("error code", code), text("message", message)});
    return together({announced("error size", static_cast<std::uint32_t>(bytesOf(content).size())), content});
}

inline Layout reply(const Bytes& status, const Layout& error, std::initializer_list<Layout> results) {
    return together({announced("status size", static_cast<std::uint32_t>(status.size())),
                     {{"status", status}},
                     error,
                     announced("result count", static_cast<std::uint32_t>(results.size())),
                     together(results)});
}

inline Layout reply(std::initializer_list<Layout> results) {
    return reply({}, announced("error size", 0), results);
}

} // namespace hostile
