#include <atomic>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/version_number.h>
#include <tests/c/c_device.h>
#include <tests/support/raw_server.h>
#include <tests/support/soon.h>

namespace {

using c_test::Handle;
using support::soon;

constexpr const char* getPower = R"({"object": "power", "method": "get"})";

class CDevice : public c_test::OpenHandle {};

/// Waits for no device longer than this.
constexpr std::uint32_t shortLimit = 200;

TEST(CVersion, IsThatOfTheLibrary) {
    EXPECT_EQ(tavo_version() + std::string(".0"), TAVO::ClientLibraryVersion);
}

TEST_F(CDevice, CanBeClosedAndOpenedAgain) {
    EXPECT_TRUE(simulator.lockHolder());
    tavo_close(device.get());
    EXPECT_FALSE(simulator.lockHolder());
    const auto outcome = device.call(getPower);
    EXPECT_EQ(outcome.status, TAVO_ERROR_CLOSED);
    EXPECT_EQ(outcome.message, "the device is not open");
    EXPECT_EQ(device.batch("[]").status, TAVO_ERROR_CLOSED);
    EXPECT_EQ(device.tree().status, TAVO_ERROR_CLOSED);
    EXPECT_EQ(tavo_set_timeout(device.get(), 0), TAVO_ERROR_CLOSED);
    tavo_close(device.get());
    ASSERT_EQ(device.open(simulator.port()), TAVO_OK);
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST_F(CDevice, IsNotOpenedTwice) {
    EXPECT_EQ(device.open(simulator.port()), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message, "the device is open already");
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST_F(CDevice, LockedByAnotherUserIsToldWithTheName) {
    const Handle other;
    EXPECT_EQ(other.open(simulator.port(), "guest"), TAVO_ERROR_LOCKED);
    EXPECT_STREQ(tavo_last_error()->locking_user, "engineer");
    EXPECT_EQ(tavo_last_error()->worth_retrying, 1);
    EXPECT_EQ(tavo_last_error()->device_error_code, 1001);
    tavo_close(device.get());
    EXPECT_EQ(tavo_last_error()->status, TAVO_ERROR_LOCKED);
    EXPECT_EQ(other.open(simulator.port(), "guest"), TAVO_OK);
    EXPECT_EQ(tavo_last_error()->status, TAVO_OK);
    EXPECT_STREQ(tavo_last_error()->message, "");
}

TEST_F(CDevice, RefusesAWrongPassword) {
    tavo_close(device.get());
    auto options = Handle::optionsFor(simulator.port());
    options.password = nullptr;
    EXPECT_EQ(tavo_open(device.get(), &options), TAVO_ERROR_LOGIN);
}

TEST_F(CDevice, WithAnUnknownKeyIsNotOpenedAsSecure) {
    TAVO::simulator::Simulator stranger({.topology = "bare", .serverKey = -1});
    stranger.start();
    const Handle other;
    auto options = Handle::optionsFor(stranger.port());
    options.secure = 1;
    EXPECT_EQ(tavo_open(other.get(), &options), TAVO_ERROR_KEY);
    options.secure = 0;
    EXPECT_EQ(tavo_open(other.get(), &options), TAVO_OK);
}

TEST_F(CDevice, RefusesWrongOptions) {
    const Handle closed;
    const auto refusal = [&](auto change) {
        auto options = Handle::optionsFor(1);
        change(options);
        EXPECT_EQ(tavo_open(closed.get(), &options), TAVO_ERROR_ARGUMENT);
        return std::string(tavo_last_error()->message);
    };
    const auto size = std::to_string(sizeof(tavo_options));
    EXPECT_EQ(refusal([](tavo_options& options) { options.size = 0; }),
              "'options.size' is 0, which is less than " + size);
    EXPECT_EQ(refusal([](tavo_options& options) { options.host = nullptr; }), "'options.host' is NULL");
    EXPECT_EQ(refusal([](tavo_options& options) { options.host = ""; }), "'options.host' is empty");
    EXPECT_EQ(refusal([](tavo_options& options) { options.user = nullptr; }), "'options.user' is NULL");
    EXPECT_EQ(refusal([](tavo_options& options) { options.port = -1; }),
              "'options.port' is -1, which is no port");
    EXPECT_EQ(refusal([](tavo_options& options) { options.port = 65536; }),
              "'options.port' is 65536, which is no port");
    EXPECT_EQ(refusal([](tavo_options& options) { options.only_count = 1; }),
              "'options.only' is NULL, but 'options.only_count' is not 0");
    const char* const names[] = {"power", nullptr};
    EXPECT_EQ(refusal([&](tavo_options& options) {
                  options.only = names;
                  options.only_count = 2;
              }),
              "'options.only[1]' is NULL");
    EXPECT_EQ(tavo_open(closed.get(), nullptr), TAVO_ERROR_ARGUMENT);
    const auto options = Handle::optionsFor(1);
    EXPECT_EQ(tavo_open(nullptr, &options), TAVO_ERROR_ARGUMENT);
    tavo_close(nullptr);
    tavo_free(nullptr);
    tavo_interrupt(nullptr);
}

TEST_F(CDevice, TakesTheOptionsOfALaterVersionIfItsMembersAreNotSet) {
    struct Later {
        tavo_options options;
        std::uint64_t more;
    };
    const Handle other;
    Later later{Handle::optionsFor(simulator.port()), 1};
    later.options.size = sizeof(later);
    EXPECT_EQ(tavo_open(other.get(), &later.options), TAVO_ERROR_ARGUMENT);
    EXPECT_STREQ(tavo_last_error()->message,
                 "'options' sets members that this version of the library does not know");
    later.more = 0;
    EXPECT_EQ(tavo_open(other.get(), &later.options), TAVO_OK);
}

TEST_F(CDevice, BuildsOnlyTheNamedObjects) {
    const Handle part;
    const char* const names[] = {"power"};
    auto options = Handle::optionsFor(simulator.port());
    options.only = names;
    options.only_count = 1;
    ASSERT_EQ(tavo_open(part.get(), &options), TAVO_OK);
    EXPECT_EQ(part.call(getPower).status, TAVO_OK);
    EXPECT_EQ(part.call(R"({"object": "cmos", "method": "type"})").status, TAVO_ERROR_NOT_FOUND);
    EXPECT_EQ(part.tree().json.size(), 4u);
}

TEST_F(CDevice, ThatCutsTheConnectionCanBeCalledAgain) {
    simulator.failNext(TAVO::simulator::faults::Cut{.bytes = 3});
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_NETWORK);
    EXPECT_EQ(tavo_last_error()->connection_usable, 0);
    EXPECT_EQ(tavo_last_error()->worth_retrying, 1);
    EXPECT_STREQ(tavo_last_error()->method, "power.get");
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST_F(CDevice, ThatDoesNotAnswerIsWaitedForUntilTheLimit) {
    ASSERT_EQ(tavo_set_timeout(device.get(), shortLimit), TAVO_OK);
    simulator.failNext(TAVO::simulator::faults::Silent{});
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_TIMED_OUT);
    ASSERT_EQ(tavo_set_timeout(device.get(), TAVO_NO_TIMEOUT), TAVO_OK);
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST_F(CDevice, ThatDoesNotAnswerIsClosedAllTheSame) {
    ASSERT_EQ(tavo_set_timeout(device.get(), TAVO_NO_TIMEOUT), TAVO_OK);
    for (std::uint64_t ahead = 1; ahead <= 4; ++ahead)
        simulator.failNext(TAVO::simulator::faults::Silent{}, ahead);
    tavo_close(device.get());
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_CLOSED);
}

TEST_F(CDevice, ThatTellsNonsenseIsAnError) {
    simulator.failNext(
        TAVO::simulator::faults::Size{.field = TAVO::simulator::faults::Size::Field::result, .bytes = 2});
    const auto outcome = device.call(getPower);
    EXPECT_NE(outcome.status, TAVO_OK);
    EXPECT_NE(outcome.message, "");
    // Bytes are left in the connection.
    tavo_close(device.get());
    ASSERT_EQ(device.open(simulator.port()), TAVO_OK);
    simulator.failNext(TAVO::simulator::faults::DeviceError{.code = 4711, .results = 0, .message = "odd"});
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_DEVICE);
    EXPECT_EQ(tavo_last_error()->device_error_code, 4711);
    simulator.failNext(TAVO::simulator::faults::DeviceError{.code = 1000, .results = 0, .message = "\xff"});
    EXPECT_EQ(device.call(getPower).message, "\xff");
    EXPECT_EQ(tavo_last_error()->status, TAVO_ERROR_CONFIGURATION);
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST(CDeviceOfGarbage, IsNotOpened) {
    for (const auto* garbage : {"HTTP/1.1 400 Bad Request\r\n\r\n", "\xff\xff\xff\xff\xff\xff\xff\xff"}) {
        support::ScriptedServer server([&](support::RawListener& listener) {
            auto connection = listener.accept();
            connection.write(std::vector<std::uint8_t>(garbage, garbage + std::strlen(garbage)));
        });
        const Handle handle;
        EXPECT_NE(handle.open(server.port(), "engineer", shortLimit), TAVO_OK);
        EXPECT_STRNE(tavo_last_error()->message, "");
    }
}

TEST(CDeviceThatIsNotThere, IsANetworkError) {
    std::uint16_t port = 0;
    {
        TAVO::simulator::Simulator gone;
        gone.start();
        port = gone.port();
    }
    const Handle handle;
    EXPECT_EQ(handle.open(port), TAVO_ERROR_NETWORK);
    EXPECT_STRNE(tavo_last_error()->message, "");
}

TEST_F(CDevice, IsInterruptedFromAnotherThread) {
    ASSERT_EQ(tavo_set_timeout(device.get(), TAVO_NO_TIMEOUT), TAVO_OK);
    const auto before = simulator.requestCount();
    simulator.failNext(TAVO::simulator::faults::Silent{});
    std::thread other([&] {
        EXPECT_TRUE(soon([&] { return simulator.requestCount() > before; }));
        tavo_interrupt(device.get());
    });
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_INTERRUPTED);
    other.join();
    EXPECT_EQ(device.call(getPower).status, TAVO_OK);
}

TEST_F(CDevice, IsInterruptedWhileItIsOpened) {
    tavo_close(device.get());
    const auto before = simulator.requestCount();
    simulator.failNext(TAVO::simulator::faults::Silent{}, 3);
    std::thread other([&] {
        EXPECT_TRUE(soon([&] { return simulator.requestCount() >= before + 3; }));
        tavo_interrupt(device.get());
    });
    EXPECT_EQ(device.open(simulator.port(), "engineer", TAVO_NO_TIMEOUT), TAVO_ERROR_INTERRUPTED);
    other.join();
    EXPECT_EQ(device.call(getPower).status, TAVO_ERROR_CLOSED);
    EXPECT_EQ(device.open(simulator.port()), TAVO_OK);
}

TEST_F(CDevice, IsSharedByThreadsInTurns) {
    constexpr int rounds = 50;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&, number] {
            const auto digits = "0" + std::to_string(number + 1);
            const auto shift = R"({"object": "cpu0.jtag", "method": "shiftDR",
                                   "arguments": {"bits": 8, "data": {"hex": ")" +
                               digits + "\"}}}";
            for (int round = 0; round < rounds; ++round) {
                EXPECT_EQ(device.call(shift).status, TAVO_OK);
                EXPECT_EQ(device.call("{").status, TAVO_ERROR_ARGUMENT);
                const auto batch = device.batch("[" + shift + "," + shift + "]");
                EXPECT_EQ(batch.status, TAVO_OK);
                EXPECT_EQ(batch.json.size(), 2u);
            }
        });
    for (auto& thread : threads)
        thread.join();
}

TEST_F(CDevice, ClosedByOneThreadIsClosedForAll) {
    std::atomic<int> called = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 3; ++number)
        threads.emplace_back([&] {
            tavo_status status = TAVO_OK;
            while (status == TAVO_OK) {
                status = device.call(getPower).status;
                ++called;
            }
            EXPECT_EQ(status, TAVO_ERROR_CLOSED);
        });
    EXPECT_TRUE(soon([&] { return called > 10; }));
    tavo_close(device.get());
    for (auto& thread : threads)
        thread.join();
}

} // namespace
