#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/table.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

/// A type of an application's own, from its calls to the result of one.
namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::SpecificationError;
using TAVO::TAVOXTranscode::takesArguments;
namespace dto = TAVO::dto;

struct OpenRequest : dto::request_packet {
    std::uint8_t door = 0;
    std::string code;
    static constexpr auto fields() {
        return std::tuple{dto::Field{"door", &OpenRequest::door}, dto::Field{"code", &OpenRequest::code}};
    }
};

struct SerialReply : dto::reply_packet {
    std::vector<std::uint8_t> serial;
    static constexpr auto fields() { return std::tuple{dto::Field{"serial", &SerialReply::serial}}; }
};

struct CountReply : dto::reply_packet {
    std::uint8_t count = 0;
    static constexpr auto fields() { return std::tuple{dto::Field{"count", &CountReply::count}}; }
};

struct OwnerReply : dto::reply_packet {
    std::string owner;
    static constexpr auto fields() { return std::tuple{dto::Field{"owner", &OwnerReply::owner}}; }
};

struct PairReply : dto::reply_packet {
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    static constexpr auto fields() {
        return std::tuple{dto::Field{"first", &PairReply::first}, dto::Field{"second", &PairReply::second}};
    }
};

namespace vault_v1_0 {

using namespace TAVO::TAVOXTranscode;

constexpr Call<OpenRequest, CountReply> open{"open"};
constexpr Call<> close{"close"};
constexpr Call<None, SerialReply> serial{"serial"};
constexpr Call<None, OwnerReply> owner{"owner"};
constexpr Call<None, PairReply> pair{"pair"};
constexpr auto table = tableOf(open, close, serial, owner, pair);

MethodRows rows() noexcept { return table; }

} // namespace vault_v1_0

namespace vault_v1_1 {

using namespace TAVO::TAVOXTranscode;

constexpr auto table = tableOf(vault_v1_0::close);

MethodRows rows() noexcept { return table; }

} // namespace vault_v1_1

class Vault_v1_0 : public TAVO::Proxy<vault_v1_0::rows> {
protected:
    using Proxy::Proxy;
};

class Vault_v1_1 : public TAVO::Proxy<vault_v1_1::rows> {
protected:
    using Proxy::Proxy;
};

class VaultFactory : public TAVO::TypeFactory {
public:
    VaultFactory()
        : TypeFactory("vault",
                      {servedBy<Vault_v1_0>("1.0", isAtMostOneZero), servedBy<Vault_v1_1>("1.1", isOneOne)}) {
    }

private:
    static bool isOneOne(const TAVO::Version& version) { return version == TAVO::Version("1.1"); }
};

class OwnType : public testing::Test {
protected:
    OwnType() {
        appliance.add(7, "vault")
            .method("open", result(0, {3}))
            .method("close")
            .method("serial", result(0, joined({u32(2), {0x00, 0xff}})))
            .method("owner", result(0, text("ada")))
            .method("pair", result(0, {1, 2}));
    }

    template <class Proxy = Vault_v1_0>
    std::shared_ptr<Proxy> build() {
        return std::dynamic_pointer_cast<Proxy>(
            TAVO::ObjectFactory::buildObject(device, "vault", 7, nullptr));
    }

    Bytes parametersOf(const std::shared_ptr<TAVO::Method>& method) {
        appliance.forgetCalls();
        device->call(method);
        return appliance.calls().at(0).parameters;
    }

    VaultFactory factory;
    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    support::FakeAppliance& appliance = device->appliance;
};

TEST_F(OwnType, TakesAnArgumentForEachFieldOrTheRecord) {
    const auto vault = build();
    const auto expected = joined({{5}, text("1234")});
    EXPECT_EQ(parametersOf(vault->make(vault_v1_0::open, 5, "1234")), expected);
    OpenRequest request;
    request.door = 5;
    request.code = "1234";
    EXPECT_EQ(parametersOf(vault->make(vault_v1_0::open, request)), expected);
    EXPECT_EQ(request.code, "1234") << "a record that is handed over by name stays";
    EXPECT_EQ(parametersOf(vault->make(vault_v1_0::open, 0x105, std::string("1234"))), expected)
        << "an integer keeps its low bits";
}

