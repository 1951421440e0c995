#pragma once

#include <array>
#include <memory>

#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/method_row.h>
#include <tavo/client/transcode/value_codec.h>
#include <tavo/client/transcode/value_view_codec.h>

// Only sources that define a table include this header: making calls does not need it.
namespace TAVO::TAVOXTranscode {

/// The encoder of a request record, or the decoder of a reply record.
template <class Packet, class Record>
constexpr auto recordFunction() {
    if constexpr (std::same_as<Packet, dto::request_packet>)
        return Encoder{encodeRequest<Record>};
    else
        return Decoder{decodeReply<Record>};
}

/// The description of a `Record`, made from its `fields()`.
template <class Packet, class Record>
inline constexpr RecordDescription<Packet> recordDescription{
    recordFunction<Packet, Record>(),
    +[]() -> std::shared_ptr<Packet> { return std::make_shared<Record>(); },
    +[](TAVOX::OutputStream& out, const Packet& packet) {
        writeFields(out, dynamic_cast<const Record&>(packet));
    },
    +[](TAVOX::InputStream& in, Packet& packet) { readFields(in, dynamic_cast<Record&>(packet)); },
    +[](const Value& value, Packet& packet) { recordFromValue("", value, dynamic_cast<Record&>(packet)); },
    +[] { return describeFields<Record>(); },
    +[](const Packet& packet) { return viewRecord(dynamic_cast<const Record&>(packet)); },
};

/// The function that writes the call's parameters.
template <class Request, class Reply>
constexpr EncoderFunction& encoderOf(const Call<Request, Reply>&) {
    if constexpr (std::same_as<Request, None>)
        return encodeNothing;
    else
        return encodeRequest<Request>;
}

/// The function that reads the call's result.
template <class Request, class Reply>
constexpr DecoderFunction& decoderOf(const Call<Request, Reply>&) {
    if constexpr (std::same_as<Reply, None>)
        return decodeStatus;
    else
        return decodeReply<Reply>;
}

/// The row of a method, made from the `fields()` of the call's records.
template <class Request, class Reply>
constexpr MethodRow rowOf(const Call<Request, Reply>& call) {
    MethodRow row{call.name, encoderOf(call), decoderOf(call), nullptr, nullptr};
    if constexpr (!std::same_as<Request, None>)
        row.request = &recordDescription<dto::request_packet, Request>;
    if constexpr (!std::same_as<Reply, None>)
        row.reply = &recordDescription<dto::reply_packet, Reply>;
    return row;
}

/// The rows of a type, in the order of its calls. Keep the array for as long as the program runs:
///
/// @code
/// constexpr auto table = tableOf(get, set, toggle);
/// MethodRows rows() noexcept { return table; }
/// @endcode
template <class... Calls>
constexpr std::array<MethodRow, sizeof...(Calls)> tableOf(const Calls&... calls) {
    return {rowOf(calls)...};
}

} // namespace TAVO::TAVOXTranscode
