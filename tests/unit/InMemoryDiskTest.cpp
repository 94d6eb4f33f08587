#include <gtest/gtest.h>

#include <vector>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

constexpr FileTime second = 10'000'000;

class InMemoryDiskTest : public ::testing::Test {
 protected:
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

    InMemoryMachine memory;
    FileSystem& files = memory.machine().files;
};

using NameList = std::vector<std::string>;

TEST_F(InMemoryDiskTest, AMachineStartsWithItsUsualFolders) {
    EXPECT_TRUE(memory.Exists(memory.machine().process.ProgramFolder()));
    EXPECT_TRUE(memory.Exists(memory.machine().shell.DesktopFolder()));
    EXPECT_TRUE(memory.Exists(memory.machine().system.WindowsFolder()));
}

TEST_F(InMemoryDiskTest, SeedsMakeTreesAndTreesShowThem) {
    memory.Seed({{R"(E:\Data\a.doc)", "one", At(10, 0)}, {R"(E:\Data\Old\)"}, {R"(E:\Data\Sub\b)", "two"}});
    EXPECT_EQ(memory.Tree("E:\\Data"), (Tree{{"a.doc", "one"}, {"Old\\", ""}, {"Sub\\", ""}, {"Sub\\b", "two"}}));
    EXPECT_EQ(memory.Tree("E:\\").size(), 5U);
    EXPECT_EQ(memory.EntryOf("E:\\Data\\a.doc").lastWriteTime, At(10, 0));
    EXPECT_EQ(memory.EntryOf("E:\\Data\\Sub\\b").lastWriteTime, At(9, 0));
    EXPECT_EQ(memory.EntryOf("e:\\data\\A.DOC").name, "a.doc");
}

TEST_F(InMemoryDiskTest, SeedsCarryAttributes) {
    memory.Seed({{"E:\\a", "", {}, attribute::hidden | attribute::system}});
    EXPECT_NE(memory.EntryOf("E:\\a").attributes & attribute::hidden, 0U);
    EXPECT_THROW(memory.Seed({{"E:\\a\\b", ""}}), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(memory.Read("E:\\absent")), std::invalid_argument);
}

TEST_F(InMemoryDiskTest, NamesAreListedInFileSystemOrderBehindTheDots) {
    memory.Seed({{"E:\\D\\b"}, {"E:\\D\\_"}, {"E:\\D\\A"}, {"E:\\D\\Z"}, {"E:\\D\\c\\"}, {"E:\\D\\é"}});
    EXPECT_EQ(Listed("E:\\D\\*"), (NameList{".", "..", "A", "b", "c", "Z", "_", "é"}));
}

TEST_F(InMemoryDiskTest, ARootListsNoDots) {
    memory.Seed({{"E:\\a"}});
    EXPECT_EQ(Listed("E:\\*.*"), NameList{"a"});
}

TEST_F(InMemoryDiskTest, ADriveCanListInCreationOrder) {
    DriveOptions options;
    options.listsInCreationOrder = true;
    memory.AddDrive('F', options);
    memory.Seed({{"F:\\b"}, {"F:\\c"}, {"F:\\a"}});
    EXPECT_EQ(Listed("F:\\*"), (NameList{"b", "c", "a"}));
}

TEST_F(InMemoryDiskTest, AnAliasIsAnotherName) {
    memory.Seed({{"E:\\a long name.text", "x"}});
    memory.SetAlias("E:\\a long name.text", "ALONGN~1.TEX");
    std::string path;
    ASSERT_EQ(files.FinalPath("E:\\alongn~1.tex", path), error::success);
    EXPECT_EQ(path, "E:\\a long name.text");
    EXPECT_EQ(Listed("E:\\*.tex"), NameList{"a long name.text"});
    EXPECT_EQ(files.Delete("E:\\ALONGN~1.TEX"), error::success);
    EXPECT_FALSE(memory.Exists("E:\\ALONGN~1.TEX"));
}

