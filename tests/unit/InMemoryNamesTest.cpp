#include <gtest/gtest.h>

#include <set>

#include "tests/machine/InMemoryMachine.h"
#include "tests/machine/NamePattern.h"
#include "tests/machine/ShortNames.h"
#include "tests/machine/Upcase.h"

namespace marlok::test {
namespace {

TEST(UpcaseTest, CapitalsAreOneForOneInEveryScript) {
    EXPECT_EQ(Upcase(u'z'), u'Z');
    EXPECT_EQ(Upcase(u'é'), u'É');
    EXPECT_EQ(Upcase(u'ÿ'), u'Ÿ');
    EXPECT_EQ(Upcase(u'ş'), u'Ş');
    EXPECT_EQ(Upcase(u'ω'), u'Ω');
    EXPECT_EQ(Upcase(u'ς'), u'Σ');
    EXPECT_EQ(Upcase(u'я'), u'Я');
    EXPECT_EQ(Upcase(u'ѓ'), u'Ѓ');
    EXPECT_EQ(Upcase(u'ա'), u'Ա');
    EXPECT_EQ(Upcase(u'ᾳ'), u'ᾼ');
    EXPECT_EQ(Upcase(u'ⓐ'), u'Ⓐ');
    EXPECT_EQ(Upcase(u'ａ'), u'Ａ');
}

TEST(UpcaseTest, LettersWithoutACapitalOfTheirOwnStay) {
    for (const char16_t unit : {u'ß', u'ı', u'İ', u'ſ', u'µ', u'ŉ', u'Z', u'_', u'日', u'\xD83D', u'\xDE00', u'ა'}) {
        EXPECT_EQ(Upcase(unit), unit) << static_cast<int>(unit);
    }
    EXPECT_EQ(UpcaseAscii(u'é'), u'é');
    EXPECT_EQ(UpcaseAscii(u'e'), u'E');
}

TEST(NamePatternTest, WildcardsMeanWhatTheyMeantForShortNames) {
    EXPECT_TRUE(MatchesPattern("noext", "*."));
    EXPECT_FALSE(MatchesPattern("a.txt", "*."));
    EXPECT_FALSE(MatchesPattern("a.b.c", "*."));
    EXPECT_TRUE(MatchesPattern("a.b.txt", "*.txt"));
    EXPECT_FALSE(MatchesPattern("a.txt.b", "*.txt"));
    EXPECT_TRUE(MatchesPattern("a", "??"));
    EXPECT_TRUE(MatchesPattern("ab", "??"));
    EXPECT_FALSE(MatchesPattern("abc", "??"));
    EXPECT_FALSE(MatchesPattern("a.b", "??"));
    EXPECT_TRUE(MatchesPattern("a.b", "??.b"));
    EXPECT_FALSE(MatchesPattern("x", ". *"));
    EXPECT_TRUE(MatchesPattern("a", "a.*"));
    EXPECT_TRUE(MatchesPattern("a", "a.?"));
    EXPECT_FALSE(MatchesPattern("ab", "a.*"));
    EXPECT_TRUE(MatchesPattern("É", "é"));
    EXPECT_FALSE(MatchesPattern("É", "é", &UpcaseAscii));
}

std::string Short(const std::string& name, const std::set<std::string>& taken = {}) {
    return MakeShortName(name, [&taken](const std::string& candidate) { return taken.count(candidate) != 0; });
}

TEST(ShortNamesTest, ShortNamesHaveNoAlias) {
    for (const char* name : {"a", "README", "ABCDEFGH.TXT", "a.b", "x~1.doc", "$data"}) {
        EXPECT_EQ(Short(name), "") << name;
    }
}

TEST(ShortNamesTest, LongOnesHave) {
    EXPECT_EQ(Short("a long name.text"), "ALONGN~1.TEX");
    EXPECT_EQ(Short("ABCDEFGHI"), "ABCDEF~1");
    EXPECT_EQ(Short("page.html"), "PAGE~1.HTM");
    EXPECT_EQ(Short("two.dots.txt"), "TWODOT~1.TXT");
    EXPECT_EQ(Short(".htaccess"), "HTACCE~1");
    EXPECT_EQ(Short("a+b=cd.txt"), "A_B_CD~1.TXT");
    EXPECT_EQ(Short("naïve plan"), "NA_VEP~1");
    EXPECT_EQ(Short("name."), "NAME~1");
}

TEST(ShortNamesTest, NoTwoAreAlike) {
    EXPECT_EQ(Short("a long name", {"ALONGN~1"}), "ALONGN~2");
    const std::string fifth = Short("a long name", {"ALONGN~1", "ALONGN~2", "ALONGN~3", "ALONGN~4"});
    ASSERT_EQ(fifth.size(), 8U);
    EXPECT_EQ(fifth.substr(0, 2), "AL");
    EXPECT_EQ(fifth.substr(6), "~1");
    EXPECT_EQ(Short("a long name", {"ALONGN~1", "ALONGN~2", "ALONGN~3", "ALONGN~4", fifth}).substr(6), "~2");
    const std::string brief = Short("日本");
    EXPECT_EQ(brief.size(), 8U);
    EXPECT_NE(brief, Short("日木"));
}

/// Names on the disk.
class InMemoryNamesTest : public ::testing::Test {
 protected:
    InMemoryMachine memory;
    FileSystem& files = memory.machine().files;

