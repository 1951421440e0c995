#pragma once

#include <string_view>

namespace TAVO::dto {

/// One field of a record's wire form: its name, and the member that holds it.
///
/// A record lists its fields once, in wire order, in a static operation `fields()`. Encoder, decoder,
/// printing and calls by name all follow from this list.
///
/// @code
/// struct LimitRequest : TAVO::dto::request_packet {
///     std::string zone;
///     std::int32_t celsius = 0;
///     static constexpr auto fields() {
///         return std::tuple{Field{"zone", &LimitRequest::zone}, Field{"celsius", &LimitRequest::celsius}};
///     }
/// };
/// @endcode
///
/// The library's own records make `fields()` a template (`template <class Self = LimitRequest>`, with
/// `&Self::zone`), so that a program compiles only the lists that it uses.
///
/// The type of the member decides its form on the wire:
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
    std::string_view name;  ///< as help texts, error messages and calls by name have it
    Member Record::*member; ///< where the record keeps it
};

/// Lets `Field{"zone", &LimitRequest::zone}` do without template arguments.
template <class Record, class Member>
Field(const char*, Member Record::*) -> Field<Record, Member>;

} // namespace TAVO::dto
