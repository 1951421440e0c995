#include <tavo/simulator/objects/cfa633.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/transcode/base_tables.h>

namespace TAVO::simulator {

namespace {

namespace base_v1_0 = TAVOXTranscode::base_v1_0;
namespace cfa633_v1_0 = CommonModules::TAVOXTranscode::cfa633_v1_0;
using namespace dto::cfa633;

} // namespace

Cfa633::Cfa633()
    : SimulatedObject("cfa633", "1.0") {
    on(cfa633_v1_0::lcdPrint, [this](const LcdPrintRequest& request) {
        return return_code::badUnless(lcd_.print(request.first, request.second, request.text));
    });
    on(cfa633_v1_0::lcdClear, [this] { lcd_.clear(); });
    on(cfa633_v1_0::lcdBackLight, [this](const LcdBackLightRequest& request) {
        return return_code::badUnless(lcd_.setBackLight(request.level));
    });
    on(
        base_v1_0::available,
        [this] {
            const auto holder = reservation().value_or(Reservation{});
            return makeRecord<dto::Base::AvailableReply>(!reservation(), holder.user, lcd_.toString());
        },
        Access::open);
}

void Cfa633::reset() { lcd_ = Lcd(); }

} // namespace TAVO::simulator
