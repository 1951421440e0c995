#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/i2c.h>
#include <tavo/simulator/objects/relay.h>
#include <tavo/simulator/topology.h>
#include <tests/simulator/simulator_fixture.h>
#include <tests/support/failure_text.h>

namespace {

using namespace TAVO::simulator;
using support::failureOf;

// A file with that content, for as long as it lives.
struct TopologyFile {
    std::filesystem::path path =
        testing::TempDir() + "topology_" + std::to_string(std::random_device()()) + ".json";
    explicit TopologyFile(const std::string& content) { std::ofstream(path) << content; }
    ~TopologyFile() { std::filesystem::remove(path); }
    TopologyFile(const TopologyFile&) = delete;
    TopologyFile& operator=(const TopologyFile&) = delete;
};

struct Opened : SimulatorFixture {
    explicit Opened(const std::string& topology)
        : SimulatorFixture({.topology = topology}) {}
    void TestBody() override {}
    using SimulatorFixture::object;
    using SimulatorFixture::open;
    using SimulatorFixture::simulator;
};

std::string failureToOpen(const std::string& topology) {
    Opened opened(topology);
    return failureOf<TAVO::SpecificationError>([&] { opened.open(); });
}

// What is wrong with a file of that content, behind its path.
std::string complaintAbout(const std::string& content) {
    const TopologyFile file(content);
    const auto path = file.path.string() + ": ";
    const auto text = failureOf<std::invalid_argument>([&] { Simulator({.topology = file.path.string()}); });
    EXPECT_TRUE(text.starts_with(path)) << text;
    return text.substr(std::min(path.size(), text.size()));
}

TEST(Topologies, ThatAreWholeOpenWithTypedProxies) {
    for (const auto* name : {"standard", "bare", "legacy"})
        EXPECT_NO_THROW(Opened(name).open()) << name;
}

TEST(Topologies, AllHaveANameAndADescriptionOfTheirOwn) {
    std::set<std::string> names;
    for (const auto& topology : topologies()) {
        EXPECT_TRUE(names.insert(topology.name).second) << topology.name;
        EXPECT_FALSE(topology.description.empty()) << topology.name;
    }
    EXPECT_THAT(failureOf<std::invalid_argument>([] { topologyNamed("moon"); }),
                testing::AllOf(testing::HasSubstr("'moon'"), testing::HasSubstr("broken-versions"),
                               testing::HasSubstr(".json")));
}

TEST(Topologies, ThatAreBrokenFailAsTheirNameSays) {
    EXPECT_EQ(failureToOpen("broken-cpudebug-no-jtag"), "jtag object not found.");
    EXPECT_EQ(failureToOpen("broken-cpudebug-no-hdt"), "hdt object not found.");
    EXPECT_EQ(failureToOpen("broken-cpudebug-old-jtag"), "jtag object not found.");
    EXPECT_EQ(failureToOpen("broken-gpudebug-no-gpuscan"), "gpuscan object not found.");
    EXPECT_EQ(failureToOpen("broken-lpc-no-rom"), "lpc rom emulation object not found.");
    EXPECT_EQ(failureToOpen("broken-lpc-no-postcode"), "lpc post code object not found.");
    EXPECT_EQ(failureToOpen("broken-versions"), "Unknown lpc object version: 1.1");
}

TEST(TopologyFile, BuildsTheTreeThatItDescribes) {
    const TopologyFile file(R"({
        "name": "mine",
        "description": "a bench",
        "objects": [
            {"name": "main", "type": "relay", "version": "2.0.7", "options": {"drives": "power"}},
            {"name": "bus0", "type": "i2c", "options": {"devices": [
                {"address": 81, "kind": "eeprom256", "content": "0A0b", "needsPower": false},
                {"address": 80, "kind": "spd"}]}},
            {"name": "shelf", "type": "cupboard", "version": "7", "members": [
                {"name": "inner", "type": "drawer", "members": [{"name": "fan", "type": "relay"}]}]}
        ]})");
    EXPECT_EQ(loadTopology(file.path).description, "a bench");
    Opened opened(file.path.string());
    const auto device = opened.open();
    EXPECT_EQ(Opened::object(device, "main")->version().text, "2.0.7");
    EXPECT_EQ(Opened::object(device, "shelf")->type(), "cupboard");
    Opened::object<CommonModules::Relay_v1_0>(device, "shelf.inner.fan");
    device->call(Opened::object<CommonModules::Relay_v1_0>(device, "main")->getSetMethod(true));
    opened.simulator.inspect([](Appliance& appliance) { EXPECT_TRUE(appliance.board()->powered()); });

