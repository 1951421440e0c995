#pragma once

#include <cstdint>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/wire/input_stream.h>

namespace TAVO {

/// Receives the long blocks of results in place of their records, straight from the connection to where an
/// application wants them: into a file, or the memory of another language. While there is one, it receives
/// every block of bytes in a result of more than 64 KiB that the library decodes in the same thread, unless
/// the block is in a list or has arrived already.
///
/// Exchanges of the thread that made it use the latest one that is left. Destroy it in that thread.
class TAVO_API BlockReceiver {
public:
    BlockReceiver() noexcept;
    BlockReceiver(const BlockReceiver&) = delete;
    BlockReceiver& operator=(const BlockReceiver&) = delete;
    virtual ~BlockReceiver();

    /// The one of this thread; null if there is none.
    static BlockReceiver* current() noexcept;

    /// Reads a block of `length` bytes from `in`, no more and no less, best by TAVOX::InputStream::readRaw in
    /// parts: the peer chose the length, so take no memory for more than has arrived. What throws ends the
    /// exchange: what TAVOX::InputStream throws has to pass, and std::logic_error is thrown after one that
    /// read another number of bytes.
    /// @param block the empty field of the record. What is left in it, the record has.
    virtual void receive(TAVOX::InputStream& in, std::uint64_t length, std::vector<std::uint8_t>& block) = 0;

private:
    BlockReceiver* former_;
};

} // namespace TAVO
