// Devices are opened after main, before and after a factory of the application has been destroyed.
#include <typeinfo>
#include <utility>

#include <tests/lifetimes/appliance.h>

namespace {

class OwnRelay : public TAVO::Object_v1_0 {
public:
    using Object_v1_0::Object_v1_0;
};

/// Takes the place of the library's factory of relays.
class OwnRelayFactory : public TAVO::ObjectFactory {
public:
    OwnRelayFactory()
        : ObjectFactory("relay") {}

private:
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0>) override {
        namespace relay = CommonModules::TAVOXTranscode::relay_v1_0;
        return create<OwnRelay>(std::move(device), std::move(parent), name, instanceId,
                                TAVO::immortal<const relay::EncoderList>(),
                                TAVO::immortal<const relay::DecoderList>());
    }
};

void openWithOwnFactory() {
    const auto device = openAppliance();
    expect(has<OwnRelay>(*device, "power"), "the application's own factory is used as long as it lives");
    expectAnswers(*device);
}

void openWithoutOwnFactory() {
    const auto device = openAppliance();
    const auto power = device->getChild("power");
    expect(power != nullptr, "there is a relay");
    const auto& object = *power;
    expect(typeid(object) == typeid(TAVO::Object_v1_0), "a type whose factory was destroyed has none");
    expect(has<CommonModules::CmosRelay_v1_0>(*device, "cmos"), "the library's factories live on");
    expectAnswers(*device);
}

/// Made before everything of the library in a static build, and so destroyed last.
struct Last {
    ~Last() { openWithoutOwnFactory(); }
};

const Last last;

} // namespace

int main() {
    support::registerAllTypes();
    static const OwnRelayFactory factory;
    return std::atexit(openWithOwnFactory);
}
