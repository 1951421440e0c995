#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tests/support/all_types.h>
#include <tests/support/process.h>

// What tavo-sim --tap-log writes, of calls that came over the wire.

namespace {

using namespace support;
using WireBytes = std::vector<std::uint8_t>;
using CommonModules::Relay_v1_0;
using TAVO::HWDebug::Jtag_v1_1;

/// A folder that is removed in the end.
struct TapFolder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tap_log_" + std::to_string(std::random_device()()));
    TapFolder() { std::filesystem::create_directory(path); }
    ~TapFolder() { std::filesystem::remove_all(path); }
    TapFolder(const TapFolder&) = delete;
    TapFolder& operator=(const TapFolder&) = delete;

    std::string at(const std::string& name) const { return path / name; }
};

std::string contentOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The program with a topology of the examples, and the client of a board with power.
class FollowedRun {
public:
    explicit FollowedRun(const std::string& file, const std::string& topology = "chain")
        : process_(
              {TAVO_SIM_PROGRAM,
               {"--port", "0", "--quiet", "--tap-log", file, "--topology",
                topology == "standard" ? topology
                                       : TAVO_SOURCE_DIR "/examples/topologies/" + topology + ".json"}}) {
        const auto line = process_.firstLine();
        registerAllTypes();
        device_ = TAVO::DeviceFactory::buildDevice(
            "127.0.0.1", static_cast<std::uint16_t>(std::stoi(line.substr(line.rfind(':') + 1))), "engineer",
            "tavo", true);
        device_->call(device_->get<Relay_v1_0>("power")->getSetMethod(true));
    }

    std::shared_ptr<Jtag_v1_1> jtag(const std::string& name = "jtag") {
        return device_->get<Jtag_v1_1>(name);
    }
    void call(const std::shared_ptr<TAVO::Method>& method) {
        device_->call(method);
        EXPECT_EQ(method->returnCode(), 0);
    }
    ProcessOutcome end() {
        process_.signal(SIGTERM);
        return process_.wait();
    }

private:
    Process process_;
    std::shared_ptr<TAVO::Device> device_;
};

/// Scans of the chain of chain.json, with a pause at the end of one, and clocks by pins.
void scan(FollowedRun& run) {
    const auto jtag = run.jtag();
    run.call(jtag->getTapStateSetMethod(1));
    run.call(
        jtag->getShiftDRMethod(96, WireBytes{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 2, 3, 4, 0x95}));
    // USER of the first, BYPASS of the others.
    run.call(jtag->getShiftIRMethod(21, WireBytes{0xC2, 0xFF, 0x1F}));
    run.call(jtag->getOptionTerminationStateSetMethod(1, 6));
    run.call(jtag->getShiftDRMethod(34, WireBytes{0xEF, 0xBE, 0xAD, 0xDE, 0x01}));
    run.call(jtag->getTapStateSetMethod(1));
    const auto clock = [&](bool tms, bool tdi) {
        run.call(jtag->getIoTmsSetMethod(true, tms));
        run.call(jtag->getIoTdiSetMethod(true, tdi));
        run.call(jtag->getIoTckSetMethod(true, false));
        run.call(jtag->getIoTckSetMethod(true, true));
    };
    for (const bool tms : {true, false, false})
        clock(tms, false);
    for (int bit = 0; bit < 35; ++bit)
        clock(bit == 34, bit % 3 == 0);
    clock(true, false);
    clock(false, false);
    run.call(jtag->getOptionTerminationStateSetMethod(1, 1));
    run.call(jtag->getShiftDRMethod(7, WireBytes{0x55}));
}

const std::string scannedLines = "jtag dr 96 95040302efcdab8967452301 0c0de1d517b1e0c30362d093\n"
                                 "jtag ir 21 1fffc2 000841\n"
                                 "jtag dr 34 1deadbeef 000000000\n"
                                 "jtag dr 35 249249249 4deadbeef\n"
                                 "jtag dr 7 55 24\n";

TEST(TavoSimTapLog, HoldsWhatArrivedWhenTheCallIsOver) {
    const TapFolder folder;
    const auto file = folder.at("tap.log");
    std::ofstream(file) << "of an earlier run\n";
    FollowedRun run(file);
    EXPECT_EQ(contentOf(file), "");
    scan(run);
    EXPECT_EQ(contentOf(file), scannedLines);
    run.call(run.jtag()->getIoTrstSetMethod(true, false));
    EXPECT_EQ(contentOf(file), scannedLines + "jtag reset\n");
    const auto ended = run.end();
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(contentOf(file), scannedLines + "jtag reset\n");
}

TEST(TavoSimTapLog, NamesObjectsInFull) {
    const TapFolder folder;
    const auto file = folder.at("tap.log");
    FollowedRun run(file, "standard");
    run.call(run.jtag("cpu0.jtag")->getShiftIRMethod(23, WireBytes{0x02, 0xFF, 0x7F}));
    run.call(run.jtag("csJtag.jtag")->getShiftDRMethod(8, WireBytes{0xFF}));
    EXPECT_EQ(contentOf(file), "cpu0.jtag ir 23 7fff02 002101\ncsJtag.jtag dr 8 ff c3\n");
}

