#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/toolkit/exchange_time.h>

namespace {

using namespace TAVO;
using namespace TAVO::toolkit;
using namespace std::chrono_literals;

template <class Request>
std::shared_ptr<Method> callWith(const Request& request) {
    static const auto object = std::make_shared<Container>("object", nullptr);
    return std::make_shared<Method>("method", *object, dto::Params{std::make_shared<Request>(request)});
}

dto::system::uSleepRequest sleepOf(std::int32_t microseconds) {
    dto::system::uSleepRequest request;
    request.microseconds = microseconds;
    return request;
}

TEST(BusyTime, IsThatOfAllCallsTogether) {
    dto::system::uWaitRequest wait;
    wait.microseconds = 20'000'000;
    EXPECT_EQ(busyTime({callWith(wait)}), 20s);
    EXPECT_EQ(busyTime({callWith(sleepOf(500'000)), callWith(wait), callWith(sleepOf(1))}), 20501ms);
    dto::hdt::ioDbrdyWaitRequest lines;
    lines.timeout = 2'000'000;
    dto::Jtag::SleepRequest clocked;
    clocked.duration = 1'000'000;
    EXPECT_EQ(busyTime({callWith(lines), callWith(clocked)}), 3s);
}

TEST(BusyTime, IsNoneForCallsThatAreAnsweredAtOnce) {
    static const auto object = std::make_shared<Container>("object", nullptr);
    EXPECT_EQ(busyTime({}), 0s);
    EXPECT_EQ(busyTime({std::make_shared<Method>("get", *object, dto::Params{})}), 0s);
    EXPECT_EQ(busyTime({callWith(dto::system::FirmwareStatusRequest())}), 0s);
    EXPECT_EQ(busyTime({callWith(sleepOf(-20'000'000)), callWith(sleepOf(0))}), 0s);
}

TEST(BusyTime, GrowsWithWhatIsTransferred) {
    dto::lpcRomEmulation::SramGetRequest get;
    get.length = 2 * 1024 * 1024;
    EXPECT_GE(busyTime({callWith(get)}), 30s);
    dto::lpcRomEmulation::SramSetRequest set;
    set.data.resize(2 * 1024 * 1024);
    EXPECT_GE(busyTime({callWith(set)}), 30s);
    dto::i2c::ReadRequest read;
    read.count = 65536;
    EXPECT_GE(busyTime({callWith(read)}), 60s);
    dto::i2c::WriteRequest page;
    page.data.resize(8);
    EXPECT_GE(busyTime({100, callWith(page)}), 1s);
    dto::Jtag::ShiftRequest shift;
    shift.bits = 1'000'000;
    EXPECT_GE(busyTime({callWith(shift)}), 100s);
    EXPECT_GE(busyTime({callWith(dto::system::FirmwareUpdateRequest())}), 1min);
}

} // namespace
