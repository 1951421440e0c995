#pragma once

#include <string>

#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// Serves a frequency of `object` by the model's frequency(), divider() and setFrequency(), which says
/// whether it accepts one. @param model lives as long as the object.
template <class Model>
void serveFrequency(SimulatedObject& object, const std::string& get, const std::string& set, Model& model) {
    using dto::Base::FrequencyGetReply;
    using dto::Jtag::OptionTckFrequencySetRequest;
    object.on<None, FrequencyGetReply>(get, [&model] {
        FrequencyGetReply reply;
        reply.frequency = model.frequency();
        reply.value = static_cast<std::int32_t>(model.divider());
        return reply;
    });
    object.on<OptionTckFrequencySetRequest, None>(set, [&model](const OptionTckFrequencySetRequest& request) {
        return return_code::badUnless(model.setFrequency(request.frequency));
    });
}

} // namespace TAVO::simulator
