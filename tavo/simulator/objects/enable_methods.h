#pragma once

#include <tavo/client/transcode/header_records.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// Serves "enableGet" and "enableSet" of `object` by the model's enabled() and setEnabled().
/// @param model lives as long as the object.
template <class Model>
void serveEnable(SimulatedObject& object, Model& model) {
    using dto::Header::EnableGetReply;
    using dto::Header::EnableSetRequest;
    object.on<None, EnableGetReply>("enableGet", [&model] {
        EnableGetReply reply;
        reply.enable = model.enabled();
        return reply;
    });
    object.on<EnableSetRequest, None>(
        "enableSet", [&model](const EnableSetRequest& request) { model.setEnabled(request.enable); });
}

} // namespace TAVO::simulator
