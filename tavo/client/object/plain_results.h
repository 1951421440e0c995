#pragma once

#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/bound_method.h>

/// Plain values that a BoundMethod may have for its result. The reply is a record of a single field: the
/// library's own or one of a table that was filled from rows.
namespace TAVO {

/// The bytes of a byte block or of a text.
template <>
struct TAVO_API PlainResult<std::vector<unsigned char>> {
    static std::vector<unsigned char> of(const dto::result& outcome);
};

/// Each byte of a byte block as a number, 0 to 255.
template <>
struct TAVO_API PlainResult<std::vector<int>> {
    static std::vector<int> of(const dto::result& outcome);
};

/// Each byte of a byte block as a flag: any byte but 0 is true.
template <>
struct TAVO_API PlainResult<std::vector<bool>> {
    static std::vector<bool> of(const dto::result& outcome);
};

/// An integer of any width, or a bool; a std::uint64_t as its 64 bits.
template <>
struct TAVO_API PlainResult<long long> {
    static long long of(const dto::result& outcome);
};

} // namespace TAVO
