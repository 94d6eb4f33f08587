#include <stdexcept>
#include <vector>

#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class FileCopyContract : public ContractTest {
 protected:
    /// Copies and returns everything the progress routine was told.
    std::vector<CopyProgressInfo> CopyTelling(const std::string& from, const std::string& to) {
        std::vector<CopyProgressInfo> told;
        EXPECT_EQ(files.Copy(from, to, copyflag::restartable,
                             [&](const CopyProgressInfo& i) {
                                 told.push_back(i);
                                 return CopyAnswer::goOn;
                             }),
                  error::success);
        return told;
    }
};

TEST_F(FileCopyContract, ContentArrivesWhole) {
    std::string content;
    for (int i = 0; i < 50000; ++i) {
        content += std::to_string(i);
    }
    Put(In("from"), content);
    ASSERT_EQ(files.Copy(In("from"), In("to"), copyflag::none, {}), error::success);
    EXPECT_EQ(Content(In("to")), content);
    EXPECT_EQ(Content(In("from")), content);
}

TEST_F(FileCopyContract, TheWriteTimeGoesWithTheFile) {
    Put(In("from"), "x");
    LetTimePass(60);
    ASSERT_EQ(files.Copy(In("from"), In("to"), copyflag::none, {}), error::success);
    EXPECT_EQ(EntryOf(In("to")).lastWriteTime, EntryOf(In("from")).lastWriteTime);
}

TEST_F(FileCopyContract, TheWriteTimeGoesWithTheFileWhenItReplacesAnother) {
    Put(In("from"), "x");
    LetTimePass(60);
    Put(In("to"), "y");
    ASSERT_EQ(files.Copy(In("from"), In("to"), copyflag::restartable,
                         [](const CopyProgressInfo&) { return CopyAnswer::goOn; }),
              error::success);
    EXPECT_EQ(EntryOf(In("to")).lastWriteTime, EntryOf(In("from")).lastWriteTime);
}

TEST_F(FileCopyContract, AttributesGoWithTheFile) {
    Put(In("from"), "x");
    ASSERT_EQ(files.SetAttributes(In("from"), attribute::readOnly), error::success);
    ASSERT_EQ(files.Copy(In("from"), In("to"), copyflag::none, {}), error::success);
    EXPECT_NE(EntryOf(In("to")).attributes & attribute::readOnly, 0U);
    ASSERT_EQ(files.SetAttributes(In("from"), attribute::normal), error::success);
    ASSERT_EQ(files.SetAttributes(In("to"), attribute::normal), error::success);
}

TEST_F(FileCopyContract, AnExistingFileIsOverwritten) {
    Put(In("from"), "short");
    Put(In("to"), "something longer");
    ASSERT_EQ(files.Copy(In("from"), In("to"), copyflag::none, {}), error::success);
    EXPECT_EQ(Content(In("to")), "short");
}

TEST_F(FileCopyContract, AnExistingFileIsKeptWhenAsked) {
    Put(In("from"), "new");
    Put(In("to"), "old");
    EXPECT_EQ(files.Copy(In("from"), In("to"), copyflag::failIfExists, {}), error::fileExists);
    EXPECT_EQ(Content(In("to")), "old");
}

TEST_F(FileCopyContract, AReadOnlyFileIsNotOverwritten) {
    Put(In("from"), "new");
    Put(In("to"), "old");
    ASSERT_EQ(files.SetAttributes(In("to"), attribute::readOnly), error::success);
    EXPECT_EQ(files.Copy(In("from"), In("to"), copyflag::none, {}), ReadOnlyResult());
    ASSERT_EQ(files.SetAttributes(In("to"), attribute::normal), error::success);
    EXPECT_EQ(Content(In("to")), contract->KeepsReadOnlyFiles() ? "old" : "new");
}

TEST_F(FileCopyContract, AMissingSourceIsFileNotFoundAndLeavesTheTargetAlone) {
    Put(In("to"), "old");
    EXPECT_EQ(files.Copy(In("absent"), In("to"), copyflag::none, {}), error::fileNotFound);
    EXPECT_EQ(Content(In("to")), "old");
    EXPECT_EQ(files.Copy(In("absent"), In("new"), copyflag::none, {}), error::fileNotFound);
    EXPECT_FALSE(Exists(In("new")));
}

