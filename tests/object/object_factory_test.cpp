#include <algorithm>
#include <locale>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::result;
using support::text;
using TAVO::Container;
using TAVO::ObjectFactory;
using TAVO::SpecificationError;
using Names = std::vector<std::string>;

/// Notes when its hook runs and which children it had then.
class Watched : public TAVO::Object_v1_0 {
public:
    using Object_v1_0::Object_v1_0;
    static inline std::vector<std::pair<std::string, std::size_t>> hooks;

protected:
    void initalize() override { hooks.emplace_back(getName(), getChildren().size()); }
};

class WatchedFactory : public ObjectFactory {
public:
    explicit WatchedFactory(const std::string& type)
        : ObjectFactory(type) {}

    /// While it lives no factory is registered.
    class EmptyRegistry {
    public:
        EmptyRegistry() { std::swap(kept_, m_factoryMap); }
        ~EmptyRegistry() {
            delete m_factoryMap;
            m_factoryMap = kept_;
        }

    private:
        FactoryMap* kept_ = nullptr;
    };

private:
    std::shared_ptr<Container> build(std::shared_ptr<TAVO::Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<TAVO::Object_v1_0> probe) override {
        EXPECT_EQ(probe->getName(), name);
        EXPECT_EQ(probe->getInstanceID(), instanceId);
        EXPECT_EQ(probe->getParent(), parent);
        namespace base = TAVO::TAVOXTranscode::base_v1_0;
        return create<Watched>(device, parent, name, instanceId, base::encoders(), base::decoders());
    }
};

/// Its constructor fails when the base has entered it.
class UnfinishedFactory : public WatchedFactory {
public:
    explicit UnfinishedFactory(const std::string& type)
        : WatchedFactory(type) {
        throw std::runtime_error("unfinished");
    }
};

class ObjectFactoryTest : public testing::Test {
protected:
    ObjectFactoryTest() {
        TAVO::CoreObjects::registerCoreObjects();
        CommonModules::CommonModulesObjects::registerCoreObjects();
        Watched::hooks.clear();
    }

    std::shared_ptr<Container> build(std::uint32_t id, const std::string& name = "top",
                                     std::shared_ptr<Container> parent = nullptr) {
        return ObjectFactory::buildObject(device, name, id, std::move(parent));
    }

    template <class Proxy>
    bool builds(std::uint32_t id) {
        return std::dynamic_pointer_cast<Proxy>(build(id)) != nullptr;
    }

    std::string refusalOf(std::uint32_t id) {
        return failureOf<SpecificationError>([&] { build(id); });
    }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    support::FakeAppliance& appliance = device->appliance;
};

TEST_F(ObjectFactoryTest, MakesAPlainObjectOfATypeThatNoFactoryKnows) {
    appliance.add(5, "novelty");
    const auto built = build(5);
    ASSERT_NE(built, nullptr);
    const auto& builtObject = *built;
    EXPECT_EQ(typeid(builtObject), typeid(TAVO::Object_v1_0));
    EXPECT_EQ(appliance.callNames(), (Names{"5.methods", "5.type", "5.methods", "5.members"}));
    EXPECT_EQ(appliance.exchanges(), 4u);
}

TEST_F(ObjectFactoryTest, MatchesTypeNamesExactly) {
    appliance.add(5, "Relay");
    appliance.add(6, "");
    EXPECT_FALSE(builds<CommonModules::Relay_v1_0>(5));
    EXPECT_TRUE(builds<TAVO::Object_v1_0>(6));
}

TEST_F(ObjectFactoryTest, AsksForTheVersionBetweenTypeAndFinalProxy) {
    appliance.add(5, "relay");
    EXPECT_TRUE(builds<CommonModules::Relay_v1_0>(5));
    EXPECT_EQ(appliance.callNames(), (Names{"5.methods", "5.type", "5.version", "5.methods", "5.members"}));
}

