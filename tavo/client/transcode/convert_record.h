#pragma once

#include <concepts>
#include <cstddef>
#include <tuple>
#include <utility>

#include <tavo/client/transcode/codec.h>

namespace TAVO::TAVOXTranscode {

/// Copies `from` to `to`, records of different types with the same fields in the same order; other fields do
/// not compile. Makes user-level records from wire records and the other way round.
template <class From, class To>
void convertRecord(const From& from, To& to);

/// Copies one value: lists element by element, records by convertRecord(), all else by static_cast.
template <class To, class From>
void convertValue(const From& from, To& to) {
    if constexpr (std::same_as<From, To>) {
        to = from;
    } else if constexpr (isList<From> && isList<To>) {
        to.resize(from.size());
        for (std::size_t i = 0; i < from.size(); ++i)
            convertValue(from[i], to[i]);
    } else if constexpr (Described<From> && Described<To>) {
        convertRecord(from, to);
    } else {
        to = static_cast<To>(from);
    }
}

/// Copies the field at position `index`, whose names must be the same in both records.
template <std::size_t index, class From, class To>
void convertField(const From& from, To& to) {
    constexpr auto source = std::get<index>(From::fields());
    constexpr auto target = std::get<index>(To::fields());
    static_assert(source.name == target.name, "the fields are the same, in the same order");
    convertValue(from.*source.member, to.*target.member);
}

template <class From, class To>
void convertRecord(const From& from, To& to) {
    constexpr auto count = std::tuple_size_v<decltype(From::fields())>;
    static_assert(count == std::tuple_size_v<decltype(To::fields())>, "the fields are the same");
    [&]<std::size_t... index>(std::index_sequence<index...>) { (convertField<index>(from, to), ...); }
    (std::make_index_sequence<count>());
}

/// A new `To`, filled by convertRecord().
template <class To, class From>
To converted(const From& from) {
    To to;
    convertRecord(from, to);
    return to;
}

} // namespace TAVO::TAVOXTranscode
