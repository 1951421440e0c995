#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <typeinfo>

#include <tavo/client/export.h>
#include <tavo/client/wire/input_stream.h>
#include <tavo/client/wire/output_stream.h>

/// Records: what travels in requests and replies, one namespace for each remote type.
namespace TAVO::dto {

/// Polymorphic base of every request record, the parameters of a method. A record is a struct of public
/// members with a `fields()`, see Field, in a namespace named after the remote type:
/// `dto::relay::SetRequest`.
struct TAVO_API request_packet {
    request_packet() = default;
    request_packet(const request_packet&) = default;
    request_packet& operator=(const request_packet&) = default;
    virtual ~request_packet();
    bool operator==(const request_packet&) const = default;
};

/// Polymorphic base of every reply record, the result of a method: `dto::relay::GetReply`. The return code is
/// not part of it.
struct TAVO_API reply_packet {
    reply_packet() = default;
    reply_packet(const reply_packet&) = default;
    reply_packet& operator=(const reply_packet&) = default;
    virtual ~reply_packet();
    bool operator==(const reply_packet&) const = default;
};

/// The packet as a `Record`; null when it is null or another record.
template <class Record, class Packet>
const Record* recordIn(const Packet* packet) {
    // Exact type first: cheaper than dynamic_cast.
    if (packet && typeid(*packet) == typeid(Record))
        return static_cast<const Record*>(packet);
    return dynamic_cast<const Record*>(packet);
}

/// The parameters of one call. Copies share the record.
struct Params {
    /// Empty for a method without parameters.
    std::shared_ptr<request_packet> request;
};

/// The outcome of one call. Copies share the record.
struct result {
    /// The return code, the method's own status: 0 is success. -1 also before there is a result.
    std::int32_t code = -1;
    /// The decoded reply; empty for a method that returns its status alone.
    std::shared_ptr<reply_packet> reply;
};

/// Writes to the standard error stream that the result is no `desired` record.
/// @param opening the beginning of the line.
/// @param method  full name of the method; empty where it is not known.
/// @throws std::runtime_error "Can't convert Result to desire type", always.
[[noreturn]] TAVO_API void refuseResult(const char* opening, const result& outcome,
                                        const std::type_info& desired, const std::string& method = {});

/// The record `Reply` in a result, which keeps it alive. For constructors of user-level records.
/// @throws std::runtime_error "Can't convert Result to desire type" when the result holds no such record.
///         Then a line that begins "const Can't convert result " also goes to the standard error stream.
template <class Reply>
const Reply& replyOf(const result& outcome) {
    if (const auto* reply = recordIn<Reply>(outcome.reply.get()))
        return *reply;
    refuseResult("const Can't convert result ", outcome, typeid(Reply));
}

} // namespace TAVO::dto

namespace TAVO::TAVOXTranscode {

/// Writes the parameters of a method. The library's encoders throw std::runtime_error "Can't convert Params
/// to desire type", and write nothing, when the parameters are another method's record.
///
/// An encoder of your own may change or free what it passed to OutputStream::writeBytes: that was copied. It
/// may also call the library's encoders with records of its own.
using EncoderFunction = void(TAVOX::OutputStream&, const dto::Params&);
/// Pointer to an encoder.
using Encoder = EncoderFunction*;

/// Reads the result of a method: the return code, then the fields of the reply. On short input it leaves the
/// reader failed and does not throw.
///
/// A decoder of your own is given a result that has arrived whole: views of InputStream::readSpan last until
/// it returns, and copies of the reader read independently. Only the library's own record decoders read
/// results above 64 KiB while they still arrive.
using DecoderFunction = dto::result(TAVOX::InputStream&);
/// Pointer to a decoder.
using Decoder = DecoderFunction*;

/// The encoder of every method without parameters: writes nothing, and ignores `params`.
TAVO_API void encodeNothing(TAVOX::OutputStream& out, const dto::Params& params);
/// The decoder of every method that returns its status alone: reads the return code, 4 bytes.
TAVO_API dto::result decodeStatus(TAVOX::InputStream& in);

} // namespace TAVO::TAVOXTranscode
