#include <algorithm>

#include "tests/contract/ContractTest.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

class FileNameContract : public ContractTest {
 protected:
    /// Writes a file of that name, finds it in the listing, reads and deletes it.
    void ExpectRoundTrip(const std::string& name) {
        Put(In(name), "content of " + name);
        EXPECT_EQ(NamesWithoutDots(In("*.*")), NameSet{name});
        EXPECT_EQ(Content(In(name)), "content of " + name);
        EXPECT_EQ(files.Copy(In(name), scratch + "\\copy", copyflag::none, {}), error::success) << name;
        EXPECT_EQ(Content(scratch + "\\copy"), "content of " + name);
        EXPECT_EQ(files.Delete(scratch + "\\copy"), error::success);
        EXPECT_EQ(files.Delete(In(name)), error::success) << name;
        EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{}) << name;
    }

    /// Makes folders below the scratch folder until a path is `length` characters long or a little less; returns it.
    std::string MakeDeep(std::size_t length) {
        std::string path = scratch;
        const std::string component = "\\" + std::string(99, 'd');
        while (text::CharacterCount(path) + component.size() <= length) {
            path += component;
            EXPECT_EQ(files.CreateFolder(path), error::success) << path.size();
        }
        return path;
    }
};

TEST_F(FileNameContract, NamesOfEveryScriptComeBackUnchanged) {
    for (const char* name : {"Ünïcödé.txt", "Ελληνικά.txt", "Русский.txt", "日本語.txt", "עברית.txt", "a b  c.txt"}) {
        ExpectRoundTrip(name);
    }
}

TEST_F(FileNameContract, CharactersBeyondTheBasicPlaneComeBackUnchanged) {
    ExpectRoundTrip("party 🎉🎈.txt");
}

TEST_F(FileNameContract, NamesThatLookLikeOthersComeBackUnchanged) {
    for (const char* name : {"a.b.c.d", ".hidden", "%41.txt", "a;b,c=d+[e].txt", "~tmp$.tmp", "100%"}) {
        ExpectRoundTrip(name);
    }
}

TEST_F(FileNameContract, TheLongestNameWorks) {
    ExpectRoundTrip(std::string(240, 'n'));
}

TEST_F(FileNameContract, CaseDoesNotMatterInAnyBicameralScript) {
    const std::pair<const char*, const char*> pairs[] = {
        {"ascii.txt", "ASCII.TXT"}, {"äöü é.txt", "ÄÖÜ É.txt"}, {"αβγω.txt", "ΑΒΓΩ.txt"}, {"привет.txt", "ПРИВЕТ.txt"}};
    for (const auto& [lower, upper] : pairs) {
        Put(In(lower), lower);
        EXPECT_EQ(Content(In(upper)), lower);
        EXPECT_EQ(files.CreateFolder(In(upper)), error::alreadyExists) << upper;
        EXPECT_EQ(Names(In(upper)), NameSet{lower});
        EXPECT_EQ(files.Delete(In(upper)), error::success) << upper;
    }
}

TEST_F(FileNameContract, DifferentLettersAreDifferentNames) {
    Put(In("ä"), "1");
    Put(In("a"), "2");
    Put(In("ß"), "3");
    Put(In("ss"), "4");
    EXPECT_EQ(NamesWithoutDots(In("*")), (NameSet{"ä", "a", "ß", "ss"}));
}

TEST_F(FileNameContract, ForbiddenCharactersAreRefused) {
    for (const char* name : {"a<b", "a>b", "a\"b", "a|b"}) {
        std::unique_ptr<File> file;
        EXPECT_EQ(files.Open(In(name), OpenMode::createNew, file), error::invalidName) << name;
        EXPECT_EQ(files.CreateFolder(In(name)), error::invalidName) << name;
    }
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{});
}

