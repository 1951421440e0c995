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

/// A record type at run time, for tools that make calls by name, and for simulators. `Packet` is
/// dto::request_packet or dto::reply_packet.
///
/// All operations take packets of the described type only, such as create() makes; others throw
/// std::bad_cast.
template <class Packet>
struct RecordDescription {
    /// The encoder that writes this record, or the decoder that reads it.
    std::conditional_t<std::same_as<Packet, dto::request_packet>, Encoder, Decoder> function;
    /// Makes a record with default values.
    std::shared_ptr<Packet> (*create)();
    /// Writes the fields, without a return code.
    void (*write)(TAVOX::OutputStream&, const Packet&);
    /// Reads the fields, without a return code. Fails the reader on short input.
    void (*read)(TAVOX::InputStream&, Packet&);
    /// Fills the record from a Value::Record that has exactly its fields. Throws std::invalid_argument, which
    /// names the field at fault.
    void (*fromValue)(const Value&, Packet&);
    /// The fields in words, in wire order.
    std::vector<FieldDescription> (*fields)();
    /// A view of the packet, which must outlive it unchanged.
    ValueView (*view)(const Packet&);

    /// A copy of the packet as data.
    Value toValue(const Packet& packet) const { return valueOf(view(packet)); }
};

/// Describes a request record.
using RequestDescription = RecordDescription<dto::request_packet>;
/// Describes a reply record.
using ReplyDescription = RecordDescription<dto::reply_packet>;

/// One remote method at run time. rowOf() and tableOf() make rows from Calls.
struct MethodRow {
    std::string_view name;             ///< as the device lists it
    Encoder encoder;                   ///< writes the parameters
    Decoder decoder;                   ///< reads the result
    const RequestDescription* request; ///< null where the method has no parameters
    const ReplyDescription* reply;     ///< null where the method returns its status alone
};

/// The methods of one remote type and version, in published order. Only the rows of base_v1_0 hold the eight
/// methods of every object.
using MethodRows = std::span<const MethodRow>;
/// A function that returns the rows of a type; they live as long as the program.
using RowsFunction = MethodRows() noexcept;

} // namespace TAVO::TAVOXTranscode
