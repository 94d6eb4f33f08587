#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

class FolderListingContract : public ContractTest {};

TEST_F(FolderListingContract, ListsFilesFoldersAndTheTwoDots) {
    Put(In("a.txt"), "a");
    Put(In("no extension"), "");
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(Names(In("*.*")), (NameSet{".", "..", "a.txt", "no extension", "Sub"}));
}

TEST_F(FolderListingContract, StarAloneListsTheSame) {
    Put(In("a.txt"), "a");
    Put(In("b"), "b");
    EXPECT_EQ(Names(In("*")), Names(In("*.*")));
}

TEST_F(FolderListingContract, AnEmptyFolderListsTheTwoDots) {
    ASSERT_EQ(files.CreateFolder(In("Empty")), error::success);
    EXPECT_EQ(Names(In("Empty\\*.*")), (NameSet{".", ".."}));
}

TEST_F(FolderListingContract, AStarSelectsAnExtension) {
    Put(In("a.txt"), "");
    Put(In("b.TXT"), "");
    Put(In("c.doc"), "");
    EXPECT_EQ(Names(In("*.txt")), (NameSet{"a.txt", "b.TXT"}));
}

TEST_F(FolderListingContract, AStarSelectsABeginning) {
    Put(In("report 1.txt"), "");
    Put(In("Report2"), "");
    Put(In("other"), "");
    EXPECT_EQ(Names(In("report*")), (NameSet{"report 1.txt", "Report2"}));
}

TEST_F(FolderListingContract, AQuestionMarkStandsForOneCharacter) {
    Put(In("a1.txt"), "");
    Put(In("a2.txt"), "");
    Put(In("a12.txt"), "");
    EXPECT_EQ(Names(In("a?.txt")), (NameSet{"a1.txt", "a2.txt"}));
}

TEST_F(FolderListingContract, AnExactNameFindsThatEntryAlone) {
    Put(In("a.txt"), "12345");
    Put(In("b.txt"), "");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("a.txt"), search, entry), error::success);
    EXPECT_EQ(entry.name, "a.txt");
    EXPECT_EQ(entry.size, 5U);
    EXPECT_EQ(search->Next(entry), error::noMoreFiles);
}

TEST_F(FolderListingContract, AnExactNameIsReportedAsItIsStored) {
    Put(In("MixedCase.Txt"), "");
    EXPECT_EQ(Names(In("mixedcase.tXT")), (NameSet{"MixedCase.Txt"}));
}

TEST_F(FolderListingContract, AnExactNameFindsAFolder) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("Sub"), search, entry), error::success);
    EXPECT_EQ(entry.name, "Sub");
    EXPECT_TRUE(entry.IsFolder());
    EXPECT_FALSE(entry.IsLink());
}

TEST_F(FolderListingContract, ListingEntriesTellKindSizeAndTime) {
    Put(In("a.txt"), "123");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("*.txt"), search, entry), error::success);
    EXPECT_EQ(entry.name, "a.txt");
    EXPECT_EQ(entry.size, 3U);
    EXPECT_FALSE(entry.IsFolder());
    EXPECT_EQ(entry.lastWriteTime, EntryOf(In("a.txt")).lastWriteTime);
    EXPECT_EQ(entry.attributes, EntryOf(In("a.txt")).attributes);
}

TEST_F(FolderListingContract, NothingMatchingIsFileNotFoundAndLeavesNoSearch) {
    Put(In("a.txt"), "");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst(In("*.doc"), search, entry), error::fileNotFound);
    EXPECT_EQ(search, nullptr);
    EXPECT_EQ(files.FindFirst(In("absent.txt"), search, entry), error::fileNotFound);
    EXPECT_EQ(search, nullptr);
}

TEST_F(FolderListingContract, AMissingFolderIsPathNotFound) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst(In("absent\\*.*"), search, entry), error::pathNotFound);
    EXPECT_EQ(search, nullptr);
    EXPECT_EQ(files.FindFirst(In("absent\\deeper\\a.txt"), search, entry), error::pathNotFound);
}

