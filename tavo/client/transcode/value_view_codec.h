#pragma once

#include <array>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value_view.h>

/// Records as ValueView, from the same field lists as the wire form.
namespace TAVO::TAVOXTranscode {

template <class Form, class Record>
ValueView viewRecord(const Record& record);

template <class T>
ValueView viewValue(const T& value);

template <class ElementForm, class Element>
ValueView viewList(const std::vector<Element>& list) {
    return {ValueView::List{&list, list.size(), [](const void* elements, std::size_t index) {
                                const auto& element =
                                    (*static_cast<const std::vector<Element>*>(elements))[index];
                                if constexpr (Described<ElementForm>)
                                    return viewRecord<ElementForm>(element);
                                else
                                    return viewValue<Element>(element);
                            }}};
}

template <class T>
ValueView viewValue(const T& value) {
    if constexpr (std::same_as<T, bool>)
        return {value};
    else if constexpr (std::is_arithmetic_v<T> && std::is_signed_v<T>)
        return {std::int64_t{value}};
    else if constexpr (std::is_arithmetic_v<T>)
        return {std::uint64_t{value}};
    else if constexpr (std::same_as<T, std::string>)
        return {std::string_view(value)};
    else if constexpr (std::same_as<T, Bytes>)
        return {ValueView::Bytes(value)};
    else if constexpr (ListElement<T>::value)
        return viewList<typename ListElement<T>::type>(value);
    else
        return viewRecord<T>(value);
}

template <class Record, class Member>
ValueView viewField(const dto::Field<Record, Member>& field, const Record& record) {
    return viewValue(record.*field.member);
}

template <class ElementForm, class Record, class Element>
ValueView viewField(const dto::ListField<ElementForm, Record, Element>& field, const Record& record) {
    return viewList<ElementForm>(record.*field.member);
}

template <class Form>
inline constexpr std::size_t fieldCount = std::tuple_size_v<decltype(Form::fields())>;

template <class Form, class Record, std::size_t... index>
constexpr std::array<ValueView::Field, sizeof...(index)> makeFieldViews(std::index_sequence<index...>) {
    return {ValueView::Field{std::get<index>(Form::fields()).name, [](const void* record) {
                                 return viewField(std::get<index>(Form::fields()),
                                                  *static_cast<const Record*>(record));
                             }}...};
}

template <class Form, class Record>
inline constexpr auto fieldViews = makeFieldViews<Form, Record>(std::make_index_sequence<fieldCount<Form>>());

template <class Form, class Record>
ValueView viewRecord(const Record& record) {
    return {ValueView::Record{&record, fieldViews<Form, Record>}};
}

} // namespace TAVO::TAVOXTranscode