TEST_F(OwnType, GivesEachCallTheClassOfItsResult) {
    const auto vault = build();
    const std::shared_ptr<TAVO::BoundMethod<CountReply>> open = vault->make(vault_v1_0::open, 1, "");
    device->call(open);
    EXPECT_EQ(open->value().count, 3);
    const auto close = vault->make(vault_v1_0::close);
    static_assert(std::is_same_v<decltype(close), const std::shared_ptr<TAVO::Method>>);
    device->call(close);
    EXPECT_EQ(close->returnCode(), 0);
}

TEST_F(OwnType, IsRefusedByTheCompilerWithOtherArguments) {
    EXPECT_TRUE((takesArguments<OpenRequest, int, const char*>()));
    EXPECT_TRUE((takesArguments<OpenRequest, OpenRequest>()));
    EXPECT_FALSE((takesArguments<OpenRequest, int>())) << "too few";
    EXPECT_FALSE((takesArguments<OpenRequest, int, std::string, int>())) << "too many";
    EXPECT_FALSE((takesArguments<OpenRequest, SerialReply>())) << "another record";
    EXPECT_FALSE((takesArguments<OpenRequest, std::string, int>())) << "other types";
    EXPECT_FALSE((takesArguments<OpenRequest>()));
}

TEST_F(OwnType, HasPlainValuesForRepliesOfASingleField) {
    const auto vault = build();
    const auto serial = vault->make<std::vector<std::uint8_t>>(vault_v1_0::serial);
    const auto numbers = vault->make<std::vector<int>>(vault_v1_0::serial);
    const auto flags = vault->make<std::vector<bool>>(vault_v1_0::serial);
    const auto owner = vault->make<std::vector<std::uint8_t>>(vault_v1_0::owner);
    const auto count = vault->make<long long>(vault_v1_0::open, 1, "");
    EXPECT_EQ(device->value(serial), (Bytes{0x00, 0xff}));
    EXPECT_EQ(device->value(numbers), (std::vector<int>{0, 255}));
    EXPECT_EQ(device->value(flags), (std::vector<bool>{false, true}));
    EXPECT_EQ(device->value(owner), (Bytes{'a', 'd', 'a'}));
    EXPECT_EQ(device->value(count), 3);
}

TEST_F(OwnType, RefusesPlainValuesOfOtherReplies) {
    const auto vault = build();
    const auto refusal = [&](const auto& method) {
        testing::internal::CaptureStderr();
        const auto failure = failureOf<std::runtime_error>([&] { device->value(method); });
        EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with("const Can't convert result "));
        return failure;
    };
    EXPECT_EQ(refusal(vault->make<long long>(vault_v1_0::pair)), "Can't convert Result to desire type");
    EXPECT_EQ(refusal(std::make_shared<TAVO::BoundMethod<long long>>("serial", *vault, dto::Params())),
              "Can't convert Result to desire type");
    const auto serial = vault->make<std::vector<std::uint8_t>>(vault_v1_0::serial);
    serial->setResult({0, std::make_shared<PairReply>()});
    testing::internal::CaptureStderr();
    EXPECT_EQ(failureOf<std::runtime_error>([&] { serial->value(); }), "Can't convert Result to desire type");
    EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with("const Can't convert result "));
}

TEST_F(OwnType, IsBuiltByTheFirstClassThatServesItsVersion) {
    EXPECT_TRUE(build<Vault_v1_0>());
    appliance.object(7).version(1, 1, 0);
    EXPECT_TRUE(build<Vault_v1_1>());
    appliance.object(7).version(2, 0, 0);
    EXPECT_EQ(failureOf<SpecificationError>([&] { build(); }), "Unknown vault object version: 2.0.0");
}

