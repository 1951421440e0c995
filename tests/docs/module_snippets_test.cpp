#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/simulator/simulator_fixture.h>

// The code that the pages of docs/modules show, one test for each page.
namespace {

using namespace CommonModules;
using namespace TAVO::HWDebug;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

struct ModulePages : SimulatorFixture {
    ModulePages() {
        simulator.inspect([](Appliance& appliance) {
            appliance.board()->setPower(true);
            appliance.clock().advance(std::chrono::seconds(4));
        });
    }

    std::shared_ptr<TAVO::Device> device = open();
};

TEST_F(ModulePages, Jtag) {
    const auto jtag = device->get<CpuDebug_v1_1>("cpu0")->getJtag();
    const auto idcode = jtag->getShiftDRMethod(32, {0, 0, 0, 0});
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(jtag->getTapStateSetMethod(0)); // Test-Logic-Reset selects the IDCODE registers
    queue->add(idcode);
    device->multicall(queue);
    const auto captured = idcode->value().data; // the bit that came first is the lowest of the first byte

    EXPECT_EQ(captured, (Bytes{0xC3, 0xD0, 0x45, 0x2A}));
}

TEST_F(ModulePages, CsJtag) {
    const auto csJtag = device->get<CsJtag_v1_0>("csJtag");
    const bool isReset = device->value(csJtag->getJtag()->tapStateGetMethod()).state == 0;

    EXPECT_TRUE(isReset);
}

TEST_F(ModulePages, Hdt) {
    const auto hdt = device->get<CpuDebug_v1_1>("cpu0")->getHdt();
    const auto halted = hdt->getIoDbrdyGetMethod();
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(hdt->getIoDbreqSetMethod(true));
    queue->add(device->getSystem()->getUSleepMethod(100));
    queue->add(halted);
    device->multicall(queue);
    const std::vector<bool> cores = halted->value();

    EXPECT_THAT(cores, ElementsAre(true, true, true, true));

    const std::vector<std::uint8_t> lines = {1, 1, 0, 0};
    const auto wait = hdt->make(TAVO::TAVOXTranscode::hdt_v1_1::ioDbrdyWait, lines, 1000);
    device->call(wait);

    EXPECT_EQ(wait->returnCode(), 0);
}

TEST_F(ModulePages, CpuDebug) {
    const auto cpu = device->get<CpuDebug_v1_1>("cpu0");
    const auto status = cpu->getheaderStatusGetMethod();
    const auto powerGood = cpu->getHdt()->getIoPwrokGetMethod();
    const auto state = cpu->getJtag()->tapStateGetMethod();
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(status);
    queue->add(powerGood);
    queue->add(state);
    device->multicall(queue);

    EXPECT_FALSE(status->value().headers.empty());
    EXPECT_TRUE(powerGood->value().level);
    EXPECT_EQ(state->returnCode(), 0);
}

TEST_F(ModulePages, I2c) {
    const auto i2c = device->get<I2c_v1_0>("i2c");
    const auto temperature = i2c->getTransferMethod(0x48, 0, {0x00}, 2); // register 0, two bytes
    device->call(temperature);
    if (temperature->returnCode() != 0)
        throw std::runtime_error("the sensor does not answer");
    const int degrees = temperature->value().data.at(0);

    EXPECT_EQ(degrees, 36);
}

TEST_F(ModulePages, GpuScan) {
    const auto scan = device->get<GpuDebug_v1_0>("gpu0")->getGpuScan();
    const auto bytes = device->value(scan->getScanMethod(64)).data;

    EXPECT_EQ(bytes, (Bytes{0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01}));
}

TEST_F(ModulePages, GpuDebug) {
    const auto gpu = device->get<GpuDebug_v1_0>("gpu0");
    std::vector<std::uint8_t> content;
    if (const auto i2c = gpu->getI2c()) { // the only child that may be missing
        const auto read = i2c->getTransferMethod(0x50, 0, {0}, 8);
        device->call(gpu->getHeaderModeSetMethod(3));
        device->call(read);
        content = read->value().data;
    }

    EXPECT_EQ(content, Bytes(8, 0xFF));
}

TEST_F(ModulePages, KelvorMux) {
    const auto mux = device->get<KelvorGpuDebugMux_v1_0>("gpuMux");
    device->execute(mux->getHeaderModeSetMethod(2));
    const int mode = device->value(mux->getHeaderModeGetMethod()).mode;

    EXPECT_EQ(mode, 2);

    const auto uvdMux = device->get<KelvorUvdMux_v1_0>("uvdMux");
    const bool available = device->value(uvdMux->getAvailableMethod()).available;

    EXPECT_TRUE(available);
}

TEST_F(ModulePages, Lpc) {
    const auto lpc = device->get<Lpc_v1_0>("lpc");
    const auto headers = device->value(lpc->getHeaderConnectGetMethod());
    std::string connected;
    for (const auto& header : headers.connections)
        if (header.connected)
            connected += header.name + ' ';

    EXPECT_EQ(connected, "LPC ");
}

TEST_F(ModulePages, LpcPostCode) {
    namespace calls = TAVO::TAVOXTranscode::lpcPostCode_v1_0;
    const auto postCode = device->get<Lpc_v1_0>("lpc")->getLpcPostCode();
    const auto last = device->value(postCode->make(calls::postCodeGet)).postCode;

    EXPECT_EQ(last, 0xAA);

    const auto entries = postCode->make(calls::fifoGet);
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(postCode->make(calls::optionFifoCircularSet, 1));
    queue->add(entries);
    device->multicall(queue);
    const auto count = entries->value().entries.size();

    EXPECT_GT(count, 50u);
}

TEST_F(ModulePages, LpcRomEmulation) {
    const auto rom = device->get<Lpc_v1_0>("lpc")->getLpcRomEmulation();
    const std::vector<std::uint8_t> image = {0xEA, 0x5B, 0xE0, 0x00, 0xF0};
    const auto readBack = rom->getSramGetMethod(0x7FFFF0, 5);
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(rom->getSramSetMethod(0x7FFFF0, image));
    queue->add(readBack);
    queue->add(rom->getEnableSetMethod(true));
    device->multicall(queue);
    const bool loaded = readBack->value().data == image;

    EXPECT_TRUE(loaded);
}

TEST_F(ModulePages, Relay) {
    const auto power = device->get<Relay_v1_0>("power");
    const auto state = power->getGetMethod();
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(power->getSetMethod(false));
    queue->add(device->getSystem()->getUSleepMethod(1000));
    queue->add(power->getSetMethod(true));
    queue->add(state);
    device->multicall(queue);
    const bool isOn = state->value().state != 0;

    EXPECT_TRUE(isOn);
}

TEST_F(ModulePages, CmosRelay) {
    const auto cmos = device->get<CmosRelay_v1_0>("cmos");
    device->execute(cmos->getCmosClearMethod(100));

    EXPECT_EQ(simulator.inspect([](Appliance& appliance) { return appliance.board()->cmosClearCount(); }),
              1u);
}

TEST_F(ModulePages, Com) {
    const auto com = device->get<Com_v1_0>("com");
    const auto received = com->getRecvMethod(4096);
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(com->getOpenMethod(115200, 8, false, false, 1, false, false, false, false));
    queue->add(com->getSendMethod(0, {'t', 'e', 'm', 'p', '\r'}));
    queue->add(device->getSystem()->getUSleepMethod(1000));
    queue->add(received);
    device->multicall(queue);
    const auto bytes = received->value(); // one integer for each byte
    const std::string text(bytes.begin(), bytes.end());

    EXPECT_THAT(text, testing::StartsWith("temp\r\n36.5"));
}

TEST_F(ModulePages, Cfa633) {
    const auto lcd = device->get<Cfa633_v1_0>("lcd");
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(lcd->getLcdClearMethod());
    queue->add(lcd->getLcdPrintMethod(1, 4, "ready"));
    queue->add(lcd->getLcdBackLightMethod(50));
    device->multicall(queue);

    const auto display = called(device, lcd->getAvailableMethod());
    EXPECT_EQ(display->value().info, "                \n"
                                     "    ready       \n"
                                     "backlight=50");
}

TEST_F(ModulePages, HeaderStatus) {
    const auto i2c = device->get<I2c_v1_0>("i2c");
    const auto status = device->value(i2c->getHeaderStatusGetMethod());
    std::string names;
    for (const auto& header : status.headers)
        names += header.name + ' ';
    device->execute(i2c->getHeaderStatusClearMethod());

    EXPECT_FALSE(names.empty());
}

} // namespace
