#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/object.h>
#include <tests/support/failure_text.h>

namespace {

using support::failureOf;
using TAVO::BoundMethod;
using TAVO::dto::Base::AvailableReply;
using TAVO::dto::Base::MethodsReply;
using TAVO::dto::Base::TypeReply;
using TAVO::Object_v1_0_Structs::Available;
using TAVO::Object_v1_0_Structs::MethodSignature;

const TAVO::Container thing("thing", nullptr);
const std::string noConversion = "Can't convert Result to desire type";

struct Attempt {
    std::string failure;
    std::string standardError;
};

template <class T>
Attempt attempt(const TAVO::dto::result& outcome) {
    BoundMethod<T> method("call", thing, {});
    method.setResult(outcome);
    testing::internal::CaptureStderr();
    const auto failure = failureOf<std::runtime_error>([&] { method.value(); });
    return {failure, testing::internal::GetCapturedStderr()};
}

template <class Reply, class... Fields>
TAVO::dto::result resultOf(std::int32_t code, Fields... fields) {
    auto reply = std::make_shared<Reply>();
    std::apply([&](const auto&... field) { ((*reply.*field.member = fields), ...); }, Reply::fields());
    return {code, reply};
}

TEST(BoundMethod, IsAMethodWithAVirtualDestructor) {
    EXPECT_TRUE((std::is_base_of_v<TAVO::Method, BoundMethod<TypeReply>>));
    EXPECT_TRUE(std::has_virtual_destructor_v<BoundMethod<TypeReply>>);
}

TEST(BoundMethod, SaysThatItWasNotExecutedAndYieldsADefaultValue) {
    const std::string line = "Method thing.call has not been executed.  Can't return valid results\n";
    testing::internal::CaptureStderr();
    EXPECT_EQ(BoundMethod<TypeReply>("call", thing, {}).value(), TypeReply());
    EXPECT_EQ(BoundMethod<Available>("call", thing, {}).value(), Available());
    EXPECT_EQ(BoundMethod<long long>("call", thing, {}).value(), 0);
    EXPECT_TRUE(BoundMethod<std::vector<unsigned char>>("call", thing, {}).value().empty());
    EXPECT_TRUE(BoundMethod<std::vector<MethodSignature>>("call", thing, {}).value().empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line + line + line + line);
}

TEST(BoundMethod, IsAsBeforeItsExecutionWhenItsResultWasCleared) {
    BoundMethod<TypeReply> method("call", thing, {});
    const auto outcome = resultOf<TypeReply>(5, "relay");
    method.setResult(outcome);
    method.clearResult();
    EXPECT_FALSE(method.isResultSet());
    EXPECT_EQ(method.returnCode(), -1);
    EXPECT_FALSE(method.getResult().reply);
    EXPECT_EQ(outcome.reply.use_count(), 1) << "the reply is released";
}

TEST(BoundMethod, CopiesTheReplyRecordWhateverTheReturnCode) {
    for (const int code : {0, 5, -1}) {
        BoundMethod<TypeReply> method("call", thing, {});
        method.setResult(resultOf<TypeReply>(code, "relay"));
        EXPECT_EQ(method.value().type, "relay");
    }
}

TEST(BoundMethod, ConvertsToAUserRecord) {
    BoundMethod<Available> method("call", thing, {});
    method.setResult(resultOf<AvailableReply>(0, std::uint8_t{200}, "alice", "bench 3"));
    const auto value = method.value();
    EXPECT_TRUE(value.available);
    EXPECT_EQ(value.user, "alice");
    EXPECT_EQ(value.info, "bench 3");
    method.setResult(resultOf<AvailableReply>(0, std::uint8_t{0}, "", ""));
    EXPECT_EQ(method.value(), Available());
}

TEST(BoundMethod, ConvertsToPlainValues) {
    BoundMethod<long long> time("call", thing, {});
    time.setResult(resultOf<TAVO::dto::system::TimeGetReply>(0, std::int64_t{-5}));
    EXPECT_EQ(time.value(), -5);

    BoundMethod<std::vector<unsigned char>> response("call", thing, {});
    response.setResult(resultOf<TAVO::dto::Device::CHAPResponseReply>(0, std::string("\0\xFFz", 3)));
    EXPECT_EQ(response.value(), (std::vector<unsigned char>{0, 0xFF, 'z'}));

    BoundMethod<std::vector<MethodSignature>> signatures("call", thing, {});
    const std::vector<TAVO::dto::Base::Method> methods{{"get", 7, "get()"}, {"set", 2, ""}};
    signatures.setResult(resultOf<MethodsReply>(0, methods));
    EXPECT_EQ(signatures.value(), (std::vector<MethodSignature>{{"get", 7, "get()"}, {"set", 2, ""}}));
}

TEST(BoundMethod, RefusesAReplyOfAnotherTypeForAReplyRecord) {
    const auto seen = attempt<TypeReply>(resultOf<MethodsReply>(0, std::vector<TAVO::dto::Base::Method>{}));
    EXPECT_EQ(seen.failure, noConversion);
    EXPECT_EQ(seen.standardError, "Can't convert result TAVO::dto::Base::MethodsReply to desired "
                                  "TAVO::dto::Base::TypeReply in call to thing.call\n");
}

TEST(BoundMethod, RefusesAnEmptyReplyForAReplyRecord) {
    const auto seen = attempt<TypeReply>({0, nullptr});
    EXPECT_EQ(seen.failure, noConversion);
    EXPECT_EQ(seen.standardError,
              "Can't convert result no record to desired TAVO::dto::Base::TypeReply in call to thing.call\n");
}

template <class T>
void expectConstRefusal(const std::string& desired) {
    const auto ofNone = attempt<T>({0, nullptr});
    EXPECT_EQ(ofNone.failure, noConversion);
    EXPECT_EQ(ofNone.standardError, "const Can't convert result no record to desired " + desired + "\n");
    const auto ofAnother = attempt<T>(resultOf<TypeReply>(0, "relay"));
    EXPECT_EQ(ofAnother.failure, noConversion);
    EXPECT_EQ(ofAnother.standardError,
              "const Can't convert result TAVO::dto::Base::TypeReply to desired " + desired + "\n");
}

TEST(BoundMethod, RefusesAReplyOfAnotherTypeForUserRecordsAndPlainValues) {
    expectConstRefusal<Available>("TAVO::dto::Base::AvailableReply");
    expectConstRefusal<std::vector<MethodSignature>>("TAVO::dto::Base::MethodsReply");
    expectConstRefusal<long long>("TAVO::dto::system::TimeGetReply");
    expectConstRefusal<std::vector<unsigned char>>("TAVO::dto::Device::CHAPResponseReply");
}

TEST(BoundMethod, MovesAReplyThatIsTakenOut) {
    BoundMethod<TypeReply> method("call", thing, {});
    auto reply = std::make_shared<TypeReply>();
    reply->type = std::string(100, 'x');
    const auto* characters = reply->type.data();
    method.setResult({3, std::move(reply)});
    const auto taken = method.take();
    EXPECT_EQ(taken.type, std::string(100, 'x'));
    EXPECT_EQ(taken.type.data(), characters);
    EXPECT_FALSE(method.isResultSet());
    EXPECT_EQ(method.returnCode(), -1);
}

TEST(BoundMethod, CopiesAReplyThatIsTakenOutWhileItIsShared) {
    BoundMethod<TypeReply> method("call", thing, {});
    const auto reply = std::make_shared<TypeReply>();
    reply->type = "shared";
    method.setResult({0, reply});
    EXPECT_EQ(method.take().type, "shared");
    EXPECT_EQ(reply->type, "shared");
    EXPECT_FALSE(method.isResultSet());
}

TEST(BoundMethod, TakesOutWhatIsMadeOfAReply) {
    BoundMethod<Available> method("call", thing, {});
    const auto reply = std::make_shared<AvailableReply>();
    reply->user = "alice";
    method.setResult({0, reply});
    EXPECT_EQ(method.take().user, "alice");
    EXPECT_FALSE(method.isResultSet());
}

TEST(BoundMethod, KeepsAResultThatCannotBeTakenOut) {
    BoundMethod<TypeReply> method("call", thing, {});
    testing::internal::CaptureStderr();
    EXPECT_EQ(method.take(), TypeReply());
    EXPECT_NE(testing::internal::GetCapturedStderr(), "") << "it has not been executed";
    method.setResult({0, std::make_shared<AvailableReply>()});
    testing::internal::CaptureStderr();
    EXPECT_EQ(failureOf<std::runtime_error>([&] { method.take(); }), noConversion);
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(method.isResultSet());
}

TEST(BoundMethod, ShowsTheStoredReplyWhereItLies) {
    BoundMethod<TypeReply> method("call", thing, {});
    const auto outcome = resultOf<TypeReply>(0, "relay");
    method.setResult(outcome);
    EXPECT_EQ(&method.reply(), outcome.reply.get());
    EXPECT_EQ(method.reply().type, "relay");
    EXPECT_TRUE(method.isResultSet());
}

TEST(BoundMethod, ShowsADefaultReplyBeforeItIsExecuted) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(BoundMethod<TypeReply>("call", thing, {}).reply(), TypeReply());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Method thing.call has not been executed.  Can't return valid results\n");
}

TEST(BoundMethod, RefusesToShowAnotherReply) {
    BoundMethod<TypeReply> method("call", thing, {});
    method.setResult({0, std::make_shared<MethodsReply>()});
    testing::internal::CaptureStderr();
    EXPECT_EQ(failureOf<std::runtime_error>([&] { method.reply(); }), noConversion);
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
}

} // namespace