    std::vector<std::string> Listed(const std::string& pattern) {
        std::vector<std::string> names;
        std::unique_ptr<FolderSearch> search;
        DirectoryEntry entry;
        for (SystemError code = files.FindFirst(pattern, search, entry); code == error::success;
             code = search->Next(entry)) {
            names.push_back(entry.name);
        }
        return names;
    }
};

using NameList = std::vector<std::string>;

TEST_F(InMemoryNamesTest, AliasesAreMadeOnTheSystemsDriveAndOnFat) {
    memory.AddDrive('F', {.fileSystem = "FAT32"});
    memory.AddDrive('X', {.fileSystem = "exFAT"});
    memory.AddDrive('S', {.shortNames = true});
    memory.Seed({{"C:\\D\\a page.html", "c"}, {"E:\\a page.html", "e"}, {"F:\\a page.html", "f"}});
    memory.Seed({{"X:\\a page.html", "x"}, {"S:\\a page.html", "s"}});
    EXPECT_EQ(Listed("C:\\D\\*.htm"), NameList{"a page.html"});
    EXPECT_EQ(memory.EntryOf("C:\\D\\a page.html").alternateName, "APAGE~1.HTM");
    EXPECT_EQ(Listed("E:\\*.htm"), NameList{});
    EXPECT_EQ(Listed("F:\\*.htm"), NameList{"a page.html"});
    EXPECT_EQ(Listed("X:\\*.htm"), NameList{});
    EXPECT_EQ(memory.Read("S:\\apage~1.htm"), "s");
    ASSERT_EQ(files.Move("S:\\a page.html", "S:\\b page.html", moveflag::none), error::success);
    EXPECT_FALSE(memory.Exists("S:\\APAGE~1.HTM"));
    EXPECT_TRUE(memory.Exists("S:\\BPAGE~1.HTM"));
    memory.Write("S:\\bpage~1.htm", "by its other name");
    EXPECT_EQ(memory.Tree("S:\\"), (Tree{{"b page.html", "by its other name"}}));
}

TEST_F(InMemoryNamesTest, AVolumeMayHaveATableOfItsOwn) {
    memory.AddDrive('G', {.upcase = &UpcaseAscii});
    memory.Seed({{"G:\\é", "1"}, {"G:\\É", "2"}, {"G:\\a", "3"}});
    EXPECT_EQ(memory.Read("G:\\é"), "1");
    EXPECT_EQ(memory.Read("G:\\É"), "2");
    EXPECT_EQ(memory.Read("G:\\A"), "3");
    memory.Seed({{"E:\\é", "1"}, {"E:\\É", "2"}});
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"é", "2"}}));
}

