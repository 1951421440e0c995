#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/object/container.h>
#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using support::failureOf;
using TAVO::Container;
using Names = std::vector<std::string>;

std::shared_ptr<Container> node(const std::string& name, std::shared_ptr<Container> parent = nullptr) {
    return std::make_shared<Container>(name, std::move(parent));
}

Names namesOf(const std::vector<std::shared_ptr<Container>>& nodes) {
    Names names;
    for (const auto& each : nodes)
        names.push_back(each->getName());
    return names;
}

TEST(Container, WithoutParentHasItsNameAsFullName) {
    EXPECT_EQ(node("system")->getName(), "system");
    EXPECT_EQ(node("system")->getFullName(), "system");
    EXPECT_EQ(node("system")->getParent(), nullptr);
}

TEST(Container, BelowAParentHasTheNamesJoinedByTheSeparator) {
    EXPECT_EQ(Container::SEPARATOR, ".");
    const auto parent = node("p");
    const auto child = node("c", parent);
    EXPECT_EQ(child->getFullName(), "p.c");
    EXPECT_EQ(child->getName(), "c");
    EXPECT_EQ(child->getParent(), parent);
    EXPECT_EQ(node("d", child)->getFullName(), "p.c.d");
}

TEST(Container, BelowANamelessParentKeepsTheSeparator) {
    EXPECT_EQ(node("c", node(""))->getFullName(), ".c");
}

TEST(Container, HasNoParentOnceThatIsDestroyedButKeepsItsFullName) {
    auto parent = node("p");
    const auto child = node("c", parent);
    parent.reset();
    EXPECT_EQ(child->getParent(), nullptr);
    EXPECT_EQ(child->getFullName(), "p.c");
}

TEST(Container, DoesNotBecomeTheParentOfWhatIsAdded) {
    const auto root = node("");
    const auto child = node("system");
    root->addChild(child);
    EXPECT_EQ(child->getParent(), nullptr);
    EXPECT_EQ(child->getFullName(), "system");
}

TEST(Container, KeepsTheLaterOfTwoChildrenOfOneName) {
    const auto parent = node("p");
    auto earlier = node("c");
    const std::weak_ptr<Container> released = earlier;
    parent->addChild(std::move(earlier));
    const auto later = node("c");
    parent->addChild(later);
    EXPECT_EQ(parent->getChildren(), std::vector{later});
    EXPECT_TRUE(released.expired());
}

TEST(Container, RefusesAnEmptyPointerAsAChild) {
    const auto parent = node("p", node("root"));
    EXPECT_EQ(failureOf<std::invalid_argument>([&] { parent->addChild(nullptr); }),
              "Container::addChild got an empty pointer for a child of: root.p");
    EXPECT_TRUE(parent->getChildren().empty());
}

TEST(Container, FindsAChildByItsExactNameOnly) {
    const auto parent = node("p");
    const auto child = node("Child");
    parent->addChild(child);
    EXPECT_EQ(parent->getChild("Child"), child);
    EXPECT_EQ(parent->getChild("child"), nullptr);
    EXPECT_EQ(parent->getChild("Chil"), nullptr);
    EXPECT_EQ(parent->getChild(""), nullptr);
}

TEST(Container, ListsChildrenInByteWiseOrderOfTheirNames) {
    const auto parent = node("p");
    for (const auto* name : {"a", "b10", "B", "\xC3\xA4", "b2", ""})
        parent->addChild(node(name));
    EXPECT_EQ(namesOf(parent->getChildren()), (Names{"", "B", "a", "b10", "b2", "\xC3\xA4"}));
}

TEST(Container, SharesItsChildrenWithItsCopies) {
    const auto parent = node("p");
    const auto child = node("c", parent);
    parent->addChild(child);
    Container copy(*child);
    EXPECT_EQ(copy.getFullName(), "p.c");
    EXPECT_EQ(copy.getParent(), parent);
    copy = *parent;
    EXPECT_EQ(copy.getName(), "p");
    EXPECT_EQ(copy.getChild("c"), child);
    copy.addChild(node("d"));
    EXPECT_EQ(parent->getChild("d"), nullptr);
}

