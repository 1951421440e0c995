#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <tavo/client.h>
#include <tavo/simulator/scripted_peer.h>
#include <tests/cli/talking_device.h>
#include <tests/cli/tool_fixture.h>
#include <tests/support/appliance_server.h>

namespace tool_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Findings = std::map<std::string, nlohmann::json>;

Findings findingsIn(const std::string& output) {
    Findings findings;
    for (const auto& finding : jsonOf(output).value("checks", nlohmann::json::array()))
        findings[finding.at("check")] = finding;
    return findings;
}

/// The states of all checks, in their order.
std::vector<std::string> statesIn(const std::string& output) {
    std::vector<std::string> states;
    for (const auto& finding : jsonOf(output).value("checks", nlohmann::json::array()))
        states.push_back(finding.at("check").get<std::string>() + ": " +
                         finding.at("state").get<std::string>());
    return states;
}

class Doctor : public ToolTest {
protected:
    Doctor()
        : folder(std::filesystem::path(testing::TempDir()) /
                 ("tavo_doctor_" + std::to_string(simulator.port()))) {
        std::filesystem::create_directories(folder);
    }
    ~Doctor() override { std::filesystem::remove_all(folder); }

    std::string write(const std::string& name, const std::string& text, mode_t mode = 0600) const {
        const auto path = (folder / name).string();
        std::ofstream(path) << text;
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        return path;
    }
    support::ProcessSetup setupWith(const Words& arguments) const {
        auto setup = setupOf(arguments + Words{"doctor"});
        setup.environment["XDG_RUNTIME_DIR"] = folder.string();
        return setup;
    }
    support::ProcessOutcome doctor(const Words& arguments = {}) const {
        return support::runProcess(setupWith(arguments));
    }
    support::ProcessOutcome doctorOf(std::uint16_t port, const Words& arguments = {}) const {
        return support::runProcess(toolWith(Words{"--json", "--host", "127.0.0.1:" + std::to_string(port)} +
                                            arguments + Words{"doctor"}));
    }

    std::filesystem::path folder;
};

TEST_F(Doctor, FindsNothingWhereAllIsWell) {
    const auto outcome = doctor({"--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    EXPECT_THAT(statesIn(outcome.output),
                ElementsAre("configuration: ok", "settings: ok", "password: ok", "time limit: ok",
                            "share: ok", "name: ok", "connection: ok", "protocol: ok", "key: ok",
                            "round trip: ok", "versions: ok", "lock: ok"));
    EXPECT_EQ(jsonOf(outcome.output).at("ok"), true);
    auto findings = findingsIn(outcome.output);
    EXPECT_EQ(findings["name"].at("addresses"), nlohmann::json({"127.0.0.1"}));
    EXPECT_EQ(findings["settings"].at("values").at("host").at("source"), "option --host");
    EXPECT_EQ(findings["password"].at("text"), "of the variable TAVO_PASSWORD");
    EXPECT_EQ(findings["versions"].at("device"), "tavo-sim");
    EXPECT_EQ(findings["lock"].at("user"), nullptr);
    EXPECT_GT(findings["round trip"].at("median").get<double>(), 0);
    EXPECT_THAT(callsOf("device", "lock"), IsEmpty());
    EXPECT_THAT(callsOf("device", "unlock"), IsEmpty());
    const auto text = doctor();
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.output, StartsWith("ok         configuration  "));
    EXPECT_THAT(text.output, HasSubstr("\nok         lock           nobody holds it"));
}

TEST_F(Doctor, TellsWhoHoldsTheLock) {
    support::registerAllTypes();
    const auto guest =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "guest", "tavo", false);
    const auto outcome = doctor();
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_THAT(outcome.output, HasSubstr("\nfailed     lock           guest holds it\n"));
    EXPECT_THAT(outcome.output, HasSubstr("--wait-lock"));
    EXPECT_EQ(outcome.errors, "tavo: lock: guest holds it\n");
    EXPECT_EQ(simulator.lockHolder()->user, "guest");
}

