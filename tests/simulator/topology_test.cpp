#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tavo/simulator/objects/i2c.h>
#include <tavo/simulator/objects/jtag.h>
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
    for (const auto* size : {"0", "-1", "268435457", "\"1\"", "1.5", "99999999999999999999"})
        EXPECT_EQ(about("lpcRomEmulation", R"({"size": )" + std::string(size) + "}"),
                  "objects[0]: 'size' is " + nlohmann::json::parse(size).dump() +
                      ": expected a number from 1 to 268435456");
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

TEST(TopologyFile, DescribesTheTapsOfAChain) {
    const TopologyFile file(R"({
        "name": "n", "objects": [{"name": "cs", "type": "csJtag", "members": [
            {"name": "jtag", "type": "jtag", "version": "1.1", "options": {"taps": [
                {"name": "near", "irLength": 6, "idcode": "0x0362D093", "irCapture": "0x35", "registers": [
                    {"instruction": 2, "length": 68, "capture": "0xA0123456789abcdeF", "keeps": true},
                    {"instruction": "0x3e", "length": 1000000}]},
                {"irLength": 3, "idcode": 4294967295, "idcodeInstruction": "0x4"},
                {"irLength": 64}]}}]}]})");
    Simulator simulator({.topology = file.path.string()});
    simulator.inspect([](Appliance& appliance) {
        auto& taps = appliance.get<Jtag>("cs.jtag").port().chain().taps();
        ASSERT_EQ(taps.size(), 3u);
        EXPECT_EQ(taps[0].description().name, "near");
        EXPECT_EQ(taps[0].description().irLength, 6u);
        EXPECT_EQ(taps[0].description().irCapture, 0x35u);
        EXPECT_EQ(taps[0].description().idcode, 0x0362D093u);
        EXPECT_EQ(taps[0].instruction(), 0x09u);
        EXPECT_EQ(taps[0].content(2).bytes(),
                  (std::vector<std::uint8_t>{0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01, 0x0A}));
        EXPECT_TRUE(taps[0].description().registers[0].keeps);
        EXPECT_EQ(taps[0].content(0x3E), PackedBits(1'000'000));
        EXPECT_FALSE(taps[0].description().registers[1].keeps);
        EXPECT_EQ(taps[1].description().name, "");
        EXPECT_EQ(taps[1].description().idcode, 0xFFFFFFFFu);
        EXPECT_EQ(taps[1].instruction(), 0x4u);
        EXPECT_EQ(taps[1].description().irCapture, 1u);
        EXPECT_EQ(taps[2].description().idcode, std::nullopt);
        EXPECT_EQ(taps[2].instruction(), ~std::uint64_t{0});
    });
}

