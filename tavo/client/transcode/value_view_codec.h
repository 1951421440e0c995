#pragma once

#include <array>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value_view.h>

namespace TAVO::TAVOXTranscode {

/// A view of a record, which must outlive it unchanged.
template <class Record>
ValueView viewRecord(const Record& record);

/// A view of one value, which must outlive it unchanged.
template <class T>
ValueView viewValue(const T& value) {
    if constexpr (std::same_as<T, bool>)
        return {value, 1};
    else if constexpr (std::is_arithmetic_v<T> && std::is_signed_v<T>)
        return {std::int64_t{value}, sizeof value};
    else if constexpr (std::is_arithmetic_v<T>)
        return {std::uint64_t{value}, sizeof value};
    else if constexpr (std::same_as<T, std::string>)
        return {std::string_view(value)};
    else if constexpr (std::same_as<T, Bytes>)
        return {ValueView::Bytes(value)};
    else if constexpr (isList<T>)
        return {ValueView::List{&value, value.size(), [](const void* list, std::size_t index) {
                                    return viewValue((*static_cast<const T*>(list))[index]);
                                }}};
    else
        return viewRecord(value);
}

/// The fields of a `Record` for ValueView::Record; use `fieldViews`.
template <class Record, std::size_t... index>
constexpr std::array<ValueView::Field, sizeof...(index)> makeFieldViews(std::index_sequence<index...>) {
    return {ValueView::Field{std::get<index>(Record::fields()).name, [](const void* record) {
                                 constexpr auto field = std::get<index>(Record::fields());
                                 return viewValue(static_cast<const Record*>(record)->*field.member);
                             }}...};
}

/// The fields of a `Record` for ValueView::Record, in wire order.
template <class Record>
inline constexpr auto fieldViews =
    makeFieldViews<Record>(std::make_index_sequence<std::tuple_size_v<decltype(Record::fields())>>());

template <class Record>
ValueView viewRecord(const Record& record) {
    return {ValueView::Record{&record, fieldViews<Record>}};
}

} // namespace TAVO::TAVOXTranscode
