#pragma once

#include <sstream>
#include <string>
#include <vector>

/// All verbs of the tool, for tests that go over all of them.
namespace attack {

using Words = std::vector<std::string>;

/// What is to be called, and how.
struct Verb {
    /// The words of the command, such as "relay set".
    std::string name;
    /// What follows them: what it takes to reach the device and to end soon.
    Words arguments = {};
    /// For the standard input.
    std::string input = {};

    Words words() const {
        Words all;
        std::istringstream stream(name);
        for (std::string word; stream >> word;)
            all.push_back(word);
        all.insert(all.end(), arguments.begin(), arguments.end());
        return all;
    }
};

/// @param folder where files can be made; "image" in it is one of a ROM that is erased.
inline std::vector<Verb> verbs(const std::string& folder) {
    const auto image = folder + "/image";
    const Words cpu = {"--object", "cpu0.jtag"};
    const Words bus = {"--object", "i2c"};
    return {
        {"info"},
        {"tree", {"--methods"}},
        {"call", {"i2c.transfer", "address=0x54", "data=0000", "count=64"}},
        {"batch", {"-"}, "power.get\ndevice.methodsVerbose\ncpu0.jtag.headerStatusGet\nlcd.available\n"},
        {"shell", {}, "relay list\n-call i2c.transfer address=0x54 data=0000 count=64\ninfo\npost list\n"},
        {"relay list"},
        {"relay get", {"power"}},
        {"relay set", {"power", "on"}},
        {"relay toggle", {"power"}},
        {"time get", {"--unit", "us"}},
        {"time set", {"--unit", "us", "now"}},
        {"firmware update", {"main", image, "--yes"}},
        {"firmware status", {"main", "--wait", "--settle", "0.05", "--timeout", "0.3"}},
        {"header status"},
        {"header clear"},
        {"jtag scan", cpu},
        {"jtag shift", {"--object", "cpu0.jtag", "ir", "23", "7fff02", "dr", "340", "0"}},
        {"jtag state", {"--object", "cpu0.jtag", "Run-Test/Idle"}},
        {"jtag pins", cpu},
        {"jtag frequency", {"--object", "cpu0.jtag", "2000000"}},
        {"jtag options", cpu},
        {"jtag svf",
         {"--object", "cpu0.jtag", "-"},
         "SIR 23 TDI (7fff02);\nSDR 34 TDI (0) TDO (1) MASK (1);\n"},
        {"hdt status"},
        {"hdt request", {"on"}},
        {"hdt snapshot clear"},
        {"hdt mask", {"1", "0", "1", "1"}},
        {"hdt trigger get", {"1"}},
        {"hdt trigger set", {"1", "on"}},
        {"gpu scan", {"300"}},
        {"gpu mode", {"--object", "gpu0", "2"}},
        {"i2c detect", bus},
        {"i2c dump", {"--object", "i2c", "0x54", "--word-address", "--range", "0-0xfff"}},
        {"i2c get", {"--object", "i2c", "0x54", "--word-address", "0", "16"}},
        {"i2c set", {"--object", "i2c", "0x54", "--word-address", "--yes", "--verify", "0", "1", "2", "3"}},
        {"i2c transfer", {"--object", "i2c", "w2@0x54", "0", "0", "w2@0x54", "0", "9", "r300", "--yes"}},
        {"post follow", {"--timeout", "0.2", "--interval", "0.05"}},
        {"post list"},
        {"post clear"},
        {"rom load", {image, "--yes", "--enable"}},
        {"rom save", {folder + "/saved", "--length", "70000"}},
        {"rom verify", {image}},
        {"serial", {"--wait", "0.1"}, "help\r"},
        {"lock status"},
        {"metrics"},
        {"lock hold", {"true"}},
        {"lock wait"},
        {"lock release"},
        {"lcd print", {"hello", "--row", "1"}},
        {"lcd show"},
        {"lcd clear"},
        {"lcd backlight", {"50"}},
    };
}

} // namespace attack
