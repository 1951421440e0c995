#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <tavo/client/export.h>

namespace TAVO {

/// Any record as data: for tools that print results or make calls whose records they do not know at compile
/// time.
///
/// A record becomes a `Record`: its fields by name, in wire order. Numbers become `std::int64_t` or
/// `std::uint64_t` by the signedness of their field.
struct TAVO_API Value {
    using Bytes = std::vector<std::uint8_t>;
    using List = std::vector<Value>;
    struct Member;
    using Record = std::vector<Member>;

    std::variant<bool, std::int64_t, std::uint64_t, std::string, Bytes, List, Record> data;

    /// Whole numbers of any width but bool.
    template <class T>
    static constexpr bool isNumber = std::integral<T> && !std::same_as<T, bool>;

    Value();
    template <class T>
    requires(!std::same_as<T, Value> && !isNumber<T>) explicit Value(T content)
        : data(std::move(content)) {}
    /// A number becomes std::int64_t or std::uint64_t by its own signedness.
    template <class T>
    requires isNumber<T>
    explicit Value(T number)
        : data(std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>(number)) {}
    Value(const Value&);
    Value(Value&&) noexcept;
    Value& operator=(const Value&);
    Value& operator=(Value&&) noexcept;
    ~Value();

    bool operator==(const Value& other) const;

    /// One line of text: `name=value` pairs, byte blocks as hexadecimal digits, texts in quotes, lists in
    /// brackets, nested records in braces.
    std::string toString() const;

    /// The field of that name of a Record, or a null pointer when there is none or this is no Record.
    const Value* find(std::string_view name) const;
};

struct Value::Member {
    std::string name;
    Value value;
    bool operator==(const Member&) const = default;
};

/// A field of a record in words, for help texts and error messages.
struct FieldDescription {
    std::string name;
    /// "bool", "u8", "i32", "u32", "i64", "u64", "text", "bytes", or "list of ..." and "{name: type, ...}" of
    /// these.
    std::string type;
};

} // namespace TAVO
