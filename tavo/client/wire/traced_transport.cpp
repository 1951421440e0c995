#include <tavo/client/wire/internal/traced_transport.h>

#include <algorithm>

namespace TAVO {

namespace {

constexpr std::uint64_t longestInPlace = std::uint64_t{64} * 1024;

} // namespace

void TracedTransport::tell(TraceDirection direction, std::span<const std::uint8_t> bytes) {
    if (!sink_ || bytes.empty())
        return;
    try {
        sink_({direction, bytes, std::chrono::system_clock::now(), transport_.connectionNumber()});
    } catch (...) {
        sink_ = nullptr;
        throw;
    }
}

void TracedTransport::tellRequest(const TAVOX::OutputStream::Chunks& request) {
    for (const auto chunk : request)
        tell(TraceDirection::sent, chunk);
}

void TracedTransport::ensureConnected() {
    const auto before = transport_.held().size();
    const auto settle = [&] {
        const auto dropped = before - std::min(before, transport_.held().size());
        told_ -= std::min(told_, dropped);
    };
    try {
        transport_.ensureConnected();
    } catch (...) {
        settle();
        throw;
    }
    settle();
}

void TracedTransport::send(const TAVOX::OutputStream::Chunks& request) {
    // A request that finds no connection was never sent.
    ensureConnected();
    const auto connection = transport_.connectionNumber();
    tellRequest(request);
    transport_.send(request);
    told_ = 0;
    if (transport_.connectionNumber() != connection)
        tellRequest(request);
}

void TracedTransport::tellHeld() {
    const auto held = transport_.held();
    if (held.empty())
        return;
    readsAhead_ = true;
    const auto fresh = held.subspan(std::min(told_, held.size()));
    told_ = held.size();
    tell(TraceDirection::received, fresh);
}

bool TracedTransport::receiveFirst(std::uint8_t& byte) {
    const auto* first = transport_.receiveInPlace(1);
    if (!first)
        return false;
    byte = *first;
    const auto rest = transport_.held();
    if (rest.data() == first + 1) {
        readsAhead_ = readsAhead_ || !rest.empty();
        told_ = rest.size();
        tell(TraceDirection::received, {first, 1 + rest.size()});
    } else {
        told_ = 0;
        tell(TraceDirection::received, {&byte, 1});
        tellHeld();
    }
    return true;
}

std::uint64_t TracedTransport::receiveRun(std::uint8_t* buffer, std::uint64_t length) {
    std::uint64_t run = 0;
    if (!transport_.held().empty()) {
        tellHeld();
        run = std::min<std::uint64_t>(length, told_);
        transport_.receiveAll(buffer, run);
        told_ -= static_cast<std::size_t>(run);
        return run;
    }
    told_ = 0;
    if (receiveFirst(*buffer)) {
        if (readsAhead_ || length == 1)
            return 1;
        run = 1;
    }
    transport_.receiveAll(buffer + run, length - run);
    tell(TraceDirection::received,
         {buffer + run, static_cast<std::size_t>(length - run)}); // where the caller wants them
    return length;
}

void TracedTransport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    while (length > 0) {
        const auto run = receiveRun(buffer, length);
        buffer += run;
        length -= run;
    }
}

const std::uint8_t* TracedTransport::receiveInPlace(std::uint64_t length) {
    if (length <= transport_.held().size()) {
        tellHeld();
        const auto* bytes = transport_.receiveInPlace(length);
        told_ -= static_cast<std::size_t>(length);
        return bytes;
    }
    if (length > longestInPlace)
        return nullptr;
    piece_.resize(static_cast<std::size_t>(length));
    std::uint64_t begin = 0;
    if (transport_.held().empty()) {
        if (!receiveFirst(piece_.front()))
            return nullptr;
        begin = 1;
    }
    receiveAll(piece_.data() + begin, length - begin);
    return piece_.data();
}

} // namespace TAVO