TEST_F(FileNameContract, PathsBeyond260CharactersWork) {
    const std::string deep = MakeDeep(600);
    ASSERT_GT(deep.size(), 400U);
    Put(deep + "\\a.txt", "deep");
    EXPECT_EQ(Content(deep + "\\a.txt"), "deep");
    EXPECT_EQ(NamesWithoutDots(deep + "\\*.*"), NameSet{"a.txt"});
    EXPECT_EQ(EntryOf(deep + "\\A.TXT").size, 4U);
    EXPECT_EQ(files.Copy(deep + "\\a.txt", deep + "\\b.txt", copyflag::restartable, {}), error::success);
    EXPECT_EQ(files.Move(deep + "\\b.txt", deep + "\\c.txt", true), error::success);
    EXPECT_EQ(files.SetAttributes(deep + "\\c.txt", attribute::normal), error::success);
    EXPECT_EQ(files.Delete(deep + "\\c.txt"), error::success);
    EXPECT_EQ(files.CreateFolder(deep + "\\Sub"), error::success);
    EXPECT_EQ(files.RemoveFolder(deep + "\\Sub"), error::success);
}

TEST_F(FileNameContract, TheFinalPathOfADeepFolderIsWholeOrRefused) {
    const std::string deep = MakeDeep(600);
    std::string finalPath;
    const SystemError code = files.FinalPath(deep, finalPath);
    // Wine cannot tell it; a path cut off would be taken for another folder.
    const std::string below = deep.substr(scratch.size());
    EXPECT_TRUE(code != error::success || finalPath.ends_with(below)) << finalPath;
    EXPECT_TRUE(code == error::success || finalPath.empty()) << finalPath;
}

TEST_F(FileNameContract, PathsAsLongAsTheDiskAllowsWork) {
    const std::string deep = MakeDeep(std::min<std::size_t>(contract->LongestPath() - 20, 6000));
    Put(deep + "\\a.txt", "deep");
    EXPECT_EQ(Content(deep + "\\a.txt"), "deep");
    EXPECT_EQ(NamesWithoutDots(deep + "\\*.*"), NameSet{"a.txt"});
    EXPECT_EQ(files.Copy(deep + "\\a.txt", deep + "\\b.txt", copyflag::none, {}), error::success);
    EXPECT_EQ(files.Delete(deep + "\\b.txt"), error::success);
}

TEST_F(FileNameContract, FoldersCanBeNestedAHundredDeep) {
    std::string path = scratch;
    for (int i = 0; i < 100; ++i) {
        path += "\\n";
        ASSERT_EQ(files.CreateFolder(path), error::success) << i;
    }
    Put(path + "\\a", "x");
    EXPECT_EQ(Content(path + "\\a"), "x");
}

TEST_F(FileNameContract, TrailingDotsAndBlanksAreKeptInPlainPaths) {
    if (!contract->KeepsOddNames()) {
        // A disk that cannot tell "name." from "name" must at least not make one out of the other.
        Put(In("name"), "plain");
        std::unique_ptr<File> file;
        if (files.Open(In("name."), OpenMode::createNew, file) == error::success) {
            EXPECT_EQ(file->Close(), error::success);
        }
        EXPECT_EQ(Content(In("name")), "plain");
        return;
    }
    for (const char* name : {"ends with dot.", "ends with blank ", "two.. "}) {
        ExpectRoundTrip(name);
    }
    Put(In("name"), "plain");
    Put(In("name."), "dotted");
    EXPECT_EQ(Content(In("name")), "plain");
    EXPECT_EQ(Content(In("name.")), "dotted");
}

TEST_F(FileNameContract, UnpairedSurrogatesAreKept) {
    const std::string name = "odd \xED\xA0\xBD name";  // a high surrogate without its low one
    if (contract->KeepsOddNames()) {
        ExpectRoundTrip(name);
        return;
    }
    // Refused, or stored under some other name: never taken for a file that is there already.
    Put(In("odd  name"), "plain");
    std::unique_ptr<File> file;
    if (files.Open(In(name), OpenMode::createNew, file) == error::success) {
        EXPECT_EQ(file->Close(), error::success);
    }
    EXPECT_EQ(Content(In("odd  name")), "plain");
}

}  // namespace
}  // namespace marlok::test
