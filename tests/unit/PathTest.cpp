#include "paths/Path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paths/Names.h"
#include "paths/ProgramFiles.h"
#include "paths/Roots.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;

TEST(PathTest, Backslashes) {
    EXPECT_EQ(AddBackslash(R"(C:\A)"), R"(C:\A\)");
    EXPECT_EQ(AddBackslash(R"(C:\A\)"), R"(C:\A\)");
    EXPECT_EQ(AddBackslash(""), "\\");
    EXPECT_EQ(WithoutBackslash(R"(C:\A\\)"), R"(C:\A)");
    EXPECT_EQ(WithoutBackslash("C:\\"), "C:\\");
    EXPECT_EQ(WithoutBackslash(""), "");
}

TEST(PathTest, PartsOfPaths) {
    EXPECT_EQ(PathAfterRoot(R"(D:\Backups\Daily)"), R"(Backups\Daily)");
    EXPECT_EQ(PathAfterRoot("C:\\"), "") << "a location at a drive's root maps to the application key itself";
    EXPECT_EQ(PathAfterRoot("D:"), "");
    EXPECT_EQ(PathAfterRoot(R"(\\server\share\x)"), R"(server\share\x)");
    EXPECT_EQ(FileNameOf(R"(C:\A\b.txt)"), "b.txt");
    EXPECT_EQ(FileNameOf(R"(C:\A\)"), R"(A\)");
    EXPECT_EQ(FileNameOf("b.txt"), "b.txt");
    EXPECT_EQ(FolderOf(R"(C:\A\b.txt)"), R"(C:\A)");
    EXPECT_EQ(FolderOf(R"(C:\b.txt)"), "C:\\");
    EXPECT_EQ(FolderOf("b.txt"), "");
}

TEST(PathTest, TokensAreCutOffTheFront) {
    std::string text = R"(Data\Sub\)";
    EXPECT_EQ(NextToken(text, "\\"), R"(Data\)");
    EXPECT_EQ(text, R"(Sub\)");
    EXPECT_EQ(NextToken(text, "\\"), R"(Sub\)");
    EXPECT_EQ(text, "");
    text = "none";
    EXPECT_EQ(NextToken(text, "\\"), "");
    EXPECT_EQ(text, "none");
    text = "a\r\nb";
    EXPECT_EQ(NextToken(text, "\r\n"), "a\r\n");
}

TEST(PathTest, TheFourthCharacterFromTheEndMakesAnExtension) {
    for (const char* with : {"a.txt", ".txt", "C:\\x\\y.\u00E4\u00F6\u00FC", "a..b.x\U0001F600y"}) {
        EXPECT_TRUE(HasThreeLetterExtension(with)) << with;
    }
    for (const char* without : {"a.html", "README", "a.c", "txt", "", "page.jpeg", "a.\u00E4\u00F6"}) {
        EXPECT_FALSE(HasThreeLetterExtension(without)) << without;
    }
}

TEST(IsAtOrBelowTest, WholeComponentsInAnyLetterCase) {
    EXPECT_TRUE(IsAtOrBelow(R"(C:\Data)", R"(c:\data\)"));
    EXPECT_TRUE(IsAtOrBelow(R"(C:\Data\x)", "C:\\"));
    EXPECT_FALSE(IsAtOrBelow(R"(C:\Data2)", R"(C:\Data)"));
    EXPECT_FALSE(IsAtOrBelow(R"(C:\)", R"(C:\Data)"));
}

TEST(PathTest, TheFoldersOnTheWayBeginWithTheRoot) {
    EXPECT_THAT(FoldersOnTheWay(R"(C:\A\B)"), ElementsAre("C:\\", R"(C:\A)", R"(C:\A\B)"));
    EXPECT_THAT(FoldersOnTheWay(R"(C:\A\B\)"), ElementsAre("C:\\", R"(C:\A)", R"(C:\A\B)"));
    EXPECT_THAT(FoldersOnTheWay("C:\\"), ElementsAre("C:\\"));
    EXPECT_THAT(FoldersOnTheWay(R"(\\server\share\A)"), ElementsAre(R"(\\server\share)", R"(\\server\share\A)"));
    EXPECT_THAT(FoldersOnTheWay(R"(\\server\share)"), ElementsAre(R"(\\server\share)"));
}

