#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <tavo/client/object/method.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>

namespace {

using support::failureOf;
using TAVO::Container;
using TAVO::Method;
using TAVO::SpecificationError;
namespace base = TAVO::TAVOXTranscode::base_v1_0;

TEST(Method, HasNoVirtualOperations) { EXPECT_FALSE(std::is_polymorphic_v<Method>); }

TEST(Method, OnAPlainContainerHasNeitherIdNorFunctions) {
    const Container container("plain", std::make_shared<Container>("group", nullptr));
    const Method method("anything", container, {});
    EXPECT_EQ(&method.getContainer(), &container);
    EXPECT_EQ(method.getName(), "anything");
    EXPECT_EQ(method.getFullName(), "group.plain.anything");
    EXPECT_EQ(method.getID(), 0u);
    EXPECT_EQ(method.getEncoder(), nullptr);
    EXPECT_EQ(method.getDecoder(), nullptr);
    EXPECT_EQ(method.getObject(), nullptr);
}

TEST(Method, OnANamelessContainerKeepsTheSeparator) {
    const Container root("", nullptr);
    EXPECT_EQ(Method("info", root, {}).getFullName(), ".info");
}

TEST(Method, KeepsAndSharesItsParams) {
    const Container container("plain", nullptr);
    const TAVO::dto::Params params{std::make_shared<TAVO::dto::Base::ReserveRequest>()};
    const Method method("reserve", container, params);
    EXPECT_EQ(method.getParams().request, params.request);
    const Method copy(method);
    EXPECT_EQ(copy.getParams().request, params.request);
    EXPECT_EQ(copy.getFullName(), "plain.reserve");
}

TEST(Method, HasNoResultAtFirst) {
    const Container container("plain", nullptr);
    const Method method("anything", container, {});
    EXPECT_FALSE(method.isResultSet());
    EXPECT_EQ(method.returnCode(), -1);
    EXPECT_EQ(method.getResult().code, -1);
    EXPECT_EQ(method.getResult().reply, nullptr);
}

TEST(Method, KeepsOnlyTheLastResultAndSharesItsReply) {
    const Container container("plain", nullptr);
    Method method("anything", container, {});
    auto first = std::make_shared<TAVO::dto::Base::TypeReply>();
    const std::weak_ptr<TAVO::dto::Base::TypeReply> released = first;
    method.setResult({7, std::move(first)});
    EXPECT_TRUE(method.isResultSet());
    EXPECT_EQ(method.returnCode(), 7);

    const TAVO::dto::result second{0, std::make_shared<TAVO::dto::Base::TypeReply>()};
    method.setResult(second);
    EXPECT_TRUE(released.expired());
    EXPECT_EQ(method.returnCode(), 0);
    EXPECT_EQ(method.getResult().reply, second.reply);
}

TEST(Method, TellsAStoredCodeOfMinusOneFromNoResult) {
    const Container container("plain", nullptr);
    Method method("anything", container, {});
    method.setResult({-1, nullptr});
    EXPECT_TRUE(method.isResultSet());
    EXPECT_EQ(method.returnCode(), -1);
}

class MethodOnObject : public testing::Test {
protected:
    /// A type of its own whose tables lack what they must.
    struct Encoders : base::EncoderList {
        Encoders() {
            (*this)["both"] = TAVO::TAVOXTranscode::encodeNothing;
            (*this)["onlyEncoder"] = TAVO::TAVOXTranscode::encodeNothing;
        }
    };
    struct Decoders : base::DecoderList {
        Decoders() {
            (*this)["both"] = TAVO::TAVOXTranscode::decodeStatus;
            (*this)["onlyDecoder"] = TAVO::TAVOXTranscode::decodeStatus;
        }
    };

    MethodOnObject() {
        device->appliance.add(9, "own").method("both").method("onlyEncoder").method("onlyDecoder");
        object = std::make_shared<TAVO::Object_v1_0>(device, "thing", 9u, nullptr, encoders, decoders);
    }

    std::string refusalOf(const std::string& name) {
        return failureOf<SpecificationError>([&] { Method(name, *object, {}); });
    }

    Encoders encoders;
    Decoders decoders;
    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    std::shared_ptr<TAVO::Object_v1_0> object;
};

TEST_F(MethodOnObject, TakesItsIdFromTheDeviceAndItsFunctionsFromTheTables) {
    const Method method("both", *object, {});
    EXPECT_EQ(method.getID(), device->appliance.object(9).methodId("both"));
    EXPECT_EQ(method.getEncoder(), &TAVO::TAVOXTranscode::encodeNothing);
    EXPECT_EQ(method.getDecoder(), &TAVO::TAVOXTranscode::decodeStatus);
    EXPECT_EQ(method.getObject(), object.get());
    EXPECT_EQ(method.getFullName(), "thing.both");
}

TEST_F(MethodOnObject, CannotBeBuiltForANameThatTheDeviceDoesNotList) {
    EXPECT_EQ(refusalOf("Both"), "Could not find Method ID for Method: Both");
    EXPECT_EQ(refusalOf("available"), "Could not find Method ID for Method: available");
}

TEST_F(MethodOnObject, CannotBeBuiltWithoutEncoder) {
    EXPECT_EQ(refusalOf("onlyDecoder"), "Could not find Method Encoder for Method: onlyDecoder");
}

TEST_F(MethodOnObject, CannotBeBuiltWithoutDecoder) {
    EXPECT_EQ(refusalOf("onlyEncoder"), "Could not find Method Decoder for Method: onlyEncoder");
}

TEST_F(MethodOnObject, IsNotDescribedWhenOnlyAnApplicationKnowsIt) {
    EXPECT_EQ(failureOf<SpecificationError>([&] { TAVO::describeMethod(*object, "both"); }),
              "No description for Method: both");
    EXPECT_EQ(TAVO::describeMethod(*object, "type").name, "type");
}

TEST_F(MethodOnObject, SendsNothingWhenItIsBuilt) {
    device->appliance.forgetCalls();
    const Method method("both", *object, {});
    EXPECT_EQ(device->appliance.exchanges(), 0u);
}

} // namespace
