#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>
#include <tests/support/scripted_transport.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::FakeCall;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::Object_v1_0;
using TAVO::SpecificationError;
using TAVO::Object_v1_0_Structs::MemberNameIDPair;
using TAVO::Object_v1_0_Structs::MethodNameIDPair;
using Names = std::vector<std::string>;
namespace base = TAVO::TAVOXTranscode::base_v1_0;

class Object : public testing::Test {
protected:
    Object() { fake.version(1, 2, 0xFFFFFFFF); }

    std::shared_ptr<Object_v1_0> build(std::shared_ptr<TAVO::Container> parent = nullptr) {
        auto object =
            std::make_shared<Object_v1_0>(device, "thing", 7u, parent, base::encoders(), base::decoders());
        building = appliance.calls();
        appliance.forgetCalls();
        return object;
    }

    template <class Made>
    std::shared_ptr<Made> executed(std::shared_ptr<Made> method) {
        device->call(method);
        return method;
    }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    support::FakeAppliance& appliance = device->appliance;
    support::FakeObject& fake = appliance.add(7, "sensor");
    std::vector<FakeCall> building;
};

TEST_F(Object, AsksForItsMethodsAloneWhenItIsBuilt) {
    build();
    EXPECT_EQ(building, (std::vector<FakeCall>{{0, 7, "methods", {}}}));
}

TEST_F(Object, KnowsItsPlaceItsIdAndItsDevice) {
    const auto parent = std::make_shared<TAVO::Container>("group", nullptr);
    const auto object = build(parent);
    EXPECT_EQ(object->getFullName(), "group.thing");
    EXPECT_EQ(object->getParent(), parent);
    EXPECT_EQ(object->getInstanceID(), 7u);
    EXPECT_EQ(object->device(), device);
}

TEST_F(Object, DoesNotKeepItsDeviceAlive) {
    const auto object = build();
    device.reset();
    EXPECT_EQ(object->device(), nullptr);
    EXPECT_EQ(failureOf<TAVO::Error>([&] { object->type(); }), "Device no longer exists for object: thing");
}

TEST_F(Object, KnowsTheIdOfMethodsEvenWhenTheDeviceOmitsIt) {
    EXPECT_EQ(Object_v1_0::MethodsStaticID, 3u);
    fake.withoutListedMethods();
    EXPECT_EQ(build()->getMethodID("methods"), 3u);
}

TEST_F(Object, TakesTheIdOfTheLastReportEvenForMethods) {
    fake.listedMethod("twice", 10).listedMethod("methods", 44).listedMethod("twice", 20);
    const auto object = build();
    EXPECT_EQ(object->getMethodID("twice"), 20u);
    EXPECT_EQ(object->getMethodID("methods"), 44u);
}

TEST_F(Object, TakesAllIdsFromTheDevice) {
    const auto object = build();
    EXPECT_EQ(object->getMethodID("type"), fake.methodId("type"));
    EXPECT_EQ(object->getMethodID("version"), fake.methodId("version"));
}

/// An object with eight methods of the application's own, "aa" to "hh", and the tables that describe them.
class ObjectWithOwnMethods : public Object {
protected:
    ObjectWithOwnMethods() {
        std::uint32_t id = 100;
        for (const auto& name : names) {
            fake.listedMethod(name, id++);
            encoders[name] = TAVO::TAVOXTranscode::encodeNothing;
            decoders[name] = TAVO::TAVOXTranscode::decodeStatus;
        }
        object = std::make_shared<Object_v1_0>(device, "thing", 7u, nullptr, encoders, decoders);
    }
    std::shared_ptr<TAVO::Method> make(std::string_view name) const {
        return object->make(TAVO::TAVOXTranscode::Call<>{name});
    }

    const Names names{"cc", "aa", "hh", "bb", "ee", "ff", "gg", "dd"};
    base::EncoderList encoders;
    base::DecoderList decoders;
    std::shared_ptr<Object_v1_0> object;
};

