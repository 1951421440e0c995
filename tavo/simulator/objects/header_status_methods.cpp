#include <tavo/simulator/objects/header_status_methods.h>

#include <tavo/client/transcode/header_status_tables.h>

namespace TAVO::simulator {

namespace {

namespace headerStatus_v1_1 = TAVOXTranscode::headerStatus_v1_1;

} // namespace

void serveHeaderStatusGet(SimulatedObject& object, const HeaderStatus& status) {
    object.on(headerStatus_v1_1::headerStatusGet, [&status] {
        dto::Base::HeaderStatusGetReply reply;
        for (const auto& header : status.headers())
            reply.headers.push_back({header.name, header.connected, header.changed, header.error});
        reply.connections.push_back({status.hostSide(), status.targetSide()});
        return reply;
    });
}

void serveHeaderStatus(SimulatedObject& object, HeaderStatus& status) {
    serveHeaderStatusGet(object, status);
    object.on(headerStatus_v1_1::headerStatusClear, [&status] { status.clear(); });
}

} // namespace TAVO::simulator
