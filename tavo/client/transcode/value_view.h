#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

#include <tavo/client/transcode/value.h>

namespace TAVO {

/// A Value without the copy: a view of a record where it lies, for tools that print large results.
/// RecordDescription::view makes one. Allocates nothing.
///
/// A view, and everything taken from it, is valid until the record changes or is destroyed.
struct ValueView {
    /// A block of bytes.
    using Bytes = std::span<const std::uint8_t>;

    /// The elements of a list, in wire order.
    struct List {
        const void* list = nullptr; ///< the std::vector
        std::size_t size = 0;       ///< the number of elements
        /// Returns a view of one element of `list`.
        ValueView (*elementOf)(const void* list, std::size_t index) = nullptr;

        /// The element at `index`, which must be below `size`.
        ValueView operator[](std::size_t index) const;
    };

    /// A field of a record type.
    struct Field {
        std::string_view name; ///< as in the `fields()` of the record
        /// Returns a view of the field of `record`.
        ValueView (*valueIn)(const void* record);
    };

    /// The fields of a record, in wire order.
    struct Record {
        const void* record = nullptr;  ///< the record
        std::span<const Field> fields; ///< those of its type

        /// The content of the field at position `field`, which must be below fields.size().
        ValueView operator[](std::size_t field) const;
    };

    /// The content. Numbers of any width are std::int64_t or std::uint64_t, by the signedness of their field.
    std::variant<bool, std::int64_t, std::uint64_t, std::string_view, Bytes, List, Record> data;
    /// How many bytes a bool or a number takes on the wire; 0 for everything else.
    std::size_t width = 0;
};

inline ValueView ValueView::List::operator[](std::size_t index) const { return elementOf(list, index); }

inline ValueView ValueView::Record::operator[](std::size_t field) const {
    return fields[field].valueIn(record);
}

/// Copies what the view shows; the copy is independent of the record.
TAVO_API Value valueOf(const ValueView& view);

} // namespace TAVO
