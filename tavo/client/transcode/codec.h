#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// How records become bytes and bytes become records, from the records' field lists alone.
namespace TAVO::TAVOXTranscode {

/// A type that describes its wire form by `fields()`.
template <class T>
concept Described = requires {
    T::fields();
};

using Bytes = std::vector<std::uint8_t>;

template <class Form, class Visitor>
constexpr void forEachField(Visitor&& visit) {
    std::apply([&](const auto&... field) { (visit(field), ...); }, Form::fields());
}

// Smallest number of bytes that a value can take: what bounds a list's count before memory is taken for it.

template <class T>
constexpr std::uint64_t smallestSize();

template <class Record, class Member>
constexpr std::uint64_t smallestFieldSize(const dto::Field<Record, Member>&) {
    return smallestSize<Member>();
}

template <class ElementForm, class Record, class Element>
constexpr std::uint64_t smallestFieldSize(const dto::ListField<ElementForm, Record, Element>&) {
    return 4;
}

template <class T>
constexpr std::uint64_t smallestSize() {
    if constexpr (Described<T>) {
        std::uint64_t sum = 0;
        forEachField<T>([&](const auto& field) { sum += smallestFieldSize(field); });
        return sum;
    } else if constexpr (std::is_arithmetic_v<T>) {
        return sizeof(T);
    } else {
        return 4;
    }
}

// Writing.

template <class Form, class Record>
void writeFields(TAVOX::OutputStream& out, const Record& record);

template <class T>
void writeValue(TAVOX::OutputStream& out, const T& value);

template <class ElementForm, class Element>
void writeList(TAVOX::OutputStream& out, const std::vector<Element>& list) {
    out.writeUInt32(static_cast<std::uint32_t>(list.size()));
    for (const auto& element : list) {
        if constexpr (Described<ElementForm>)
            writeFields<ElementForm>(out, element);
        else
            writeValue<Element>(out, element);
    }
}

template <class T>
struct ListElement : std::false_type {};
template <class Element>
struct ListElement<std::vector<Element>> : std::true_type {
    using type = Element;
};

template <class T>
void writeValue(TAVOX::OutputStream& out, const T& value) {
    if constexpr (std::same_as<T, bool>)
        out.writeBool(value);
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 1)
        out.writeByte(value);
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 4)
        out.writeUInt32(static_cast<std::uint32_t>(value));
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 8)
        out.writeInt64(static_cast<std::int64_t>(value));
    else if constexpr (std::same_as<T, std::string>)
        out.lendBytes(value.size(), reinterpret_cast<const std::uint8_t*>(value.data()));
    else if constexpr (std::same_as<T, Bytes>)
        out.lendBytes(value.size(), value.data());
    else if constexpr (ListElement<T>::value)
        writeList<typename ListElement<T>::type>(out, value);
    else
        writeFields<T>(out, value);
}

template <class Record, class Member>
void writeField(TAVOX::OutputStream& out, const dto::Field<Record, Member>& field, const Record& record) {
    writeValue(out, record.*field.member);
}

template <class ElementForm, class Record, class Element>
void writeField(TAVOX::OutputStream& out, const dto::ListField<ElementForm, Record, Element>& field,
                const Record& record) {
    writeList<ElementForm>(out, record.*field.member);
}

template <class Form, class Record>
void writeFields(TAVOX::OutputStream& out, const Record& record) {
    forEachField<Form>([&](const auto& field) { writeField(out, field, record); });
}

// Reading. A reader that has failed yields zeros and empty values.

template <class Form, class Record>
void readFields(TAVOX::InputStream& in, Record& record);

template <class T>
void readValue(TAVOX::InputStream& in, T& value);

template <class ElementForm, class Element>
void readList(TAVOX::InputStream& in, std::vector<Element>& list) {
    list.clear();
    const auto count = static_cast<std::uint32_t>(in.readInt32());
    in.awaitRest(); // for the count bounds the list only by bytes that have really come
    if (in.failed() || count > in.remaining() / smallestSize<ElementForm>()) {
        in.fail();
        return;
    }
    list.resize(count);
    for (auto& element : list) {
        if constexpr (Described<ElementForm>)
            readFields<ElementForm>(in, element);
        else
            readValue<Element>(in, element);
    }
}

