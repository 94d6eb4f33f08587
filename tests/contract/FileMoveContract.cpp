#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

class FileMoveContract : public ContractTest {};

TEST_F(FileMoveContract, AFileIsRenamed) {
    Put(In("old"), "x");
    ASSERT_EQ(files.Move(In("old"), In("new"), false), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{"new"});
    EXPECT_EQ(Content(In("new")), "x");
}

TEST_F(FileMoveContract, AFileMovesToAnotherFolderWithItsTime) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    Put(In("a"), "x");
    const FileTime time = EntryOf(In("a")).lastWriteTime;
    LetTimePass(60);
    ASSERT_EQ(files.Move(In("a"), In("Sub\\b"), false), error::success);
    EXPECT_EQ(EntryOf(In("Sub\\b")).lastWriteTime, time);
    EXPECT_FALSE(Exists(In("a")));
}

TEST_F(FileMoveContract, AnExistingFileStaysUnlessReplacingIsAsked) {
    Put(In("a"), "a");
    Put(In("b"), "b");
    EXPECT_EQ(files.Move(In("a"), In("b"), false), error::alreadyExists);
    EXPECT_EQ(Content(In("b")), "b");
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(FileMoveContract, AnExistingFileIsReplacedWhenAsked) {
    Put(In("a"), "a");
    Put(In("b"), "b");
    ASSERT_EQ(files.Move(In("a"), In("b"), true), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{"b"});
    EXPECT_EQ(Content(In("b")), "a");
}

TEST_F(FileMoveContract, ReplacingWhatIsNotThereIsARename) {
    Put(In("a"), "a");
    ASSERT_EQ(files.Move(In("a"), In("b"), true), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{"b"});
}

TEST_F(FileMoveContract, ANameCanBeWrittenThrough) {
    Put(In("a"), "a");
    Put(In("b"), "b");
    EXPECT_EQ(files.Move(In("a"), In("b"), moveflag::writeThrough), error::alreadyExists);
    EXPECT_EQ(files.Move(In("a"), In("b"), moveflag::replace | moveflag::writeThrough), error::success);
    EXPECT_EQ(files.Move(In("b"), In("c"), moveflag::writeThrough), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), NameSet{"c"});
    EXPECT_EQ(Content(In("c")), "a");
}

TEST_F(FileMoveContract, AReadOnlyFileIsNotReplaced) {
    Put(In("a"), "a");
    Put(In("b"), "b");
    ASSERT_EQ(files.SetAttributes(In("b"), attribute::readOnly), error::success);
    EXPECT_EQ(files.Move(In("a"), In("b"), true), ReadOnlyResult());
    ASSERT_EQ(files.SetAttributes(In("b"), attribute::normal), error::success);
    EXPECT_EQ(Content(In("b")), contract->KeepsReadOnlyFiles() ? "b" : "a");
    EXPECT_EQ(Exists(In("a")), contract->KeepsReadOnlyFiles());
}

TEST_F(FileMoveContract, AFolderIsNotReplacedByAFile) {
    Put(In("a"), "a");
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_NE(files.Move(In("a"), In("Sub"), true), error::success);
    EXPECT_TRUE(EntryOf(In("Sub")).IsFolder());
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(FileMoveContract, AFolderMovesWithEverythingInIt) {
    ASSERT_EQ(files.CreateFolder(In("A")), error::success);
    Put(In("A\\x"), "x");
    ASSERT_EQ(files.Move(In("A"), In("B"), false), error::success);
    EXPECT_EQ(Content(In("B\\x")), "x");
    EXPECT_FALSE(Exists(In("A")));
}

TEST_F(FileMoveContract, ANewCaseOfTheNameLosesNothing) {
    Put(In("name"), "x");
    ASSERT_EQ(files.Move(In("name"), In("NAME"), false), error::success);
    // Windows changes the stored name, Wine leaves it.
    const NameSet names = NamesWithoutDots(In("*"));
    EXPECT_TRUE(names == NameSet{"NAME"} || names == NameSet{"name"});
    EXPECT_EQ(Content(In("NAME")), "x");
}

TEST_F(FileMoveContract, AMissingFileIsFileNotFound) {
    EXPECT_EQ(files.Move(In("absent"), In("b"), true), error::fileNotFound);
}

TEST_F(FileMoveContract, AMissingTargetFolderIsPathNotFound) {
    Put(In("a"), "a");
    EXPECT_EQ(files.Move(In("a"), In("absent\\b"), true), error::pathNotFound);
    EXPECT_EQ(Content(In("a")), "a");
}

}  // namespace
}  // namespace marlok::test
