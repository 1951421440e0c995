#include <bench/gauge.h>

namespace bench {

namespace {

/// Before the module makes the classes of all types.
[[maybe_unused]] const bool isKnown = [] {
    registerGauge();
    return true;
}();

} // namespace

} // namespace bench
