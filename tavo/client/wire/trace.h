#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>

#include <tavo/client/export.h>

namespace TAVO {

/// Which way traced bytes went.
enum class TraceDirection : std::uint8_t {
    sent,     ///< to the device: a request or a part of one
    received, ///< from the device: a piece of a reply, as it arrived
};

/// A piece of what passes between a device and this side.
struct TAVO_API TracedBytes {
    /// Which way they went.
    TraceDirection direction = TraceDirection::sent;
    /// The bytes where they are: valid until the sink returns.
    std::span<const std::uint8_t> bytes;
    /// When they were about to be sent, or had arrived.
    std::chrono::system_clock::time_point time;
    /// Transport::connectionNumber(): another number is another connection, which begins with a request.
    std::uint64_t connection = 0;
};

/// Is told every piece that passes, in order; see Device::setTrace(). Called in the thread that uses the
/// device, while it sends or receives. It must not use the device, nor set its trace.
///
/// A request is told when there is a connection for it, and before its first byte is sent; a large one in
/// several pieces. It may be told although the connection breaks before all of it has been sent; if the
/// transport replaces the connection meanwhile, it is told again with the new number. Replies are told as
/// they arrive, also those that are cut short or cannot be decoded. Pieces do not end where requests, replies
/// or results end. What a large block holds is not copied: its pieces are at most those of the read-ahead, 64
/// KiB, or, over a transport that does not read ahead, the block in its destination. Such a transport tells
/// nothing of a block that it could not receive completely.
///
/// Over a transport of the application's own, such as TLS, these are the bytes that go in and come out,
/// before they are encrypted. They hold names, passwords and lock ids as they travel, for `secure` devices
/// too.
///
/// What it throws ends the exchange, as a failure of the connection does, and the trace: it is not called
/// again, so that the device can still be released. A sink that must not disturb the exchange catches its
/// own failures.
using TraceSink = std::function<void(const TracedBytes&)>;

} // namespace TAVO
