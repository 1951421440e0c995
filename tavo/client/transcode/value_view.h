#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

#include <tavo/client/transcode/value.h>

namespace TAVO {

/// What Value is, without a copy: a look at a record where it lies. For tools that print large results.
///
/// Nothing is allocated, and nothing may be looked at after the record has changed or is gone.
struct ValueView {
    using Bytes = std::span<const std::uint8_t>;

    /// The elements of a list, in their order.
    struct List {
        const void* list = nullptr;
        std::size_t size = 0;
        ValueView (*elementOf)(const void* list, std::size_t index) = nullptr;

        ValueView operator[](std::size_t index) const;
    };

    struct Field {
        std::string_view name;
        ValueView (*valueIn)(const void* record);
    };

    /// The fields of a record, in wire order.
    struct Record {
        const void* record = nullptr;
        std::span<const Field> fields;

        ValueView operator[](std::size_t field) const;
    };

    /// Numbers by the signedness of their field, as in Value.
    std::variant<bool, std::int64_t, std::uint64_t, std::string_view, Bytes, List, Record> data;
    /// How many bytes a bool or a number takes on the wire; 0 for all else.
    std::size_t width = 0;
};

inline ValueView ValueView::List::operator[](std::size_t index) const { return elementOf(list, index); }

inline ValueView ValueView::Record::operator[](std::size_t field) const {
    return fields[field].valueIn(record);
}

/// A copy of what is looked at.
TAVO_API Value valueOf(const ValueView& view);

} // namespace TAVO