TEST_F(InMemoryNamesTest, AFolderMayTellCaseApart) {
    memory.Seed({{"E:\\D\\"}});
    memory.MakeCaseSensitive("E:\\D");
    memory.Seed({{"E:\\D\\a", "1"}, {"E:\\D\\A", "2"}, {"E:\\D\\Sub\\x", "3"}});
    EXPECT_EQ(memory.Tree("E:\\D"), (Tree{{"a", "1"}, {"A", "2"}, {"Sub\\", ""}, {"Sub\\x", "3"}}));
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("E:\\D\\sub", entry), error::fileNotFound);
    EXPECT_EQ(files.GetEntry("E:\\d\\Sub\\X", entry), error::success);
    EXPECT_EQ(files.Move("E:\\D\\a", "E:\\D\\A", moveflag::none), error::alreadyExists);
    EXPECT_EQ(files.Delete("E:\\D\\a"), error::success);
    EXPECT_EQ(memory.Read("E:\\D\\A"), "2");
}

TEST_F(InMemoryNamesTest, ANewCaseOfANameIsTaken) {
    memory.Seed({{"E:\\name", "x"}, {"E:\\Folder\\y", "y"}});
    EXPECT_EQ(files.Move("E:\\name", "E:\\NAME", moveflag::none), error::success);
    EXPECT_EQ(files.Move("E:\\Folder", "E:\\fOLDER", moveflag::replace), error::success);
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"NAME", "x"}, {"fOLDER\\", ""}, {"fOLDER\\y", "y"}}));
}

TEST_F(InMemoryNamesTest, WhatNobodyHandlesCannotBeOpened) {
    constexpr std::uint32_t appLink = 0x8000001B;
    memory.Seed({{"E:\\app.exe", ""}, {"E:\\D\\"}, {"E:\\b", "b"}});
    memory.MakeReparsePoint("E:\\app.exe", appLink);
    memory.MakeReparsePoint("E:\\D", 0x80000023);
    std::unique_ptr<File> file;
    EXPECT_EQ(files.Open("E:\\app.exe", OpenMode::read, file), error::cannotAccessFile);
    EXPECT_EQ(files.Copy("E:\\app.exe", "E:\\c", copyflag::none, {}), error::cannotAccessFile);
    EXPECT_EQ(files.Copy("E:\\b", "E:\\app.exe", copyflag::none, {}), error::cannotAccessFile);
    EXPECT_EQ(Listed("E:\\D\\*"), NameList{});
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("E:\\D\\x", entry), error::cannotAccessFile);
    std::string path;
    EXPECT_EQ(files.FinalPath("E:\\app.exe", path), error::cannotAccessFile);
    ASSERT_EQ(files.GetEntry("E:\\app.exe", entry), error::success);
    EXPECT_EQ(entry.reparseTag, appLink);
    EXPECT_FALSE(entry.IsLink());
    EXPECT_EQ(files.RemoveLink("E:\\app.exe"), error::notSupported);
    EXPECT_EQ(files.Delete("E:\\app.exe"), error::success);
    EXPECT_EQ(files.RemoveFolder("E:\\D"), error::success);
}

TEST_F(InMemoryNamesTest, WhatTheSystemCompressesIsAFile) {
    memory.Seed({{"E:\\a", "a"}});
    memory.MakeReparsePoint("E:\\a", 0x80000017);
    EXPECT_EQ(files.Copy("E:\\a", "E:\\b", copyflag::none, {}), error::success);
    memory.MakeReparsePoint("E:\\a", 0x9000701A);
    EXPECT_EQ(files.Copy("E:\\a", "E:\\b", copyflag::none, {}), error::success);
}

TEST_F(InMemoryNamesTest, ACompatibilityJunctionIsPassedAndNotListed) {
    memory.Seed({{"C:\\Users\\User\\Music\\song.mp3", "la"}});
    memory.MakeCompatibilityJunction("C:\\Users\\User\\Documents\\My Music", "C:\\Users\\User\\Music");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst("C:\\Users\\User\\Documents\\My Music\\*", search, entry), error::accessDenied);
    EXPECT_EQ(memory.Read("C:\\Users\\User\\Documents\\My Music\\song.mp3"), "la");
    EXPECT_EQ(Listed("C:\\Users\\User\\Music\\*.mp3"), NameList{"song.mp3"});
    ASSERT_EQ(files.GetEntry("C:\\Users\\User\\Documents\\My Music", entry), error::success);
    EXPECT_TRUE(entry.IsLink());
    EXPECT_NE(entry.attributes & attribute::hidden, 0U);
    EXPECT_EQ(files.RemoveLink("C:\\Users\\User\\Documents\\My Music"), error::accessDenied);
}

