#include <algorithm>
#include <array>
#include <ostream>
#include <string>
#include <typeinfo>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tests/support/all_types.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using namespace TAVO::HWDebug;
using namespace CommonModules;

constexpr std::uint32_t any = 0xFFFFFFFF;

struct WireVersion {
    const char* text;
    std::uint32_t major, minor, bugfix;
};

constexpr std::array<WireVersion, 7> versions{{
    {"0.9", 0, 9, any},
    {"1", 1, any, any},
    {"1.0", 1, 0, any},
    {"1.0.9", 1, 0, 9},
    {"1.1", 1, 1, any},
    {"1.2", 1, 2, any},
    {"2.0", 2, 0, any},
}};

using Class = const std::type_info*;
constexpr Class refused = nullptr;

/// A remote type, and the class that serves it at each of the versions.
struct Choice {
    std::string type;
    std::array<Class, 7> classes;
};

void PrintTo(const Choice& choice, std::ostream* out) { *out << choice.type; }

std::vector<Choice> choices() {
    const auto always = [](const char* type, Class served) {
        return Choice{type, {served, served, served, served, served, served, served}};
    };
    const auto upToOneZero = [](const char* type, Class served) {
        return Choice{type, {served, served, served, served, refused, refused, refused}};
    };
    const Class jtag0 = &typeid(Jtag_v1_0), jtag1 = &typeid(Jtag_v1_1);
    const Class hdt0 = &typeid(Hdt_v1_0), hdt1 = &typeid(Hdt_v1_1);
    const Class cpu0 = &typeid(CpuDebug_v1_0), cpu1 = &typeid(CpuDebug_v1_1);
    return {
        // .9 ... 1 .. 1.0 . 1.0.9 . 1.1 . 1.2 . 2.0
        {"jtag", {jtag1, jtag1, jtag0, jtag0, jtag1, jtag1, jtag1}},
        {"hdt", {hdt0, hdt0, hdt0, hdt0, hdt1, hdt1, hdt1}},
        {"cpuDebug", {cpu1, cpu1, cpu0, cpu0, cpu1, cpu1, cpu1}},
        always("csJtag", &typeid(CsJtag_v1_0)),
        always("i2c", &typeid(I2c_v1_0)),
        always("gpuScan", &typeid(GpuScan_v1_0)),
        always("gpuDebug", &typeid(GpuDebug_v1_0)),
        always("kelvorGpuDebugMux", &typeid(KelvorGpuDebugMux_v1_0)),
        always("kelvorUvdMux", &typeid(KelvorUvdMux_v1_0)),
        upToOneZero("lpc", &typeid(Lpc_v1_0)),
        upToOneZero("lpcPostCode", &typeid(LpcPostCode_v1_0)),
        upToOneZero("lpcRomEmulation", &typeid(LpcRomEmulation_v1_0)),
        always("relay", &typeid(Relay_v1_0)),
        upToOneZero("cmosRelay", &typeid(CmosRelay_v1_0)),
        upToOneZero("com", &typeid(Com_v1_0)),
        upToOneZero("cfa633", &typeid(Cfa633_v1_0)),
    };
}

/// The object, and below it the children without which some types cannot be opened.
std::shared_ptr<support::FakeDevice> deviceWith(const Choice& choice, std::size_t version) {
    auto device = std::make_shared<support::FakeDevice>();
    auto& appliance = device->appliance;
    auto& object = appliance.add(7, choice.type)
                       .version(versions[version].major, versions[version].minor, versions[version].bugfix);
    const auto addChild = [&](std::uint32_t id, const char* type, std::uint32_t minor) {
        object.member(type, id);
        appliance.add(id, type).version(1, minor, 0);
    };
    const std::uint32_t minor = choice.classes[version] == &typeid(CpuDebug_v1_0) ? 0 : 1;
    if (choice.type == "csJtag" || choice.type == "cpuDebug" || choice.type == "gpuDebug")
        addChild(8, "jtag", minor);
    if (choice.type == "cpuDebug")
        addChild(9, "hdt", minor);
    if (choice.type == "gpuDebug")
        addChild(9, "gpuScan", 0);
    if (choice.type == "lpc") {
        addChild(8, "lpcPostCode", 0);
        addChild(9, "lpcRomEmulation", 0);
    }
    return device;
}

class VersionChoice : public testing::TestWithParam<Choice> {
protected:
    static std::shared_ptr<TAVO::Container> build(const std::shared_ptr<support::FakeDevice>& device) {
        return TAVO::ObjectFactory::buildObject(device, "module", 7, nullptr);
    }
};

TEST_P(VersionChoice, ServesEachVersionByItsClassOrRefusesIt) {
    for (std::size_t i = 0; i < versions.size(); ++i) {
        SCOPED_TRACE(versions[i].text);
        const auto device = deviceWith(GetParam(), i);
        if (GetParam().classes[i] == refused) {
            EXPECT_EQ(support::failureOf<TAVO::SpecificationError>([&] { build(device); }),
                      "Unknown " + GetParam().type + " object version: " + versions[i].text);
            continue;
        }
        const auto built = build(device);
        ASSERT_TRUE(built);
        const auto& object = *built;
        EXPECT_STREQ(typeid(object).name(), GetParam().classes[i]->name());
    }
}

TEST_P(VersionChoice, AsksForTheVersionOnce) {
    for (std::size_t i = 0; i < versions.size(); ++i) {
        SCOPED_TRACE(versions[i].text);
        const auto device = deviceWith(GetParam(), i);
        if (GetParam().classes[i] == refused)
            EXPECT_THROW(build(device), TAVO::SpecificationError);
        else
            build(device);
        const auto calls = device->appliance.callNames();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "7.version"), 1);
    }
}

TEST_P(VersionChoice, NamesTheProxyAsItsParentListsIt) {
    const auto choice = GetParam();
    const auto device = deviceWith(choice, 2);
    const auto built = build(device);
    const auto object = std::dynamic_pointer_cast<TAVO::Object_v1_0>(built);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->getName(), "module");
    EXPECT_EQ(object->getInstanceID(), 7u);
    EXPECT_EQ(object->device(), device);
}

INSTANTIATE_TEST_SUITE_P(Types, VersionChoice, testing::ValuesIn(choices()),
                         testing::PrintToStringParamName());

TEST(RegisteredTypes, HoldAllThatIsPublished) {
    support::registerAllTypes();
    EXPECT_THAT(
        TAVO::ObjectFactory::registeredTypes(),
        testing::IsSupersetOf({"device", "system", "private", "jtag", "csJtag", "hdt", "cpuDebug", "i2c",
                               "gpuScan", "gpuDebug", "kelvorGpuDebugMux", "kelvorUvdMux", "lpc",
                               "lpcPostCode", "lpcRomEmulation", "relay", "cmosRelay", "com", "cfa633"}));
}

} // namespace
