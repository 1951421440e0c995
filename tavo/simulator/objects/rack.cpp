#include <tavo/simulator/objects/rack.h>

#include <tavo/client/transcode/table.h>

namespace TAVO::simulator {

namespace {

constexpr TAVOXTranscode::Call<> identify{"identify"};
constexpr auto identifyRow = TAVOXTranscode::rowOf(identify);

} // namespace

Rack::Rack()
    : SimulatedObject("rack", "3.1.4") {
    addMethod(identifyRow);
    on(identify, [] {});
}

} // namespace TAVO::simulator
