// A global holds a device that main has opened: it is released, and unlocked, after main. In a static build
// the library's globals were made later than this one, so whatever of them is destroyed has gone by then.
#include <tests/lifetimes/appliance.h>

namespace {

std::shared_ptr<TAVO::Device> device;

/// Destroyed before the device.
struct LastCall {
    ~LastCall() { expectAnswers(*device); }
};

} // namespace

int main() {
    static const LastCall lastCall;
    expect(TAVO::ObjectFactory::registeredTypes().size() == 19, "all factories are there from load");
    support::registerAllTypes();
    device = openAppliance();
    return 0;
}
