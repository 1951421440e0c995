#include <algorithm>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code_records.h>
#include <tavo/simulator/objects/lpc.h>
#include <tavo/simulator/objects/relay.h>
#include <tavo/simulator/return_codes.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using namespace TAVO::dto::lpcPostCode;
using Bytes = std::vector<std::uint8_t>;

struct LpcObjectTest : SimulatorFixture {
    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<TAVO::HWDebug::Lpc_v1_0> lpc = object<TAVO::HWDebug::Lpc_v1_0>(device, "lpc");

    template <class Reply>
    Reply get(const std::string& name) {
        auto method =
            std::make_shared<TAVO::BoundMethod<Reply>>(name, *lpc->getLpcPostCode(), TAVO::dto::Params{});
        device->call(method);
        EXPECT_EQ(method->getResult().code, 0);
        return method->value();
    }
    template <class Request>
    std::int32_t set(const std::string& name, const Request& request) {
        auto method = std::make_shared<TAVO::Method>(name, *lpc->getLpcPostCode(),
                                                     TAVO::dto::Params{std::make_shared<Request>(request)});
        device->call(method);
        return method->getResult().code;
    }
    void run(const std::string& name) {
        device->call(std::make_shared<TAVO::Method>(name, *lpc->getLpcPostCode(), TAVO::dto::Params{}));
    }
    void power(bool on) {
        device->call(object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(on));
    }
    std::vector<int> codes() {
        std::vector<int> found;
        for (const auto& entry : get<FifoGetReply>("fifoGet").entries)
            found.push_back(entry.byte1);
        return found;
    }
};

TEST_F(LpcObjectTest, ConnectorsTellWhetherTheBoardHasPower) {
    using Reply = TAVO::dto::lpc::HeaderConnectionsReply;
    EXPECT_FALSE(called(device, lpc->getHeaderConnectGetMethod())->value().connections.at(0).connected);
    power(true);
    const Reply reply = called(device, lpc->getHeaderConnectGetMethod())->value();
    ASSERT_EQ(reply.connections.size(), 2u);
    EXPECT_EQ(reply.connections[0], (TAVO::dto::lpc::HeaderConnection{"LPC", true}));
    EXPECT_EQ(reply.connections[1], (TAVO::dto::lpc::HeaderConnection{"TPM", false}));
}

