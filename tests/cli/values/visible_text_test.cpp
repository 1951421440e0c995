#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <tavo/cli/values/text_writer.h>
#include <tavo/cli/values/utf8.h>
#include <tavo/cli/values/visible_text.h>
#include <tests/cli/written.h>

namespace {

using namespace TAVO::cli;
using namespace std::string_literals;
using tool_test::written;

TEST(Visible, LeavesAsTheyAreTextsThatAreSeen) {
    for (const auto* text : {"", "a b", "\\x0a \"q\"",
                             "Gr\xc3\xbc\xc3\x9f"
                             "e",
                             "\xe2\x94\x9c\xe2\x94\x80", "\xf0\x9f\x94\x8c", "\xc2\xa0", "\xef\xbf\xbd"})
        EXPECT_EQ(visible(text), text);
}

TEST(Visible, ShowsControlCharactersAndLineEnds) {
    EXPECT_EQ(visible("a\x1b[2Jb\x7f\tc\n\r"s + '\0'), "a\\x1b[2Jb\\x7f\\x09c\\x0a\\x0d\\x00");
    EXPECT_EQ(visible("\xc2\x80\xc2\x9b\xc2\x9d\xc2\x9f"), "\\u0080\\u009b\\u009d\\u009f");
    EXPECT_EQ(visible("\xe2\x80\xa8\xe2\x80\xa9"), "\\u2028\\u2029");
}

TEST(Visible, ShowsWhatChangesTheDirectionOrHasNoWidth) {
    EXPECT_EQ(visible("\xd8\x9c\xe2\x80\x8e\xe2\x80\x8f"), "\\u061c\\u200e\\u200f");
    EXPECT_EQ(visible("\xe2\x80\xaa\xe2\x80\xae\xe2\x81\xa6\xe2\x81\xa9"), "\\u202a\\u202e\\u2066\\u2069");
    EXPECT_EQ(visible("\xc2\xad\xe2\x80\x8b\xe2\x80\x8d\xef\xbb\xbf"), "\\u00ad\\u200b\\u200d\\ufeff");
    EXPECT_EQ(visible("\xf3\xa0\x80\x81\xf3\xa0\x81\xbf"), "\\U000e0001\\U000e007f");
    for (const char32_t seen : {U'\x20', U'\x7e', U'\xa0', U'\xae', U'\u200a', U'\u2010', U'\u2027',
                                U'\u202f', U'\u205f', U'\u2070', U'\ufffd'})
        EXPECT_FALSE(isUnseen(seen)) << static_cast<unsigned long>(seen);
}

TEST(Visible, ShowsEachByteThatIsNotUtf8) {
    EXPECT_EQ(visible("a\xff\x80z"), "a\\xff\\x80z");
    EXPECT_EQ(visible("\x9b[2J"), "\\x9b[2J");
    EXPECT_EQ(visible("\xc3"), "\\xc3");
    EXPECT_EQ(visible("\xc3("), "\\xc3(");
    EXPECT_EQ(visible("\xe2\x80z"), "\\xe2\\x80z");
    EXPECT_EQ(visible("\xf0\x9f\x94"), "\\xf0\\x9f\\x94");
    EXPECT_EQ(visible("\xc0\x8a\xe0\x80\x8a"), "\\xc0\\x8a\\xe0\\x80\\x8a") << "longer than needed";
    EXPECT_EQ(visible("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half of a surrogate pair";
    EXPECT_EQ(visible("\xf4\x90\x80\x80\xf5"), "\\xf4\\x90\\x80\\x80\\xf5") << "beyond the last code point";
}

TEST(TextWriter, MakesEveryTextAmongItsArgumentsVisible) {
    const auto text = written([](Sink& sink) {
        TextWriter writer(sink);
        writer.print("{}: {:<6}|{:>4}|{}\n", "a\nb", std::string("\x1b"), std::string_view("x"), 5);
        writer.write("own\n");
        writer.quote("say \"\\\" \x9b\n");
    });
    EXPECT_EQ(text, "a\\x0ab: \\x1b  |   x|5\nown\n\"say \\\"\\\\\\\" \\x9b\\x0a\"");
}

TEST(TextWriter, WritesLongTextsInPiecesAsShortOnes) {
    std::string text;
    std::string shown;
    for (int i = 0; i < 100000; ++i) {
        text += "ab\n";
        shown += "ab\\x0a";
    }
    EXPECT_EQ(written([&](Sink& sink) { TextWriter(sink).print("[{}]", text); }), "[" + shown + "]");
    EXPECT_EQ(written([&](Sink& sink) { TextWriter(sink).print("{:<10}.", text); }), shown + ".");
}

} // namespace