TEST_F(FileCopyContract, AMissingFolderOnEitherSideIsPathNotFound) {
    Put(In("from"), "x");
    EXPECT_EQ(files.Copy(In("absent\\from"), In("to"), copyflag::none, {}), error::pathNotFound);
    EXPECT_EQ(files.Copy(In("from"), In("absent\\to"), copyflag::none, {}), error::pathNotFound);
}

TEST_F(FileCopyContract, AFileOnTheWayIsPathNotFound) {
    Put(In("from"), "x");
    Put(In("file"), "y");
    EXPECT_EQ(files.Copy(In("file\\from"), In("to"), copyflag::none, {}), error::pathNotFound);
    EXPECT_EQ(files.Copy(In("from"), In("file\\to"), copyflag::none, {}), error::pathNotFound);
}

TEST_F(FileCopyContract, TheEmptyPathIsPathNotFound) {
    Put(In("from"), "x");
    EXPECT_EQ(files.Copy("", In("to"), copyflag::none, {}), error::pathNotFound);
    EXPECT_EQ(files.Copy(In("from"), "", copyflag::none, {}), error::pathNotFound);
}

TEST_F(FileCopyContract, AFileIsNotCopiedOntoItself) {
    Put(In("from"), "kept");
    EXPECT_EQ(files.Copy(In("from"), In("from"), copyflag::none, {}), error::sharingViolation);
    EXPECT_EQ(files.Copy(In("from"), In("FROM"), copyflag::restartable, {}), error::sharingViolation);
    EXPECT_EQ(Content(In("from")), "kept");
}

TEST_F(FileCopyContract, ForbiddenCharactersAreRefused) {
    Put(In("from"), "x");
    for (const char* name : {"a<b", "a>b", "a\tb", "a\nb", "a\"b", "a|b", "a?", "a*"}) {
        EXPECT_EQ(files.Copy(In("from"), In(name), copyflag::none, {}), error::invalidName) << name;
    }
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"from"});
}

TEST_F(FileCopyContract, ReadOnlyFilesOfEverySizeArriveReadOnlyAndWhole) {
    for (const std::size_t size : {0U, 1U, 4096U, 80U << 10U, 1U << 20U}) {
        const std::string name = std::to_string(size);
        const std::string content(size, 'r');
        Put(In(name), content);
        LetTimePass(20);
        ASSERT_EQ(files.SetAttributes(In(name), attribute::readOnly), error::success);
        ASSERT_EQ(files.Copy(In(name), In(name + " copy"), copyflag::none, {}), error::success);
        EXPECT_EQ(Content(In(name + " copy")), content);
        const DirectoryEntry copy = EntryOf(In(name + " copy"));
        EXPECT_NE(copy.attributes & attribute::readOnly, 0U);
        EXPECT_EQ(copy.lastWriteTime, EntryOf(In(name)).lastWriteTime);
        ASSERT_EQ(files.SetAttributes(In(name), attribute::normal), error::success);
        ASSERT_EQ(files.SetAttributes(In(name + " copy"), attribute::normal), error::success);
    }
}

TEST_F(FileCopyContract, AHiddenFileIsNotOverwritten) {
    Put(In("from"), "new");
    Put(In("to"), "old");
    ASSERT_EQ(files.SetAttributes(In("to"), attribute::hidden), error::success);
    EXPECT_TRUE(Is(files.Copy(In("from"), In("to"), copyflag::none, {}), error::accessDenied, error::success));
    EXPECT_TRUE(Is<std::string>(Content(In("to")), "old", "new"));
    ASSERT_EQ(files.SetAttributes(In("to"), attribute::normal), error::success);
}

TEST_F(FileCopyContract, AFolderIsNoSource) {
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_NE(files.Copy(In("Sub"), In("to"), copyflag::none, {}), error::success);
    EXPECT_FALSE(Exists(In("to")));
}

