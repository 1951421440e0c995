#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <typeinfo>

#include <tavo/client/export.h>
#include <tavo/client/wire/input_stream.h>
#include <tavo/client/wire/output_stream.h>

namespace TAVO::dto {

/// Polymorphic base of every request record. A request record is a plain struct in a namespace named after
/// the remote type (`dto::relay::SetRequest`): public members in wire order, each of its wire type.
struct TAVO_API request_packet {
    request_packet() = default;
    request_packet(const request_packet&) = default;
    request_packet& operator=(const request_packet&) = default;
    virtual ~request_packet();
    bool operator==(const request_packet&) const = default;
};

/// Polymorphic base of every reply record (`dto::relay::GetReply`); shaped like a request record.
struct TAVO_API reply_packet {
    reply_packet() = default;
    reply_packet(const reply_packet&) = default;
    reply_packet& operator=(const reply_packet&) = default;
    virtual ~reply_packet();
    bool operator==(const reply_packet&) const = default;
};

/// The packet as the record that it must be; null when it is another.
template <class Record, class Packet>
const Record* recordIn(const Packet* packet) {
    // Nearly always it is exactly that record, which is told much sooner than what it derives from.
    if (packet && typeid(*packet) == typeid(Record))
        return static_cast<const Record*>(packet);
    return dynamic_cast<const Record*>(packet);
}

/// The parameters of one call; empty for a method without arguments. Copies share the record.
struct Params {
    std::shared_ptr<request_packet> request;
};

/// The outcome of one call. Copies share the record.
struct result {
    /// The method's own status word as the device returned it; 0 is success.
    std::int32_t code = -1;
    /// The decoded reply; empty for a method that returns its status alone.
    std::shared_ptr<reply_packet> reply;
};

/// Writes to the standard error stream that the result cannot be converted, and throws std::runtime_error
/// "Can't convert Result to desire type".
/// @param opening the beginning of the line.
/// @param method  full name of the method; empty where it is not known.
[[noreturn]] TAVO_API void refuseResult(const char* opening, const result& outcome,
                                        const std::type_info& desired, const std::string& method = {});

/// The reply that a result carries, as the record `Reply`. For constructors of user-level records.
/// @throws std::runtime_error "Can't convert Result to desire type" when the result carries no such record; a
///         line that begins "const Can't convert result " goes to the standard error stream.
template <class Reply>
const Reply& replyOf(const result& outcome) {
    if (const auto* reply = recordIn<Reply>(outcome.reply.get()))
        return *reply;
    refuseResult("const Can't convert result ", outcome, typeid(Reply));
}

} // namespace TAVO::dto

namespace TAVO::TAVOXTranscode {

/// Writes a method's parameters. Throws std::runtime_error "Can't convert Params to desire type" when they
/// hold another record than the method's, and then writes nothing.
///
/// An encoder of your own may hand OutputStream::writeBytes any memory, and change it afterwards: it is
/// copied. It may also call the library's encoders with records of its own.
using EncoderFunction = void(TAVOX::OutputStream&, const dto::Params&);
using Encoder = EncoderFunction*;

/// Reads a method's result: the return code, then the reply's fields. Never throws on short input; the reader
/// is failed then.
///
/// A decoder of your own is given the whole result, of whatever size: the views of InputStream::readSpan last
/// until it returns, and copies of the reader read independently. Only the library's own record decoders are
/// called while a result above 64 KiB still arrives.
using DecoderFunction = dto::result(TAVOX::InputStream&);
using Decoder = DecoderFunction*;

/// The encoder of every method without parameters: looks at nothing, writes nothing.
TAVO_API void encodeNothing(TAVOX::OutputStream& out, const dto::Params& params);
/// The decoder of every method without reply data: reads the return code, four bytes.
TAVO_API dto::result decodeStatus(TAVOX::InputStream& in);

} // namespace TAVO::TAVOXTranscode
