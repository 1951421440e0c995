#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/config/config_file.h>

namespace {

using namespace TAVO::config;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ConfigFile configOf(std::string_view content) { return parseConfig("/etc/c.toml", content, "/home/alice"); }

/// Each as "line:column: message".
std::vector<std::string> faultsIn(std::string_view content) {
    std::vector<std::string> faults;
    for (const auto& fault : configOf(content).faults)
        faults.push_back(fmt::format("{}:{}: {}", fault.place.line, fault.place.column, fault.message));
    return faults;
}

TEST(ConfigFile, StatesDevicesAndDefaults) {
    const auto config = configOf("[defaults]\n"
                                 "user = \"alice\"\n"
                                 "timeout = \"500ms\"\n"
                                 "\n"
                                 "[lab2]\n"
                                 "host = \"10.0.0.2:7000\"\n"
                                 "secure = true\n"
                                 "group = [\"rack-a\", \"all\"]\n"
                                 "\n"
                                 "[\"lab1.example\"]\n"
                                 "port = 0x1900\n"
                                 "password-file = \"~/p\"\n"
                                 "via = 'ssh gate -W %h:%p'\n"
                                 "timeout = 0\n");
    EXPECT_THAT(faultsIn(""), IsEmpty());
    ASSERT_THAT(config.faults, IsEmpty());
    EXPECT_EQ(config.defaults.user->value, "alice");
    EXPECT_EQ(config.textOf(config.defaults.user->place), "/etc/c.toml:2:8");
    EXPECT_DOUBLE_EQ(config.defaults.timeout->value, 0.5);
    ASSERT_EQ(config.devices.size(), 2u);
    EXPECT_EQ(config.devices[0].name, "lab2");
    EXPECT_EQ(config.devices[0].section.host->value.host, "10.0.0.2");
    EXPECT_EQ(config.devices[0].section.host->value.port, 7000);
    EXPECT_TRUE(config.devices[0].section.secure->value);
    EXPECT_THAT(config.groupsOf(config.devices[0]), ElementsAre("rack-a", "all"));
    const auto* named = config.find("lab1.example");
    ASSERT_NE(named, nullptr);
    EXPECT_EQ(named->section.port->value, 6400);
    EXPECT_EQ(named->section.passwordFile->value, "/home/alice/p");
    EXPECT_EQ(named->section.via->value, "ssh gate -W %h:%p");
    EXPECT_EQ(named->section.timeout->value, 0);
    EXPECT_EQ(config.find("lab1"), nullptr);
}

TEST(ConfigFile, FindsPasswordFilesBesideItself) {
    const auto pathOf = [](const char* content) { return configOf(content).defaults.passwordFile->value; };
    EXPECT_EQ(pathOf("[defaults]\npassword-file = \"p\""), "/etc/p");
    EXPECT_EQ(pathOf("[defaults]\npassword-file = \"/p\""), "/p");
    EXPECT_EQ(pathOf("[defaults]\npassword-file = \"-\""), "/etc/-") << "not standard input";
}

TEST(ConfigFile, NamesThePlaceOfEveryFault) {
    EXPECT_THAT(faultsIn("user = \"alice\"\n"
                         "[lab1]\n"
                         "port = 65536\n"
                         "  usr = \"bob\"\n"
                         "[lab2]\n"
                         "secure = \"yes\"\n"
                         "port = \"6123\"\n"
                         "timeout = \"5d\"\n"
                         "host = \"\"\n"),
                ElementsAre(HasSubstr("1:1: 'user' stands outside of a section; [defaults] is"),
                            "3:8: port: Value 65536 not in range 1 to 65535",
                            HasSubstr("4:3: unknown key 'usr'; there are: host, port, user, password-file, "),
                            "6:10: secure: must be true or false, not a string",
                            "7:8: port: must be an integer from 1 to 65535, not a string",
                            HasSubstr("8:11: timeout: '5d' has an unknown unit"),
                            "9:8: host: must not be empty"));
}

TEST(ConfigFile, RefusesOtherValuesToo) {
    for (const auto* line :
         {"port = 0", "port = 1.5", "user = 5", "user = \"a\\nb\"", "user = []", "host = \"a:b\"",
          "host = \"[::1\"", "timeout = -1", "timeout = nan", "timeout = \"1e9h\"", "timeout = true",
          "group = 1", "group = [\"a\", 2]", "group = \"two words\"", "via = {}", "secure = 1",
          "host = 2024-05-06", "host = \"a:7000\"\nport = 7001"}) {
        const auto faults = faultsIn(std::string("[lab1]\n") + line);
        EXPECT_EQ(faults.size(), 1u) << line << testing::PrintToString(faults);
    }
    EXPECT_THAT(faultsIn("[lab1]\nhost = \"a:7000\"\nport = 7000"), IsEmpty());
}

TEST(ConfigFile, HoldsNoPassword) {
    EXPECT_THAT(
        faultsIn("[lab1]\npassword = \"secret\"\n"),
        ElementsAre(HasSubstr("2:1: a password must not stand here: put it in the first line of a file")));
    EXPECT_EQ(faultsIn("[defaults]\npassword = \"secret\"\n")[0].find("secret"), std::string::npos);
}

TEST(ConfigFile, RefusesNamesThatCannotStandOnACommandLine) {
    for (const auto* name : {"\"two words\"", "\"-a\"", "\"a\\nb\"", "\"\"", "\"a;b\"", "\"a:1\""})
        EXPECT_THAT(faultsIn(std::string("[") + name + "]\n"), ElementsAre(HasSubstr("1:2: the name '")));
    EXPECT_THAT(faultsIn("[lab1.example]\nport = 1\n"),
                ElementsAre(HasSubstr("unknown key 'example'; a name with a dot needs quotes: "
                                      "[\"lab1.example\"]")));
}

TEST(ConfigFile, ThatIsNoTomlHasOneFault) {
    EXPECT_THAT(faultsIn("[lab1]\nport = \n"), ElementsAre(HasSubstr("2:")));
    EXPECT_THAT(faultsIn("[lab1]\n[lab1]\n"), ElementsAre(HasSubstr("2:")));
    EXPECT_THAT(faultsIn("\x01\xff"), ElementsAre(HasSubstr("1:")));
}

} // namespace
