#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/simulator/objects/cfa633.h>
#include <tavo/simulator/objects/lpc.h>
#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace TAVO::simulator;
using TAVO::dto::lpcPostCode::FifoGetReply;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

constexpr int bootTime = 3'100'000;
constexpr int spdAddress = 0x50;

// What an engineer does with a new board, with the clock in our hands: nobody waits for the board to boot.
struct RehearsalTest : SimulatorFixture {
    RehearsalTest()
        : SimulatorFixture({.longestDelay = std::chrono::microseconds(0)}) {
        simulator.inspect([](Appliance& appliance) { appliance.clock().freeze(); });
    }

    std::shared_ptr<TAVO::Device> device = open();
    std::shared_ptr<CommonModules::Relay_v1_0> power = object<CommonModules::Relay_v1_0>(device, "power");
    std::shared_ptr<TAVO::HWDebug::Jtag_v1_1> jtag =
        object<TAVO::HWDebug::CpuDebug_v1_1>(device, "cpu0")->getJtag();
    std::shared_ptr<TAVO::HWDebug::I2c_v1_0> i2c = object<TAVO::HWDebug::I2c_v1_0>(device, "i2c");
    std::shared_ptr<TAVO::HWDebug::Lpc_v1_0> lpc = object<TAVO::HWDebug::Lpc_v1_0>(device, "lpc");
    std::shared_ptr<CommonModules::Com_v1_0> com = object<CommonModules::Com_v1_0>(device, "com");
    std::shared_ptr<CommonModules::Cfa633_v1_0> lcd = object<CommonModules::Cfa633_v1_0>(device, "lcd");

    std::shared_ptr<TAVO::Method> waitForBoot() { return device->getSystem()->getUSleepMethod(bootTime); }
    std::shared_ptr<TAVO::BoundMethod<FifoGetReply>> postCodes() {
        return std::make_shared<TAVO::BoundMethod<FifoGetReply>>("fifoGet", *lpc->getLpcPostCode(),
                                                                 TAVO::dto::Params{});
    }
    std::shared_ptr<TAVO::Method> clearPostCodes() {
        return std::make_shared<TAVO::Method>("fifoClear", *lpc->getLpcPostCode(), TAVO::dto::Params{});
    }

    // One exchange, in which every call succeeds.
    void execute(const std::vector<std::shared_ptr<TAVO::Method>>& methods) {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        for (const auto& method : methods)
            queue->add(method);
        device->multicall(queue);
        for (const auto& method : methods)
            EXPECT_EQ(method->returnCode(), 0) << method->getFullName();
    }
};

std::vector<int> codesOf(const FifoGetReply& reply) {
    std::vector<int> codes;
    for (const auto& entry : reply.entries)
        codes.push_back(entry.byte1);
    return codes;
}

// Little-endian words, as 32 bits shifted lowest bit first arrive.
std::vector<std::uint32_t> wordsOf(const Bytes& bytes) {
    std::vector<std::uint32_t> words(bytes.size() / 4);
    for (std::size_t i = 0; i < words.size() * 4; ++i)
        words[i / 4] |= std::uint32_t{bytes[i]} << i % 4 * 8;
    return words;
}

// The checksum of a memory module's description: polynomial x^16 + x^12 + x^5 + 1, over its first 117 bytes.
unsigned checksumOf(const Bytes& spd) {
    return std::accumulate(spd.begin(), spd.begin() + 117, 0u, [](unsigned checksum, std::uint8_t byte) {
        checksum ^= unsigned{byte} << 8;
        for (int bit = 0; bit < 8; ++bit)
            checksum = (checksum << 1 ^ ((checksum & 0x8000) != 0 ? 0x1021u : 0u)) & 0xFFFF;
        return checksum;
    });
}

std::vector<int> keys(const std::string& line) { return {line.begin(), line.end()}; }

std::string textOf(const std::vector<int>& received) { return {received.begin(), received.end()}; }

Bytes someImage() {
    Bytes image(RomEmulation::size);
    std::mt19937 numbers(7);
    for (auto& byte : image)
        byte = static_cast<std::uint8_t>(numbers());
    return image;
}