TEST_F(FolderListingContract, AFileHoldsNothingToList) {
    Put(In("a.txt"), "");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_TRUE(Is(files.FindFirst(In("a.txt\\*"), search, entry), error::invalidFolderName, error::invalidName));
    EXPECT_TRUE(Is(files.FindFirst(In("a.txt\\b"), search, entry), error::invalidFolderName, error::invalidName));
    EXPECT_EQ(files.FindFirst(In("a.txt\\b\\*"), search, entry), error::pathNotFound);
}

TEST_F(FolderListingContract, ADriveRootListsNoDots) {
    const NameSet names = Names(scratch.substr(0, 3) + "*");
    EXPECT_FALSE(names.empty());
    EXPECT_EQ(names.count("."), 0U);
    EXPECT_EQ(names.count(".."), 0U);
}

TEST_F(FolderListingContract, AStarAndADotSelectNamesWithoutExtension) {
    for (const char* name : {"a", "bc", "a.b", "a.b.c"}) {
        Put(In(name), "");
    }
    // Wine takes every wildcard at its word.
    EXPECT_TRUE(Is(NamesWithoutDots(In("*.")), NameSet{"a", "bc"}, NameSet{"a", "bc", "a.b", "a.b.c"}));
    EXPECT_TRUE(Is(NamesWithoutDots(In("??.")), NameSet{"a", "bc"}, NameSet{"bc"}));
    EXPECT_TRUE(Is(NamesWithoutDots(In("?.?")), NameSet{"a", "a.b"}, NameSet{"a.b"}));
    EXPECT_EQ(NamesWithoutDots(In("*.c")), NameSet{"a.b.c"});
    EXPECT_EQ(NamesWithoutDots(In(". *")), NameSet{});
}

TEST_F(FolderListingContract, AFailedSearchClosesTheOneBefore) {
    Put(In("a.txt"), "");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("*"), search, entry), error::success);
    EXPECT_EQ(files.FindFirst(In("*.doc"), search, entry), error::fileNotFound);
    EXPECT_EQ(search, nullptr);
}

TEST_F(FolderListingContract, ADriveRootAloneIsNoEntry) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst(scratch.substr(0, 3), search, entry), error::fileNotFound);
}

TEST_F(FolderListingContract, ATrailingBackslashNamesNoEntry) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst(In("Sub\\"), search, entry), error::fileNotFound);
}

TEST_F(FolderListingContract, AListingMayDeleteWhatItLists) {
    for (int i = 0; i < 50; ++i) {
        Put(In("file" + std::to_string(i)), "");
    }
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    int deleted = 0;
    for (SystemError code = files.FindFirst(In("file*"), search, entry); code == error::success;
         code = search->Next(entry)) {
        EXPECT_EQ(files.Delete(In(entry.name)), error::success) << entry.name;
        ++deleted;
    }
    EXPECT_EQ(deleted, 50);
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{});
}

TEST_F(FolderListingContract, AFolderOfManyFilesIsListedWhole) {
    constexpr std::size_t count = 1200;
    for (std::size_t i = 0; i < count; ++i) {
        Put(In("a rather long name of a file, number " + std::to_string(i)), "");
    }
    EXPECT_EQ(NamesWithoutDots(In("*.*")).size(), count);
}

TEST_F(FolderListingContract, AForwardSlashSeparatesToo) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    Put(In("Sub\\a.txt"), "");
    EXPECT_EQ(NamesWithoutDots(scratch + "/Sub/*"), NameSet{"a.txt"});
}

TEST_F(FolderListingContract, AZeroCharacterIsRefused) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    EXPECT_EQ(files.FindFirst(In(std::string("a\0*", 3)), search, entry), error::invalidName);
}

}  // namespace
}  // namespace marlok::test