/// Receives a block straight into its destination, which grows with what has arrived.
template <class Block>
void receiveBlock(TAVOX::InputStream& in, std::size_t length, Block& block) {
    // Small enough for a cache to hold what resize() clears.
    constexpr std::size_t step = 0x80000;
    constexpr std::size_t first = 0x10000;
    constexpr std::size_t growth = 16;
    block.clear();
    while (block.size() < length && !in.failed()) {
        const auto before = block.size();
        const auto part = std::min(length - before, before == 0 ? first : step);
        if (block.capacity() - before < part)
            block.reserve(std::min(length, std::max(before + part, growth * before)));
        block.resize(before + part);
        in.readRaw(reinterpret_cast<std::uint8_t*>(block.data()) + before, part);
    }
    if (in.failed())
        block = {};
}

template <class Block>
void readBlock(TAVOX::InputStream& in, Block& block) {
    const auto length = static_cast<std::uint32_t>(in.readInt32());
    if (length > in.arrived() && length <= in.remaining()) {
        receiveBlock(in, length, block);
    } else if (const auto* bytes = in.readSpan(length)) {
        // As the block's own kind of bytes: a text would take other ones by way of a second text.
        const auto* begin = reinterpret_cast<const typename Block::value_type*>(bytes);
        block.assign(begin, begin + length);
    } else {
        block.clear();
    }
}

template <class T>
void readValue(TAVOX::InputStream& in, T& value) {
    if constexpr (std::same_as<T, bool>)
        value = in.readBool();
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 1)
        value = in.readByte();
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 4)
        value = static_cast<T>(in.readInt32());
    else if constexpr (std::is_arithmetic_v<T> && sizeof(T) == 8)
        value = static_cast<T>(in.readInt64());
    else if constexpr (std::same_as<T, std::string> || std::same_as<T, Bytes>)
        readBlock(in, value);
    else if constexpr (ListElement<T>::value)
        readList<typename ListElement<T>::type>(in, value);
    else
        readFields<T>(in, value);
}

template <class Record, class Member>
void readField(TAVOX::InputStream& in, const dto::Field<Record, Member>& field, Record& record) {
    readValue(in, record.*field.member);
}

template <class ElementForm, class Record, class Element>
void readField(TAVOX::InputStream& in, const dto::ListField<ElementForm, Record, Element>& field,
               Record& record) {
    readList<ElementForm>(in, record.*field.member);
}

template <class Form, class Record>
void readFields(TAVOX::InputStream& in, Record& record) {
    forEachField<Form>([&](const auto& field) { readField(in, field, record); });
}

// The two functions of a method.

/// Writes to the standard error stream that the parameters cannot be converted, and throws std::runtime_error
/// "Can't convert Params to desire type".
[[noreturn]] TAVO_API void refuseParams(const std::type_info& desired);

/// The encoder of a method whose parameters are a `Request`, written in the form `Form`.
template <class Request, class Form = Request>
void encodeRequest(TAVOX::OutputStream& out, const dto::Params& params) {
    const auto* request = dto::recordIn<Request>(params.request.get());
    if (!request)
        refuseParams(typeid(Request));
    writeFields<Form>(out, *request);
}

/// The decoder of a method whose reply is a `Reply`, read in the form `Form`.
template <class Reply, class Form = Reply>
dto::result decodeReply(TAVOX::InputStream& in) {
    const auto code = in.readInt32();
    auto reply = std::make_shared<Reply>();
    readFields<Form>(in, *reply);
    return {code, std::move(reply)};
}

/// A new request record, its fields filled from the arguments in wire order. An integer argument is narrowed
/// to the field's width by keeping its low bits.
template <class Request, class... Arguments>
dto::Params makeRequest(Arguments&&... arguments) {
    auto request = std::make_shared<Request>();
    std::apply(
        [&](const auto&... field) {
            static_assert(sizeof...(field) == sizeof...(arguments), "one argument for each field");
            ((*request.*field.member = static_cast<std::remove_reference_t<decltype(*request.*field.member)>>(
                  std::forward<Arguments>(arguments))),
             ...);
        },
        Request::fields());
    return {std::move(request)};
}

} // namespace TAVO::TAVOXTranscode
