// The initialiser of a global opens a device. In a static build it runs before those of the library.
#include <algorithm>

#include <tests/lifetimes/appliance.h>

namespace {

void expectTables() {
    const auto& encoders = TAVO::immortal<const TAVO::TAVOXTranscode::jtag_v1_1::EncoderList>();
    expect(encoders.size() == 38 && encoders.count("members") == 1, "the table of jtag 1.1 is filled");
    expect(encoders.at("shiftDR") == TAVO::TAVOXTranscode::jtag_v1_1::encode_shiftDR,
           "an encoder has its name");
    expect(TAVO::TAVOXTranscode::base_v1_0::decoders().size() == 8, "the table of every object is filled");
    expect(TAVO::methodRows("jtag", "1.1").size() == 30, "the rows of jtag 1.1 are there");
    expect(std::all_of(TAVO::objectTables().begin(), TAVO::objectTables().end(),
                       [](const TAVO::ObjectTable& table) { return !table.type.empty(); }),
           "the list of all tables is filled");
    expect(TAVO::serverKeys().size() == 4, "the server keys are there");
    expect(TAVO::Container::SEPARATOR == "." && TAVO::ClientLibraryVersion == "2.0.0.0",
           "constant texts are there");
}

std::shared_ptr<TAVO::Device> openFirst() {
    support::registerAllTypes();
    expectTables();
    expect(TAVO::ObjectFactory::registeredTypes().size() == 19, "all factories are there");
    auto device = openAppliance();
    expectAnswers(*device);

    // A line goes to the standard error stream, which nobody else has set up yet.
    expect(device->getSystem()->getTimeGetMethod()->value() == 0, "a call without result gives nothing");
    return device;
}

const std::shared_ptr<TAVO::Device> device = openFirst();

} // namespace

int main() {
    expect(has<CommonModules::CmosRelay_v1_0>(*device, "cmos"), "an object is of the class of its type");
    expect(device->getChild("cmos")->getFullName() == "cmos", "a full name is whole");
    expectAnswers(*device);
    return 0;
}