TEST_F(FileCopyContract, AFolderIsNoTarget) {
    Put(In("from"), "x");
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_NE(files.Copy(In("from"), In("Sub"), copyflag::none, {}), error::success);
    EXPECT_EQ(NamesWithoutDots(In("Sub\\*")), std::set<std::string>{});
}

TEST_F(FileCopyContract, ProgressStartsWithTheStreamAndGrowsUpToTheSize) {
    const std::string content(300000, 'x');
    Put(In("from"), content);
    const std::vector<CopyProgressInfo> told = CopyTelling(In("from"), In("to"));
    EXPECT_EQ(Content(In("to")), content);
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told.front().reason, CopyProgressInfo::Reason::streamSwitch);
    EXPECT_EQ(told.front().totalTransferred, 0U);
    EXPECT_EQ(told.back().totalTransferred, content.size());
    for (std::size_t i = 1; i < told.size(); ++i) {
        EXPECT_EQ(told[i].reason, CopyProgressInfo::Reason::chunkFinished);
        EXPECT_EQ(told[i].totalFileSize, content.size());
        EXPECT_GE(told[i].totalTransferred, told[i - 1].totalTransferred);
    }
}

TEST_F(FileCopyContract, ProgressOfAnEmptyFileStartsWithTheStream) {
    Put(In("from"), "");
    const std::vector<CopyProgressInfo> told = CopyTelling(In("from"), In("to"));
    ASSERT_GE(told.size(), 1U);
    EXPECT_EQ(told.front().reason, CopyProgressInfo::Reason::streamSwitch);
    for (const CopyProgressInfo& info : told) {
        EXPECT_EQ(info.totalFileSize, 0U);
        EXPECT_EQ(info.totalTransferred, 0U);
    }
    EXPECT_EQ(EntryOf(In("to")).size, 0U);
}

TEST_F(FileCopyContract, WhatTheProgressRoutineThrowsReachesTheCaller) {
    Put(In("from"), std::string(1000, 'x'));
    EXPECT_THROW(
        static_cast<void>(files.Copy(In("from"), In("to"), copyflag::none,
                                     [](const CopyProgressInfo&) -> CopyAnswer { throw std::runtime_error("stop"); })),
        std::runtime_error);
}

TEST_F(FileCopyContract, ACopyThatIsCalledOffLeavesNothing) {
    Put(In("from"), std::string(300000, 'x'));
    Put(In("old"), "old");
    const auto stop = [](const CopyProgressInfo&) { return CopyAnswer::cancel; };
    for (const std::uint32_t flags : {copyflag::none, copyflag::restartable}) {
        EXPECT_EQ(files.Copy(In("from"), In("to"), flags, stop), error::requestAborted);
        EXPECT_FALSE(Exists(In("to")));
    }
    EXPECT_EQ(files.Copy(In("from"), In("old"), copyflag::none, stop), error::requestAborted);
    EXPECT_FALSE(Exists(In("old"))) << "its old content was gone already";
    EXPECT_EQ(EntryOf(In("from")).size, 300000U);
}

TEST_F(FileCopyContract, ACopyCanBeCalledOffAtItsLastCall) {
    Put(In("from"), "12345");
    const auto stop = [](const CopyProgressInfo& info) {
        return info.totalTransferred == info.totalFileSize ? CopyAnswer::cancel : CopyAnswer::goOn;
    };
    EXPECT_EQ(files.Copy(In("from"), In("to"), copyflag::none, stop), error::requestAborted);
    EXPECT_FALSE(Exists(In("to")));
}

TEST_F(FileCopyContract, AZeroCharacterIsRefusedOnEitherSide) {
    Put(In("a"), "x");
    const std::string cut = In(std::string("a\0b", 3));
    EXPECT_EQ(files.Copy(cut, In("to"), copyflag::none, {}), error::invalidName);
    EXPECT_EQ(files.Copy(In("a"), cut, copyflag::none, {}), error::invalidName);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"a"});
}

}  // namespace
}  // namespace marlok::test