TEST_F(ObjectFactoryTest, BuildsMembersInReplyOrderBelowTheirParent) {
    appliance.add(5, "novelty").member("z", 50).member("a", 51);
    appliance.add(50, "relay").member("deep", 52);
    appliance.add(51, "novelty");
    appliance.add(52, "cmosRelay");
    const auto built = build(5);
    const auto z = built->getChild("z");
    ASSERT_NE(z, nullptr);
    EXPECT_EQ(z->getParent(), built);
    EXPECT_EQ(z->getFullName(), "top.z");
    ASSERT_NE(z->getChild("deep"), nullptr);
    EXPECT_EQ(z->getChild("deep")->getFullName(), "top.z.deep");
    EXPECT_NE(std::dynamic_pointer_cast<CommonModules::CmosRelay_v1_0>(z->getChild("deep")), nullptr);
    EXPECT_EQ(built->getChildren().size(), 2u);
    EXPECT_EQ(appliance.callNames(),
              (Names{"5.methods", "5.type", "5.methods", "5.members", "50.methods", "50.type", "50.version",
                     "50.methods", "50.members", "52.methods", "52.type", "52.version", "52.methods",
                     "52.members", "51.methods", "51.type", "51.methods", "51.members"}));
}

TEST_F(ObjectFactoryTest, RunsTheHookOfEveryNodeOnceItsChildrenAreThere) {
    const WatchedFactory factory("watched");
    appliance.add(5, "watched").member("b", 50).member("a", 51);
    appliance.add(50, "watched");
    appliance.add(51, "watched").member("c", 50);
    build(5);
    EXPECT_EQ(Watched::hooks,
              (std::vector<std::pair<std::string, std::size_t>>{{"b", 0}, {"c", 0}, {"a", 1}, {"top", 2}}));
}

TEST_F(ObjectFactoryTest, KeepsTheLaterOfTwoMembersOfOneName) {
    appliance.add(5, "novelty").member("x", 50).member("x", 51);
    appliance.add(50, "novelty");
    appliance.add(51, "novelty");
    const auto built = build(5);
    ASSERT_EQ(built->getChildren().size(), 1u);
    EXPECT_EQ(std::dynamic_pointer_cast<TAVO::Object_v1_0>(built->getChild("x"))->getInstanceID(), 51u);
}

TEST_F(ObjectFactoryTest, RefusesAnObjectWhoseTypeCallFails) {
    appliance.add(5, "relay").method("type", result(0x1A, text("relay")));
    const auto parent = std::make_shared<Container>("group", nullptr);
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5, "x", parent); }),
              "Error executing type() method on group.x: 1a");
    EXPECT_TRUE(parent->getChildren().empty());
}

TEST_F(ObjectFactoryTest, PrintsANegativeTypeCodeAsItsBits) {
    appliance.add(5, "relay").method("type", result(0xFFFFFFF6, text("relay")));
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5); }), "Error executing type() method on top: fffffff6");
}

struct GroupedDigits : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(ObjectFactoryTest, WorksTheSameWhateverTheLocaleOfTheApplication) {
    appliance.add(5, "relay").method("type", result(0x12345, text("relay")));
    appliance.add(6, "cmosRelay");
    const auto before = std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    const auto failure = failureOf<TAVO::Error>([&] { build(5); });
    const bool built = builds<CommonModules::CmosRelay_v1_0>(6);
    std::locale::global(before);
    EXPECT_EQ(failure, "Error executing type() method on top: 12345");
    EXPECT_TRUE(built);
}

TEST_F(ObjectFactoryTest, NeedsARegistry) {
    appliance.add(5, "relay");
    const WatchedFactory::EmptyRegistry none;
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5); }), "No Object types registered in ObjectFactory");
    EXPECT_EQ(appliance.callNames(), (Names{"5.methods", "5.type"}));
    EXPECT_TRUE(ObjectFactory::registeredTypes().empty());
}

TEST_F(ObjectFactoryTest, CreatesTheRegistryForTheFirstFactory) {
    const WatchedFactory::EmptyRegistry none;
    const WatchedFactory factory("first");
    EXPECT_EQ(ObjectFactory::registeredTypes(), Names{"first"});
}

