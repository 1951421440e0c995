#pragma once

#include <concepts>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include <tavo/client/transcode/packet.h>
#include <tavo/client/transcode/value.h>
#include <tavo/client/transcode/value_view.h>

namespace TAVO::TAVOXTranscode {

/// A record type at run time: how to make one, how to move it to and from the wire and a Value, and how to
/// look into it.
/// `Packet` is dto::request_packet or dto::reply_packet. All operations expect a packet that create() made.
template <class Packet>
struct RecordDescription {
    /// The encoder that writes the record, or the decoder that reads it.
    std::conditional_t<std::same_as<Packet, dto::request_packet>, Encoder, Decoder> function;
    std::shared_ptr<Packet> (*create)();
    void (*write)(TAVOX::OutputStream&, const Packet&);
    /// Fails the reader on short input.
    void (*read)(TAVOX::InputStream&, Packet&);
    /// Throws std::invalid_argument that names the field at fault.
    void (*fromValue)(const Value&, Packet&);
    std::vector<FieldDescription> (*fields)();
    /// Looks into the packet, which must outlive the view.
    ValueView (*view)(const Packet&);

    Value toValue(const Packet& packet) const { return valueOf(view(packet)); }
};

using RequestDescription = RecordDescription<dto::request_packet>;
using ReplyDescription = RecordDescription<dto::reply_packet>;

/// One remote method at run time: its name, its two functions, and its records (null: no parameters; status
/// only). rowOf() and tableOf() of table.h make rows from Calls.
struct MethodRow {
    std::string_view name;
    Encoder encoder;
    Decoder decoder;
    const RequestDescription* request;
    const ReplyDescription* reply;
};

/// The rows of one remote type and version, in published order, without the eight of every object.
using MethodRows = std::span<const MethodRow>;
/// A function that gives the rows of a type; they are there for the whole program.
using RowsFunction = MethodRows() noexcept;

} // namespace TAVO::TAVOXTranscode
