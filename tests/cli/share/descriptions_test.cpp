#include <cstdint>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <tavo/cli/share/descriptions.h>
#include <tavo/cli/share/grants.h>
#include <tests/support/wire_bytes.h>

namespace tool_test {
namespace {

using namespace support;
using TAVO::cli::CallMeaning;
using TAVO::cli::Descriptions;
using TAVO::cli::Grants;
using TAVO::server::CallFrame;

Bytes success(const Bytes& reply) { return joined({u32(0), reply}); }

class DescriptionsTest : public testing::Test {
protected:
    DescriptionsTest() {
        descriptions.setFixedMethods(0, "device",
                                     {{"lock", 20, ""}, {"rootMembers", 21, ""}, {"info", 22, ""}});
        descriptions.setFixedMethods(1, "system", {{"deviceReset", 30, ""}, {"timeGet", 31, ""}});
        descriptions.learn({0, 21, {}}, success(joined({u32(1), text("bench"), u32(9)})));
        descriptions.learn({9, 3, {}},
                           success(joined({u32(2), text("type"), u32(1), text("members"), u32(2)})));
    }

    Descriptions descriptions;
};

TEST_F(DescriptionsTest, TellWhatCallsMean) {
    const auto meaning = [&](std::uint32_t object, std::uint32_t method, const Bytes& parameters = {}) {
        return descriptions.meaningOf({object, method, parameters});
    };
    EXPECT_EQ(meaning(9, 1), CallMeaning::description);
    EXPECT_EQ(meaning(9, 3), CallMeaning::description);
    EXPECT_EQ(meaning(77, 3), CallMeaning::description) << "the methods of any object";
    EXPECT_EQ(meaning(77, 1), CallMeaning::work) << "unknown";
    EXPECT_EQ(meaning(9, 1, {0}), CallMeaning::work) << "descriptions have no parameters";
    EXPECT_EQ(meaning(0, 20), CallMeaning::lock);
    EXPECT_EQ(meaning(0, 22), CallMeaning::description);
    EXPECT_EQ(meaning(1, 30), CallMeaning::change);
    EXPECT_EQ(meaning(1, 31), CallMeaning::work);
}

TEST_F(DescriptionsTest, AreKeptUntilTheyAreForgotten) {
    const auto type = success(text("relay"));
    descriptions.learn({9, 1, {}}, type);
    ASSERT_TRUE(descriptions.find({9, 1, {}}));
    EXPECT_EQ(*descriptions.find({9, 1, {}}), type);
    EXPECT_EQ(descriptions.nameOf({9, 1, {}}), "bench.type");
    descriptions.forget();
    EXPECT_FALSE(descriptions.find({9, 1, {}}));
    EXPECT_EQ(descriptions.nameOf({9, 1, {}}), "#9.#1");
    EXPECT_EQ(descriptions.meaningOf({9, 1, {}}), CallMeaning::work);
    EXPECT_EQ(descriptions.meaningOf({0, 20, {}}), CallMeaning::lock)
        << "a password never goes to the device";
}

TEST_F(DescriptionsTest, OfARefusalAreNotKept) {
    descriptions.learn({9, 1, {}}, joined({u32(5), text("relay")}));
    EXPECT_FALSE(descriptions.find({9, 1, {}}));
    descriptions.learn({9, 1, {}}, {0, 0});
    EXPECT_FALSE(descriptions.find({9, 1, {}}));
}

TEST_F(DescriptionsTest, CannotRenameWhatIsFixed) {
    descriptions.learn({0, 3, {}}, success(joined({u32(1), text("info"), u32(20)})));
    EXPECT_EQ(descriptions.meaningOf({0, 20, {}}), CallMeaning::lock);
    descriptions.learn({9, 2, {}}, success(joined({u32(1), text("device"), u32(0)})));
    EXPECT_EQ(descriptions.nameOf({0, 20, {}}), "device.lock");
}

TEST_F(DescriptionsTest, TakeNoMoreThanTheirShareOfMemory) {
    const Bytes large(1 << 20);
    for (std::uint32_t object = 100; object < 200; ++object) {
        descriptions.learn({object, 3, {}}, success(joined({u32(1), text("type"), u32(1)})));
        descriptions.learn({object, 1, {}}, joined({u32(0), large}));
    }
    int kept = 0;
    for (std::uint32_t object = 100; object < 200; ++object)
        kept += descriptions.find({object, 1, {}}) != nullptr;
    EXPECT_GT(kept, 0);
    EXPECT_LT(kept, 10);
}

TEST(Grants, AreDistinctAndEndWhenRevoked) {
    Grants grants;
    std::set<std::uint32_t> ids;
    for (int i = 0; i < 1000; ++i)
        ids.insert(grants.grant());
    EXPECT_EQ(ids.size(), 1000u);
    EXPECT_FALSE(ids.contains(0));
    EXPECT_FALSE(grants.holds(0));
    const auto one = *ids.begin();
    EXPECT_TRUE(grants.holds(one));
    grants.revoke(one);
    EXPECT_FALSE(grants.holds(one));
}

TEST(Grants, ThoseUnusedForLongestGoFirst) {
    Grants grants(3);
    const auto used = grants.grant();
    const auto unused = grants.grant();
    grants.grant();
    EXPECT_TRUE(grants.holds(used));
    grants.grant();
    EXPECT_TRUE(grants.holds(used));
    EXPECT_FALSE(grants.holds(unused));
}

} // namespace
} // namespace tool_test
