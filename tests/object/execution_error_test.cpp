#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include <tavo/client/object/method.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>

namespace {

const TAVO::Container relays("relays", nullptr);

std::shared_ptr<TAVO::Method> methodOfRelays(const char* name) {
    return std::make_shared<TAVO::Method>(name, relays, TAVO::dto::Params());
}

TEST(ExecutionError, NamesTheMethodAndTheMessageAndKeepsBothPieces) {
    const auto failed = methodOfRelays("set");
    const TAVO::ExecutionError error(failed, 5000000000ULL, "stuck");
    EXPECT_STREQ(error.what(), "Failed to execute relays.set: stuck");
    EXPECT_EQ(error.failedMethod(), failed);
    EXPECT_EQ(error.failedMethodIndex(), 5000000000ULL);
}

TEST(ExecutionError, CanBeCaughtAsErrorAndAsStandardRuntimeError) {
    EXPECT_THROW(throw TAVO::ExecutionError(methodOfRelays("set"), 0, "stuck"), TAVO::Error);
    EXPECT_THROW(throw TAVO::ExecutionError(methodOfRelays("set"), 0, "stuck"), std::runtime_error);
}

TEST(ExecutionError, KeepsTheMethodAliveAndIsCopied) {
    auto failed = methodOfRelays("set");
    const std::weak_ptr<TAVO::Method> alive = failed;
    TAVO::ExecutionError kept(methodOfRelays("get"), 1, "other");
    {
        const TAVO::ExecutionError error(std::move(failed), 2, "stuck");
        kept = error;
    }
    EXPECT_FALSE(alive.expired());
    EXPECT_EQ(kept.failedMethod(), alive.lock());
    EXPECT_EQ(kept.failedMethodIndex(), 2u);
    EXPECT_STREQ(kept.what(), "Failed to execute relays.set: stuck");
}

TEST(ExecutionError, NeedsTheMethodThatFailed) {
    EXPECT_EQ(support::failureOf<std::invalid_argument>([] { TAVO::ExecutionError(nullptr, 3, "stuck"); }),
              "ExecutionError got an empty pointer to the failed Method");
}

} // namespace
