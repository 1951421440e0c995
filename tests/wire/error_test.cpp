#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>

namespace {

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

TEST(LockError, LeavesItsUserBehindWhenMovedFrom) {
    TAVO::LockError original("alice@bench");
    const TAVO::LockError other(std::move(original));
    EXPECT_EQ(original.lockingUser(), "alice@bench");
    EXPECT_EQ(other.lockingUser(), "alice@bench");
}

} // namespace
