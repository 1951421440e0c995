#include <tests/device/opened_device.h>

namespace {

using support::Bytes;
using support::RawConnection;
using TAVO::NetworkError;

using ConnectionState = support::OpenedDevice;

TEST_F(ConnectionState, OfAQueriedDeviceIsConnectedAndNotLocked) {
    const auto device = query();
    EXPECT_TRUE(device->isConnected());
    EXPECT_FALSE(device->isLocked());
    EXPECT_EQ(device->reconnects(), 0u);
}

TEST_F(ConnectionState, TellsWhoHoldsTheLock) {
    const auto device = build();
    EXPECT_TRUE(device->isLocked());
    device->unlock();
    EXPECT_FALSE(device->isLocked());
    device->relock();
    EXPECT_TRUE(device->isLocked());
}

TEST_F(ConnectionState, CountsTheConnectionsThatWereMadeAnew) {
    const auto device = build();
    for (std::uint64_t count = 0; count < 3; ++count) {
        EXPECT_EQ(device->reconnects(), count);
        server.failNext([](RawConnection& connection, const Bytes&) { connection.close(); });
        EXPECT_THROW(device->getDevice()->type(), NetworkError);
        EXPECT_TRUE(device->isLocked());
        EXPECT_EQ(device->reconnects(), count) << "nothing is made anew before the next call";
        EXPECT_EQ(device->getDevice()->type(), "device");
        EXPECT_TRUE(device->isConnected());
    }
    EXPECT_EQ(device->reconnects(), 3u);
}

TEST_F(ConnectionState, IsNotConnectedAfterAnInterruptUntilTheNextCall) {
    const auto device = build();
    server.failNext([&](RawConnection&, const Bytes&) { device->interrupt(); });
    EXPECT_THROW(device->getDevice()->type(), NetworkError);
    EXPECT_FALSE(device->isConnected());
    EXPECT_TRUE(device->isLocked());
    device->getDevice()->type();
    EXPECT_TRUE(device->isConnected());
    EXPECT_EQ(device->reconnects(), 1u);
}

TEST(ConnectionStateOfOtherDevices, IsThatOfOneWithoutConnectionAndLock) {
    struct Other : TAVO::Device {
        void call(std::shared_ptr<TAVO::Method>) override {}
        void multicall(std::shared_ptr<TAVO::MulticallQueue>) override {}
        void unlock() override {}
        void getKey() override {}
        bool checkTavoKey(bool&, bool&) const override { return false; }
        int getMaxPacketSize() override { return 0; }
        void lock(const std::string&, const std::string&) override {}
        void lock() override {}
        bool login(const std::string&, const std::string&) override { return false; }
    };
    const Other other;
    EXPECT_FALSE(other.isLocked());
    EXPECT_FALSE(other.isConnected());
    EXPECT_EQ(other.reconnects(), 0u);
}

} // namespace
