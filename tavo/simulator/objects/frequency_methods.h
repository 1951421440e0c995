#pragma once

#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// Serves a frequency of `object` with the model's frequency(), divider() and setFrequency(), which returns
/// whether it accepts the value. @param model must outlive the object.
template <class Model>
void serveFrequency(SimulatedObject& object,
                    const TAVOXTranscode::Call<None, dto::Base::FrequencyGetReply>& get,
                    const TAVOXTranscode::Call<dto::Jtag::OptionTckFrequencySetRequest>& set, Model& model) {
    object.on(get, [&model] {
        return makeRecord<dto::Base::FrequencyGetReply>(model.frequency(), model.divider());
    });
    object.on(set, [&model](const dto::Jtag::OptionTckFrequencySetRequest& request) {
        return return_code::badUnless(model.setFrequency(request.frequency));
    });
}

} // namespace TAVO::simulator