TEST_F(ObjectFactoryTest, LetsALaterFactoryReplaceAnEarlierOne) {
    const WatchedFactory::EmptyRegistry none;
    const WatchedFactory earlier("twice");
    appliance.add(5, "twice");
    {
        class Refusing : public ObjectFactory {
        public:
            Refusing()
                : ObjectFactory("twice") {}

        private:
            std::shared_ptr<Container> build(std::shared_ptr<TAVO::Device>, std::shared_ptr<Container>,
                                             const std::string&, std::uint32_t,
                                             std::shared_ptr<TAVO::Object_v1_0>) override {
                throw TAVO::ConfigurationError("the later one");
            }
        };
        const Refusing later;
        EXPECT_EQ(failureOf<TAVO::ConfigurationError>([&] { build(5); }), "the later one");
    }
}

TEST_F(ObjectFactoryTest, LeavesATypeWithoutFactoryWhenItsFactoryIsDestroyed) {
    const WatchedFactory::EmptyRegistry none;
    const WatchedFactory displaced("twice");
    const WatchedFactory other("other");
    appliance.add(5, "twice");
    {
        const WatchedFactory later("twice");
        EXPECT_TRUE(builds<Watched>(5));
    }
    EXPECT_FALSE(builds<Watched>(5));
    EXPECT_EQ(ObjectFactory::registeredTypes(), Names{"other"});
}

TEST_F(ObjectFactoryTest, KeepsALaterFactoryWhenTheOneItDisplacedIsDestroyed) {
    const WatchedFactory::EmptyRegistry none;
    auto displaced = std::make_unique<WatchedFactory>("twice");
    const WatchedFactory later("twice");
    displaced.reset();
    appliance.add(5, "twice");
    EXPECT_TRUE(builds<Watched>(5));
    EXPECT_EQ(ObjectFactory::registeredTypes(), Names{"twice"});
}

TEST_F(ObjectFactoryTest, DoesNotKeepAFactoryWhoseConstructorFails) {
    const WatchedFactory::EmptyRegistry none;
    EXPECT_THROW(UnfinishedFactory("unfinished"), std::runtime_error);
    EXPECT_TRUE(ObjectFactory::registeredTypes().empty());
}

TEST_F(ObjectFactoryTest, DestroysAFactoryWhereThereIsNoRegistry) {
    auto factory = std::make_unique<WatchedFactory>("watched");
    {
        const WatchedFactory::EmptyRegistry none;
        factory.reset();
        EXPECT_TRUE(ObjectFactory::registeredTypes().empty());
    }
    const WatchedFactory takesItsPlace("watched");
}

TEST_F(ObjectFactoryTest, RefusesAFactoryThatBuildsNothing) {
    class Empty : public ObjectFactory {
    public:
        Empty()
            : ObjectFactory("hollow") {}

    private:
        std::shared_ptr<Container> build(std::shared_ptr<TAVO::Device>, std::shared_ptr<Container>,
                                         const std::string&, std::uint32_t,
                                         std::shared_ptr<TAVO::Object_v1_0>) override {
            return nullptr;
        }
    };
    const WatchedFactory::EmptyRegistry none;
    const Empty factory;
    appliance.add(5, "novelty").member("in", 6);
    appliance.add(6, "hollow");
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(6); }), "Object factory built nothing for type hollow: top");
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5); }),
              "Object factory built nothing for type hollow: top.in");
}

TEST_F(ObjectFactoryTest, HasTheCoreAndCommonTypes) {
    const auto types = ObjectFactory::registeredTypes();
    for (const auto* type : {"device", "system", "private", "relay", "cmosRelay"})
        EXPECT_TRUE(std::count(types.begin(), types.end(), type)) << type;
    EXPECT_TRUE(std::is_sorted(types.begin(), types.end()));
}

TEST_F(ObjectFactoryTest, AbandonsTheBuildWhenAMemberCannotBeBuilt) {
    appliance.add(5, "novelty").member("good", 50).member("bad", 51).member("never", 52);
    appliance.add(50, "novelty");
    appliance.add(51, "cmosRelay").version(2, 0, 0);
    appliance.add(52, "novelty");
    const auto parent = std::make_shared<Container>("group", nullptr);
    EXPECT_EQ(failureOf<SpecificationError>([&] { build(5, "x", parent); }),
              "Unknown cmosRelay object version: 2.0.0");
    EXPECT_EQ(appliance.calls().back().instanceId, 51u);
    EXPECT_TRUE(parent->getChildren().empty());
}

