#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <tests/simulator/raw_client.h>
#include <tests/support/process.h>
#include <tests/support/sanitizers.h>

namespace {

using namespace support;

ProcessSetup simulator(std::vector<std::string> arguments) {
    return {TAVO_SIM_PROGRAM, std::move(arguments)};
}

ProcessOutcome outcome(std::vector<std::string> arguments) {
    return runProcess(simulator(std::move(arguments)));
}

std::uint16_t portIn(const std::string& line) {
    const std::string start = "listening on 127.0.0.1:";
    EXPECT_EQ(line.substr(0, start.size()), start);
    return static_cast<std::uint16_t>(std::stoi(line.substr(start.size())));
}

const Bytes methodsOfDevice = requestBytes(0, {callBytes(0, 3)});

TEST(TavoSim, TellsItsPortAndServes) {
    Process process(simulator({"--port", "0"}));
    RawClient client(portIn(process.firstLine()));
    client.send(methodsOfDevice);
    EXPECT_GT(client.receive().size(), 100u);
    process.signal(SIGTERM);
    const auto ended = process.wait();
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.errors, "stopped after 1 requests on 1 connections\n");
}

TEST(TavoSim, EndsWellOnAnInterrupt) {
    Process process(simulator({"--port", "0", "--quiet"}));
    process.firstLine();
    process.signal(SIGINT);
    const auto ended = process.wait();
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.errors, "");
}

TEST(TavoSim, LetsRequestsGoWrong) {
    Process process(simulator({"--port", "0", "--fault", "2:cut=5", "--fault", "1:stray=2"}));
    const auto port = portIn(process.firstLine());
    RawClient client(port);
    client.send(methodsOfDevice);
    const auto reply = client.receive();
    EXPECT_EQ(Bytes(reply.end() - 2, reply.end()), Bytes({0xA5, 0xA5}));
    client.send(methodsOfDevice);
    EXPECT_EQ(client.receiveToEnd(), Bytes(5));
}

/// A file of accounts that only its owner may read.
class AccountsFile {
public:
    explicit AccountsFile(const std::string& content) {
        const int descriptor = mkstemp(path_.data());
        if (descriptor < 0 || write(descriptor, content.data(), content.size()) < 0 || close(descriptor) != 0)
            throw std::runtime_error("cannot make a file");
    }
    AccountsFile(const AccountsFile&) = delete;
    AccountsFile& operator=(const AccountsFile&) = delete;
    ~AccountsFile() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_; }

private:
    std::string path_ = std::filesystem::temp_directory_path() / "accounts-XXXXXX";
};

/// The id of a method in an answer to "methods".
Bytes idIn(const Bytes& list, const std::string& method) {
    const auto name = text(method);
    const auto found = std::search(list.begin(), list.end(), name.begin(), name.end());
    if (list.end() - found < static_cast<std::ptrdiff_t>(name.size() + 4))
        throw std::runtime_error("no method " + method);
    const auto id = found + static_cast<std::ptrdiff_t>(name.size());
    return {id, id + 4};
}

/// A client that calls methods of "device" by their names.
class DeviceClient : public RawClient {
public:
    explicit DeviceClient(std::uint16_t port)
        : RawClient(port) {
        send(methodsOfDevice);
        list_ = receive();
    }
    Bytes request(const std::string& method, const Bytes& parameters = {}, std::uint32_t lockId = 0) const {
        return joined({u32(lockId), u32(1), u32(0), idIn(list_, method), block(parameters)});
    }
    Bytes call(const std::string& method, const Bytes& parameters = {}, std::uint32_t lockId = 0) {
        send(request(method, parameters, lockId));
        return receive();
    }
    /// The lock id.
    std::uint32_t lock() {
        const auto answer = call("lock", joined({text("engineer"), text("tavo")}));
        if (answer.size() != 12u + 4 + 8)
            throw std::runtime_error("not locked");
        std::uint32_t lockId = 0;
        for (auto byte = answer.end() - 4; byte != answer.end(); ++byte)
            lockId = lockId << 8 | *byte;
        return lockId;
    }

private:
    Bytes list_;
};

TEST(TavoSim, TakesAccountsFromAFile) {
    const AccountsFile file("# the bench\nann:s3cret\n\nben:a:b\r\ncid:");
    Process process(simulator({"--port", "0", "--accounts", file.path()}));
    DeviceClient client(portIn(process.firstLine()));
    for (const auto& [user, password] : {std::pair{"ann", "s3cret"}, {"ben", "a:b"}, {"cid", ""}}) {
        const auto credentials = joined({text(user), text(password)});
        EXPECT_EQ(client.call("lock", credentials).size(), 12u + 4 + 8) << user;
        EXPECT_EQ(client.call("unlock", credentials), replyWith({u32(0)})) << user;
    }
    EXPECT_EQ(
        client.call("lock", joined({text("engineer"), text("tavo")})),
        joined({u32(0), block(joined({u32(0), u32(1013), text("Wrong user name or password")})), u32(0)}));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().errors, "stopped after 8 requests on 1 connections\n");
}

