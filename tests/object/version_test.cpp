#include <array>
#include <concepts>
#include <cstddef>
#include <locale>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <tavo/client/object/version.h>
#include <tavo/client/wire/error.h>
#include <tests/support/failure_text.h>

namespace {

using support::failureOf;
using TAVO::Version;
using Parts = std::array<std::int32_t, 3>;

Parts partsOf(const Version& version) { return {version.major, version.minor, version.bugfix}; }
Parts parsed(const std::string& text) { return partsOf(Version(text)); }
std::string textOf(const Version& version) { return version; }

TEST(Version, IsZeroByDefault) {
    EXPECT_EQ(textOf(Version()), "0.0.0");
    EXPECT_EQ(partsOf(Version()), (Parts{0, 0, 0}));
}

TEST(Version, TakesPartsThatTheTextLacksAsDontCare) {
    EXPECT_EQ(Version::DontCare, -1);
    EXPECT_EQ(parsed("1"), (Parts{1, -1, -1}));
    EXPECT_EQ(parsed("3"), (Parts{3, -1, -1}));
    EXPECT_EQ(parsed("1.5"), (Parts{1, 5, -1}));
    EXPECT_EQ(parsed("1.2.3"), (Parts{1, 2, 3}));
}

TEST(Version, IgnoresWhatFollowsTheThirdNumberButKeepsTheText) {
    EXPECT_EQ(parsed("2.0.0.0"), (Parts{2, 0, 0}));
    EXPECT_EQ(textOf(Version("2.0.0.0")), "2.0.0.0");
    EXPECT_EQ(parsed("1.2.3-beta"), (Parts{1, 2, 3}));
    EXPECT_EQ(parsed("1.2.3."), (Parts{1, 2, 3}));
}

TEST(Version, AcceptsAnyCharacterAsSeparator) {
    EXPECT_EQ(parsed("1-2-3"), (Parts{1, 2, 3}));
    EXPECT_EQ(parsed("1,2"), (Parts{1, 2, -1}));
    EXPECT_EQ(parsed("1v2"), (Parts{1, 2, -1}));
    EXPECT_EQ(parsed("1e5"), (Parts{1, 5, -1}));
}

TEST(Version, TakesWhiteSpaceAloneAsSeparator) {
    EXPECT_EQ(parsed("1 2 3"), (Parts{1, 2, 3}));
    EXPECT_EQ(parsed("1\t2\n3"), (Parts{1, 2, 3}));
    EXPECT_EQ(parsed("1 2.3"), (Parts{1, 2, 3}));
    EXPECT_EQ(parsed("1 -2"), (Parts{1, 2, -1}));
}

TEST(Version, SkipsWhiteSpaceBeforeNumbersAndSeparators) {
    EXPECT_EQ(parsed(" 1 . 2"), (Parts{1, 2, -1}));
    EXPECT_EQ(textOf(Version(" 1 . 2")), " 1 . 2");
    EXPECT_EQ(parsed("  10  .  20  .  30  "), (Parts{10, 20, 30}));
}

TEST(Version, ParsesSignedNumbers) {
    EXPECT_EQ(parsed("-1.2"), (Parts{-1, 2, -1}));
    EXPECT_EQ(parsed("1.-2"), (Parts{1, -2, -1}));
    EXPECT_EQ(parsed("2147483647"), (Parts{2147483647, -1, -1}));
}

class UnparsableVersion : public testing::TestWithParam<std::string> {};

TEST_P(UnparsableVersion, IsRefusedWithItsText) {
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { Version version(GetParam()); }),
              "Could not parse version string: " + GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, UnparsableVersion,
                         testing::Values("x", "", " ", ".", "1.", "1 ", "1.x", "1.2.", "1.2 ", "1.2.x",
                                         "1..2", "2147483648", "1.2147483648"));

TEST(Version, ParsesItsTextAgainOnDemand) {
    Version version("1.2.3");
    version.text = "4";
    version.initFromString();
    EXPECT_EQ(partsOf(version), (Parts{4, -1, -1}));
    version.text = "none";
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { version.initFromString(); }),
              "Could not parse version string: none");
}

struct DotGroupsThousands : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Version, ParsesTheSameWhateverTheLocaleOfTheApplication) {
    const auto before = std::locale::global(std::locale(std::locale::classic(), new DotGroupsThousands));
    const auto parts = parsed("1.2.3");
    const auto text = textOf(Version(TAVO::dto::Base::Version{1, 2000, 3}));
    std::locale::global(before);
    EXPECT_EQ(parts, (Parts{1, 2, 3}));
    EXPECT_EQ(text, "1.2000.3");
}