TEST(TavoSimTapLog, HoldsAShiftOfMillionsOfBitsWhole) {
    constexpr std::size_t bits = 6'000'000;
    const TapFolder folder;
    const auto file = folder.at("tap.log");
    FollowedRun run(file, "fpga");
    std::mt19937 random(5'748'760);
    WireBytes data(bits / 8);
    for (auto& byte : data)
        byte = static_cast<std::uint8_t>(random());
    run.call(run.jtag()->getShiftIRMethod(6, WireBytes{0x05}));
    const auto shift = run.jtag()->getShiftDRMethod(bits, data);
    run.call(shift);
    // The register of 32 bits captures 0.
    WireBytes later(4);
    later.insert(later.end(), data.begin(), data.end() - 4);
    EXPECT_TRUE(shift->value().data == later);
    const auto hex = [](const WireBytes& bytes) {
        std::string text;
        for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
            for (const auto digit : {*byte >> 4, *byte & 0x0F})
                text += "0123456789abcdef"[digit];
        return text;
    };
    EXPECT_TRUE(contentOf(file) == "jtag ir 6 05 35\njtag dr 6000000 " + hex(data) + " " + hex(later) + "\n");
}

/// What sigrok's decoder reads in a dump, in the form of the lines of a log.
std::string decodedLines(const std::string& dump) {
    const auto decoded = runProcess({"/usr/bin/sigrok-cli",
                                     {"-i", dump, "-I", "vcd", "-P", "jtag:tck=tck:tms=tms:tdi=tdi:tdo=tdo",
                                      "-A", "jtag=bitstring-tdi:bitstring-tdo"}});
    EXPECT_EQ(decoded.exitCode, 0) << decoded.errors;
    // Such as "jtag-1: DR TDI: 0101 (0x5), 4 bits", and the same with TDO in the next line.
    std::string lines;
    std::istringstream in(decoded.output);
    for (std::string tdi, tdo; std::getline(in, tdi) && std::getline(in, tdo);) {
        const auto number = [](const std::string& line, std::size_t digits) {
            const auto begin = line.find("(0x") + 3;
            const auto text = line.substr(begin, line.find(')') - begin);
            return std::string(digits - std::min(digits, text.size()), '0') + text;
        };
        const auto bits = tdi.substr(tdi.find("), ") + 3, tdi.rfind(" bits") - tdi.find("), ") - 3);
        const auto digits = (std::stoul(bits) + 3) / 4;
        EXPECT_NE(tdi.find(" TDI: "), std::string::npos) << tdi;
        EXPECT_NE(tdo.find(" TDO: "), std::string::npos) << tdo;
        lines += std::string("jtag ") + (tdi.find(" IR ") != std::string::npos ? "ir " : "dr ") + bits + " " +
                 number(tdi, digits) + " " + number(tdo, digits) + "\n";
    }
    return lines;
}

TEST(TavoSimTapLog, AsADumpIsWhatSigrokReads) {
    const TapFolder folder;
    const auto dump = folder.at("tap.vcd");
    FollowedRun run(dump, "chain");
    EXPECT_THAT(contentOf(dump), testing::EndsWith("$end\n#1\n"));
    scan(run);
    EXPECT_EQ(decodedLines(dump), scannedLines) << "while it is being written";
    EXPECT_EQ(run.end().exitCode, 0);
    EXPECT_EQ(decodedLines(dump), scannedLines);
}

TEST(TavoSimTapLog, AsADumpHasAScopeForEachObject) {
    const TapFolder folder;
    const auto dump = folder.at("tap.vcd");
    FollowedRun run(dump, "standard");
    const auto head = contentOf(dump);
    for (const auto* name : {"cpu0.jtag", "csJtag.jtag", "gpu0.jtag"})
        EXPECT_THAT(head, testing::HasSubstr("$scope module " + std::string(name) + " $end\n"));
    run.call(run.jtag("csJtag.jtag")->getIoTrstSetMethod(true, false));
    // The wires of the second begin with the sixth character from '!' on.
    EXPECT_EQ(contentOf(dump), head + "0*\n#2\n");
    run.call(run.jtag("gpu0.jtag")->getSleepMethod(0, true));
    EXPECT_EQ(contentOf(dump), head + "0*\n#2\n0+\n0,\n#3\n1+\n#4\n");
}

TEST(TavoSimTapLog, ThatCannotBeWrittenIsToldAtOnce) {
    const TapFolder folder;
    std::filesystem::create_symlink("/dev/full", folder.at("full.vcd"));
    for (const auto& [file, why] : {std::pair{folder.at("none/tap.log"), "No such file or directory"},
                                    {folder.path.string(), "Is a directory"},
                                    {std::string(), "No such file or directory"},
                                    {folder.at("full.vcd"), "No space left on device"}}) {
        const auto refused = runProcess({TAVO_SIM_PROGRAM, {"--port", "0", "--tap-log", file}});
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_EQ(refused.output, "");
        EXPECT_EQ(refused.errors, "tavo-sim: cannot write '" + file + "': " + why + "\n");
    }
}

TEST(TavoSimTapLog, ThatCannotBeContinuedIsToldOnce) {
    FollowedRun run("/dev/full");
    scan(run);
    const auto ended = run.end();
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.errors, "tavo-sim: cannot write '/dev/full': No space left on device; nothing more is "
                            "written to it\n");
}

} // namespace
