#include "tests/machine/PathParts.h"

#include "tests/machine/NamePattern.h"

#include <gtest/gtest.h>

namespace marlok::test {
namespace {

std::string Full(const std::string& path) {
    return ParsePath(path, "D:\\Now", {}).Text();
}

SystemError Refusal(const std::string& path) {
    return ParsePath(path, "D:\\Now", {}).error;
}

TEST(PathPartsTest, EveryFormBecomesAFullPath) {
    EXPECT_EQ(Full("C:\\A\\b.txt"), "C:\\A\\b.txt");
    EXPECT_EQ(Full("C:\\"), "C:\\");
    EXPECT_EQ(Full("C:/A/b"), "C:\\A\\b");
    EXPECT_EQ(Full("A\\b"), "D:\\Now\\A\\b");
    EXPECT_EQ(Full("\\A"), "D:\\A");
    EXPECT_EQ(Full("D:x"), "D:\\Now\\x");
    EXPECT_EQ(Full("E:x"), "E:\\x");
    EXPECT_EQ(Full("\\\\server\\share\\a"), "\\\\server\\share\\a");
    EXPECT_EQ(Full("\\\\server\\share"), "\\\\server\\share\\");
    EXPECT_EQ(Full("\\\\?\\C:\\a"), "C:\\a");
    EXPECT_EQ(Full("\\\\?\\UNC\\server\\share\\a"), "\\\\server\\share\\a");
}

TEST(PathPartsTest, DotsAreResolvedAndNeverLeaveTheRoot) {
    EXPECT_EQ(Full("C:\\A\\..\\B\\.\\c"), "C:\\B\\c");
    EXPECT_EQ(Full("C:\\..\\..\\x"), "C:\\x");
    EXPECT_EQ(Full("C:\\A\\\\b"), "C:\\A\\b");
    EXPECT_EQ(Full(".."), "D:\\");
}

TEST(PathPartsTest, TrailingDotsAndBlanksAreDroppedUnlessTakenAsTheyStand) {
    EXPECT_EQ(Full("C:\\A. \\b..."), "C:\\A\\b");
    EXPECT_EQ(Full("\\\\?\\C:\\A. \\b..."), "C:\\A. \\b...");
    EXPECT_EQ(ParsePath("C:\\A. \\b.", "", {false, false}).Text(), "C:\\A. \\b.");
}

TEST(PathPartsTest, WhatCannotBeANameIsRefused) {
    for (const char* path : {"C:\\a*", "C:\\a?", "C:\\a<b", "C:\\a|b", "C:\\a:b", "C:\\a\x01", "C:\\a\"b"}) {
        EXPECT_EQ(Refusal(path), error::invalidName) << path;
    }
    EXPECT_EQ(Refusal("C:\\" + std::string(256, 'n')), error::invalidName);
    EXPECT_EQ(Refusal("C:\\" + std::string(255, 'n')), error::success);
    EXPECT_EQ(Refusal(""), error::pathNotFound);
    EXPECT_EQ(Refusal(std::string("C:\\a\0b", 6)), error::invalidName);
    EXPECT_EQ(Refusal("\\\\server"), error::badNetworkPath);
}

TEST(PathPartsTest, WildcardsAreForTheLastComponentOfAPattern) {
    EXPECT_EQ(ParsePath("C:\\A\\*.*", "", {true, true}).names.back(), "*.*");
    EXPECT_EQ(ParsePath("C:\\A*\\b", "", {true, true}).error, error::invalidName);
}

TEST(PathPartsTest, PlainPathsLeaveNothingToResolve) {
    for (const char* path : {"C:\\", "C:\\A\\b.", "C:\\A\\", "\\\\server\\share\\a "}) {
        EXPECT_TRUE(IsPlainPath(path)) << path;
    }
    for (const char* path : {"", "a", "C:a", "C:\\A\\..\\b", "C:/a", "C:\\A\\\\b", "\\a", "\\\\?\\C:\\a"}) {
        EXPECT_FALSE(IsPlainPath(path)) << path;
    }
}

TEST(PathPartsTest, KeysPutNamesInFileSystemOrder) {
    EXPECT_EQ(NameKey("abc"), NameKey("ABC"));
    EXPECT_EQ(NameKey("äß"), NameKey("Äß"));
    EXPECT_LT(NameKey("z"), NameKey("_"));
    EXPECT_LT(NameKey("A"), NameKey("b"));
}

TEST(PathPartsTest, PatternsMatchAsListingsDo) {
    EXPECT_TRUE(MatchesPattern("no extension", "*.*"));
    EXPECT_TRUE(MatchesPattern("", "*"));
    EXPECT_TRUE(MatchesPattern("a.txt", "*.TXT"));
    EXPECT_TRUE(MatchesPattern("a.b.txt", "*.txt"));
    EXPECT_TRUE(MatchesPattern("a.txt", "?.txt"));
    EXPECT_FALSE(MatchesPattern("ab.txt", "?.txt"));
    EXPECT_TRUE(MatchesPattern("a.txt", "a??.txt"));
    EXPECT_TRUE(MatchesPattern("abc", "a*"));
    EXPECT_TRUE(MatchesPattern("abc", "abc.*"));
    EXPECT_TRUE(MatchesPattern("abc", "*."));
    EXPECT_FALSE(MatchesPattern("a.c", "*."));
    EXPECT_TRUE(MatchesPattern("aXbXc", "*x*c"));
    EXPECT_FALSE(MatchesPattern("aXbXd", "*x*c"));
    EXPECT_FALSE(MatchesPattern("a.txt", "*.tx"));
}

}  // namespace
}  // namespace marlok::test