TEST(TavoSim, NamesTheLineOfAnAccountsFileAndShowsNothingOfIt) {
    for (const auto& [content, message] :
         {std::pair{"ann:x\ns3cret\n", ":2: expected USER:PASSWORD\n"},
          {"#\n\n:s3cret", ":3: expected USER:PASSWORD\n"},
          {"ann:x\nann:s3cret\n", ":2: the user has an account already\n"}}) {
        const AccountsFile file(content);
        const auto refused = outcome({"--accounts", file.path()});
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.errors, "tavo-sim: " + file.path() + message);
    }
}

TEST(TavoSim, TellsAnAccountsFileThatIsOpenToOthers) {
    const AccountsFile file("ann:s3cret\n");
    const auto toldOf = [&](unsigned mode, std::vector<std::string> arguments) {
        std::filesystem::permissions(file.path(), static_cast<std::filesystem::perms>(mode));
        arguments.insert(arguments.end(), {"--port", "0", "--accounts", file.path()});
        Process process(simulator(arguments));
        process.firstLine();
        process.signal(SIGTERM);
        return process.wait().errors;
    };
    const std::string end = "stopped after 0 requests on 0 connections\n";
    const auto told =
        "tavo-sim: the accounts file '" + file.path() + "' is accessible to others: its mode is ";
    EXPECT_EQ(toldOf(0640, {}), told + "0640, not 0600\n" + end);
    EXPECT_EQ(toldOf(0604, {}), told + "0604, not 0600\n" + end);
    EXPECT_EQ(toldOf(0400, {}), end);
    EXPECT_EQ(toldOf(0644, {"--quiet"}), "");
}

TEST(TavoSim, ShowsNoPasswordInTheListOfProcesses) {
    const auto help = outcome({"--help"}).output;
    EXPECT_EQ(help.find("--account "), std::string::npos) << help;
    EXPECT_EQ(help.find("PASSWORD\n"), std::string::npos) << help;
}

TEST(TavoSim, LogsCallsWithoutPasswords) {
    const AccountsFile file("ann:s3cret\n");
    Process process(simulator({"--port", "0", "--log", "--topology", "bare", "--accounts", file.path()}));
    DeviceClient client(portIn(process.firstLine()));
    EXPECT_EQ(client.call("lock", joined({text("ann"), text("s3cret")})).size(), 12u + 4 + 8);
    client.call("login", text("ann"));
    client.call("CHAPRespond", block({1, 2, 3}));
    process.signal(SIGTERM);
    const auto errors = process.wait().errors;
    EXPECT_NE(errors.find("2 #1 device.lock(user=\"ann\" password=\"***\") = 0\n"), std::string::npos)
        << errors;
    EXPECT_NE(errors.find("4 #1 device.CHAPRespond(response=\"***\") error 1013\n"), std::string::npos)
        << errors;
    EXPECT_EQ(errors.find("s3cret"), std::string::npos);
}

TEST(TavoSim, LogsLinesThatCannotSteerTheTerminal) {
    Process process(simulator({"--port", "0", "--log", "--topology", "bare"}));
    DeviceClient client(portIn(process.firstLine()));
    client.call("login", text("a\x1b]0;b\xc2\x9b\xe2\x80\xae\n2 #1 device.info() = 0\x7f"));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().errors,
              "1 #1 device.methods() = 0\n"
              "2 #1 device.login(user=\"a\\x1b]0;b\\xc2\\x9b\\xe2\\x80\\xae\\x0a2 #1 device.info() = "
              "0\\x7f\") error 1013\n"
              "stopped after 2 requests on 1 connections\n");
}

TEST(TavoSim, ListsItsTopologies) {
    const auto listed = outcome({"--list-topologies"});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_NE(listed.output.find("standard "), std::string::npos);
    EXPECT_NE(listed.output.find("\nbare "), std::string::npos);
}