TEST(PathTest, NothingLiesAboveARoot) {
    EXPECT_EQ(FolderAbove(R"(C:\A\B)"), R"(C:\A)");
    EXPECT_EQ(FolderAbove(R"(C:\A\)"), "C:\\");
    EXPECT_EQ(FolderAbove("C:\\"), "");
    EXPECT_EQ(FolderAbove(R"(\\server\share\A)"), R"(\\server\share)");
    EXPECT_EQ(FolderAbove(R"(\\server\share)"), "");
    EXPECT_EQ(FolderAbove(R"(\\server\share\)"), "");
    EXPECT_EQ(FolderAbove(R"(\A)"), "\\");
    EXPECT_EQ(FolderAbove("\\"), "");
    EXPECT_EQ(FolderAbove("A"), "");
    EXPECT_EQ(FolderAbove(""), "");
}

TEST(RootsTest, DrivesSharesDevicesAndTheRest) {
    using Kind = PathRoot::Kind;
    struct {
        const char* path;
        Kind kind;
        std::size_t length;
        bool isRoot;
    } const cases[] = {
        {"C:\\", Kind::drive, 3, true},
        {R"(z:\x)", Kind::drive, 3, false},
        {"C:", Kind::none, 0, false},
        {"C:x", Kind::none, 0, false},
        {"C:/x", Kind::none, 0, false},
        {R"(1:\x)", Kind::none, 0, false},
        {R"(\x)", Kind::none, 0, false},
        {R"(x\y)", Kind::none, 0, false},
        {"", Kind::none, 0, false},
        {R"(\\server\share)", Kind::network, 14, true},
        {R"(\\server\share\)", Kind::network, 15, true},
        {R"(\\server\share\x)", Kind::network, 15, false},
        {R"(\\server)", Kind::network, 8, true},
        {R"(\\)", Kind::network, 2, true},
        {R"(\\?\C:\x)", Kind::device, 4, false},
        {R"(\\.\C:)", Kind::device, 4, false},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(RootOf(one.path).kind, one.kind) << one.path;
        EXPECT_EQ(RootOf(one.path).length, one.length) << one.path;
        EXPECT_EQ(IsRoot(one.path), one.isRoot) << one.path;
        EXPECT_EQ(HasDriveRoot(one.path), one.kind == Kind::drive) << one.path;
        EXPECT_EQ(IsNetworkPath(one.path), one.kind == Kind::network) << one.path;
    }
}

TEST(NamesTest, DevicesInAnyFolderAndWithAnyExtension) {
    for (const char* name : {"NUL", "nul", "con.txt", "Aux.tar.gz", "COM1", "lpt9.x", "COM\u00B2", "PRN .txt", "CONIN$",
                             "conout$", "nul:", "COM0", "Lpt0"}) {
        EXPECT_TRUE(IsDeviceName(name)) << name;
    }
    for (const char* name : {"NULL", "COM", "COM10", "console", ".nul", "xcon", "", "LPT\u2074"}) {
        EXPECT_FALSE(IsDeviceName(name)) << name;
    }
}

TEST(NamesTest, WhatWindowsTakesForAnotherName) {
    for (const char* name : {"", ".", "..", "x.", "x ", "x. .", "nul.txt"}) {
        EXPECT_TRUE(IsAlteredName(name)) << name;
    }
    for (const char* name : {"x", ".x", " x", "x.y", "x y"}) {
        EXPECT_FALSE(IsAlteredName(name)) << name;
    }
    EXPECT_EQ(WithoutTrailingDots("x. . "), "x");
    EXPECT_EQ(WithoutTrailingDots(" .."), "");
}

TEST(NamesTest, PlainNames) {
    for (const char* name : {"x", " x", "x.", ".x", "a b", "\u4E2D"}) {
        EXPECT_TRUE(IsPlainName(name)) << name;
    }
    for (const char* name :
         {"", ".", "..", " ", ". .", "a:b", "a*", "?", "a\"b", "a<b", "a>b", "a|b", "a/b", "a\\b", "a\x1F"}) {
        EXPECT_FALSE(IsPlainName(name)) << name;
    }
}

TEST(ProgramFilesTest, AllOfThemInAnyLetterCase) {
    for (const char* name : programfile::all) {
        EXPECT_TRUE(programfile::IsProgramFile(name)) << name;
    }
    EXPECT_TRUE(programfile::IsProgramFile("DELETEFOLDER.TXT"));
    EXPECT_FALSE(programfile::IsProgramFile("DeleteFolder"));
    EXPECT_EQ(ProgramFolder("C:\\").PathOf("x"), "C:\\x");
    EXPECT_EQ(ProgramFolder(R"(C:\App)").PathOf(R"(Backups\x.txt)"), R"(C:\App\Backups\x.txt)");
}

}  // namespace
}  // namespace marlok::test