TEST_F(InMemoryDiskTest, MissingDrivesAndServersAreNotFound) {
    EXPECT_EQ(files.CreateFolder("Q:\\x"), error::pathNotFound);
    EXPECT_EQ(files.CreateFolder("\\\\server\\share\\x"), error::badNetworkPath);
    memory.AddShare("\\\\server\\share");
    EXPECT_EQ(files.CreateFolder("\\\\SERVER\\Share\\x"), error::success);
    EXPECT_EQ(memory.Tree("\\\\server\\share"), (Tree{{"x\\", ""}}));
}

TEST_F(InMemoryDiskTest, ADriveCanFailAltogether) {
    memory.Seed({{"E:\\a", "x"}});
    memory.SetDriveFailure("E:", error::notReady);
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst("E:\\*", search, entry), error::notReady);
    EXPECT_EQ(files.GetEntry("E:\\", entry), error::notReady);
    memory.SetDriveFailure("E:", error::success);
    EXPECT_EQ(files.GetEntry("E:\\a", entry), error::success);
}

TEST_F(InMemoryDiskTest, AReadOnlyDriveTakesNoChange) {
    memory.Seed({{"E:\\a", "x"}});
    DriveOptions options;
    options.readOnly = true;
    memory.AddDrive('E', options);
    std::unique_ptr<File> file;
    EXPECT_EQ(files.Open("E:\\b", OpenMode::createNew, file), error::writeProtected);
    EXPECT_EQ(files.Open("E:\\a", OpenMode::append, file), error::writeProtected);
    EXPECT_EQ(files.Delete("E:\\a"), error::writeProtected);
    EXPECT_EQ(files.CreateFolder("E:\\c"), error::writeProtected);
    EXPECT_EQ(files.Move("E:\\a", "E:\\b", true), error::writeProtected);
    EXPECT_EQ(files.SetAttributes("E:\\a", attribute::hidden), error::writeProtected);
    EXPECT_EQ(files.Copy("E:\\a", "E:\\b", 0, {}), error::writeProtected);
    EXPECT_EQ(files.Copy("E:\\a", "C:\\b", 0, {}), error::success);
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"a", "x"}}));
}

TEST_F(InMemoryDiskTest, AFullDiskTakesWhatFits) {
    DriveOptions options;
    options.capacityBytes = 10;
    memory.AddDrive('E', options);
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open("E:\\a", OpenMode::createNew, file), error::success);
    EXPECT_EQ(file->Write("1234567"), error::success);
    EXPECT_EQ(file->Write("89abcdef"), error::diskFull);
    file.reset();
    EXPECT_EQ(memory.Read("E:\\a"), "123456789a");
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
    memory.Seed({{"E:\\b", "0123456789"}});
    EXPECT_THROW(memory.Write("E:\\c", "x"), std::invalid_argument);
}

TEST_F(InMemoryDiskTest, TimesAreKeptAsCoarselyAsTheDriveDoes) {
    DriveOptions options;
    options.timeGranularity = 2 * second;
    memory.AddDrive('F', options);
    memory.Seed({{"C:\\a", "x", At(10, 0, 3)}});
    ASSERT_EQ(files.Copy("C:\\a", "F:\\a", 0, {}), error::success);
    EXPECT_EQ(memory.EntryOf("F:\\a").lastWriteTime, At(10, 0, 2));
}

TEST_F(InMemoryDiskTest, DeniedFilesAndFoldersAreSeenAndNotEntered) {
    memory.Seed({{"E:\\D\\a", "x"}, {"E:\\b", "y"}});
    memory.Deny("E:\\D");
    memory.Deny("E:\\b");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst("E:\\D\\*", search, entry), error::accessDenied);
    EXPECT_EQ(files.GetEntry("E:\\b", entry), error::success);
    EXPECT_EQ(files.Copy("E:\\b", "E:\\c", 0, {}), error::accessDenied);
    EXPECT_EQ(files.CreateFolder("E:\\D\\x"), error::accessDenied);
    EXPECT_EQ(files.Delete("E:\\b"), error::accessDenied);
    memory.Deny("E:\\b", false);
    EXPECT_EQ(files.Delete("E:\\b"), error::success);
}

