#pragma once

#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// Serves "enableGet" and "enableSet" of `object` with the model's enabled() and setEnabled().
/// @param model must outlive the object.
template <class Model>
void serveEnable(SimulatedObject& object, Model& model) {
    namespace headerStatus_v1_1 = TAVOXTranscode::headerStatus_v1_1;
    using namespace dto::Header;
    object.on(headerStatus_v1_1::enableGet, [&model] { return makeRecord<EnableGetReply>(model.enabled()); });
    object.on(headerStatus_v1_1::enableSet,
              [&model](const EnableSetRequest& request) { model.setEnabled(request.enable); });
}

} // namespace TAVO::simulator