TEST(Version, TakesTheNumbersOfAReplyAsTheyAre) {
    EXPECT_EQ(partsOf(Version(TAVO::dto::Base::Version{1, 2, 3})), (Parts{1, 2, 3}));
    EXPECT_EQ(partsOf(Version(TAVO::dto::Base::Version{1, 0xFFFFFFFF, 3})), (Parts{1, -1, 3}));
}

TEST(Version, MakesTheTextOfAReplyFromItsNumbersUpToTheFirstDontCare) {
    const std::uint32_t any = 0xFFFFFFFF;
    EXPECT_EQ(textOf(Version(TAVO::dto::Base::Version{1, 1, any})), "1.1");
    EXPECT_EQ(textOf(Version(TAVO::dto::Base::Version{1, 1, 0})), "1.1.0");
    EXPECT_EQ(textOf(Version(TAVO::dto::Base::Version{1, any, 7})), "1");
    EXPECT_EQ(textOf(Version(TAVO::dto::Base::Version{0, 0, 0})), "0.0.0");
}

TEST(Version, ComparesNumbersNotText) {
    EXPECT_TRUE(Version("1.2.3") < Version("1.10.0"));
    EXPECT_TRUE(Version("2.0") < Version("10.0"));
    EXPECT_FALSE(Version("10.0") < Version("2.0"));
    EXPECT_TRUE(Version("10.0") > Version("2.0"));
    EXPECT_TRUE(Version("1.2.4") > Version("1.2.3"));
    EXPECT_TRUE(Version("1.2.3") == Version("1-2-3"));
    EXPECT_TRUE(Version("1.2.3") != Version("1.2.4"));
    EXPECT_TRUE(Version("1.2.3") <= Version("1.2.3"));
    EXPECT_TRUE(Version("1.2.3") >= Version("1.2.3"));
    EXPECT_FALSE(Version("1.2.3") < Version("1.2.3"));
    EXPECT_FALSE(Version("1.3.0") < Version("1.2.9"));
    EXPECT_FALSE(Version("1.2.9") >= Version("1.3.0"));
}

TEST(Version, IsEqualToAndLessThanAnotherWhereOneDoesNotCare) {
    for (const auto& [a, b] : {std::pair(Version("3"), Version("3.7.1")),
                               {Version("1"), Version("1.5")},
                               {Version("1.5"), Version("1.5.9")}}) {
        EXPECT_TRUE(a == b);
        EXPECT_TRUE(b == a);
        EXPECT_TRUE(a < b);
        EXPECT_TRUE(b < a);
        EXPECT_FALSE(a != b);
        EXPECT_TRUE(a <= b);
        EXPECT_TRUE(b <= a);
        EXPECT_FALSE(a > b);
        EXPECT_FALSE(b > a);
        EXPECT_FALSE(a >= b);
        EXPECT_FALSE(b >= a);
    }
}

TEST(Version, NeverTakesTheMajorNumberForAWildcard) {
    EXPECT_FALSE(Version("-1") == Version("1"));
    EXPECT_TRUE(Version("-1") < Version("1"));
    EXPECT_FALSE(Version("1") < Version("-1"));
}

TEST(Version, LooksAtABugfixOnlyWhereTheMinorsAreTheSame) {
    EXPECT_FALSE(Version("1.3") < Version("1.2.5"));
    EXPECT_FALSE(Version("1.3") == Version("1.2.5"));
    EXPECT_TRUE(Version("1.2") < Version("1.3.5"));
}

TEST(LibraryVersion, IsPublished) {
    EXPECT_EQ(TAVO::ClientLibraryMajorVersion, 2);
    EXPECT_EQ(TAVO::ClientLibraryMinorVersion, 0);
    EXPECT_EQ(TAVO::ClientLibraryBugfixVersion, 0);
    EXPECT_EQ(std::string(TAVO::ClientLibraryVersion), "2.0.0.0");
}

TEST(Version, ComparesWithTextLiterals) {
    const Version version("1.1");
    EXPECT_TRUE(version == "1.1");
    EXPECT_TRUE("1.1" == version);
    EXPECT_TRUE(version != "1.0");
    EXPECT_TRUE(version < "1.2");
    EXPECT_TRUE(version <= "1.1.5");
    EXPECT_TRUE(version > "1.0");
    EXPECT_TRUE(Version("1.2.3") >= "1.2.3");
    EXPECT_TRUE(version == std::string("1.1"));
    EXPECT_FALSE((std::constructible_from<Version, std::nullptr_t>));
    EXPECT_EQ(failureOf<TAVO::SpecificationError>([&] { static_cast<void>(version == "new"); }),
              "Could not parse version string: new");
}

TEST(Version, IsPrintedAsItsText) {
    std::ostringstream out;
    out << Version("1.2") << ' ' << Version(" 1 . 2");
    EXPECT_EQ(out.str(), "1.2  1 . 2");
}

} // namespace