TEST(Container, NamesItselfAndItsFullNameInItsText) {
    EXPECT_EQ(node("system")->toString(), "system(system)");
    EXPECT_EQ(node("x", node("system"))->toString(), "x(system.x)");
}

TEST(Container, WithEmptyFullNameHasItsNameAsText) {
    EXPECT_EQ(node("")->toString(), "");
    EXPECT_EQ(std::make_shared<support::FakeDevice>()->toString(), "");
}

class ContainerOfObjects : public testing::Test {
protected:
    ContainerOfObjects() {
        add("z", 1, "relay");
        add("a", 2, "relay");
        add("m", 3, "Relay");
        add("n", 4, "relay2");
        parent->addChild(node("plain"));
        device->appliance.forgetCalls();
    }

    void add(const std::string& name, std::uint32_t id, const std::string& type) {
        device->appliance.add(id, type);
        namespace base = TAVO::TAVOXTranscode::base_v1_0;
        parent->addChild(std::make_shared<TAVO::Object_v1_0>(device, name, id, nullptr, base::encoders(),
                                                             base::decoders()));
    }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    std::shared_ptr<Container> parent = node("p");
};

TEST_F(ContainerOfObjects, FiltersByExactTypeInNameOrderAndSkipsPlainContainers) {
    EXPECT_EQ(namesOf(parent->getChildren("relay")), (Names{"a", "z"}));
    EXPECT_EQ(namesOf(parent->getChildren("Relay")), (Names{"m"}));
    EXPECT_EQ(namesOf(parent->getChildren("rel")), Names{});
    EXPECT_EQ(namesOf(parent->getChildren("")), Names{});
}

TEST_F(ContainerOfObjects, AsksEachObjectOnceForItsTypeEveryTime) {
    parent->getChildren("relay");
    EXPECT_EQ(device->appliance.callNames(), (Names{"2.type", "3.type", "4.type", "1.type"}));
    parent->getChildren("relay");
    EXPECT_EQ(device->appliance.exchanges(), 8u);
}

TEST_F(ContainerOfObjects, PassesOnWhatAskingForATypeThrows) {
    device->appliance.object(3).method("type", [](const support::Bytes&) -> support::Bytes {
        throw support::DeviceFault{1000, "broken"};
    });
    EXPECT_EQ(support::failureOf<TAVO::ConfigurationError>([&] { parent->getChildren("relay"); }), "broken");
}

TEST(Container, KeepsItsFullNameWhenTheNodesAboveAreGone) {
    auto top = std::make_shared<Container>("top", nullptr);
    auto middle = std::make_shared<Container>("middle", top);
    const auto bottom = std::make_shared<Container>("bottom", middle);
    top.reset();
    middle.reset();
    EXPECT_EQ(bottom->getParent(), nullptr);
    EXPECT_EQ(bottom->getFullName(), "top.middle.bottom");
    EXPECT_EQ(bottom->toString(), "bottom(top.middle.bottom)");
}

TEST(Container, MayEndAnyNumberOfLevelsBelowNodesThatAreGone) {
    auto deepest = std::make_shared<Container>("", nullptr);
    for (int level = 0; level < 300'000; ++level)
        deepest = std::make_shared<Container>("", deepest);
    EXPECT_EQ(deepest->getFullName(), std::string(300'000, '.'));
    deepest.reset();
}

TEST(Container, HoldsTheNamesAboveItOnceForAllNodes) {
    const auto top = std::make_shared<Container>(std::string(1'000'000, 'n'), nullptr);
    std::vector<std::shared_ptr<Container>> nodes;
    nodes.reserve(1000);
    const support::AllocationMeter meter;
    for (int i = 0; i < 1000; ++i)
        nodes.push_back(std::make_shared<Container>("child", top));
    EXPECT_LT(meter.peak(), 500'000u);
    EXPECT_EQ(nodes.back()->getFullName().size(), 1'000'006u);
}

} // namespace
