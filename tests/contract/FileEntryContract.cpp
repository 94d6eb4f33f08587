#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class FileEntryContract : public ContractTest {};

TEST_F(FileEntryContract, AFileTellsSizeAndKind) {
    Put(In("a.txt"), "hello");
    const DirectoryEntry entry = EntryOf(In("a.txt"));
    EXPECT_EQ(entry.size, 5U);
    EXPECT_FALSE(entry.IsFolder());
    EXPECT_FALSE(entry.IsLink());
    EXPECT_EQ(entry.name, "");
}

TEST_F(FileEntryContract, AFolderTellsItsKindWithOrWithoutTrailingBackslash) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_TRUE(EntryOf(In("Sub")).IsFolder());
    EXPECT_TRUE(EntryOf(In("Sub\\")).IsFolder());
}

TEST_F(FileEntryContract, ADriveRootHasAnEntry) {
    EXPECT_TRUE(EntryOf(scratch.substr(0, 3)).IsFolder());
}

TEST_F(FileEntryContract, AMissingFileIsFileNotFound) {
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(In("absent"), entry), error::fileNotFound);
}

TEST_F(FileEntryContract, AMissingFolderOnTheWayIsPathNotFound) {
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(In("absent\\a.txt"), entry), error::pathNotFound);
}

TEST_F(FileEntryContract, AFileOnTheWayIsPathNotFound) {
    Put(In("a.txt"), "");
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(In("a.txt\\b.txt"), entry), error::pathNotFound);
}

TEST_F(FileEntryContract, TheEmptyPathIsPathNotFound) {
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("", entry), error::pathNotFound);
}

TEST_F(FileEntryContract, AZeroCharacterIsRefused) {
    Put(In("a"), "");
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry(In(std::string("a\0b", 3)), entry), error::invalidName);
}

TEST_F(FileEntryContract, WildcardsNameNoEntry) {
    Put(In("a.txt"), "");
    DirectoryEntry entry;
    EXPECT_NE(files.GetEntry(In("*.txt"), entry), error::success);
}

TEST_F(FileEntryContract, NamesAreFoundWhateverTheirCase) {
    Put(In("MixedCase.Txt"), "123");
    EXPECT_EQ(EntryOf(In("mIXEDcASE.tXT")).size, 3U);
}

TEST_F(FileEntryContract, DotsAndSlashesAreResolved) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    Put(In("a.txt"), "1234");
    EXPECT_EQ(EntryOf(scratch + "/Sub/../a.txt").size, 4U);
    EXPECT_EQ(EntryOf(scratch + "\\.\\a.txt").size, 4U);
    EXPECT_EQ(EntryOf(scratch + "\\\\a.txt").size, 4U);
}

TEST_F(FileEntryContract, AttributesCanBeSetAndTakenBack) {
    Put(In("a.txt"), "");
    ASSERT_EQ(files.SetAttributes(In("a.txt"), attribute::readOnly | attribute::archive), error::success);
    EXPECT_NE(EntryOf(In("a.txt")).attributes & attribute::readOnly, 0U);
    ASSERT_EQ(files.SetAttributes(In("a.txt"), attribute::normal), error::success);
    EXPECT_EQ(EntryOf(In("a.txt")).attributes & attribute::readOnly, 0U);
}

TEST_F(FileEntryContract, SettingAttributesOfAMissingFileIsFileNotFound) {
    EXPECT_EQ(files.SetAttributes(In("absent"), attribute::normal), error::fileNotFound);
}

TEST_F(FileEntryContract, AFolderStaysOneWhenItsAttributesAreSet) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    ASSERT_EQ(files.SetAttributes(In("Sub"), attribute::normal), error::success);
    EXPECT_TRUE(EntryOf(In("Sub")).IsFolder());
}

TEST_F(FileEntryContract, WritingMovesTheWriteTimeForward) {
    Put(In("a.txt"), "old");
    const FileTime before = EntryOf(In("a.txt")).lastWriteTime;
    LetTimePass(60);
    Put(In("a.txt"), "new");
    EXPECT_GT(EntryOf(In("a.txt")).lastWriteTime, before);
}

