#include <tavo/simulator/objects/cfa633.h>

#include <tavo/client/commonmodules/cfa633_records.h>

namespace TAVO::simulator {

using namespace dto::cfa633;

Cfa633::Cfa633()
    : SimulatedObject("cfa633", "1.0") {
    on<LcdPrintRequest, None>("lcdPrint", [this](const LcdPrintRequest& request) {
        return return_code::badUnless(lcd_.print(request.first, request.second, request.text));
    });
    on<None, None>("lcdClear", [this] { lcd_.clear(); });
    on<LcdBackLightRequest, None>("lcdBackLight", [this](const LcdBackLightRequest& request) {
        return return_code::badUnless(lcd_.setBackLight(request.level));
    });
    on<None, dto::Base::AvailableReply>(
        "available",
        [this] {
            dto::Base::AvailableReply reply;
            reply.available = reservation() ? 0 : 1;
            if (reservation())
                reply.user = reservation()->user;
            reply.info = lcd_.toString();
            return reply;
        },
        Access::open);
}

void Cfa633::reset() { lcd_ = Lcd(); }

} // namespace TAVO::simulator
