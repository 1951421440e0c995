#include <gtest/gtest.h>

#include <tavo/client/hwdebug/cpu_debug.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
using support::failureOf;
using support::outcomeWith;
using support::record;
using Names = std::vector<std::string>;

class CpuDebugTest : public support::ModuleTest {
protected:
    /// A "cpuDebug" with both children, all of version 1.`minor` unless said otherwise.
    void addWithChildren(std::uint32_t minor, std::uint32_t jtagMinor, std::uint32_t hdtMinor) {
        add(7, "cpuDebug", minor).member("jtag", 8).member("hdt", 9);
        add(8, "jtag", jtagMinor);
        add(9, "hdt", hdtMinor);
    }
};

TEST_F(CpuDebugTest, HandsOutItsChildrenWithoutACall) {
    addWithChildren(1, 1, 1);
    const auto cpu = open<CpuDebug_v1_1>(7);
    ASSERT_TRUE(cpu);
    device->appliance.forgetCalls();
    EXPECT_TRUE(cpu->getJtag());
    EXPECT_EQ(cpu->getJtag(), cpu->getChild("jtag"));
    EXPECT_TRUE(cpu->getHdt());
    EXPECT_EQ(cpu->getHdt(), cpu->getChild("hdt"));
    EXPECT_EQ(device->appliance.exchanges(), 0u);
}

TEST_F(CpuDebugTest, OfTheOlderVersionHandsOutChildrenOfTheOlderVersions) {
    addWithChildren(0, 0, 0);
    const auto cpu = open<CpuDebug_v1_0>(7);
    ASSERT_TRUE(cpu);
    EXPECT_TRUE(cpu->getJtag());
    EXPECT_EQ(cpu->getJtag(), cpu->getChild("jtag"));
    EXPECT_TRUE(cpu->getHdt());
    EXPECT_EQ(cpu->getHdt(), cpu->getChild("hdt"));
}

TEST_F(CpuDebugTest, CannotBeOpenedWithAJtagOfTheOtherVersion) {
    addWithChildren(1, 0, 1);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(CpuDebugTest, CannotBeOpenedWithAnHdtOfTheOtherVersion) {
    addWithChildren(1, 1, 0);
    EXPECT_EQ(failureToOpen(), "hdt object not found.");
}

TEST_F(CpuDebugTest, OfTheOlderVersionCannotBeOpenedWithANewerJtag) {
    addWithChildren(0, 1, 0);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(CpuDebugTest, OfTheOlderVersionCannotBeOpenedWithANewerHdt) {
    addWithChildren(0, 0, 1);
    EXPECT_EQ(failureToOpen(), "hdt object not found.");
}

TEST_F(CpuDebugTest, WithoutChildrenMissesTheJtagFirst) {
    add(7, "cpuDebug", 1);
    EXPECT_EQ(failureToOpen(), "jtag object not found.");
}

TEST_F(CpuDebugTest, WithoutHdtCannotBeOpened) {
    add(7, "cpuDebug", 1).member("jtag", 8);
    add(8, "jtag", 1);
    EXPECT_EQ(failureToOpen(), "hdt object not found.");
}

TEST_F(CpuDebugTest, YieldsTheHeaderStatusWithItsListsInOrder) {
    addWithChildren(1, 1, 1);
    const auto cpu = open<CpuDebug_v1_1>(7);
    EXPECT_EQ(sentBy(cpu->getheaderStatusGetMethod()), request("headerStatusGet"));
    const auto [headers, connections] =
        reply<HeaderResult>(cpu->getheaderStatusGetMethod(), support::headerStatusHex);
    ASSERT_EQ(headers.size(), 1u);
    const auto& [name, flag1, flag2, flag3] = headers.front();
    EXPECT_EQ(name, "H");
    EXPECT_EQ(flag1, 1);
    EXPECT_EQ(flag2, 0);
    EXPECT_EQ(flag3, 1);
    ASSERT_EQ(connections.size(), 1u);
    EXPECT_EQ(connections.front().first, Names{"A"});
    EXPECT_EQ(connections.front().second, (Names{"B", "C"}));
}

TEST_F(CpuDebugTest, YieldsAnEmptyHeaderStatus) {
    addWithChildren(1, 1, 1);
    EXPECT_EQ(reply<HeaderResult>(open<CpuDebug_v1_1>(7)->getheaderStatusGetMethod(), "00000000 00000000"),
              HeaderResult());
}

TEST(HeaderResults, AreMadeFromTheirReplyAlone) {
    using TAVO::dto::Base::HeaderStatusGetReply;
    HeaderStatusGetReply reply;
    reply.headers.push_back({"H", 1, 2, 3});
    reply.connections.push_back({{"A"}, {}});
    EXPECT_EQ(HeaderResult(outcomeWith(reply)), HeaderResult(reply));
    EXPECT_EQ(HeaderResult(reply).headers, reply.headers);
    EXPECT_EQ(HeaderResult(reply).connections, reply.connections);
    EXPECT_EQ(failureOf<std::runtime_error>([] { HeaderResult{TAVO::dto::result()}; }),
              "Can't convert Result to desire type");
}

} // namespace
