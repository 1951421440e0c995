#pragma once

#include <concepts>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>
#include <tavo/client/transcode/small_blocks.h>

namespace TAVO::TAVOXTranscode {

/// Whether the reply consists of exactly one field. False for None.
template <class Reply>
consteval bool hasOnlyField() {
    if constexpr (std::same_as<Reply, None>)
        return false;
    else
        return std::tuple_size_v<decltype(Reply::fields())> == 1;
}

/// Sets the fields of `record` to the arguments, one for each, in wire order. Arguments are converted by
/// static_cast: an integer that is too wide for its field keeps its low bits.
template <class Record, class... Arguments>
void fillRecord(Record& record, Arguments&&... arguments) {
    std::apply(
        [&](const auto&... field) {
            static_assert(sizeof...(field) == sizeof...(arguments), "one argument for each field");
            ((record.*field.member = static_cast<std::remove_reference_t<decltype(record.*field.member)>>(
                  std::forward<Arguments>(arguments))),
             ...);
        },
        Record::fields());
}

/// Whether a static_cast makes the field's value from an `Argument`.
template <class Field, class Argument>
inline constexpr bool fillsField = false;
template <class Record, class Member, class Argument>
inline constexpr bool fillsField<dto::Field<Record, Member>, Argument> = requires(Argument&& argument) {
    static_cast<Member>(std::forward<Argument>(argument));
};

/// Whether fillRecord() takes such arguments for a `Record`.
template <class Record, class... Arguments>
consteval bool fillsFields() {
    return []<class... Fields>(const std::tuple<Fields...>&) {
        if constexpr (sizeof...(Fields) == sizeof...(Arguments))
            return (fillsField<Fields, Arguments> && ...);
        else
            return false;
    }(Record::fields());
}

/// Whether makeParams() takes such arguments for a call of a `Request`: one for each field, or the whole
/// record; none where the request is None.
template <class Request, class... Arguments>
consteval bool takesArguments() {
    if constexpr (std::same_as<Request, None>)
        return sizeof...(Arguments) == 0;
    else if constexpr (sizeof...(Arguments) == 1 &&
                       (std::same_as<std::remove_cvref_t<Arguments>, Request> && ...))
        return true;
    else
        return fillsFields<Request, Arguments...>();
}

/// A new `Record`, filled by fillRecord().
template <class Record, class... Arguments>
Record makeRecord(Arguments&&... arguments) {
    Record record;
    fillRecord(record, std::forward<Arguments>(arguments)...);
    return record;
}

/// The parameters of a call: a new request record, made from one argument for each field or from a whole
/// record.
template <class Request, class... Arguments>
dto::Params makeRequest(Arguments&&... arguments) {
    if constexpr (sizeof...(Arguments) == 1 &&
                  (std::same_as<std::remove_cvref_t<Arguments>, Request> && ...)) {
        return {makePooled<Request>(std::forward<Arguments>(arguments)...)};
    } else {
        auto request = makePooled<Request>();
        fillRecord(*request, std::forward<Arguments>(arguments)...);
        return {std::move(request)};
    }
}

/// The parameters of this Call; takesArguments() says which arguments it takes. Others do not compile.
template <class Request, class Reply, class... Arguments>
dto::Params makeParams(const Call<Request, Reply>&, Arguments&&... arguments) {
    static_assert(takesArguments<Request, Arguments...>(), "one argument for each field of the request");
    if constexpr (std::same_as<Request, None>) {
        return {};
    } else {
        return makeRequest<Request>(std::forward<Arguments>(arguments)...);
    }
}

} // namespace TAVO::TAVOXTranscode
