#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tests/cli/tool_fixture.h>
#include <tests/simulator/raw_client.h>
#include <tests/support/all_types.h>
#include <tests/support/soon.h>

namespace tool_test {

/// `tavo share` as a process of its own, in front of a simulated device.
class ShareProcess {
public:
    explicit ShareProcess(const support::ProcessSetup& setup)
        : process_(setup) {
        const auto told = process_.firstLine();
        const std::string expected = "listening on 127.0.0.1:";
        if (!told.starts_with(expected))
            throw std::runtime_error("the share said: " + told);
        port_ = static_cast<std::uint16_t>(std::stoi(told.substr(expected.size())));
    }

    std::uint16_t port() const { return port_; }
    support::Process& process() { return process_; }
    support::ProcessOutcome end(int signal = SIGTERM) {
        process_.signal(signal);
        return process_.wait();
    }

private:
    support::Process process_;
    std::uint16_t port_ = 0;
};

class ShareTest : public ToolTest {
protected:
    explicit ShareTest(Words options = {})
        : folder(std::filesystem::path(testing::TempDir()) /
                 ("tavo_share_" + std::to_string(simulator.port()))) {
        support::registerAllTypes();
        std::filesystem::create_directories(folder);
        share = start(std::move(options));
    }
    ~ShareTest() override {
        share.reset();
        std::filesystem::remove_all(folder);
    }

    support::ProcessSetup setupWith(const Words& arguments) const {
        auto setup = setupOf(arguments);
        setup.environment["XDG_RUNTIME_DIR"] = folder.string();
        return setup;
    }
    std::unique_ptr<ShareProcess> start(const Words& options = {}) const {
        return std::make_unique<ShareProcess>(setupWith(Words{"share"} + options));
    }
    /// The socket that the tool finds.
    std::filesystem::path socketFile() const {
        for (const auto& file : std::filesystem::directory_iterator(folder / "tavo"))
            if (file.path().extension() == ".share")
                return file.path();
        return {};
    }
    /// The tool, which finds the share by itself.
    support::ProcessOutcome shared(const Words& arguments) const {
        return support::runProcess(setupWith(arguments));
    }
    /// A program that is linked with the library.
    std::shared_ptr<TAVO::Device> open(const std::string& user = "engineer",
                                       const std::string& password = "tavo",
                                       const TAVO::OpenOptions& options = {}) const {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", share->port(), user, password, false, options);
    }
    std::shared_ptr<TAVO::Device> query() const {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return TAVO::DeviceFactory::queryDevice("127.0.0.1", share->port(), descriptor);
    }
    static std::shared_ptr<CommonModules::Relay_v1_0> power(const std::shared_ptr<TAVO::Device>& device) {
        return device->get<CommonModules::Relay_v1_0>("power");
    }

    std::uint32_t instanceId(const std::string& object) {
        return simulator.inspect(
            [&](TAVO::simulator::Appliance& appliance) { return appliance.get(object).instanceId(); });
    }
    std::uint32_t methodId(const std::string& object, const std::string& method) {
        return simulator.inspect(
            [&](TAVO::simulator::Appliance& appliance) { return appliance.get(object).methodId(method); });
    }
    support::Bytes call(const std::string& object, const std::string& method,
                        const support::Bytes& parameters = {}) {
        return support::callBytes(instanceId(object), methodId(object, method), parameters);
    }
    support::Bytes lockCall() {
        return call("device", "lock", support::joined({support::text("engineer"), support::text("tavo")}));
    }
    /// Shows user and password. Returns the lock id.
    std::uint32_t lockWith(support::RawClient& client) {
        client.send(support::requestBytes(0, {lockCall()}));
        const auto head = support::joined(
            {support::u32(0), support::u32(0), support::u32(1), support::u32(8), support::u32(0)});
        const auto reply = client.receive(head.size() + 4);
        if (reply.size() != head.size() + 4 || !std::equal(head.begin(), head.end(), reply.begin()))
            throw std::runtime_error("the lock was refused");
        const auto* id = reply.data() + head.size();
        return static_cast<std::uint32_t>(id[0] << 24 | id[1] << 16 | id[2] << 8 | id[3]);
    }

    template <class Condition>
    static bool soon(Condition condition) {
        return support::soon(condition);
    }

    std::filesystem::path folder;
    std::unique_ptr<ShareProcess> share;
};

} // namespace tool_test