TEST(TavoSim, ExplainsFaultsInItsHelp) {
    const auto help = outcome({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("size=FIELD:BYTES"), std::string::npos);
    EXPECT_EQ(outcome({"--version"}).output, "tavo-sim 2.0.0.0\n");
}

TEST(TavoSim, RefusesWrongArgumentsWithStatus2) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
        {{"--nonsense"}, "--nonsense"},
        {{"--port", "65536"}, "--port"},
        {{"--port", "x"}, "--port"},
        {{"--key", "4"}, "--key"},
        {{"--topology", "moon"}, "there is no topology 'moon'"},
        {{"--fault", "3:cut=x"}, "'x' is no number of bytes"},
        {{"--account", "ann:s3cret"}, "--account"},
        {{"--accounts", "/nowhere"}, "/nowhere: cannot be read"},
        {{"--accounts", "/"}, "/: cannot be read"},
        {{"--accounts", "/dev/zero"}, "/dev/zero: is too large"},
        {{"--accounts", "/dev/null"}, "/dev/null: has no accounts"},
        {{"--connections", "0"}, "--connections"},
        {{"--log", "--quiet"}, "--log"},
    };
    for (const auto& [arguments, message] : wrong) {
        const auto refused = outcome(arguments);
        EXPECT_EQ(refused.exitCode, 2) << arguments[0];
        EXPECT_NE(refused.errors.find(message), std::string::npos) << arguments[0] << ": " << refused.errors;
        EXPECT_EQ(refused.output, "") << arguments[0];
    }
}

TEST(TavoSim, EndsWithStatus1WhenItCannotListen) {
    Process first(simulator({"--port", "0"}));
    const auto port = std::to_string(portIn(first.firstLine()));
    const auto second = outcome({"--port", port});
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.errors,
              "tavo-sim: Cannot listen on 127.0.0.1 port " + port + ": Address already in use\n");
}

/// With so few descriptors that some ten connections use them up.
ProcessSetup simulatorWithFewDescriptors() {
    return {"/bin/sh", {"-c", "ulimit -n 24 && exec \"$0\" --port 0", TAVO_SIM_PROGRAM}};
}

TEST(TavoSim, IdleClientsKeepNobodyOutWhenThereAreNoDescriptorsLeft) {
    if (support::sanitizerTakesDescriptors)
        GTEST_SKIP() << "the sanitizer needs descriptors of its own";
    Process process(simulatorWithFewDescriptors());
    const auto port = portIn(process.firstLine());
    DeviceClient holder(port);
    const auto lockId = holder.lock();
    EXPECT_EQ(holder.call("getKey", {}, lockId).size(), 12u + 4 + 4 + 4 + 16);
    std::vector<std::unique_ptr<RawClient>> idle;
    for (int i = 0; i < 100; ++i)
        idle.push_back(std::make_unique<RawClient>(port));
    DeviceClient another(port);
    EXPECT_EQ(another.call("getKey").size(), 12u + 4 + 4 + 4 + 16);
    EXPECT_EQ(holder.call("getKey", {}, lockId).size(), 12u + 4 + 4 + 4 + 16);
}

TEST(TavoSim, AcceptsAgainWhenDescriptorsAreFreeAgain) {
    if (support::sanitizerTakesDescriptors)
        GTEST_SKIP() << "the sanitizer needs descriptors of its own";
    Process process(simulatorWithFewDescriptors());
    const auto port = portIn(process.firstLine());
    DeviceClient holder(port);
    const auto lockId = holder.lock();
    const auto request = holder.request("getKey", {}, lockId);
    constexpr std::size_t replySize = 12 + 4 + 4 + 4 + 16;
    const auto isAnswered = [](RawClient& client) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
        while (!client.hasInput() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return client.hasInput();
    };
    // Each has shown the lock's id before the next one comes, and is not closed for it. At last one is not
    // accepted, or is itself the one that is closed.
    std::vector<std::unique_ptr<RawClient>> clients;
    do {
        ASSERT_LT(clients.size(), 24u);
        clients.push_back(std::make_unique<RawClient>(port));
        clients.back()->send(request);
    } while (isAnswered(*clients.back()) && clients.back()->receive().size() == replySize);
    EXPECT_GE(clients.size(), 5u);
    clients.clear();
    EXPECT_EQ(DeviceClient(port).call("getKey").size(), replySize);
}

TEST(TavoSim, SurvivesARequestForWhichItHasNoMemory) {
    if (sanitizerTakesMemory)
        GTEST_SKIP() << "memory cannot be limited";
    Process process({"/bin/sh", {"-c", "ulimit -v 300000 && exec \"$0\" --port 0", TAVO_SIM_PROGRAM}});
    const auto port = portIn(process.firstLine());
    RawClient greedy(port);
    const Bytes parameters(32 << 20);
    greedy.send(joined({u32(0), u32(8)}));
    for (int i = 0; i < 8; ++i)
        if (!greedy.send(callBytes(0, 3, parameters)))
            break;
    DeviceClient another(port);
    EXPECT_EQ(another.call("getKey").size(), 12u + 4 + 4 + 4 + 16);
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().exitCode, 0);
}

} // namespace
