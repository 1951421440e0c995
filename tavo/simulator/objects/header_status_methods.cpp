#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

void serveHeaderStatusGet(SimulatedObject& object, const HeaderStatus& status) {
    using dto::Base::HeaderStatusGetReply;
    object.on<None, HeaderStatusGetReply>("headerStatusGet", [&status] {
        const auto asByte = [](bool flag) { return static_cast<std::uint8_t>(flag ? 1 : 0); };
        HeaderStatusGetReply reply;
        for (const auto& header : status.headers())
            reply.headers.push_back(
                {header.name, asByte(header.connected), asByte(header.changed), asByte(header.error)});
        reply.connections.push_back({status.hostSide(), status.targetSide()});
        return reply;
    });
}

void serveHeaderStatus(SimulatedObject& object, HeaderStatus& status) {
    serveHeaderStatusGet(object, status);
    object.on<None, None>("headerStatusClear", [&status] { status.clear(); });
}

} // namespace TAVO::simulator
