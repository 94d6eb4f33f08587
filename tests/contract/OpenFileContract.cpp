#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class OpenFileContract : public ContractTest {
 protected:
    std::unique_ptr<File> file;
    std::string bytes;
};

TEST_F(OpenFileContract, CreateNewMakesAFile) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::createNew, file), error::success);
    ASSERT_EQ(file->Write("one"), error::success);
    ASSERT_EQ(file->Write(" two"), error::success);
    ASSERT_EQ(file->Close(), error::success);
    EXPECT_EQ(Content(In("a")), "one two");
}

TEST_F(OpenFileContract, CreateNewRefusesAnExistingFile) {
    Put(In("a"), "old");
    EXPECT_EQ(files.Open(In("A"), OpenMode::createNew, file), error::fileExists);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(Content(In("a")), "old");
}

TEST_F(OpenFileContract, ReplaceEmptiesAnExistingFile) {
    Put(In("a"), "something long");
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    ASSERT_EQ(file->Write("new"), error::success);
    ASSERT_EQ(file->Close(), error::success);
    EXPECT_EQ(Content(In("a")), "new");
}

TEST_F(OpenFileContract, ReplaceKeepsTheStoredName) {
    Put(In("Name"), "1");
    Put(In("NAME"), "2");
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"Name"});
}

TEST_F(OpenFileContract, AppendWritesBehindWhatIsThere) {
    Put(In("a"), "one");
    ASSERT_EQ(files.Open(In("a"), OpenMode::append, file), error::success);
    ASSERT_EQ(file->Write(" two"), error::success);
    ASSERT_EQ(file->Write(" three"), error::success);
    ASSERT_EQ(file->Close(), error::success);
    EXPECT_EQ(Content(In("a")), "one two three");
}

TEST_F(OpenFileContract, AppendCreatesAMissingFile) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::append, file), error::success);
    ASSERT_EQ(file->Write("one"), error::success);
    ASSERT_EQ(file->Close(), error::success);
    EXPECT_EQ(Content(In("a")), "one");
}

TEST_F(OpenFileContract, ReadingGoesOnWhereItStopped) {
    Put(In("a"), "abcdef");
    ASSERT_EQ(files.Open(In("a"), OpenMode::read, file), error::success);
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, "abcd");
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, "ef");
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, "");
}

TEST_F(OpenFileContract, ReadingAMissingFileFails) {
    EXPECT_EQ(files.Open(In("absent"), OpenMode::read, file), error::fileNotFound);
    EXPECT_EQ(files.Open(In("absent\\a"), OpenMode::read, file), error::pathNotFound);
    EXPECT_EQ(file, nullptr);
}

TEST_F(OpenFileContract, WritingInAMissingFolderIsPathNotFound) {
    for (const OpenMode mode : {OpenMode::createNew, OpenMode::replace, OpenMode::append}) {
        EXPECT_EQ(files.Open(In("absent\\a"), mode, file), error::pathNotFound);
    }
}

TEST_F(OpenFileContract, AFolderCannotBeOpened) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(files.Open(In("Sub"), OpenMode::read, file), error::accessDenied);
    EXPECT_EQ(files.Open(In("Sub"), OpenMode::replace, file), error::accessDenied);
    EXPECT_EQ(files.Open(In("Sub"), OpenMode::append, file), error::accessDenied);
}

TEST_F(OpenFileContract, AReadOnlyFileCanBeReadAndNotWritten) {
    Put(In("a"), "kept");
    ASSERT_EQ(files.SetAttributes(In("a"), attribute::readOnly), error::success);
    EXPECT_EQ(files.Open(In("a"), OpenMode::append, file), ReadOnlyResult());
    file.reset();
    EXPECT_EQ(Content(In("a")), "kept");
    EXPECT_EQ(files.Open(In("a"), OpenMode::replace, file), ReadOnlyResult());
    file.reset();
    EXPECT_EQ(Content(In("a")), contract->KeepsReadOnlyFiles() ? "kept" : "");
    ASSERT_EQ(files.SetAttributes(In("a"), attribute::normal), error::success);
}

TEST_F(OpenFileContract, WhatIsWrittenCanBeReadWhileTheWriterIsOpen) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    ASSERT_EQ(file->Write("so far"), error::success);
    EXPECT_EQ(Content(In("a")), "so far");
    ASSERT_EQ(file->Write(" and on"), error::success);
    EXPECT_EQ(Content(In("a")), "so far and on");
}

TEST_F(OpenFileContract, AReaderSeesWhatIsAppendedBehindIt) {
    Put(In("a"), "one");
    std::unique_ptr<File> reader;
    ASSERT_EQ(files.Open(In("a"), OpenMode::read, reader), error::success);
    ASSERT_EQ(reader->Read(bytes, 100), error::success);
    ASSERT_EQ(files.Open(In("a"), OpenMode::append, file), error::success);
    ASSERT_EQ(file->Write(" two"), error::success);
    ASSERT_EQ(reader->Read(bytes, 100), error::success);
    EXPECT_EQ(bytes, " two");
}

TEST_F(OpenFileContract, AFileBeingWrittenHasOneWriter) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    std::unique_ptr<File> second;
    EXPECT_EQ(files.Open(In("a"), OpenMode::append, second), error::sharingViolation);
    EXPECT_EQ(second, nullptr);
}

TEST_F(OpenFileContract, AFileBeingWrittenIsNeitherDeletedNorMovedNorReplaced) {
    Put(In("b"), "b");
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    EXPECT_EQ(files.Delete(In("a")), error::sharingViolation);
    EXPECT_EQ(files.Move(In("a"), In("c"), false), error::sharingViolation);
    EXPECT_NE(files.Move(In("b"), In("a"), true), error::success);
    EXPECT_EQ(files.Copy(In("b"), In("a"), copyflag::none, {}), error::sharingViolation);
    file.reset();
    EXPECT_EQ(files.Delete(In("a")), error::success);
}

TEST_F(OpenFileContract, FlushingAWriterSucceeds) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    ASSERT_EQ(file->Write("x"), error::success);
    EXPECT_EQ(file->Flush(), error::success);
    EXPECT_EQ(Content(In("a")), "x");
}

TEST_F(OpenFileContract, AClosedFileTakesNothingMore) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    ASSERT_EQ(file->Close(), error::success);
    EXPECT_EQ(file->Close(), error::invalidHandle);
    EXPECT_EQ(file->Write("x"), error::invalidHandle);
    EXPECT_EQ(EntryOf(In("a")).size, 0U);
}

TEST_F(OpenFileContract, TheDestructorClosesAndKeepsWhatWasWritten) {
    ASSERT_EQ(files.Open(In("a"), OpenMode::replace, file), error::success);
    ASSERT_EQ(file->Write("kept"), error::success);
    file.reset();
    EXPECT_EQ(Content(In("a")), "kept");
    EXPECT_EQ(files.Delete(In("a")), error::success);
}

TEST_F(OpenFileContract, AllBytesComeBack) {
    std::string every;
    for (int i = 0; i < 256; ++i) {
        every += static_cast<char>(i);
    }
    Put(In("a"), every + every);
    EXPECT_EQ(Content(In("a")), every + every);
}

TEST_F(OpenFileContract, AZeroCharacterInThePathIsRefused) {
    EXPECT_EQ(files.Open(In(std::string("a\0b", 3)), OpenMode::createNew, file), error::invalidName);
    EXPECT_FALSE(Exists(In("a")));
}

}  // namespace
}  // namespace marlok::test