    const auto i2c = Opened::object<TAVO::HWDebug::I2c_v1_0>(device, "bus0");
    const auto read = i2c->getTransferMethod(81, 0, {0}, 3);
    device->call(read);
    EXPECT_EQ(read->value().data, (std::vector<std::uint8_t>{0x0A, 0x0B, 0xFF}));
}

TEST(TopologyFile, GivesEveryVersionOfAnObjectTheMethodsOfItsProxy) {
    const struct {
        std::string type, version, method;
    } cases[] = {
        {"jtag", "0.9", "optionRetryGet"},    {"jtag", "1", "optionRetryGet"},
        {"jtag", "1.0", "retryGet"},          {"jtag", "1.0.7", "retryGet"},
        {"jtag", "1.1", "optionRetryGet"},    {"jtag", "2.0", "optionRetryGet"},
        {"hdt", "0.9", "frequencyGet"},       {"hdt", "1", "frequencyGet"},
        {"hdt", "1.0", "frequencyGet"},       {"hdt", "1.0.7", "frequencyGet"},
        {"hdt", "1.1", "optionFrequencyGet"}, {"hdt", "2.0", "optionFrequencyGet"},
    };
    for (const auto& [type, version, method] : cases) {
        const TopologyFile file(R"({"name": "n", "objects": [{"name": "a", "type": ")" + type +
                                R"(", "version": ")" + version + R"("}]})");
        Opened opened(file.path.string());
        const auto device = opened.open();
        const auto object = Opened::object(device, "a");
        EXPECT_EQ(object->version().text, version);
        EXPECT_NO_THROW(TAVO::Method(method, *object, {})) << type << " " << version;
    }
}

TEST(TopologyFile, ShownInTheDocumentsBuildsWhatItShows) {
    std::ifstream document(TAVO_SOURCE_DIR "/docs/simulator-topologies.md");
    const std::string text{std::istreambuf_iterator<char>(document), {}};
    const auto begin = text.find("```json") + 7;
    const TopologyFile file(text.substr(begin, text.find("```", begin) - begin));
    Opened opened(file.path.string());
    const auto device = opened.open();
    Opened::object<TAVO::HWDebug::I2c_v1_0>(device, "rack.bus0");
    Opened::object<CommonModules::Com_v1_0>(device, "rack.console");
    EXPECT_EQ(Opened::object(device, "mystery")->version().text, "7");
}

TEST(TopologyFile, LetsVersionsBeRefusedAndChildrenBeMissed) {
    const TopologyFile newer(R"({"name": "n", "objects": [{"name": "c", "type": "com", "version": "1.2"}]})");
    EXPECT_EQ(failureToOpen(newer.path.string()), "Unknown com object version: 1.2");
    const TopologyFile bare(R"({"name": "n", "objects": [{"name": "lpc", "type": "lpc"}]})");
    EXPECT_EQ(failureToOpen(bare.path.string()), "lpc rom emulation object not found.");
}

