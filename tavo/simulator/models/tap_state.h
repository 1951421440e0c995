#pragma once

#include <tavo/client/hwdebug/tap_state.h>

namespace TAVO::simulator {

/// The appliance numbers the states of its TAP controllers as the client does.
using HWDebug::TapState, HWDebug::nextState, HWDebug::shortestPath, HWDebug::isResting;

} // namespace TAVO::simulator
