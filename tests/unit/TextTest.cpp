#include "text/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace marlok::test {
namespace {

using testing::ElementsAre;

TEST(TextTest, CharactersAreCountedNotBytes) {
    EXPECT_EQ(text::CharacterCount(""), 0U);
    EXPECT_EQ(text::CharacterCount("abc"), 3U);
    EXPECT_EQ(text::CharacterCount("\u00E4\u4E2D\U0001F600"), 3U);
    EXPECT_EQ(text::CharacterCount("\xFF\xC3"), 2U) << "a byte that belongs to nothing counts as one";
}

TEST(TextTest, Cutting) {
    const std::string text = "a\u00E4\u4E2D\U0001F600z";
    EXPECT_EQ(text::Left(text, 2), "a\u00E4");
    EXPECT_EQ(text::Left(text, 99), text);
    EXPECT_EQ(text::AfterFirst(text, 3), "\U0001F600z");
    EXPECT_EQ(text::AfterFirst(text, 99), "");
    EXPECT_EQ(text::Right(text, 2), "\U0001F600z");
    EXPECT_EQ(text::Right(text, 0), "");
    EXPECT_EQ(text::Right(text, 99), text);
}

TEST(TextTest, WellFormedTextAndEncodedSurrogates) {
    EXPECT_TRUE(text::IsUtf8("plain \u00E4 \u4E2D \U0001F600"));
    EXPECT_TRUE(text::IsUtf8("\xED\xA0\x80")) << "names may hold a surrogate of its own";
    for (const char* malformed : {"\xFF", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xF4\x90\x80\x80", "\x80", "a\xE4z"}) {
        EXPECT_FALSE(text::IsUtf8(malformed));
    }
}

TEST(TextTest, EveryUtf16TextComesBack) {
    std::mt19937 pick(20261120);
    for (int round = 0; round < 2000; ++round) {
        std::u16string wide;
        for (auto i = pick() % 12; i > 0; --i) {
            // Half of the units near the surrogates: pairs, halves, halves in the wrong order.
            wide += static_cast<char16_t>(pick() % 2 == 0 ? pick() % 0x10000 : 0xD7F0 + pick() % 0x820);
        }
        const std::string narrow = text::FromUtf16(wide);
        ASSERT_EQ(text::ToUtf16(narrow), wide) << "round " << round;
        ASSERT_TRUE(text::IsUtf8(narrow)) << "round " << round;
    }
}

TEST(TextTest, MalformedBytesBecomeTheReplacementCharacter) {
    EXPECT_EQ(text::ToUtf16("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(text::ToUtf16("\xC3"), u"\uFFFD");
}

TEST(TextTest, LetterCaseIsFoldedInManyScripts) {
    EXPECT_EQ(text::Fold("abcXYZ019_"), "ABCXYZ019_");
    EXPECT_TRUE(text::EqualIgnoringCase("\u00E4\u00F6\u00FC\u00FF", "\u00C4\u00D6\u00DC\u0178"));
    EXPECT_TRUE(text::EqualIgnoringCase("\u03B1\u03CE", "\u0391\u038F"));
    EXPECT_TRUE(text::EqualIgnoringCase("\u0436\u0443\u043A\u0451", "\u0416\u0423\u041A\u0401"));
    EXPECT_FALSE(text::EqualIgnoringCase("\u00F7", "\u00D7")) << "signs are no letters";
    EXPECT_FALSE(text::EqualIgnoringCase("\u00DF", "SS"));
    EXPECT_TRUE(text::ContainsIgnoringCase("E:\\Old Backup", "bACKUP"));
    EXPECT_TRUE(text::ContainsIgnoringCase("x", ""));
    EXPECT_FALSE(text::ContainsIgnoringCase("E:\\Backup", "E:\\Backup\\Old"));
}

TEST(TextTest, FoldingIsSettledAfterOneTime) {
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const char16_t once = text::FoldUnit(static_cast<char16_t>(unit));
        ASSERT_EQ(text::FoldUnit(once), once) << std::hex << static_cast<unsigned>(unit);
    }
}

TEST(TextTest, SplittingAndTrimming) {
    EXPECT_THAT(text::Split("a\r\n\r\nb", "\r\n"), ElementsAre("a", "", "b"));
    EXPECT_THAT(text::Split("", "\n"), ElementsAre(""));
    EXPECT_THAT(text::Split("a\n", "\n"), ElementsAre("a", ""));
    EXPECT_EQ(text::Trim("  a b ", " "), "a b");
    EXPECT_EQ(text::Trim("   ", " "), "");
}

}  // namespace
}  // namespace marlok::test