TEST_F(ObjectFactoryTest, RefusesATreeThatIsNestedTooDeeply) {
    appliance.add(5, "novelty").member("in", 5);
    std::string deepest = "top";
    for (int level = 1; level <= 64; ++level)
        deepest += ".in";
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5); }), "Object tree is nested too deeply: " + deepest);
    EXPECT_EQ(appliance.exchanges(), 64u * 4u);
}

TEST_F(ObjectFactoryTest, RefusesATreeOfTooManyObjects) {
    auto& wide = appliance.add(5, "novelty");
    for (int member = 1; member <= 10'000; ++member)
        wide.member("m" + std::to_string(member), 6);
    appliance.add(6, "novelty");
    EXPECT_EQ(failureOf<TAVO::Error>([&] { build(5); }), "Object tree has too many objects: top.m10000");
    EXPECT_EQ(appliance.exchanges(), 10'000u * 4u);
}

TEST_F(ObjectFactoryTest, BuildsATreeOfSixtyFourLevels) {
    for (std::uint32_t level = 1; level < 64; ++level)
        appliance.add(level, "novelty").member("in", level + 1);
    appliance.add(64, "novelty");
    auto node = build(1);
    std::size_t levels = 0;
    for (; node; node = node->getChild("in"))
        ++levels;
    EXPECT_EQ(levels, 64u);
}

struct VersionRule {
    std::uint32_t major, minor, bugfix;
    bool accepted;
    std::string printed;
};

void PrintTo(const VersionRule& rule, std::ostream* out) {
    *out << rule.major << '.' << rule.minor << '.' << rule.bugfix;
}

class CoreVersions : public ObjectFactoryTest, public testing::WithParamInterface<VersionRule> {
protected:
    template <class Proxy>
    void expectRule(const std::string& type, const std::string& refusal) {
        const auto& rule = GetParam();
        appliance.add(5, type).version(rule.major, rule.minor, rule.bugfix);
        if (rule.accepted)
            EXPECT_TRUE(builds<Proxy>(5));
        else
            EXPECT_EQ(refusalOf(5), refusal + rule.printed);
    }
};

constexpr std::uint32_t dontCare = 0xFFFFFFFF;
INSTANTIATE_TEST_SUITE_P(
    Rules, CoreVersions,
    testing::Values(VersionRule{1, 0, 3, true, ""}, VersionRule{1, 0, 9, true, ""},
                    VersionRule{1, 0, 0, true, ""}, VersionRule{1, dontCare, dontCare, true, ""},
                    VersionRule{0, 9, 0, true, ""}, VersionRule{0, dontCare, dontCare, true, ""},
                    VersionRule{1, 1, dontCare, false, "1.1"}, VersionRule{1, 1, 0, false, "1.1.0"},
                    VersionRule{1, 2, dontCare, false, "1.2"}, VersionRule{2, 0, dontCare, false, "2.0"}));

TEST_P(CoreVersions, OfDeviceAreChecked) {
    expectRule<TAVO::Device_v1_0>("device", "Unknown Device object version: ");
}

TEST_P(CoreVersions, OfSystemAreChecked) {
    expectRule<TAVO::System_v1_0>("system", "Unknown System object version: ");
}

TEST_P(CoreVersions, OfCmosRelayAreChecked) {
    expectRule<CommonModules::CmosRelay_v1_0>("cmosRelay", "Unknown cmosRelay object version: ");
}

TEST_P(CoreVersions, OfPrivateDoNotMatterAndAreNotAskedFor) {
    appliance.add(5, "private").version(GetParam().major, GetParam().minor, GetParam().bugfix);
    EXPECT_TRUE(builds<TAVO::Private_v1_0>(5));
    EXPECT_EQ(appliance.callNames(), (Names{"5.methods", "5.type", "5.methods", "5.members"}));
}

TEST_P(CoreVersions, OfRelayDoNotMatter) {
    appliance.add(5, "relay").version(GetParam().major, GetParam().minor, GetParam().bugfix);
    EXPECT_TRUE(builds<CommonModules::Relay_v1_0>(5));
}

} // namespace