TEST(TopologyFile, ComplaintsNameThePlaceAndWhatIsWrong) {
    EXPECT_THAT(complaintAbout("{\n \"name\": }"), testing::HasSubstr("line 2"));
    EXPECT_EQ(complaintAbout("[]"), "expected {...}");
    EXPECT_EQ(complaintAbout(R"({"objects": []})"), "'name' is missing: expected text");
    EXPECT_EQ(complaintAbout(R"({"name": "n"})"), "'objects' is missing: expected [...]");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": 3})"), "objects: expected [...]");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [], "colour": 1})"), "'colour' is not known here");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a"}]})"),
              "objects[0]: 'type' is missing: expected text");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": 5}]})"),
              "objects[0]: 'type' is 5: expected text");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": "t", "version": 1.0}]})"),
              "objects[0]: 'version' is 1.0: expected text such as \"1.0\"");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": "t", "version": "x"}]})"),
              "objects[0]: Could not parse version string: x");
    EXPECT_EQ(complaintAbout(
                  R"({"name": "n", "objects": [{"name": "a", "type": "t", "members": [{"nam": "b"}]}]})"),
              "objects[0].members[0]: 'name' is missing: expected text");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": "t", "member": []}]})"),
              "objects[0]: 'member' is not known here");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "a.b", "type": "t"}]})"),
              "objects[0]: 'a.b' cannot be the name of a member of ''");
    EXPECT_EQ(complaintAbout(R"({"name": "n", "objects": [{"name": "system", "type": "t"}]})"),
              "objects[0]: there is an object 'system' already");
    EXPECT_EQ(complaintAbout(
                  R"({"name": "n", "objects": [{"name": "a", "type": "t"}, {"name": "a", "type": "t"}]})"),
              "objects[1]: there is an object 'a' already");
}

TEST(TopologyFile, ThatIsNestedTooDeeplyIsRefused) {
    EXPECT_EQ(complaintAbout(std::string(1'000'000, '[')), "is nested too deeply");
    const std::string opening = R"({"name": "n", "objects": [{"name": "a", "type": "t", "options": )";
    EXPECT_EQ(complaintAbout(opening + std::string(1'000'000, '[')), "is nested too deeply");
}

TEST(TopologyFile, WithANumberBeyondAllBoundsIsRefused) {
    EXPECT_EQ(complaintAbout(R"({"name": 1e999})"), "number overflow parsing '1e999'");
}

TEST(TopologyFile, ComplaintsAboutOptionsSayWhich) {
    const auto about = [](const std::string& type, const std::string& options) {
        return complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": ")" + type +
                              R"(", "options": )" + options + "}]}");
    };
    EXPECT_EQ(about("relay", R"({"drives": "fan"})"), "objects[0]: 'drives' is 'fan': expected \"power\"");
    EXPECT_EQ(about("relay", "7"), "objects[0]: 'options' is 7: expected {...}");
    EXPECT_EQ(about("unheard", R"({"x": 1})"), "objects[0]: 'x' is not known here");
    EXPECT_EQ(about("i2c", R"({"devices": [{"address": 128, "kind": "spd"}]})"),
              "objects[0]: devices[0]: 'address' is 128: expected a number from 0 to 127");
    EXPECT_EQ(about("i2c", R"({"devices": [{"address": 1, "kind": "toaster"}]})"),
              "objects[0]: devices[0]: there is no I2C device 'toaster', only spd, eeprom256, eeprom64k, "
              "temperature");
    EXPECT_EQ(about("i2c", R"({"devices": [{"address": 1, "kind": "eeprom256", "content": "0"}]})"),
              "objects[0]: devices[0]: 'content' must be an even number of hexadecimal digits");
    EXPECT_EQ(about("i2c", R"({"devices": [{"address": 1, "kind": "spd"}, {"address": 1, "kind": "spd"}]})"),
              "objects[0]: devices[1]: I2C address 1 cannot be given to a device");
}

TEST(TopologyFile, ThatIsNotThereIsNamed) {
    EXPECT_EQ(failureOf<std::invalid_argument>([] { loadTopology("/nowhere/x.json"); }),
              "/nowhere/x.json: cannot be read");
}

} // namespace
