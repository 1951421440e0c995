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

/// Any record as data, for tools that print results or make calls by name. Programs that know their records
/// when they are compiled use those instead. RecordDescription converts both ways.
///
/// @code
/// const TAVO::Value request(TAVO::Value::Record{{"state", TAVO::Value(true)}});
/// std::cout << request.toString(); // state=true
/// @endcode
struct TAVO_API Value {
    /// A block of bytes.
    using Bytes = std::vector<std::uint8_t>;
    /// The elements of a list, in wire order.
    using List = std::vector<Value>;
    struct Member;
    /// The fields of a record, in wire order.
    using Record = std::vector<Member>;

    /// The content. Numbers of any width are std::int64_t or std::uint64_t, by the signedness of their field.
    std::variant<bool, std::int64_t, std::uint64_t, std::string, Bytes, List, Record> data;

    /// Whether `T` is an integer type other than bool.
    template <class T>
    static constexpr bool isNumber = std::integral<T> && !std::same_as<T, bool>;

    /// Holds false.
    Value();
    /// Holds `content`: a bool, a text, or one of the types above.
    template <class T>
    requires(!std::same_as<T, Value> && !isNumber<T>) explicit Value(T content)
        : data(std::move(content)) {}
    /// Holds the number as std::int64_t or std::uint64_t, by its own signedness.
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

    /// The content in one line, for people: `name=value` pairs, blocks as hexadecimal digits, texts in
    /// quotes, lists in brackets, nested records in braces. Control characters are escaped, other bytes are
    /// not.
    std::string toString() const;

    /// The field of that name; null when there is none, or this is no Record. Lives as long as this Value
    /// stays as it is.
    const Value* find(std::string_view name) const;
};

/// A field of a Value::Record.
struct Value::Member {
    std::string name; ///< as in the `fields()` of the record
    Value value;      ///< its content
    bool operator==(const Member&) const = default;
};

/// A field of a record in words, for help texts and error messages.
struct FieldDescription {
    std::string name; ///< as in the `fields()` of the record
    /// "bool", "u8", "i32", "u32", "i64", "u64", "text", "bytes", "list of " and one of these; for a record
    /// "{name: type, ...}".
    std::string type;
};

} // namespace TAVO