TEST(TopologyFile, ComplaintsAboutTapsSayWhich) {
    const auto about = [](const std::string& taps) {
        const auto text =
            complaintAbout(R"({"name": "n", "objects": [{"name": "a", "type": "jtag", "options": {"taps": )" +
                           taps + "}}]}");
        const std::string place = "objects[0]: ";
        EXPECT_TRUE(text.starts_with(place)) << text;
        return text.substr(std::min(place.size(), text.size()));
    };
    const auto aboutTap = [&](const std::string& entries) {
        return about(R"([{"irLength": 8}, {"irLength": 6, )" + entries + "}]");
    };
    const auto aboutRegister = [&](const std::string& entries) {
        return aboutTap(R"("idcode": 1, "registers": [{"instruction": 2, "length": 8}, {)" + entries + "}]");
    };
    EXPECT_EQ(about("7"), "'taps' is 7: expected a list");
    EXPECT_EQ(about("[7]"), "taps[0]: expected {...}");
    EXPECT_EQ(about("[{}]"), "taps[0]: 'irLength' is missing: expected a number from 2 to 64");
    EXPECT_EQ(about(R"([{"irLength": 1}])"), "taps[0]: 'irLength' is 1: expected a number from 2 to 64");
    EXPECT_EQ(about(R"([{"irLength": 65}])"), "taps[0]: 'irLength' is 65: expected a number from 2 to 64");
    EXPECT_EQ(about(R"([{"irLength": 6.0}])"), "taps[0]: 'irLength' is 6.0: expected a number from 2 to 64");
    EXPECT_EQ(aboutTap(R"("colour": 1)"), "taps[1]: 'colour' is not known here");
    EXPECT_EQ(aboutTap(R"("name": 1)"), "taps[1]: 'name' is 1: expected text");
    const std::string number32 = R"(: expected a number of at most 32 bits, such as 5 or "0x05")";
    for (const auto* wrong : {"true", "1.5", "-1", R"("")", R"("0x")", R"("12")", R"("0xg")", R"("0x1 ")",
                              "4294967297", R"("0x100000001")", R"("0x30000000000000000000000000001")"})
        EXPECT_EQ(aboutTap(R"("idcode": )" + std::string(wrong)),
                  "taps[1]: 'idcode' is " + std::string(wrong) + number32);
    EXPECT_EQ(aboutTap(R"("idcode": "0x2")"),
              R"(taps[1]: 'idcode' is "0x2": expected an odd number: bit 0 of an identification is 1)");
    EXPECT_EQ(aboutTap(R"("idcodeInstruction": 9)"),
              "taps[1]: 'idcodeInstruction' is there without 'idcode'");
    EXPECT_EQ(
        aboutTap(R"("idcode": 1, "idcodeInstruction": 64)"),
        R"(taps[1]: 'idcodeInstruction' is 64: expected a number of at most 6 bits, such as 5 or "0x05")");
    EXPECT_EQ(about(R"([{"irLength": 3, "idcode": 1}])"),
              "taps[0]: 'idcodeInstruction' is missing: expected a number of 3 bits");
    EXPECT_EQ(aboutTap(R"("irCapture": "0x3")"),
              R"(taps[1]: 'irCapture' is "0x3": expected a number whose lowest two bits are 01)");
    EXPECT_EQ(aboutTap(R"("registers": {})"), "taps[1]: 'registers' is {}: expected a list");
    EXPECT_EQ(aboutRegister(R"("length": 8)"),
              "taps[1]: registers[1]: 'instruction' is missing: expected a number of 6 bits");
    EXPECT_EQ(aboutRegister(R"("instruction": "0x3f", "length": 8)"),
              R"(taps[1]: registers[1]: 'instruction' is "0x3f": expected another instruction than BYPASS, )"
              "which is all ones");
    for (const auto* taken : {"2", "9"})
        EXPECT_EQ(aboutRegister(R"("length": 8, "instruction": )" + std::string(taken)),
                  "taps[1]: registers[1]: 'instruction' is " + std::string(taken) +
                      ": expected an instruction that selects no other register of the TAP");
    EXPECT_EQ(aboutRegister(R"("instruction": 3)"),
              "taps[1]: registers[1]: 'length' is missing: expected a number from 1 to 1000000");
    EXPECT_EQ(aboutRegister(R"("instruction": 3, "length": 0)"),
              "taps[1]: registers[1]: 'length' is 0: expected a number from 1 to 1000000");
    EXPECT_EQ(aboutRegister(R"("instruction": 3, "length": 1, "capture": 2)"),
              "taps[1]: registers[1]: 'capture' is 2: expected a number of at most 1 bit, such as 5 or "
              R"("0x05")");
    EXPECT_EQ(aboutRegister(R"("instruction": 3, "length": 8, "keeps": 1)"),
              "taps[1]: registers[1]: 'keeps' is 1: expected true or false");
    EXPECT_EQ(aboutRegister(R"("instruction": 3, "length": 8, "keep": true)"),
              "taps[1]: registers[1]: 'keep' is not known here");
    std::string large;
    for (int instruction = 0; instruction < 17; ++instruction)
        large += R"({"length": 1000000, "instruction": )" + std::to_string(instruction) + "},";
    large.back() = ']';
    EXPECT_EQ(about(R"([{"irLength": 5, "registers": [)" + large + "}]"),
              "'taps' has registers of 17000000 bits: expected at most 16000000");
}

TEST(TopologyFile, ExamplesOfChainsAnswerWithTheirIdentifications) {
    const struct {
        const char* name;
        std::vector<std::uint8_t> idcodes;
    } cases[] = {
        {"fpga", {0x93, 0xD0, 0x62, 0x03}},
        {"chain", {0x93, 0xD0, 0x62, 0x03, 0xC3, 0xE0, 0xB1, 0x17, 0xD5, 0xE1, 0x0D, 0x0C}},
    };
    for (const auto& [name, idcodes] : cases) {
        Opened opened(std::string(TAVO_SOURCE_DIR "/examples/topologies/") + name + ".json");
        const auto device = opened.open();
        device->call(Opened::object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(true));
        const auto jtag = Opened::object<TAVO::HWDebug::Jtag_v1_1>(device, "jtag");
        const auto shift = jtag->getShiftDRMethod(static_cast<int>(idcodes.size()) * 8,
                                                  std::vector<std::uint8_t>(idcodes.size()));
        device->call(shift);
        EXPECT_EQ(shift->value().data, idcodes) << name;
    }
}

TEST(TopologyFile, ThatIsNotThereIsNamed) {
    EXPECT_EQ(failureOf<std::invalid_argument>([] { loadTopology("/nowhere/x.json"); }),
              "/nowhere/x.json: cannot be read");
}

} // namespace
