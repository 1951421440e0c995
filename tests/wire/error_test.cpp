#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>

namespace {

using TAVO::ErrorFacts;
using TAVO::ErrorOrigin;

template <class Exception>
class MessageError : public testing::Test {};

using MessageErrors = testing::Types<TAVO::Error, TAVO::ConfigurationError, TAVO::SpecificationError,
                                     TAVO::NetworkError, TAVO::TAVOKeyError, TAVO::TAVOLoginError>;
TYPED_TEST_SUITE(MessageError, MessageErrors);

TYPED_TEST(MessageError, ReportsTheMessageItWasGiven) {
    EXPECT_STREQ(TypeParam("what happened").what(), "what happened");
}

TYPED_TEST(MessageError, CanBeCaughtAsErrorOfTheLibrary) {
    try {
        throw TypeParam("what happened");
    } catch (const TAVO::Error& error) {
        EXPECT_STREQ(error.what(), "what happened");
    }
}

TYPED_TEST(MessageError, CanBeCaughtAsStandardRuntimeError) {
    try {
        throw TypeParam("what happened");
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "what happened");
    }
}

TYPED_TEST(MessageError, KeepsItsMessageWhenCopiedMovedAndAssigned) {
    const TypeParam original("what happened");
    const TypeParam copy(original);
    TypeParam assigned("something else");
    assigned = copy;
    TypeParam moved(std::move(assigned));
    EXPECT_STREQ(moved.what(), "what happened");
    EXPECT_STREQ(original.what(), "what happened");
}

TYPED_TEST(MessageError, HasAVirtualDestructor) { EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>); }

TYPED_TEST(MessageError, IsNotMadeFromTextByAccident) {
    EXPECT_FALSE((std::is_convertible_v<std::string, TypeParam>));
}

TYPED_TEST(MessageError, KeepsItsFactsWhenCopiedAndAssigned) {
    const ErrorFacts facts{.origin = ErrorOrigin::device, .deviceErrorCode = 7u, .method = "valve.open"};
    const auto original = TAVO::withFacts(TypeParam("what happened"), facts);
    const TypeParam copy(original);
    TypeParam assigned("something else");
    assigned = copy;
    EXPECT_EQ(assigned.facts(), facts);
    EXPECT_EQ(original.facts(), facts);
    EXPECT_STREQ(assigned.what(), "what happened");

    assigned.setFacts({});
    EXPECT_EQ(assigned.facts(), ErrorFacts());
    EXPECT_EQ(copy.facts(), facts) << "copies do not share what is set later";
}

TYPED_TEST(MessageError, IsCopiedWithoutAnException) {
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<TypeParam>);
    EXPECT_TRUE(std::is_nothrow_copy_assignable_v<TypeParam>);
    EXPECT_TRUE(noexcept(std::declval<const TypeParam&>().facts()));
}

TYPED_TEST(MessageError, HasTheFactsOfItsClassUntilOthersAreSet) {
    ErrorFacts expected;
    if (std::is_same_v<TypeParam, TAVO::NetworkError>)
        expected = {.origin = ErrorOrigin::connection, .connectionUsable = false};
    EXPECT_EQ(TypeParam("what happened").facts(), expected);
}

TEST(Error, HasItsClassesSideBySide) {
    EXPECT_FALSE((std::is_base_of_v<TAVO::NetworkError, TAVO::TAVOKeyError>));
    EXPECT_FALSE((std::is_base_of_v<TAVO::TAVOKeyError, TAVO::TAVOLoginError>));
    EXPECT_FALSE((std::is_base_of_v<TAVO::ConfigurationError, TAVO::SpecificationError>));
    EXPECT_TRUE((std::is_base_of_v<TAVO::Error, TAVO::ExecutionError>));
}

TEST(LockError, NamesTheLockingUserInItsTextAndAlone) {
    const TAVO::LockError error("alice@bench");
    EXPECT_STREQ(error.what(), "The device is locked by alice@bench");
    EXPECT_EQ(error.lockingUser(), "alice@bench");
}

TEST(LockError, KeepsTheLockingUserWhenCaughtAsCopy) {
    TAVO::LockError kept("nobody");
    try {
        throw TAVO::LockError("alice@bench");
    } catch (const TAVO::Error& error) {
        kept = dynamic_cast<const TAVO::LockError&>(error);
    }
    EXPECT_EQ(kept.lockingUser(), "alice@bench");
    EXPECT_STREQ(kept.what(), "The device is locked by alice@bench");
}

TEST(LockError, TakesFactsThoughItIsNotMoved) {
    const auto error = TAVO::withFacts(TAVO::LockError("alice@bench"), {.deviceErrorCode = 1001u});
    EXPECT_EQ(error.lockingUser(), "alice@bench");
    EXPECT_EQ(error.facts().deviceErrorCode, 1001u);
}

TEST(LockError, LeavesItsUserBehindWhenMovedFrom) {
    TAVO::LockError original("alice@bench");
    const TAVO::LockError other(std::move(original));
    EXPECT_EQ(original.lockingUser(), "alice@bench");
    EXPECT_EQ(other.lockingUser(), "alice@bench");
}

} // namespace
