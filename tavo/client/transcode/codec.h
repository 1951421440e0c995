#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <tavo/client/transcode/block_receiver.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>
#include <tavo/client/transcode/small_blocks.h>

/// Calls and tables: what the methods of the remote types are, and how their records become bytes and bytes
/// become records. It all follows from the `fields()` of the records; see dto::Field.
namespace TAVO::TAVOXTranscode {

/// A record: a type that lists its wire form in `fields()`.
template <class T>
concept Described = requires {
    T::fields();
};

/// A block of bytes. As a field it travels as its length (4 bytes) and its content.
using Bytes = std::vector<std::uint8_t>;

/// Calls `visit` with the dto::Field of each field of a `Record`, in wire order.
template <class Record, class Visitor>
constexpr void forEachField(Visitor&& visit) {
    std::apply([&](const auto&... field) { (visit(field), ...); }, Record::fields());
}

/// The least number of bytes that a `T` takes on the wire. Bounds the count of a list before memory is taken
/// for it.
template <class T>
constexpr std::uint64_t smallestSize();

/// The least number of bytes that the field takes on the wire.
template <class Record, class Member>
constexpr std::uint64_t smallestFieldSize(const dto::Field<Record, Member>&) {
    return smallestSize<Member>();
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

/// Writes the fields of `record` in wire order. Long texts and blocks may be lent: see
/// TAVOX::OutputStream::lendBytes.
template <class Record>
void writeFields(TAVOX::OutputStream& out, const Record& record);

/// Writes one value in the form that dto::Field lists for its type.
template <class T>
void writeValue(TAVOX::OutputStream& out, const T& value);

/// Writes the count (4 bytes), then the elements.
template <class Element>
void writeList(TAVOX::OutputStream& out, const std::vector<Element>& list) {
    out.writeUInt32(static_cast<std::uint32_t>(list.size()));
    for (const auto& element : list)
        writeValue<Element>(out, element);
}

/// Whether `T` is a std::vector. Bytes are one too, so test for them first.
template <class T>
inline constexpr bool isList = false;
template <class Element>
inline constexpr bool isList<std::vector<Element>> = true;

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
    else if constexpr (isList<T>)
        writeList(out, value);
    else
        writeFields(out, value);
}

template <class Record>
void writeFields(TAVOX::OutputStream& out, const Record& record) {
    forEachField<Record>([&](const auto& field) { writeValue(out, record.*field.member); });
}

/// Reads the fields of `record` in wire order. On short input the reader fails, and the remaining fields
/// become zero or empty.
template <class Record>
void readFields(TAVOX::InputStream& in, Record& record);

/// Reads one value in the form that dto::Field lists for its type; zero or empty when the reader fails.
template <class T>
void readValue(TAVOX::InputStream& in, T& value);

/// Reads a count (4 bytes), waits until the rest of the block has arrived, and reads as many elements.
/// @param smallestElement the least number of bytes that an element takes. A count that cannot fit in what is
///        left of the block fails the reader, and no memory is taken.
/// @param readElement called with each element of `list` in turn.
template <class Element, class ReadElement>
void readList(TAVOX::InputStream& in, std::vector<Element>& list, std::uint64_t smallestElement,
              ReadElement readElement) {
    list.clear();
    const auto count = static_cast<std::uint32_t>(in.readInt32());
    in.awaitRest(); // or else the count would be checked against bytes that may never come
    if (in.failed() || count > in.remaining() / smallestElement) {
        in.fail(sizeof count);
        return;
    }
    list.resize(count);
    for (auto& element : list)
        readElement(element);
}

/// Receives `length` bytes straight into `block`, a text or Bytes, which grows only as they arrive. Bytes are
/// for the BlockReceiver, if there is one.
template <class Block>
void receiveBlock(TAVOX::InputStream& in, std::size_t length, Block& block) {
    // Small enough that what resize() clears is still in the cache when it is overwritten; smaller ones cost
    // more receives than they save.
    constexpr std::size_t step = 0x100000;
    constexpr std::size_t first = 0x10000;
    constexpr std::size_t growth = 16;
    block.clear();
    if constexpr (std::same_as<Block, Bytes>)
        if (auto* receiver = BlockReceiver::current()) {
            const auto before = in.remaining();
            receiver->receive(in, length, block);
            if (!in.failed() && before - in.remaining() != length)
                throw std::logic_error("A BlockReceiver has to read the whole block and nothing else.");
            return;
        }
    while (block.size() < length) {
        const auto before = block.size();
        if (block.capacity() == before || before == 0)
            block.reserve(std::min(length, std::max(first, growth * before)));
        const auto part = std::min({length - before, block.capacity() - before, step});
        block.resize(before + part);
        in.readRaw(reinterpret_cast<std::uint8_t*>(block.data()) + before, part);
    }
}

/// Reads a length (4 bytes), then as many bytes into `block`, a text or Bytes. Fails the reader, and leaves
/// `block` empty, when the block holds fewer.
template <class Block>
void readBlock(TAVOX::InputStream& in, Block& block) {
    const auto length = static_cast<std::uint32_t>(in.readInt32());
    const auto* bytes = length <= in.arrived() ? in.readSpan(length) : nullptr;
    if (bytes) {
        // Cast first: from bytes of another type a string would be assigned by way of a temporary.
        const auto* begin = reinterpret_cast<const typename Block::value_type*>(bytes);
        block.assign(begin, begin + length);
    } else if (length <= in.remaining() && !in.failed()) {
        receiveBlock(in, length, block);
    } else {
        in.fail(sizeof length);
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
    else if constexpr (isList<T>)
        readList(in, value, smallestSize<typename T::value_type>(),
                 [&in](auto& element) { readValue(in, element); });
    else
        readFields(in, value);
}

template <class Record>
void readFields(TAVOX::InputStream& in, Record& record) {
    forEachField<Record>([&](const auto& field) { readValue(in, record.*field.member); });
}

/// Writes to the standard error stream that the parameters are no `desired` record.
/// @throws std::runtime_error "Can't convert Params to desire type", always.
[[noreturn]] TAVO_API void refuseParams(const dto::Params& params, const std::type_info& desired);

/// The encoder of a method whose parameters are a `Request`. Writes nothing if they hold another record.
/// @throws std::runtime_error as refuseParams(), if they do.
template <class Request>
void encodeRequest(TAVOX::OutputStream& out, const dto::Params& params) {
    const auto* request = dto::recordIn<Request>(params.request.get());
    if (!request)
        refuseParams(params, typeid(Request));
    writeFields(out, *request);
}

/// The decoder of a method whose reply is a `Reply`: reads the return code (4 bytes), then the fields. Fails
/// the reader on short input.
template <class Reply>
dto::result decodeReply(TAVOX::InputStream& in) {
    const auto code = in.readInt32();
    auto reply = makePooled<Reply>();
    readFields(in, *reply);
    return {code, std::move(reply)};
}

} // namespace TAVO::TAVOXTranscode
