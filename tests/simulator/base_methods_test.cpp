#include <set>

#include <tests/simulator/simulator_fixture.h>

#include <tavo/simulator/objects/relay.h>

namespace {

using namespace TAVO::simulator;
using TAVO::dto::Base::IntegerReply;
using TAVO::TAVOXTranscode::Call;
namespace relay_v1_0 = CommonModules::TAVOXTranscode::relay_v1_0;

class BaseMethods : public SimulatorFixture {};

TEST_F(BaseMethods, ObjectsTellTypeVersionAndMembers) {
    const auto device = open();
    const auto bench = object(device, "bench");
    EXPECT_EQ(bench->type(), "rack");
    EXPECT_EQ(bench->version().text, "3.1.4");
    const auto members = bench->members();
    ASSERT_EQ(members.size(), 3u);
    EXPECT_EQ(members[0].name, "lamp");
    EXPECT_EQ(members[0].id, instanceId("bench.lamp"));
    EXPECT_EQ(object(device, "power")->version().text, "1.0");
    EXPECT_EQ(object(device, "bench.drawer.left")->type(), "relay");
}

TEST_F(BaseMethods, ATypeThatNoClientKnowsStillHasItsBaseMethods) {
    const auto device = open();
    const auto drawer = object(device, "bench.drawer");
    EXPECT_EQ(drawer->methods().size(), 9u);
    EXPECT_TRUE(called(device, drawer->getAvailableMethod())->value().available);
    EXPECT_THROW(TAVO::Method("identify", *drawer, {}), TAVO::SpecificationError);
}

TEST_F(BaseMethods, IdsFollowNoOrderAndNoOtherObject) {
    std::set<std::uint32_t> ofType;
    simulator.inspect([&](Appliance& appliance) {
        for (const auto& [id, object] : appliance.objects()) {
            EXPECT_EQ(object->methodId("methods"), 3u);
            ofType.insert(object->methodId("type"));
            EXPECT_TRUE(id <= 2 || id >= 16) << id;
        }
        EXPECT_EQ(ofType.size(), appliance.objects().size());
        EXPECT_NE(appliance.get("power").instanceId() + 1, appliance.get("cmos").instanceId());
    });
    EXPECT_FALSE(ofType.contains(0));
}

TEST_F(BaseMethods, IdsAreTheSameInEveryRun) {
    Simulator other;
    const auto ids = [](Appliance& appliance) {
        std::vector<std::uint32_t> all;
        for (const auto& [id, object] : appliance.objects())
            all.insert(all.end(), {id, object->methodId("type"), object->methodId("available")});
        return all;
    };
    EXPECT_EQ(simulator.inspect(ids), other.inspect(ids));
}

TEST_F(BaseMethods, MethodsAreListedInOrderOfTheirIds) {
    const auto device = open();
    const auto methods = object(device, "power")->methods();
    ASSERT_EQ(methods.size(), 11u);
    EXPECT_EQ(methods[0].name, "methods");
    for (std::size_t i = 1; i < methods.size(); ++i)
        EXPECT_LT(methods[i - 1].id, methods[i].id);
}

TEST_F(BaseMethods, MethodsVerboseTellsSignaturesInWords) {
    const auto device = open();
    std::map<std::string, std::string> signatures;
    for (const auto& method : called(device, device->getDevice()->getMethodsVerboseMethod())->value())
        signatures[method.name] = method.signature;
    EXPECT_EQ(signatures.at("lock"), "lock(user: text, password: text) -> (lockId: u32)");
    EXPECT_EQ(signatures.at("unreserve"), "unreserve()");
    EXPECT_EQ(signatures.at("rootMembers"), "rootMembers() -> (members: list of {name: text, id: u32})");
    EXPECT_EQ(signatures.at("methods"), "methods() -> (methods: list of {name: text, id: u32})");
}

TEST_F(BaseMethods, AReservedObjectNamesItsUser) {
    const auto device = open();
    const auto power = object(device, "power");
    EXPECT_TRUE(called(device, power->getAvailableMethod())->value().available);
    EXPECT_EQ(called(device, power->getReserveMethod("ann", "burn-in"))->returnCode(), 0);
    const auto reserved = called(device, power->getAvailableMethod())->value();
    EXPECT_FALSE(reserved.available);
    EXPECT_EQ(reserved.user, "ann");
    EXPECT_EQ(reserved.info, "burn-in");

    EXPECT_EQ(called(device, power->getReserveMethod("ben", ""))->returnCode(), return_code::busy);
    EXPECT_EQ(called(device, power->getReserveMethod("ann", "again"))->returnCode(), 0);
    EXPECT_EQ(called(device, power->getAvailableMethod())->value().info, "again");
    EXPECT_EQ(called(device, power->getUnreserveMethod())->returnCode(), 0);
    EXPECT_TRUE(called(device, power->getAvailableMethod())->value().available);
    EXPECT_EQ(called(device, power->getReserveMethod("ben", ""))->returnCode(), 0);
}

TEST_F(BaseMethods, AReservationKeepsShortTextsOnly) {
    const auto device = open();
    const auto power = object(device, "power");
    const std::string longest(64 * 1024, 'x');
    EXPECT_EQ(called(device, power->getReserveMethod(longest, longest))->returnCode(), 0);
    for (const auto& [user, remark] :
         {std::pair{longest + "x", std::string()}, {std::string(longest), longest + "x"}})
        EXPECT_EQ(called(device, power->getReserveMethod(user, remark))->returnCode(),
                  return_code::badArgument);
    EXPECT_EQ(called(device, power->getAvailableMethod())->value().info.size(), longest.size());
}

TEST_F(BaseMethods, AFlaggedReservationTakesOver) {
    const auto device = open();
    simulator.inspect([](Appliance& appliance) { appliance.get("power").setReservation({{"ann", ""}}); });
    auto request = std::make_shared<TAVO::dto::Base::ReserveRequest>();
    request->flag = 1;
    request->first = "ben";
    const auto power = object(device, "power");
    const auto method = std::make_shared<TAVO::Method>("reserve", *power, TAVO::dto::Params{request});
    EXPECT_EQ(called(device, method)->returnCode(), 0);
    EXPECT_EQ(called(device, power->getAvailableMethod())->value().user, "ben");
}

// Models.

TEST(SimulatedObject, RefusesAHandlerForAMethodThatItDoesNotHave) {
    SimulatedObject object("relay", "1.0");
    EXPECT_THROW(object.on(Call<>{"explode"}, [] {}), std::logic_error);
}

TEST(SimulatedObject, RefusesAHandlerWithOtherRecords) {
    using namespace TAVO::dto::relay;
    SimulatedObject object("relay", "1.0");
    EXPECT_THROW(object.on(Call<>{"get"}, [] {}), std::logic_error);
    EXPECT_THROW(object.on(Call<>{"set"}, [] {}), std::logic_error);
    EXPECT_THROW(object.on(Call<ToggleRequest>{"set"}, [](const ToggleRequest&) {}), std::logic_error);
    EXPECT_NO_THROW(object.on(relay_v1_0::set, [](const SetRequest&) {}));
}

namespace gauge {

constexpr Call<None, IntegerReply> level{"level"};
constexpr auto table = TAVO::TAVOXTranscode::tableOf(level);
TAVO::TAVOXTranscode::MethodRows rows() noexcept { return table; }

} // namespace gauge

class Gauge : public TAVO::Proxy<gauge::rows> {
protected:
    using Proxy::Proxy;
};

class GaugeFactory : public TAVO::TypeFactory {
public:
    GaugeFactory()
        : TypeFactory("gauge", {servedBy<Gauge>("1.0")}) {}
};

TEST(SimulatedObject, HasTheMethodsOfATypeOfTheApplication) {
    const auto serve = [](const std::string& version) {
        SimulatedObject("gauge", version).on(gauge::level, [] { return makeRecord<IntegerReply>(7); });
    };
    EXPECT_THROW(serve("1.0"), std::logic_error);
    const GaugeFactory factory;
    EXPECT_NO_THROW(serve("1.0"));
    EXPECT_THROW(serve("1.1"), std::logic_error);
}

TEST(SimulatedObject, IsRefusedByAnApplianceWhenAHandlerIsMissing) {
    Simulator simulator;
    simulator.inspect([](Appliance& appliance) {
        try {
            appliance.add<SimulatedObject>("half", "cmosRelay", "1.0");
            ADD_FAILURE() << "accepted";
        } catch (const std::logic_error& error) {
            EXPECT_STREQ(error.what(), "cmosRelay method 'cmosClear' has no handler");
        }
    });
}

TEST(SimulatedObject, RefusesNamesThatCannotBeAddressed) {
    Simulator simulator;
    simulator.inspect([](Appliance& appliance) {
        for (const auto* name : {"", "a.b", "power"})
            EXPECT_THROW(appliance.add<Relay>(name), std::invalid_argument) << name;
    });
}

class Counter : public SimulatedObject {
public:
    Counter()
        : SimulatedObject("counter", "1.2") {
        for (const auto& row : rows)
            addMethod(row);
        on(add, [this](const TAVO::dto::relay::ToggleRequest& request) { sum_ += request.value; });
        on(fail, [] { throw std::runtime_error("no more paper"); });
        on(refuse, []() -> IntegerReply { throw Refusal(77); });
        on(total, [this] { return Answer<IntegerReply>{5, makeRecord<IntegerReply>(sum_)}; });
    }

private:
    static constexpr Call<TAVO::dto::relay::ToggleRequest> add{"add"};
    static constexpr Call<> fail{"fail"};
    static constexpr Call<None, IntegerReply> refuse{"refuse"};
    static constexpr Call<None, IntegerReply> total{"total"};
    static constexpr auto rows = TAVO::TAVOXTranscode::tableOf(add, fail, refuse, total);
    std::int32_t sum_ = 0;
};

class OwnModel : public SimulatorFixture {
protected:
    OwnModel() {
        simulator.inspect([](Appliance& appliance) { appliance.add<Counter>("counter"); });
    }
    support::Bytes answerTo(std::initializer_list<support::Bytes> calls) {
        support::RawClient client(simulator.port());
        client.send(support::requestBytes(0, calls));
        return client.receive();
    }
};

TEST_F(OwnModel, AnswersWithReturnCodesAndData) {
    using namespace support;
    EXPECT_EQ(
        answerTo({call("counter", "add", u32(40)), call("counter", "add", u32(2)), call("counter", "total")}),
        replyWith({u32(0), u32(0), joined({u32(5), u32(42)})}));
}

TEST_F(OwnModel, ARefusalIsAReturnCodeAndTheBatchGoesOn) {
    using namespace support;
    EXPECT_EQ(answerTo({call("counter", "refuse"), call("counter", "add", u32(1))}),
              replyWith({joined({u32(77), u32(0)}), u32(0)}));
}

TEST_F(OwnModel, AnExceptionIsAnExecutionErrorOfThatCall) {
    using namespace support;
    EXPECT_EQ(
        answerTo({call("counter", "add", u32(1)), call("counter", "fail"), call("counter", "add", u32(1))}),
        joined({u32(0), block(joined({u32(1), u32(1006), text("no more paper")})), u32(2), block(u32(0)),
                block(u32(0xFFFFFFFF))}));
}

TEST_F(OwnModel, ARemovedMethodIsNeitherListedNorServed) {
    using namespace support;
    const auto total = call("counter", "total");
    simulator.inspect([](Appliance& appliance) { appliance.get("counter").removeMethod("total"); });
    const auto device = open();
    for (const auto& method : object(device, "counter")->methods())
        EXPECT_NE(method.name, "total");
    device->unlock();
    const auto reply = answerTo({total});
    ASSERT_GE(reply.size(), 16u);
    EXPECT_EQ(Bytes(reply.begin() + 12, reply.begin() + 16), u32(1003));
}

} // namespace