TEST_F(ObjectWithOwnMethods, FindsEachOfThemInAnyTurn) {
    for (std::size_t step = 1; step <= 7; ++step) {
        for (std::size_t i = 0; i < 50; ++i) {
            const auto at = i * step % names.size();
            const auto method = make(names[at]);
            ASSERT_EQ(method->getID(), 100 + at) << names[at];
            ASSERT_EQ(method->getFullName(), "thing." + names[at]);
        }
    }
}

TEST_F(ObjectWithOwnMethods, GoesByTheTextOfANameAndNotByItsPlace) {
    std::string name = "aa";
    for (const auto* text : {"aa", "bb", "aa", "dd", "bb"}) {
        name.replace(0, 2, text);
        EXPECT_EQ(make(name)->getName(), text);
    }
    name = "a";
    EXPECT_EQ(failureOf<SpecificationError>([&] { make(name); }), "Could not find Method ID for Method: a");
}

TEST_F(ObjectWithOwnMethods, UsesTheFunctionsThatItsTablesHoldWhenTheCallIsMade) {
    const auto former = make("aa");
    encoders["aa"] = &base::encode_reserve;
    decoders["aa"] = &base::decode_type;
    const auto later = make("aa");
    EXPECT_EQ(former->getEncoder(), TAVO::TAVOXTranscode::encodeNothing);
    EXPECT_EQ(former->getDecoder(), TAVO::TAVOXTranscode::decodeStatus);
    EXPECT_EQ(later->getEncoder(), &base::encode_reserve);
    EXPECT_EQ(later->getDecoder(), &base::decode_type);
    EXPECT_EQ(make("bb")->getEncoder(), TAVO::TAVOXTranscode::encodeNothing);
}

TEST_F(Object, RefusesNamesThatItDoesNotKnow) {
    const auto object = build();
    EXPECT_EQ(failureOf<SpecificationError>([&] { object->getMethodID("Type"); }),
              "Could not find Method ID for Method: Type");
    EXPECT_EQ(failureOf<SpecificationError>([&] { object->getEncoder("Type"); }),
              "Could not find Method Encoder for Method: Type");
    EXPECT_EQ(failureOf<SpecificationError>([&] { object->getDecoder("set"); }),
              "Could not find Method Decoder for Method: set");
    EXPECT_EQ(failureOf<SpecificationError>([&] { object->getAvailableMethod(); }),
              "Could not find Method ID for Method: available");
}

TEST_F(Object, FindsTheFunctionsOfMethodsThatTheDeviceDoesNotList) {
    const auto object = build();
    EXPECT_EQ(object->getEncoder("reserve"), &base::encode_reserve);
    EXPECT_EQ(object->getDecoder("available"), &base::decode_available);
}

TEST_F(Object, BuildsItsMethodsWithoutSendingAnything) {
    for (const auto* name : {"methodsVerbose", "available", "reserve", "unreserve"})
        fake.method(name);
    const auto object = build();
    EXPECT_EQ(object->getTypeMethod()->getFullName(), "thing.type");
    EXPECT_EQ(object->getVersionMethod()->getName(), "version");
    EXPECT_EQ(object->getMembersMethod()->getName(), "members");
    EXPECT_EQ(object->getMethodsMethod()->getName(), "methods");
    EXPECT_EQ(object->getMethodsVerboseMethod()->getName(), "methodsVerbose");
    EXPECT_EQ(object->getAvailableMethod()->getName(), "available");
    EXPECT_EQ(object->getReserveMethod("a", "b")->getName(), "reserve");
    EXPECT_EQ(object->getUnreserveMethod()->getName(), "unreserve");
    EXPECT_EQ(object->getTypeMethod()->getParams().request, nullptr);
    EXPECT_NE(object->getTypeMethod(), object->getTypeMethod());
    EXPECT_EQ(appliance.exchanges(), 0u);
}

