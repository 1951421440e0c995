#include <cstdint>
#include <fstream>
#include <functional>
#include <new>
#include <string>
#include <tuple>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/support/appliance_server.h>
#include <tests/support/sanitizers.h>

namespace {

using support::Bytes;
using support::joined;
using support::RawConnection;
using support::u32;

constexpr std::size_t mebibyte = 1024 * 1024;

void limitMemoryTo(std::size_t more) {
    std::ifstream statm("/proc/self/statm");
    std::size_t pages = 0;
    statm >> pages;
    const rlim_t limit = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + more;
    const rlimit both{limit, limit};
    if (setrlimit(RLIMIT_AS, &both) != 0)
        _exit(90);
}

enum Outcome { refused = 10, noFailure, outOfMemory, otherFailure };

/// What an action comes to in a process that may take only a little more memory.
Outcome outcomeInChild(const std::function<void()>& action) {
    const auto child = fork();
    if (child == 0) {
        alarm(30);
        limitMemoryTo(32 * mebibyte);
        try {
            action();
            _exit(noFailure);
        } catch (const TAVO::Error&) {
            _exit(refused);
        } catch (const std::bad_alloc&) {
            _exit(outOfMemory);
        } catch (...) {
            _exit(otherFailure);
        }
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    return static_cast<Outcome>(WEXITSTATUS(status));
}

class HostileDevice : public testing::Test {
protected:
    HostileDevice() {
        TAVO::CoreObjects::registerCoreObjects();
        server.change(support::addFixedObjects);
    }

    support::FakeAppliance appliance;
    support::ApplianceServer server{appliance};
};

class HostileBlock : public HostileDevice,
                     public testing::WithParamInterface<std::tuple<std::string, std::uint32_t>> {};
class HostileReply : public HostileDevice, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(HostileBlock, CannotMakeTheClientTakeTheMemoryThatItAnnounces) {
    if (support::sanitizerTakesMemory)
        GTEST_SKIP() << "the sanitizer needs the address space";
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    const auto device = TAVO::DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor);
    const auto& [field, size] = GetParam();
    Bytes reply = u32(size);
    if (field == "error")
        reply = joined({u32(0), reply});
    if (field == "result")
        reply = joined({u32(0), u32(0), u32(1), reply});
    server.failNext(
        [reply = joined({reply, Bytes(mebibyte, 0xFF)})](RawConnection& connection, const Bytes&) {
            connection.write(reply);
            connection.finishWriting(); // closing ends nothing while the child holds a copy
            connection.close();
        });
    EXPECT_EQ(outcomeInChild([&] { device->getDevice()->type(); }), refused);
}

TEST_P(HostileReply, CannotMakeTheClientTakeTheMemoryThatItsListAnnounces) {
    if (support::sanitizerTakesMemory)
        GTEST_SKIP() << "the sanitizer needs the address space";
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    const auto device = TAVO::DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor);
    const auto size = GetParam();
    server.failNext([size](RawConnection& connection, const Bytes&) {
        connection.write(support::replyWith({joined({u32(0), u32(size), {1, 2, 3, 4}})}));
    });
    EXPECT_EQ(outcomeInChild([&] { device->getDevice()->methods(); }), refused);
}

constexpr std::uint32_t sizes[]{0x40000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
INSTANTIATE_TEST_SUITE_P(Sizes, HostileBlock,
                         testing::Combine(testing::Values("status", "error", "result"),
                                          testing::ValuesIn(sizes)));
INSTANTIATE_TEST_SUITE_P(Sizes, HostileReply, testing::ValuesIn(sizes));

} // namespace
