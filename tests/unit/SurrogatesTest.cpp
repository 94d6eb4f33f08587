#include "text/Surrogates.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "text/Text.h"

namespace marlok::text {
namespace {

/// UTF-8 as the rest of the world has it: without surrogates.
bool IsStrictUtf8(const std::string& text) {
    return IsUtf8(text) && text.find("\xED\xA0") == std::string::npos && text.find("\xED\xA1") == std::string::npos &&
           text.find("\xED\xA9") == std::string::npos && text.find("\xED\xBF") == std::string::npos;
}

std::string Name(std::u16string_view units) {
    return FromUtf16(units);
}

TEST(Surrogates, AnOrdinaryPathStaysByteForByteAsItIs) {
    for (const char* path : {"", R"(C:\Data\a.doc)", R"(\\server\share\100% %uD800 <b> & [D83D] {1}.txt)",
                             "C:\\M\u00FCller \U0001F382.txt", "C:\\\u4E2D\u6587\\<003c>", "<D83D", "D83D>", "<D83>",
                             "<D83G>", "<D83d>", "<0041>", "<E000>", "<D7FF>"}) {
        EXPECT_EQ(EscapeSurrogates(path), path);
        EXPECT_EQ(UnescapeSurrogates(path), path);
    }
}

TEST(Surrogates, AHalfPairIsWrittenAsItsNumber) {
    EXPECT_EQ(EscapeSurrogates(Name(u"C:\\a\xD83D.txt")), "C:\\a<D83D>.txt");
    EXPECT_EQ(EscapeSurrogates(Name(u"\xD800\xDFFFz")), "\U000103FFz") << "a whole pair is a character";
    EXPECT_EQ(EscapeSurrogates(Name(u"\xDFFF\xD800")), "<DFFF><D800>");
    EXPECT_EQ(UnescapeSurrogates("C:\\a<D83D>.txt"), Name(u"C:\\a\xD83D.txt"));
    EXPECT_TRUE(IsStrictUtf8(EscapeSurrogates(Name(u"\xD83D \xDE00"))));
}

TEST(Surrogates, WhatLooksLikeAnEscapeIsEscapedItself) {
    EXPECT_EQ(EscapeSurrogates("<D83D>"), "<003C>D83D>");
    EXPECT_EQ(EscapeSurrogates("<003C>"), "<003C>003C>");
    EXPECT_EQ(UnescapeSurrogates("<003C>D83D>"), "<D83D>");
}

TEST(Surrogates, AnyTextComesBackExactly) {
    const std::uint32_t seed = std::random_device()();
    std::mt19937 random(seed);
    static const std::string pieces[] = {
        "<",    "D83D", ">", "003C",   "<D83D>", "<003C>", "\xED\xA0\x80", "\xED\xBF\xBF",
        "\xED", "\xA0", "a", "\u00E4", "<<",     "DFFF",   "<D83D"};
    std::size_t changed = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t left = random() % 12; left > 0; --left) {
            text += pieces[random() % std::size(pieces)];
        }
        const std::string escaped = EscapeSurrogates(text);
        changed += escaped == text ? 0U : 1U;
        ASSERT_EQ(UnescapeSurrogates(escaped), text) << "seed " << seed << ", round " << round;
        ASSERT_TRUE(!IsUtf8(text) || IsStrictUtf8(escaped)) << "seed " << seed << ", round " << round;
    }
    EXPECT_GT(changed, 1000U);
}

}  // namespace
}  // namespace marlok::text