TEST_F(Object, SendsReservationsWithTheFlagAtZeroAndTheTextsInOrder) {
    fake.method("reserve").method("unreserve", result(6));
    const auto object = build();
    EXPECT_EQ(executed(object->getReserveMethod("", ""))->returnCode(), 0);
    EXPECT_EQ(appliance.calls().back().parameters, (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0}));
    executed(object->getReserveMethod("ab", "c"));
    EXPECT_EQ(appliance.calls().back().parameters, (Bytes{0, 0, 0, 0, 2, 'a', 'b', 0, 0, 0, 1, 'c'}));
    EXPECT_EQ(executed(object->getUnreserveMethod())->returnCode(), 6);
    EXPECT_EQ(appliance.calls().back().parameters, Bytes{});
}

TEST_F(Object, ReadsWhetherItIsAvailable) {
    fake.method("available", result(0, joined({{7}, text("alice"), text("until noon")})));
    const auto value = executed(build()->getAvailableMethod())->value();
    EXPECT_TRUE(value.available);
    EXPECT_EQ(value.user, "alice");
    EXPECT_EQ(value.info, "until noon");
}

TEST_F(Object, ReadsSignaturesOfItsMethods) {
    fake.method("methodsVerbose", result(0, joined({u32(2), text("get"), u32(5), text("() -> u8"),
                                                    text("set"), u32(1), text("")})));
    const auto value = executed(build()->getMethodsVerboseMethod())->value();
    EXPECT_EQ(value, (std::vector<TAVO::Object_v1_0_Structs::MethodSignature>{{"get", 5, "() -> u8"},
                                                                              {"set", 1, ""}}));
}

TEST_F(Object, AnswersItsQueriesWithOneExchangeEach) {
    fake.member("z", 70).member("a", 5);
    const auto object = build();
    EXPECT_EQ(object->type(), "sensor");
    EXPECT_EQ(std::string(object->version()), "1.2");
    EXPECT_EQ(object->members(), (std::vector<MemberNameIDPair>{{"z", 70}, {"a", 5}}));
    EXPECT_EQ(object->methods().front(), (MethodNameIDPair{"methods", 3}));
    EXPECT_EQ(object->methods().size(), 4u);
    EXPECT_EQ(appliance.callNames(), (Names{"7.type", "7.version", "7.members", "7.methods", "7.methods"}));
    EXPECT_EQ(appliance.exchanges(), 5u);
}

TEST_F(Object, DoesNotTakeAReturnCodeForAFailureOfItsQueries) {
    fake.method("type", result(9, text("sensor")));
    EXPECT_EQ(build()->type(), "sensor");
}

TEST_F(Object, DescribesItselfInFourExchanges) {
    fake.member("z", 70).member("a", 5);
    const auto object = build();
    EXPECT_EQ(object->toString(), "type=sensor, version=1.2, members={z, a}, "
                                  "methods={methods, members, version, type}");
    auto names = appliance.callNames();
    EXPECT_EQ(names, (Names{"7.version", "7.type", "7.members", "7.methods"}));
    EXPECT_EQ(appliance.exchanges(), 4u);
}

TEST_F(Object, WithoutMembersAndMethodsHasNothingBetweenTheBraces) {
    fake.method("methods", [this, first = true](const Bytes&) mutable {
        const auto list =
            joined({u32(3), text("version"), u32(fake.methodId("version")), text("type"),
                    u32(fake.methodId("type")), text("members"), u32(fake.methodId("members"))});
        return result(0, std::exchange(first, false) ? list : u32(0));
    });
    EXPECT_EQ(build()->toString(), "type=sensor, version=1.2, members={}, methods={}");
}

TEST_F(Object, SeparatesNamesThatAreEmpty) {
    fake.member("", 1).member("", 2).member("b", 3);
    const auto description = build()->toString();
    EXPECT_NE(description.find("members={, , b},"), std::string::npos) << description;
}

TEST_F(Object, PassesOnWhatItsBuildingExchangeThrows) {
    fake.method("methods", [](const Bytes&) -> Bytes { throw support::DeviceFault{1001, "bob"}; });
    EXPECT_EQ(failureOf<TAVO::LockError>([&] { build(); }), "The device is locked by bob");
}