TEST_F(InMemoryDiskTest, LockedFilesAreInUse) {
    memory.Seed({{"E:\\a", "x"}, {"E:\\b", "y"}});
    memory.Lock("E:\\a");
    std::unique_ptr<File> file;
    EXPECT_EQ(files.Open("E:\\a", OpenMode::read, file), error::sharingViolation);
    EXPECT_EQ(files.Copy("E:\\a", "E:\\c", 0, {}), error::sharingViolation);
    EXPECT_EQ(files.Copy("E:\\b", "E:\\a", 0, {}), error::sharingViolation);
    EXPECT_EQ(files.Move("E:\\b", "E:\\a", true), error::accessDenied);
    EXPECT_EQ(files.Delete("E:\\a"), error::sharingViolation);
    memory.Lock("E:\\a", false);
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
}

TEST_F(InMemoryDiskTest, HiddenAndSystemFilesAreNotOverwrittenByACopy) {
    memory.Seed({{"E:\\a", "new"}, {"E:\\b", "old"}});
    for (const std::uint32_t bit : {attribute::hidden, attribute::system, attribute::readOnly}) {
        memory.SetAttributes("E:\\b", bit);
        EXPECT_EQ(files.Copy("E:\\a", "E:\\b", 0, {}), error::accessDenied);
    }
    EXPECT_EQ(memory.Read("E:\\b"), "old");
}

TEST_F(InMemoryDiskTest, MovingBetweenDrivesIsRefused) {
    memory.Seed({{"E:\\a", "x"}});
    EXPECT_EQ(files.Move("E:\\a", "C:\\a", true), error::notSameDevice);
    EXPECT_EQ(memory.Read("E:\\a"), "x");
}

TEST_F(InMemoryDiskTest, AFolderDoesNotMoveIntoItself) {
    memory.Seed({{"E:\\A\\B\\x", "x"}});
    EXPECT_NE(files.Move("E:\\A", "E:\\A\\B\\C", false), error::success);
    EXPECT_EQ(memory.Read("E:\\A\\B\\x"), "x");
}

TEST_F(InMemoryDiskTest, RelativePathsStartAtTheCurrentFolder) {
    memory.Seed({{"E:\\W\\a", "x"}, {"C:\\c", "y"}});
    memory.process.SetCurrentFolder("E:\\W");
    EXPECT_EQ(memory.Read("a"), "x");
    EXPECT_EQ(memory.Read("..\\W\\.\\a"), "x");
    EXPECT_EQ(memory.Read("E:a"), "x");
    EXPECT_EQ(memory.Read("C:c"), "y");
    EXPECT_EQ(memory.Read("\\W/a"), "x");
    EXPECT_EQ(memory.Read("\\\\?\\E:\\W\\a"), "x");
}

TEST_F(InMemoryDiskTest, ASubstitutedDriveIsItsFolder) {
    memory.Seed({{"C:\\Data\\a", "x"}});
    memory.disk.Substitute("S:", "C:\\Data");
    EXPECT_EQ(memory.Read("S:\\a"), "x");
    std::string path;
    ASSERT_EQ(files.FinalPath("s:\\A", path), error::success);
    EXPECT_EQ(path, "C:\\Data\\a");
    FileIdentity one;
    FileIdentity other;
    ASSERT_EQ(files.Identify("S:\\", one), error::success);
    ASSERT_EQ(files.Identify("C:\\Data", other), error::success);
    EXPECT_EQ(one, other);
}

TEST_F(InMemoryDiskTest, LinksInACircleAreNotFollowedForEver) {
    memory.MakeLink("E:\\A", "E:\\B");
    memory.MakeLink("E:\\B", "E:\\A");
    DirectoryEntry entry;
    EXPECT_NE(files.GetEntry("E:\\A\\x", entry), error::success);
    std::string path;
    EXPECT_NE(files.FinalPath("E:\\A", path), error::success);
}

TEST_F(InMemoryDiskTest, ALinkToAFolderAboveIsTheFolderAbove) {
    memory.Seed({{"E:\\D\\a", "x"}});
    memory.MakeLink("E:\\D\\Loop", "E:\\D");
    EXPECT_EQ(memory.Read("E:\\D\\Loop\\Loop\\a"), "x");
    EXPECT_EQ(memory.Tree("E:\\D"), (Tree{{"a", "x"}, {"Loop\\", ""}}));
}