TEST_F(OwnType, IsAmongTheTablesAsLongAsItsFactoryLives) {
    EXPECT_EQ(TAVO::methodRows("vault", "1.0").size(), 5u);
    EXPECT_EQ(TAVO::findObjectTable("vault", TAVO::Version("0.9"))->version, "1.0");
    EXPECT_EQ(TAVO::findObjectTable("vault", TAVO::Version("1.1"))->version, "1.1");
    EXPECT_EQ(TAVO::findObjectTable("vault", TAVO::Version("1.2")), nullptr);
    {
        const VaultFactory later;
        EXPECT_EQ(TAVO::methodRows("vault", "1.0").size(), 5u);
    }
    EXPECT_EQ(TAVO::methodRows("vault", "1.1").size(), 1u) << "the earlier factory's tables stay";
    std::optional<VaultFactory> third;
    third.emplace();
    third.reset();
    EXPECT_TRUE(TAVO::findObjectTable("vault", TAVO::Version("1.0")));
}

TEST(OwnTypes, AreGoneWithTheirFactory) {
    { const VaultFactory factory; }
    EXPECT_TRUE(TAVO::methodRows("vault", "1.0").empty());
    EXPECT_EQ(TAVO::findObjectTable("vault", TAVO::Version("1.0")), nullptr);
}

TEST_F(OwnType, IsDescribedByItsRows) {
    const auto vault = build();
    ASSERT_TRUE(TAVO::findMethodRow(*vault, "serial"));
    EXPECT_EQ(TAVO::findMethodRow(*vault, "serial")->reply->fields()[0].name, "serial");
    EXPECT_EQ(&TAVO::describeMethod(*vault, "open"), &vault_v1_0::rows()[0]);
    EXPECT_EQ(TAVO::findMethodRow(*vault, "get"), nullptr);
    EXPECT_EQ(TAVO::findMethodRow(*vault, "type")->name, "type");
    EXPECT_TRUE(vault->hasMethod("serial"));
    EXPECT_TRUE(vault->hasMethod("methods"));
    EXPECT_FALSE(vault->hasMethod("get"));
    EXPECT_FALSE(vault->hasMethod(""));
}

TEST_F(OwnType, HasAMethodThatOnlyTheDeviceKnowsOrOnlyTheTables) {
    appliance.add(8, "vault").listedMethod("blink", 99);
    const auto vault =
        std::dynamic_pointer_cast<Vault_v1_0>(TAVO::ObjectFactory::buildObject(device, "other", 8, nullptr));
    EXPECT_TRUE(vault->hasMethod("blink"));
    EXPECT_EQ(TAVO::findMethodRow(*vault, "blink"), nullptr);
    EXPECT_FALSE(vault->hasMethod("serial"));
    EXPECT_TRUE(TAVO::findMethodRow(*vault, "serial"));
    EXPECT_EQ(failureOf<SpecificationError>([&] { vault->make(vault_v1_0::serial); }),
              "Could not find Method ID for Method: serial");
}

TEST_F(OwnType, RefusesCallsOfOtherTypes) {
    const auto vault = build();
    EXPECT_EQ(
        failureOf<SpecificationError>([&] { vault->make(CommonModules::TAVOXTranscode::relay_v1_0::get); }),
        "Could not find Method ID for Method: get");
}

TEST_F(OwnType, ExecutesAndInsistsOnSuccess) {
    const auto vault = build();
    EXPECT_NO_THROW(device->execute(vault->make(vault_v1_0::close)));
    appliance.object(7).method("close", result(0x1f)).method("owner", result(3, text("eve")));
    EXPECT_EQ(failureOf<TAVO::Error>([&] { device->execute(vault->make(vault_v1_0::close)); }),
              "Error executing close() method on vault: 1f");
    const auto owner = vault->make(vault_v1_0::owner);
    EXPECT_EQ(failureOf<TAVO::Error>([&] { device->value(owner); }),
              "Error executing owner() method on vault: 3");
    EXPECT_EQ(owner->value().owner, "eve") << "the result is there all the same";
}

TEST_F(OwnType, LeavesItsResultToWhoeverHoldsTheCall) {
    const auto vault = build();
    const auto owner = vault->make(vault_v1_0::owner);
    EXPECT_EQ(device->value(owner).owner, "ada");
    EXPECT_EQ(device->value(owner).owner, "ada");
    EXPECT_EQ(owner->returnCode(), -1) << "taken, since nobody else holds it";
    const auto held = owner;
    EXPECT_EQ(device->value(owner).owner, "ada");
    EXPECT_EQ(held->value().owner, "ada");
}

} // namespace