TEST_F(RehearsalTest, WholeSessionOfAnEngineerTakesFourExchanges) {
    const auto before = simulator.requestCount();

    // The board boots as it came, and is looked at from all sides.
    const auto firstBoot = postCodes();
    const auto chain = jtag->getShiftDRMethod(4 * 32, Bytes(4 * 4, 0xFF));
    const auto spd = i2c->getTransferMethod(spdAddress, 0, {0}, 256);
    const auto bootMessages = com->getRecvMethod(65536);
    execute({com->getOpenMethod(115200, 8, false, false, 1, false, false, false, false),
             power->getSetMethod(true), waitForBoot(), firstBoot, clearPostCodes(),
             jtag->getTapStateSetMethod(0), chain, spd, bootMessages});
    ASSERT_FALSE(firstBoot->value().entries.empty());
    EXPECT_EQ(firstBoot->value().entries.front().byte1, 0x01);
    EXPECT_EQ(firstBoot->value().entries.back().byte1, 0xAA);
    EXPECT_THAT(wordsOf(chain->value().data), ElementsAre(0x2A45D0C3, 0x17B1E0C3, 0x0C0DE1D5, 0xFFFFFFFF));
    const auto description = spd->value().data;
    ASSERT_EQ(description.size(), 256u);
    EXPECT_EQ(description[126] | description[127] << 8, static_cast<int>(checksumOf(description)));
    EXPECT_THAT(textOf(bootMessages->value()), HasSubstr("Memory: 2048 MB"));
    EXPECT_THAT(textOf(bootMessages->value()), EndsWith("target> "));

    // Its boot ROM is replaced while it is off.
    const auto image = someImage();
    const auto readBack = lpc->getLpcRomEmulation()->getSramGetMethod(0, static_cast<int>(image.size()));
    execute({power->getSetMethod(false), lpc->getLpcRomEmulation()->getSramSetMethod(0, image), readBack});
    EXPECT_TRUE(readBack->value().data == image);

    // It boots from the new one.
    const auto secondBoot = postCodes();
    execute({lpc->getLpcRomEmulation()->getEnableSetMethod(true), power->getSetMethod(true), waitForBoot(),
             secondBoot, com->getRecvMethod(65536)});
    const auto codes = codesOf(secondBoot->value());
    ASSERT_FALSE(codes.empty());
    EXPECT_EQ(codes.front(), 0xB0);
    EXPECT_EQ(codes.back(), 0xAA);

    // The console answers, and the display tells everybody in the laboratory.
    const auto answer = com->getRecvMethod(65536);
    const auto display = lcd->getAvailableMethod();
    execute({com->getSendMethod(0, keys("echo ready\r")), answer, com->getCloseMethod(),
             lcd->getLcdClearMethod(), lcd->getLcdPrintMethod(0, 0, "board 7"),
             lcd->getLcdPrintMethod(1, 4, "ready"), lcd->getLcdBackLightMethod(40), display});
    EXPECT_EQ(textOf(answer->value()), "echo ready\r\nready\r\ntarget> ");
    EXPECT_EQ(display->value().info, "board 7         \n"
                                     "    ready       \n"
                                     "backlight=40");

    EXPECT_EQ(simulator.requestCount() - before, 4u);
    simulator.inspect([&](Appliance& appliance) {
        EXPECT_TRUE(appliance.board()->booted());
        EXPECT_EQ(appliance.board()->powerOnCount(), 2u);
        EXPECT_EQ(appliance.get<Cfa633>("lcd").lcd().row(0), "board 7         ");
        const auto& rom = appliance.get<LpcRomEmulation>("lpc.lpcRomEmulation").rom();
        EXPECT_TRUE(rom.read(0, RomEmulation::size) == image);
    });
}

TEST_F(RehearsalTest, BoardThatStaysOffShowsNothing) {
    const auto codes = postCodes();
    const auto chain = jtag->getShiftDRMethod(32, Bytes(4, 0));
    const auto spd = i2c->getTransferMethod(spdAddress, 0, {0}, 256);
    const auto open = com->getOpenMethod(115200, 8, false, false, 1, false, false, false, false);
    const auto messages = com->getRecvMethod(65536);
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (const auto& method :
         std::vector<std::shared_ptr<TAVO::Method>>{waitForBoot(), codes, chain, spd, open, messages})
        queue->add(method);
    device->multicall(queue);
    EXPECT_TRUE(codes->value().entries.empty());
    EXPECT_THAT(wordsOf(chain->value().data), ElementsAre(0xFFFFFFFF));
    EXPECT_EQ(spd->returnCode(), 4); // nobody acknowledged
    EXPECT_EQ(textOf(messages->value()), "");
}

} // namespace
