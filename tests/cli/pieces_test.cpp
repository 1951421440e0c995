#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/prepared_call.h>
#include <tavo/client/object/container.h>
#include <tavo/client/wire/error.h>

namespace {

using namespace TAVO;
using namespace TAVO::cli;
using testing::HasSubstr;

TEST(ParseCall, SplitsAtTheLastDotAndTheFirstEqualsSign) {
    const std::vector<std::string> words = {"bench.drawer.left.set", "state=1", "text=a=b", "empty="};
    const auto call = parseCall(words);
    EXPECT_EQ(call.object, "bench.drawer.left");
    EXPECT_EQ(call.method, "set");
    ASSERT_EQ(call.assignments.size(), 3u);
    EXPECT_EQ(call.assignments[1].field, "text");
    EXPECT_EQ(call.assignments[1].text, "a=b");
    EXPECT_EQ(call.assignments[2].text, "");
}

TEST(ParseCall, RefusesWhatIsNoCall) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {}, {"power"}, {".get"}, {"power."}, {"power.get", "state"}, {"power.get", "=1"}}) {
        try {
            parseCall(words);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code, ExitCode::usage);
            EXPECT_THAT(failure.what(), HasSubstr("OBJECT.METHOD [name=value ...]"));
        }
    }
}

TEST(DescribeFailure, GivesEveryExceptionItsExitCode) {
    const auto codeOf = [](const std::exception& exception) {
        return static_cast<int>(describeFailure(exception).code);
    };
    const auto container = std::make_shared<Container>("power", nullptr);
    const auto method = std::make_shared<Method>("set", *container, dto::Params{});
    const ErrorFacts fromDevice{.origin = ErrorOrigin::device};
    EXPECT_EQ(codeOf(withFacts(ConfigurationError("x"), fromDevice)), 1);
    EXPECT_EQ(codeOf(withFacts(ExecutionError(method, 0, "x"), fromDevice)), 1);
    EXPECT_EQ(codeOf(withFacts(SpecificationError("x"), fromDevice)), 1);
    EXPECT_EQ(codeOf(withFacts(Error("x"), fromDevice)), 1);
    EXPECT_EQ(codeOf(withFacts(LockError("x"), fromDevice)), 4);
    EXPECT_EQ(codeOf(Failure(ExitCode::usage, "x")), 2);
    EXPECT_EQ(codeOf(Failure(ExitCode::notFound, "x")), 3);
    EXPECT_EQ(codeOf(LockError("x")), 4);
    EXPECT_EQ(codeOf(TAVOLoginError("x")), 4);
    EXPECT_EQ(codeOf(TAVOKeyError("x")), 4);
    EXPECT_EQ(codeOf(NetworkError("x")), 5);
    EXPECT_EQ(codeOf(SpecificationError("x")), 9);
    EXPECT_EQ(codeOf(Error("x")), 9);
    EXPECT_EQ(codeOf(std::runtime_error("x")), 9);
}

} // namespace