TEST_F(Object, CannotBeBuiltWithoutADevice) {
    EXPECT_EQ(failureOf<TAVO::Error>(
                  [] { Object_v1_0(nullptr, "thing", 7, nullptr, base::encoders(), base::decoders()); }),
              "Device no longer exists for object: thing");
}

TEST_F(Object, KnowsTheIdsOfMethodsThatItsTypeHasNoFunctionsFor) {
    for (const auto& [name, id] : {std::pair{"zeta", 91u},
                                   {"", 92u},
                                   {"alpha", 93u},
                                   {"zeta", 94u},
                                   {"", 95u},
                                   {"alphabet", 96u},
                                   {"type", 97u},
                                   {"type", 98u}})
        fake.listedMethod(name, id);
    const auto object = build();
    EXPECT_EQ(object->getMethodID("zeta"), 94u);
    EXPECT_EQ(object->getMethodID(""), 95u);
    EXPECT_EQ(object->getMethodID("alpha"), 93u);
    EXPECT_EQ(object->getMethodID("alphabet"), 96u);
    EXPECT_EQ(object->getMethodID("type"), 98u);
    for (const std::string name : {"alph", "alphab", "zet", "zetas", "A"})
        EXPECT_EQ(failureOf<SpecificationError>([&] { object->getMethodID(name); }),
                  "Could not find Method ID for Method: " + name);
    EXPECT_EQ(failureOf<SpecificationError>([&] { TAVO::Method("alpha", *object, {}); }),
              "Could not find Method Encoder for Method: alpha");
}

/// Answers every call with the reply that was prepared.
class PreparedDevice : public support::FakeDevice {
public:
    void call(std::shared_ptr<TAVO::Method> method) override {
        transport.received = 0;
        exchange_.run(0, std::span(&method, 1));
    }

    support::ScriptedTransport transport;

private:
    TAVO::CallExchange exchange_{transport};
};

/// `count` names of four letters, each with the number that it stands for.
Bytes manyEntries(std::size_t count) {
    Bytes entries;
    entries.reserve(12 * count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto letter = [i](unsigned shift) {
            return static_cast<std::uint8_t>('A' + ((i >> shift) & 31));
        };
        for (const auto& part : {u32(4), Bytes{letter(15), letter(10), letter(5), letter(0)},
                                 u32(static_cast<std::uint32_t>(i))})
            entries.insert(entries.end(), part.begin(), part.end());
    }
    return entries;
}

class ObjectOfAHostileDevice : public testing::Test {
protected:
    static constexpr std::uint32_t count = 300'000;

    /// The next calls get this list of names and numbers. @return its size with all around it.
    std::size_t prepareList(std::uint32_t entries, const Bytes& list) {
        prepared->transport.reply = support::replyWith({result(0, joined({u32(entries), list}))});
        prepared->transport.runs.reserve(10'000);
        return prepared->transport.reply.size();
    }
    std::shared_ptr<Object_v1_0> build() {
        return std::make_shared<Object_v1_0>(prepared, "thing", 7u, nullptr, base::encoders(),
                                             base::decoders());
    }

    std::shared_ptr<PreparedDevice> prepared = std::make_shared<PreparedDevice>();
};

TEST_F(ObjectOfAHostileDevice, CostsAtMostEightTimesTheMethodsThatItLists) {
    const auto bytes = prepareList(count, manyEntries(count));
    std::shared_ptr<Object_v1_0> object;
    {
        const support::AllocationMeter meter;
        object = build();
        EXPECT_LE(meter.peak(), 8 * bytes);
    }
    EXPECT_EQ(object->getMethodID("AAAB"), 1u);
}

TEST_F(ObjectOfAHostileDevice, ListsMembersForAtMostEightTimesTheirBytes) {
    prepareList(1, joined({text("members"), u32(5)}));
    const auto object = build();
    const auto bytes = prepareList(count, manyEntries(count));
    const support::AllocationMeter meter;
    EXPECT_EQ(object->members().size(), count);
    EXPECT_LE(meter.peak(), 8 * bytes);
}

} // namespace
