#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

class FileReplaceContract : public ContractTest {
 protected:
    void SetUp() override {
        Put(In("old"), "old");
        LetTimePass(60);
        Put(In("new"), "new");
    }

    SystemError Replace() { return files.Replace(In("old"), In("new"), In("backup")); }

    /// Nothing has changed.
    void ExpectBoth() {
        EXPECT_EQ(Content(In("old")), "old");
        EXPECT_EQ(Content(In("new")), "new");
        EXPECT_FALSE(Exists(In("backup")));
    }
};

TEST_F(FileReplaceContract, TheNewFileTakesThePlaceAndTheOldOneStaysAside) {
    const FileTime oldTime = EntryOf(In("old")).lastWriteTime;
    const FileTime newTime = EntryOf(In("new")).lastWriteTime;
    ASSERT_EQ(Replace(), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), (NameSet{"old", "backup"}));
    EXPECT_EQ(Content(In("old")), "new");
    EXPECT_EQ(Content(In("backup")), "old");
    EXPECT_EQ(EntryOf(In("old")).lastWriteTime, newTime);
    EXPECT_EQ(EntryOf(In("backup")).lastWriteTime, oldTime);
}

TEST_F(FileReplaceContract, AnOlderBackupIsReplaced) {
    Put(In("backup"), "older");
    ASSERT_EQ(Replace(), error::success);
    EXPECT_EQ(Content(In("old")), "new");
    EXPECT_EQ(Content(In("backup")), "old");
}

TEST_F(FileReplaceContract, WhatIsMissingIsFileNotFound) {
    EXPECT_EQ(files.Replace(In("absent"), In("new"), In("backup")), error::fileNotFound);
    EXPECT_EQ(files.Replace(In("old"), In("absent"), In("backup")), error::fileNotFound);
    ExpectBoth();
}

TEST_F(FileReplaceContract, AReadOnlyFileIsNotReplaced) {
    ASSERT_EQ(files.SetAttributes(In("old"), attribute::readOnly), error::success);
    EXPECT_EQ(Replace(), error::accessDenied);
    ExpectBoth();
    ASSERT_EQ(files.SetAttributes(In("old"), attribute::normal), error::success);
}

TEST_F(FileReplaceContract, AFolderIsNotReplaced) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(files.Replace(In("Sub"), In("new"), In("backup")), error::accessDenied);
    EXPECT_TRUE(EntryOf(In("Sub")).IsFolder());
    ExpectBoth();
}

TEST_F(FileReplaceContract, AFileBeingWrittenIsNotReplaced) {
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open(In("old"), OpenMode::append, file), error::success);
    EXPECT_EQ(Replace(), error::sharingViolation);
    ExpectBoth();
}

TEST_F(FileReplaceContract, AFileBeingWrittenDoesNotReplace) {
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open(In("new"), OpenMode::append, file), error::success);
    EXPECT_EQ(Replace(), error::sharingViolation);
    ExpectBoth();
}

TEST_F(FileReplaceContract, DeepFilesAreReplacedToo) {
    std::string deep = scratch;
    while (deep.size() < 400) {
        deep += "\\" + std::string(99, 'd');
        ASSERT_EQ(files.CreateFolder(deep), error::success);
    }
    Put(deep + "\\old", "old");
    Put(deep + "\\new", "new");
    ASSERT_EQ(files.Replace(deep + "\\old", deep + "\\new", deep + "\\backup"), error::success);
    EXPECT_EQ(Content(deep + "\\old"), "new");
    EXPECT_EQ(Content(deep + "\\backup"), "old");
    EXPECT_FALSE(Exists(deep + "\\new"));
    ASSERT_EQ(files.SetAttributes(deep + "\\old", attribute::readOnly), error::success);
    EXPECT_EQ(files.Replace(deep + "\\old", deep + "\\backup", deep + "\\third"), error::accessDenied);
    EXPECT_EQ(files.Replace(deep + "\\absent", deep + "\\backup", deep + "\\third"), error::fileNotFound);
    ASSERT_EQ(files.SetAttributes(deep + "\\old", attribute::normal), error::success);
}

TEST_F(FileReplaceContract, AZeroCharacterIsRefused) {
    const std::string cut = In(std::string("a\0b", 3));
    EXPECT_EQ(files.Replace(cut, In("new"), In("backup")), error::invalidName);
    EXPECT_EQ(files.Replace(In("old"), cut, In("backup")), error::invalidName);
    EXPECT_EQ(files.Replace(In("old"), In("new"), cut), error::invalidName);
    ExpectBoth();
}

}  // namespace
}  // namespace marlok::test
