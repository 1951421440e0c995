#include <tavo/simulator/objects/relay.h>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/simulator/appliance.h>

namespace TAVO::simulator {

namespace {

namespace relay_v1_0 = CommonModules::TAVOXTranscode::relay_v1_0;
namespace cmosRelay_v1_0 = CommonModules::TAVOXTranscode::cmosRelay_v1_0;

constexpr std::int32_t longestCmosPulse = 60'000;

} // namespace

Relay::Relay()
    : SimulatedObject("relay", "1.0") {
    using namespace dto::relay;
    on(relay_v1_0::get, [this](CallContext& call) { return makeRecord<GetReply>(stateAt(call.elapsed())); });
    on(relay_v1_0::set, [this](const SetRequest& request) { set(request.state); });
    on(relay_v1_0::toggle,
       [this](const ToggleRequest& request, CallContext& call) { toggle(request.value, call.elapsed()); });
}

void Relay::reset() {
    steady_ = false;
    pulseEnd_ = 0;
    if (board_)
        board_->setPower(false);
}

bool Relay::state() const { return stateAt(appliance().now()); }

void Relay::set(bool state) {
    steady_ = state;
    pulseEnd_ = 0;
    ++switchings_;
    if (board_)
        board_->setPower(state);
}

void Relay::drivePowerOf(std::shared_ptr<Board> board) {
    board_ = std::move(board);
    board_->setPower(steady_);
}

void Relay::toggle(std::int32_t milliseconds, std::int64_t now) {
    if (milliseconds < 0)
        throw Refusal(return_code::badArgument);
    const bool state = !stateAt(now);
    set(state);
    if (milliseconds == 0)
        return;
    const auto duration = std::int64_t{milliseconds} * 1000;
    steady_ = !state;
    pulseEnd_ = now + duration;
    if (board_)
        board_->pulsePower(state, static_cast<std::uint64_t>(duration));
}

CmosRelay::CmosRelay()
    : SimulatedObject("cmosRelay", "1.0") {
    on(cmosRelay_v1_0::cmosClear, [this](const dto::cmosRelay::CmosClear& request) {
        if (request.value < 0)
            throw Refusal(return_code::badArgument);
        if (request.value > longestCmosPulse)
            throw DeviceFault(device_error::execution, "The pulse is longer than a minute");
        pulses_.push_back(request.value);
        if (board_)
            board_->clearCmos();
    });
}

} // namespace TAVO::simulator