TEST_F(InMemoryDiskTest, ALinkThatLeadsNowhereIsStillThere) {
    memory.MakeLink("E:\\L", "Q:\\gone");
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("E:\\L", entry), error::success);
    EXPECT_TRUE(entry.IsLink());
    EXPECT_EQ(files.GetEntry("E:\\L\\x", entry), error::pathNotFound);
    EXPECT_EQ(files.RemoveLink("E:\\L"), error::success);
}

TEST_F(InMemoryDiskTest, LinksTellTheirTagUnlessTheSystemDoesNot) {
    memory.Seed({{"E:\\T\\a", "x"}});
    memory.MakeLink("E:\\J", "E:\\T");
    memory.MakeLink("E:\\S", "T", reparse::symbolicLink);
    EXPECT_EQ(memory.EntryOf("E:\\J").reparseTag, reparse::mountPoint);
    EXPECT_EQ(memory.Read("E:\\S\\a"), "x");
    memory.files.SetTellsReparseTags(false);
    DirectoryEntry entry;
    ASSERT_EQ(files.GetEntry("E:\\S", entry), error::success);
    EXPECT_EQ(entry.reparseTag, 0U);
    EXPECT_TRUE(entry.IsLink());
}

TEST_F(InMemoryDiskTest, AFileLinkIsReadThroughAndRemovedAlone) {
    memory.Seed({{"E:\\a", "x"}});
    memory.MakeFileLink("E:\\l", "E:\\a");
    EXPECT_EQ(memory.Read("E:\\l"), "x");
    EXPECT_EQ(files.RemoveLink("E:\\l"), error::success);
    EXPECT_EQ(memory.Read("E:\\a"), "x");
}

TEST_F(InMemoryDiskTest, APlaceholderIsAFileLikeAnyOther) {
    memory.Seed({{"E:\\a", "x"}});
    memory.MakePlaceholder("E:\\a");
    EXPECT_FALSE(memory.EntryOf("E:\\a").IsLink());
    ASSERT_EQ(files.Copy("E:\\a", "E:\\b", 0, {}), error::success);
    EXPECT_EQ(memory.Read("E:\\b"), "x");
    EXPECT_EQ(memory.EntryOf("E:\\b").attributes & attribute::reparsePoint, 0U);
}

TEST_F(InMemoryDiskTest, ASystemMayBeUnableToRemoveLinks) {
    memory.MakeLink("E:\\L", "C:\\Windows");
    memory.files.SetCanRemoveLinks(false);
    EXPECT_EQ(files.RemoveLink("E:\\L"), error::notSupported);
    EXPECT_TRUE(memory.Exists("E:\\L"));
}

TEST_F(InMemoryDiskTest, FoldersNestAsDeepAsAPathIsLong) {
    std::string path = "E:";
    memory.AddDrive('E');
    for (int i = 0; i < 8000; ++i) {
        path += "\\d";
    }
    memory.Seed(Seeded{path + "\\a", "deep"});
    EXPECT_EQ(memory.Read(path + "\\A"), "deep");
    EXPECT_EQ(memory.Tree(path), (Tree{{"a", "deep"}}));
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(path + std::string(20000, 'x'), entry), error::nameTooLong);
}

TEST_F(InMemoryDiskTest, ListingsGoOnWhenTheirEntriesVanish) {
    memory.Seed({{"E:\\a"}, {"E:\\b"}});
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("E:\\*", search, entry), error::success);
    memory.Remove("E:\\b");
    EXPECT_EQ(search->Next(entry), error::success);
    EXPECT_EQ(entry.name, "b");
    EXPECT_EQ(files.Delete("E:\\b"), error::fileNotFound);
}

TEST_F(InMemoryDiskTest, LeaksAreTold) {
    EXPECT_EQ(memory.Leaks(), "");
    memory.ExpectNoLeaks();
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("C:\\*", search, entry), error::success);
    EXPECT_EQ(memory.files.OpenSearches(), 1);
    EXPECT_THROW(memory.ExpectNoLeaks(), std::logic_error);
    search.reset();
    memory.ExpectNoLeaks();
}

}  // namespace
}  // namespace marlok::test
