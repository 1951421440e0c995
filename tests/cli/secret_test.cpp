#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/cli/secret.h>

namespace {

using TAVO::cli::Secret;
using TAVO::cli::wipe;

/// A place for a Secret whose bytes can be looked at before and after.
struct Place {
    template <class... Arguments>
    Secret* make(Arguments&&... arguments) {
        return new (bytes.data()) Secret(std::forward<Arguments>(arguments)...);
    }
    bool holds(std::string_view text) const {
        // To the compiler the bytes mean nothing once the Secret is gone; here they are what memory holds.
        asm volatile("" : : "r"(bytes.data()) : "memory");
        return ::memmem(bytes.data(), bytes.size(), text.data(), text.size()) != nullptr;
    }

    alignas(Secret) std::array<std::byte, sizeof(Secret)> bytes{};
};

TEST(Secret, LeavesNothingWhereItWas) {
    constexpr std::string_view word = "open sesame"; // short enough for a string to hold it in itself
    Place place;
    auto* secret = place.make(word);
    EXPECT_EQ(secret->text(), word);
    EXPECT_TRUE(place.holds(word));
    secret->~Secret();
    EXPECT_FALSE(place.holds(word));
}

TEST(Secret, LeavesNothingWhereItWasMovedFrom) {
    constexpr std::string_view word = "open sesame";
    Place place;
    auto* secret = place.make(word);
    Secret moved(std::move(*secret));
    EXPECT_EQ(moved.text(), word);
    EXPECT_FALSE(place.holds(word));
    *secret = std::move(moved);
    EXPECT_TRUE(place.holds(word));
    secret->~Secret();
    EXPECT_FALSE(place.holds(word));
}

TEST(Secret, WipesAlsoTheRoomBehindTheText) {
    std::string text(1000, 'x');
    const char* where = text.data();
    text.resize(10);
    wipe(text);
    EXPECT_TRUE(text.empty());
    ASSERT_EQ(text.data(), where);
    for (std::size_t i = 0; i < 1000; ++i)
        ASSERT_EQ(where[i], '\0') << i;
}

TEST(Secret, GrowsAndShrinksByCharacters) {
    Secret secret;
    std::string all;
    for (int i = 0; i < 5000; ++i) {
        secret.append(static_cast<char>('a' + i % 26));
        all += static_cast<char>('a' + i % 26);
    }
    EXPECT_EQ(secret.text(), all);
    EXPECT_EQ(secret.copy().text(), all);
    secret.removeLast();
    all.pop_back();
    EXPECT_EQ(secret.text(), all);
}

} // namespace