TEST_F(InMemoryNamesTest, APageFileIsKnownByItsFolderAlone) {
    memory.Seed({{"C:\\pagefile.sys", "pages"}});
    memory.MakePageFile("C:\\pagefile.sys");
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("C:\\pagefile.sys", entry), error::success) << "the machine asks the folder";
    EXPECT_EQ(entry.size, 5U);
    std::unique_ptr<File> file;
    EXPECT_EQ(files.Open("C:\\pagefile.sys", OpenMode::read, file), error::sharingViolation);
    EXPECT_EQ(files.Copy("C:\\pagefile.sys", "C:\\c", copyflag::none, {}), error::sharingViolation);
    FileIdentity identity;
    EXPECT_EQ(files.Identify("C:\\pagefile.sys", identity), error::sharingViolation);
    EXPECT_EQ(Listed("C:\\page*"), NameList{"pagefile.sys"});
    memory.Deny("C:\\");
    EXPECT_EQ(files.GetEntry("C:\\pagefile.sys", entry), error::accessDenied);
}

TEST_F(InMemoryNamesTest, LinksAreListedAsThemselves) {
    memory.Seed({{"E:\\target", "12345", At(8, 0)}, {"E:\\other", "x"}});
    memory.MakeFileLink("E:\\link", "E:\\target");
    memory.MakeFileLink("E:\\dangling", "E:\\gone");
    memory.MakeLink("E:\\folder link", "Q:\\gone");
    EXPECT_EQ(Listed("E:\\*"), (NameList{"dangling", "folder link", "link", "other", "target"}));
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("E:\\link", search, entry), error::success);
    EXPECT_TRUE(entry.IsLink());
    EXPECT_FALSE(entry.IsFolder());
    EXPECT_EQ(entry.size, 0U);
    EXPECT_EQ(entry.reparseTag, reparse::symbolicLink);
    EXPECT_EQ(entry.lastWriteTime, At(12, 0));
    ASSERT_EQ(files.SetAttributes("E:\\link", attribute::hidden), error::success);
    EXPECT_EQ(memory.EntryOf("E:\\target").attributes & attribute::hidden, 0U);
}

TEST_F(InMemoryNamesTest, CopiesGoThroughLinks) {
    memory.Seed({{"E:\\target", "old"}, {"E:\\new", "new", At(8, 0)}});
    memory.MakeFileLink("E:\\link", "E:\\target");
    memory.MakeFileLink("E:\\dangling", "E:\\made");
    ASSERT_EQ(files.Copy("E:\\new", "E:\\link", copyflag::none, {}), error::success);
    EXPECT_EQ(memory.Read("E:\\target"), "new");
    EXPECT_TRUE(memory.EntryOf("E:\\link").IsLink());
    EXPECT_EQ(files.Copy("E:\\new", "E:\\link", copyflag::failIfExists, {}), error::fileExists);
    EXPECT_EQ(files.Copy("E:\\new", "E:\\dangling", copyflag::failIfExists, {}), error::success);
    EXPECT_EQ(memory.Read("E:\\made"), "new");
    ASSERT_EQ(files.Copy("E:\\link", "E:\\plain", copyflag::none, {}), error::success);
    EXPECT_FALSE(memory.EntryOf("E:\\plain").IsLink());
    EXPECT_EQ(memory.EntryOf("E:\\plain").lastWriteTime, At(8, 0));
    EXPECT_EQ(files.CreateFolder("E:\\dangling"), error::alreadyExists);
    ASSERT_EQ(files.Move("E:\\link", "E:\\moved", moveflag::none), error::success);
    EXPECT_TRUE(memory.EntryOf("E:\\moved").IsLink());
    EXPECT_EQ(memory.Read("E:\\target"), "new");
    EXPECT_EQ(files.Delete("E:\\moved"), error::success);
    EXPECT_EQ(memory.Read("E:\\target"), "new");
}

}  // namespace
}  // namespace marlok::test
