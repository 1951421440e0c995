#pragma once

#include <tavo/client/transcode/convert_record.h>

/// TAVO_FROM_REPLY(RetryGet, dto::Jtag::OptionRetryGetReply) defines the constructors of a user-level record
/// with the fields of this reply: from the reply, and from a dto::result that holds one.
#define TAVO_FROM_REPLY(Record, Reply)                                                                       \
    Record::Record(const Reply& reply) { TAVOXTranscode::convertRecord(reply, *this); }                      \
    Record::Record(const dto::result& outcome)                                                               \
        : Record(dto::replyOf<Reply>(outcome)) {}                                                            \
    static_assert(true) /* for the semicolon */

/// TAVO_FROM_AND_TO_REPLY(I2cAck, dto::i2c::OptionAckGetReply) defines the conversion back to the reply, too.
#define TAVO_FROM_AND_TO_REPLY(Record, Reply)                                                                \
    TAVO_FROM_REPLY(Record, Reply);                                                                          \
    Record::operator Reply() const { return TAVOXTranscode::converted<Reply>(*this); }                       \
    static_assert(true)
