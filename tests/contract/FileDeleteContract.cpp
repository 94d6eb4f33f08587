#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class FileDeleteContract : public ContractTest {};

TEST_F(FileDeleteContract, AFileIsDeleted) {
    Put(In("a"), "a");
    EXPECT_EQ(files.Delete(In("A")), error::success);
    EXPECT_FALSE(Exists(In("a")));
}

TEST_F(FileDeleteContract, AMissingFileIsFileNotFound) {
    EXPECT_EQ(files.Delete(In("absent")), error::fileNotFound);
    EXPECT_EQ(files.Delete(In("absent\\a")), error::pathNotFound);
}

TEST_F(FileDeleteContract, AReadOnlyFileIsDenied) {
    Put(In("a"), "a");
    ASSERT_EQ(files.SetAttributes(In("a"), attribute::readOnly), error::success);
    EXPECT_EQ(files.Delete(In("a")), error::accessDenied);
    ASSERT_EQ(files.SetAttributes(In("a"), attribute::normal), error::success);
    EXPECT_EQ(files.Delete(In("a")), error::success);
}

TEST_F(FileDeleteContract, AFolderIsDenied) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(files.Delete(In("Sub")), error::accessDenied);
    EXPECT_TRUE(Exists(In("Sub")));
}

TEST_F(FileDeleteContract, AWildcardDeletesNothing) {
    Put(In("a"), "a");
    EXPECT_NE(files.Delete(In("*")), error::success);
    EXPECT_TRUE(Exists(In("a")));
}

TEST_F(FileDeleteContract, AnEmptyFolderIsRemoved) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(files.RemoveFolder(In("Sub")), error::success);
    EXPECT_FALSE(Exists(In("Sub")));
}

TEST_F(FileDeleteContract, AFolderThatHoldsSomethingIsNotRemoved) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    Put(In("Sub\\a"), "a");
    EXPECT_EQ(files.RemoveFolder(In("Sub")), error::directoryNotEmpty);
    EXPECT_EQ(Content(In("Sub\\a")), "a");
}

TEST_F(FileDeleteContract, AFileIsNoFolderToRemove) {
    Put(In("a"), "a");
    EXPECT_EQ(files.RemoveFolder(In("a")), error::invalidFolderName);
    EXPECT_TRUE(Exists(In("a")));
}

TEST_F(FileDeleteContract, AMissingFolderIsFileNotFound) {
    EXPECT_EQ(files.RemoveFolder(In("absent")), error::fileNotFound);
    EXPECT_EQ(files.RemoveFolder(In("absent\\deeper")), error::pathNotFound);
}

}  // namespace
}  // namespace marlok::test
