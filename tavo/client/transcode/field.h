#pragma once

#include <string_view>

namespace TAVO::dto {

/// One entry of a record's wire form: a name and the member that it stands for.
///
/// A record describes its wire form once, in a static operation `fields()` that returns a std::tuple of these
/// in wire order. Encoder, decoder, smallest size, printing and calls by name all follow from it. As a
/// template
/// (`template <class Self = SetRequest> static constexpr auto fields()`, with `&Self::state`) it costs those
/// who only include the record nothing. The type of the member is its wire type:
///
/// | member                          | on the wire                                       |
/// |---------------------------------|---------------------------------------------------|
/// | bool, std::uint8_t              | 1 byte                                            |
/// | std::int32_t, std::uint32_t     | 4 bytes, big-endian                               |
/// | std::int64_t, std::uint64_t     | 8 bytes, big-endian                               |
/// | std::string, vector of uint8_t  | 4 bytes of length, then the bytes                 |
/// | vector of anything else         | 4 bytes of count, then the elements               |
/// | a struct with `fields()`        | its fields, one after another                     |
template <class Record, class Member>
struct Field {
    std::string_view name;
    Member Record::*member;
};

template <class Record, class Member>
Field(const char*, Member Record::*) -> Field<Record, Member>;

} // namespace TAVO::dto