TEST_F(Doctor, LooksThroughAShareAtTheDevice) {
    auto setup = setupOf({"share"});
    setup.environment["XDG_RUNTIME_DIR"] = folder.string();
    support::Process share(setup);
    EXPECT_THAT(share.firstLine(), StartsWith("listening"));
    const auto running = findingsIn(doctor({"--json"}).output);
    EXPECT_THAT(running.at("share").at("text").get<std::string>(), StartsWith("one runs at "));
    EXPECT_EQ(running.at("lock").at("state"), "ok");
    EXPECT_EQ(running.at("lock").at("user"), "engineer");
    share.signal(SIGTERM);
    EXPECT_EQ(share.wait().exitCode, 0);
}

TEST_F(Doctor, FindsTheSocketThatAKilledShareLeft) {
    const auto shares = folder / "tavo";
    std::filesystem::create_directories(shares);
    std::filesystem::permissions(shares, std::filesystem::perms::owner_all);
    const auto path = shares / ("engineer@127.0.0.1:" + std::to_string(simulator.port()) + ".share");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.string().size(), sizeof address.sun_path);
    path.string().copy(address.sun_path, sizeof address.sun_path);
    const int bound = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(bound, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    ::close(bound);
    const auto outcome = doctor({"--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    const auto found = findingsIn(outcome.output).at("share");
    EXPECT_EQ(found.at("state"), "warning");
    EXPECT_THAT(found.at("hint").get<std::string>(), HasSubstr("replaces it"));
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(Doctor, ReadsNoPasswordAndAsksForNone) {
    const auto open = write("open", "secret-word\n", 0644);
    const auto warned = doctor({"--password-file", open});
    EXPECT_EQ(warned.exitCode, 0);
    EXPECT_THAT(warned.output, HasSubstr("\nwarning    password       the password file"));
    EXPECT_THAT(warned.output, HasSubstr("chmod 600"));
    EXPECT_THAT(warned.output + warned.errors, Not(HasSubstr("secret-word")));
    EXPECT_EQ(doctor({"--password-file", open, "--strict"}).exitCode, 2);
    const auto missing = doctor({"--password-file", (folder / "none").string()});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_THAT(missing.output, HasSubstr("\nfailed     password       cannot read"));
    EXPECT_THAT(missing.output, HasSubstr("\nok         lock")) << "what needs no password is looked at";
    auto without = setupWith({"--json"});
    without.environment.erase("TAVO_PASSWORD");
    const auto outcome = support::runProcess(without);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(findingsIn(outcome.output).at("password").at("state"), "warning");
}

TEST_F(Doctor, FindsFaultsOfTheConfiguration) {
    auto setup = setupWith({"--json"});
    setup.environment["TAVO_CONFIG"] = write("config.toml", "[defaults]\nprot = 1\n");
    const auto outcome = support::runProcess(setup);
    EXPECT_EQ(outcome.exitCode, 2);
    const auto states = statesIn(outcome.output);
    ASSERT_EQ(states.size(), 12u);
    EXPECT_EQ(states.front(), "configuration: failed");
    EXPECT_EQ(states.back(), "lock: not tried");
    EXPECT_THAT(findingsIn(outcome.output).at("configuration").at("text").get<std::string>(),
                HasSubstr("config.toml:2:1: unknown key 'prot'"));
    EXPECT_THAT(callsOf("device", "info"), IsEmpty());
    const auto nowhere = runTool({"--json", "doctor"});
    EXPECT_EQ(nowhere.exitCode, 2);
    EXPECT_EQ(findingsIn(nowhere.output).at("settings").at("text"), "nothing names a device");
}

TEST_F(Doctor, FindsNamesThatDoNotResolve) {
    // Too long a label for any resolver to ask for it.
    const auto host = std::string(64, 'n') + ".invalid";
    const auto outcome = runTool({"--json", "--host", host, "--timeout", "30", "doctor"});
    EXPECT_EQ(outcome.exitCode, 5);
    const auto findings = findingsIn(outcome.output);
    EXPECT_EQ(findings.at("name").at("state"), "failed");
    EXPECT_THAT(findings.at("name").at("text").get<std::string>(), HasSubstr(host));
    EXPECT_EQ(findings.at("connection").at("state"), "not tried");
}

TEST_F(Doctor, FindsPortsWhereNobodyListens) {
    std::uint16_t port = 0;
    {
        const TAVO::simulator::PeerListener listener;
        port = listener.port();
    }
    const auto outcome = doctorOf(port);
    EXPECT_EQ(outcome.exitCode, 5);
    const auto findings = findingsIn(outcome.output);
    EXPECT_EQ(findings.at("connection").at("state"), "failed");
    EXPECT_EQ(findings.at("connection").at("kind"), "network");
    EXPECT_EQ(findings.at("protocol").at("state"), "not tried");
}

TEST_F(Doctor, DoesNotWaitForThoseWhoStaySilent) {
    TAVO::simulator::PeerListener listener;
    const auto outcome = doctorOf(listener.port(), {"--timeout", "300ms"});
    EXPECT_EQ(outcome.exitCode, 5);
    const auto findings = findingsIn(outcome.output);
    EXPECT_EQ(findings.at("connection").at("state"), "ok");
    EXPECT_EQ(findings.at("protocol").at("state"), "failed");
    EXPECT_THAT(findings.at("protocol").at("text").get<std::string>(), HasSubstr("within 300ms"));
    EXPECT_EQ(findings.at("lock").at("state"), "not tried");
}

TEST_F(Doctor, FindsThoseWhoSpeakSomethingElse) {
    TAVO::simulator::PeerListener listener;
    std::thread peer([&] {
        auto onlyConnected = listener.accept();
        auto asked = listener.accept();
        const std::string greeting = "HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n";
        asked.readRequest();
        asked.finishWith({greeting.begin(), greeting.end()});
        asked.readToEnd();
    });
    const auto outcome = doctorOf(listener.port(), {"--timeout", "20"});
    peer.join();
    EXPECT_NE(outcome.exitCode, 0);
    const auto findings = findingsIn(outcome.output);
    EXPECT_EQ(findings.at("protocol").at("state"), "failed");
    EXPECT_EQ(findings.at("protocol").at("code"), outcome.exitCode);
}

TEST_F(Doctor, TellsOfUnknownKeys) {
    TAVO::simulator::Simulator stranger({.topology = "bare", .serverKey = -1});
    stranger.start();
    const auto outcome = doctorOf(stranger.port());
    EXPECT_EQ(outcome.exitCode, 0);
    const auto found = findingsIn(outcome.output).at("key");
    EXPECT_EQ(found.at("state"), "warning");
    EXPECT_EQ(found.at("known"), false);
    const auto secure = doctorOf(stranger.port(), {"--secure"});
    EXPECT_EQ(secure.exitCode, 4);
    EXPECT_EQ(findingsIn(secure.output).at("key").at("state"), "failed");
    EXPECT_EQ(findingsIn(secure.output).at("lock").at("state"), "not tried");
}

TEST_F(Doctor, SkipsWhatDoesNotApply) {
    const auto simulated = runTool({"--sim", "--json", "--timeout", "0", "doctor"});
    EXPECT_EQ(simulated.exitCode, 0);
    const auto findings = findingsIn(simulated.output);
    for (const auto* check : {"configuration", "name", "connection", "share"})
        EXPECT_EQ(findings.at(check).at("state"), "not tried") << check;
    EXPECT_EQ(findings.at("lock").at("state"), "ok");
    EXPECT_EQ(findings.at("time limit").at("state"), "warning");
    const auto via = doctor({"--json", "--via", std::string("'") + TAVO_TUNNEL_PROGRAM + "' %h %p"});
    EXPECT_EQ(via.exitCode, 0) << via.output << via.errors;
    EXPECT_EQ(findingsIn(via.output).at("name").at("state"), "not tried");
    EXPECT_EQ(findingsIn(via.output).at("lock").at("state"), "ok");
}

TEST_F(Doctor, ShowsNoControlCharactersOfTheDevice) {
    TalkingDevice device("\x1b[2J\n");
    support::ApplianceServer server(device.appliance);
    const auto outcome =
        runTool({"--host", "127.0.0.1:" + std::to_string(server.port()), "--user", "x\x1b[1m", "doctor"});
    EXPECT_THAT(outcome.output, HasSubstr("\nok         protocol"));
    EXPECT_THAT(outcome.output, HasSubstr("\\x1b[2J"));
    EXPECT_THAT(outcome.output + outcome.errors, Not(HasSubstr("\x1b")));
}

TEST_F(Doctor, IsNotForAShell) {
    const auto outcome = tool({"shell"}, "doctor\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("run 'tavo doctor' beside it"));
}

} // namespace
} // namespace tool_test
