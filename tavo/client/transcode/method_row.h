#pragma once

#include <concepts>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <vector>

#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/value_codec.h>
#include <tavo/client/transcode/value_view_codec.h>

namespace TAVO::TAVOXTranscode {

/// A record type at run time: how to make one, how to move it to and from the wire and a Value, and how to
/// look into it.
/// `Packet` is dto::request_packet or dto::reply_packet. All operations expect a packet that create() made.
template <class Packet>
struct RecordDescription {
    /// The encoder that writes the record, or the decoder that reads it, as row() makes it.
    std::conditional_t<std::same_as<Packet, dto::request_packet>, Encoder, Decoder> function;
    std::shared_ptr<Packet> (*create)();
    void (*write)(TAVOX::OutputStream&, const Packet&);
    /// Fails the reader on short input.
    void (*read)(TAVOX::InputStream&, Packet&);
    Value (*toValue)(const Packet&);
    /// Throws std::invalid_argument that names the field at fault.
    void (*fromValue)(const Value&, Packet&);
    std::vector<FieldDescription> (*fields)();
    /// Looks into the packet, which must outlive the view.
    ValueView (*view)(const Packet&);
};

using RequestDescription = RecordDescription<dto::request_packet>;
using ReplyDescription = RecordDescription<dto::reply_packet>;

/// One remote method: its name, its two functions, and its records (null: no parameters; status only).
struct MethodRow {
    std::string_view name;
    Encoder encoder;
    Decoder decoder;
    const RequestDescription* request;
    const ReplyDescription* reply;
};

/// The rows of one remote type and version, in published order, without the eight of every object.
using MethodRows = std::span<const MethodRow>;

/// Stands for "no parameters" or "status only" in row().
struct None {};

/// The function of a description.
template <class Packet, class Record, class Form>
constexpr auto recordFunction() {
    if constexpr (std::same_as<Packet, dto::request_packet>)
        return Encoder{encodeRequest<Record, Form>};
    else
        return Decoder{decodeReply<Record, Form>};
}

template <class Packet, class Record, class Form>
inline constexpr RecordDescription<Packet> recordDescription{
    recordFunction<Packet, Record, Form>(),
    +[]() -> std::shared_ptr<Packet> { return std::make_shared<Record>(); },
    +[](TAVOX::OutputStream& out, const Packet& packet) {
        writeFields<Form>(out, dynamic_cast<const Record&>(packet));
    },
    +[](TAVOX::InputStream& in, Packet& packet) { readFields<Form>(in, dynamic_cast<Record&>(packet)); },
    +[](const Packet& packet) { return recordToValue<Form>(dynamic_cast<const Record&>(packet)); },
    +[](const Value& value, Packet& packet) {
        recordFromValue<Form>("", value, dynamic_cast<Record&>(packet));
    },
    +[] { return describeFields<Form>(); },
    +[](const Packet& packet) { return viewRecord<Form>(dynamic_cast<const Record&>(packet)); },
};

/// The row of a method from its records; everything else follows from their field lists.
template <class Request, class Reply, class ReplyForm = Reply>
constexpr MethodRow row(std::string_view name) {
    MethodRow made{name, encodeNothing, decodeStatus, nullptr, nullptr};
    if constexpr (!std::same_as<Request, None>) {
        made.request = &recordDescription<dto::request_packet, Request, Request>;
        made.encoder = made.request->function;
    }
    if constexpr (!std::same_as<Reply, None>) {
        made.reply = &recordDescription<dto::reply_packet, Reply, ReplyForm>;
        made.decoder = made.reply->function;
    }
    return made;
}

/// The row of that name; a name that is not there does not compile where the rows are constants.
constexpr const MethodRow& rowNamed(MethodRows rows, std::string_view name) {
    for (const auto& candidate : rows)
        if (candidate.name == name)
            return candidate;
    throw std::out_of_range("no such method row");
}

constexpr EncoderFunction& encoderOf(MethodRows rows, std::string_view name) {
    return *rowNamed(rows, name).encoder;
}

constexpr DecoderFunction& decoderOf(MethodRows rows, std::string_view name) {
    return *rowNamed(rows, name).decoder;
}

} // namespace TAVO::TAVOXTranscode
