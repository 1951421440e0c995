#include <tavo/simulator/objects/rack.h>

namespace TAVO::simulator {

Rack::Rack()
    : SimulatedObject("rack", "3.1.4") {
    addMethod(identifyRow);
    on<None, None>("identify", [] {});
}

} // namespace TAVO::simulator