TEST_F(LpcObjectTest, PostCodesFollowTheBootThatThePowerRelayBegins) {
    EXPECT_EQ(get<PostCodeGetReply>("postCodeGet").postCode, -1);
    EXPECT_EQ(get<FifoSizeGetReply>("fifoSizeGet").size, 1024);
    power(true);
    pass(std::chrono::seconds(4));
    EXPECT_EQ(get<PostCodeGetReply>("postCodeGet").postCode, 0xAA);
    const auto entries = get<FifoGetReply>("fifoGet").entries;
    ASSERT_GT(entries.size(), 50u);
    EXPECT_EQ(entries.front(), (FifoEntry{0x01, 0x80, 1, 250'000}));
    EXPECT_EQ(entries.back(), (FifoEntry{0xAA, 0x80, 0, 3'000'000}));
    const auto status = get<FifoStatusReply>("fifoStatusGet");
    EXPECT_EQ(status.value, static_cast<int>(entries.size()));
    EXPECT_FALSE(status.flag1 || status.flag2 || status.flag3);
    EXPECT_TRUE(status.flag4);
    run("fifoClear");
    EXPECT_TRUE(get<FifoStatusReply>("fifoStatusGet").flag3);
    power(false);
    EXPECT_EQ(get<PostCodeGetReply>("postCodeGet").postCode, -1);
}

TEST_F(LpcObjectTest, PostCodeOptionsAreKeptAndChecked) {
    OptionFifoCircularSetRequest circular;
    circular.circular = 1;
    EXPECT_EQ(set("optionFifoCircularSet", circular), 0);
    EXPECT_EQ(get<OptionFifoCircularGetReply>("optionFifoCircularGet").circular, 1);
    circular.circular = 2;
    EXPECT_EQ(set("optionFifoCircularSet", circular), return_code::badArgument);
    OptionPortSetRequest port;
    port.port = 0x84;
    EXPECT_EQ(set("optionPortSet", port), 0);
    EXPECT_EQ(get<OptionPortGetReply>("optionPortGet").port, 0x84);
    power(true);
    pass(std::chrono::seconds(4));
    EXPECT_THAT(codes(), testing::IsEmpty());
}

TEST_F(LpcObjectTest, CmosRelayShowsInTheNextBoot) {
    device->call(object<CommonModules::CmosRelay_v1_0>(device, "cmos")->getCmosClearMethod(100));
    power(true);
    pass(std::chrono::seconds(4));
    EXPECT_THAT(codes(), testing::Contains(PostCodes::cmosCleared));
}

TEST_F(LpcObjectTest, ASleepInABatchLetsTheBootGoOnForTheCallsBehindIt) {
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    const auto code = std::make_shared<TAVO::BoundMethod<PostCodeGetReply>>(
        "postCodeGet", *lpc->getLpcPostCode(), TAVO::dto::Params{});
    batch->add(object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(true));
    batch->add(device->getSystem()->getUSleepMethod(300'000));
    batch->add(code);
    device->multicall(batch);
    EXPECT_GE(code->value().postCode, 1);
}

TEST_F(LpcObjectTest, RomRefusesWhatDoesNotLieInside) {
    const auto rom = lpc->getLpcRomEmulation();
    const auto size = called(device, rom->getSramSizeGetMethod())->value().size;
    EXPECT_EQ(size, 8388608);
    EXPECT_EQ(called(device, rom->getSramGetMethod(size - 1, 2))->getResult().code, return_code::badArgument);
    EXPECT_EQ(called(device, rom->getSramSetMethod(size, {1}))->getResult().code, return_code::badArgument);
    EXPECT_EQ(called(device, rom->getOptionRomTypeSetMethod(0x101))->getResult().code, 0);
    EXPECT_EQ(called(device, rom->getOptionRomTypeGetMethod())->value().romType, 1);
    EXPECT_EQ(called(device, rom->getOptionRomTypeSetMethod(2))->getResult().code, return_code::badArgument);
    EXPECT_FALSE(called(device, rom->getEnableGetMethod())->value().enable);
}

TEST_F(LpcObjectTest, RealBootRomIsLoadedBootedAndReadBackInFewExchanges) {
    std::ifstream file("/usr/share/seabios/bios-256k.bin", std::ios::binary);
    ASSERT_TRUE(file) << "the Debian package seabios is needed";
    const Bytes image{std::istreambuf_iterator<char>(file), {}};
    ASSERT_EQ(image.size(), 256u * 1024u);
    const auto rom = lpc->getLpcRomEmulation();
    const auto before = simulator.requestCount();

    constexpr std::size_t pieceSize = 64 * 1024;
    const auto begin = static_cast<std::size_t>(RomEmulation::size) - image.size();
    const auto load = std::make_shared<TAVO::MulticallQueue>();
    for (std::size_t at = 0; at < image.size(); at += pieceSize) {
        const auto first = image.begin() + static_cast<std::ptrdiff_t>(at);
        load->add(rom->getSramSetMethod(static_cast<int>(begin + at),
                                        Bytes(first, first + static_cast<std::ptrdiff_t>(pieceSize))));
    }
    load->add(rom->getEnableSetMethod(true));
    device->multicall(load);
    const auto saved =
        called(device, rom->getSramGetMethod(static_cast<int>(begin), static_cast<int>(image.size())));
    EXPECT_LE(simulator.requestCount() - before, 2u);
    const auto data = saved->value().data;
    EXPECT_TRUE(std::equal(data.begin(), data.end(), image.begin(), image.end()));
    EXPECT_EQ(called(device, rom->getSramGetMethod(static_cast<int>(begin) - 1, 1))->value().data,
              Bytes{0xFF});

    power(true);
    pass(std::chrono::seconds(4));
    EXPECT_EQ(codes().front(), PostCodes::emulatedRom);
}

} // namespace