TEST_F(FileEntryContract, CreatingAFolderMakesOneLevelAlone) {
    EXPECT_EQ(files.CreateFolder(In("A\\B")), error::pathNotFound);
    EXPECT_EQ(files.CreateFolder(In("A")), error::success);
    EXPECT_EQ(files.CreateFolder(In("A\\B")), error::success);
    EXPECT_TRUE(EntryOf(In("A\\B")).IsFolder());
}

TEST_F(FileEntryContract, ATrailingBackslashIsNoPartOfANewFoldersName) {
    EXPECT_EQ(files.CreateFolder(In("A\\")), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"A"});
}

TEST_F(FileEntryContract, WhatExistsCannotBeCreatedAgain) {
    Put(In("file"), "");
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    EXPECT_EQ(files.CreateFolder(In("folder")), error::alreadyExists);
    EXPECT_EQ(files.CreateFolder(In("file")), error::alreadyExists);
}

TEST_F(FileEntryContract, FinalPathTellsTheStoredNames) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    Put(In("Sub\\File.Txt"), "");
    std::string plain;
    std::string shouted;
    ASSERT_EQ(files.FinalPath(In("Sub\\File.Txt"), plain), error::success);
    ASSERT_EQ(files.FinalPath(In("SUB\\..\\sub\\FILE.TXT"), shouted), error::success);
    EXPECT_EQ(plain, shouted);
    EXPECT_EQ(plain.substr(plain.size() - 12), "Sub\\File.Txt");
    EXPECT_EQ(plain.find("\\\\?\\"), std::string::npos);
}

TEST_F(FileEntryContract, FinalPathsOfRootsEndInABackslashAndOthersDoNot) {
    const std::string root = scratch.substr(0, 3);
    std::string path;
    ASSERT_EQ(files.FinalPath(root, path), error::success);
    EXPECT_EQ(path, root);
    ASSERT_EQ(files.FinalPath(scratch + "\\", path), error::success);
    EXPECT_NE(path.back(), '\\');
}

TEST_F(FileEntryContract, WhatIsThereAnywayCannotBeCreated) {
    contract->EnterFolder(scratch);
    for (const char* name : {".", ".."}) {
        EXPECT_EQ(files.CreateFolder(name), error::alreadyExists) << name;
    }
    const SystemError root = files.CreateFolder(scratch.substr(0, 3));
    EXPECT_TRUE(root == error::alreadyExists || root == error::accessDenied) << root;
    contract->EnterFolder(scratch.substr(0, 3));
}

TEST_F(FileEntryContract, FinalPathOfWhatIsMissingFails) {
    std::string path;
    EXPECT_EQ(files.FinalPath(In("absent"), path), error::fileNotFound);
    EXPECT_EQ(files.FinalPath(In("absent\\a"), path), error::pathNotFound);
}

TEST_F(FileEntryContract, IdentityIsTheFilesAndNotThePaths) {
    Put(In("a.txt"), "");
    Put(In("b.txt"), "");
    FileIdentity a;
    FileIdentity again;
    FileIdentity b;
    ASSERT_EQ(files.Identify(In("a.txt"), a), error::success);
    ASSERT_EQ(files.Identify(In("A.TXT"), again), error::success);
    ASSERT_EQ(files.Identify(In("b.txt"), b), error::success);
    EXPECT_EQ(a, again);
    EXPECT_NE(a, b);
    EXPECT_FALSE(a.NumbersNothing());
    EXPECT_TRUE(FileIdentity{}.NumbersNothing());
    EXPECT_FALSE((FileIdentity{0, 0, 1}.NumbersNothing()));
}

TEST_F(FileEntryContract, FoldersHaveAnIdentityToo) {
    FileIdentity folder;
    FileIdentity root;
    ASSERT_EQ(files.Identify(scratch, folder), error::success);
    ASSERT_EQ(files.Identify(scratch.substr(0, 3), root), error::success);
    EXPECT_NE(folder, root);
    EXPECT_EQ(files.Identify(In("absent"), folder), error::fileNotFound);
}

}  // namespace
}  // namespace marlok::test
