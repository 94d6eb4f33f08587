#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

/// Who may do what while others have a file open.
class InMemorySharingTest : public ::testing::Test {
 protected:
    InMemorySharingTest() { memory.Seed({{"E:\\a", "a"}, {"E:\\b", "b"}}); }

    SystemError Open(const std::string& path, OpenMode mode) {
        std::unique_ptr<File> file;
        return files.Open(path, mode, file);
    }

    InMemoryMachine memory;
    FileSystem& files = memory.machine().files;
};

TEST_F(InMemorySharingTest, AHoldEndsWithItsTime) {
    memory.HoldFor("E:\\a", 100);
    EXPECT_EQ(Open("E:\\a", OpenMode::read), error::sharingViolation);
    memory.machine().clock.Sleep(99);
    EXPECT_EQ(files.Delete("E:\\a"), error::sharingViolation);
    memory.machine().clock.Sleep(1);
    EXPECT_EQ(Open("E:\\a", OpenMode::read), error::success);
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
}

TEST_F(InMemorySharingTest, AHoldEndsWithTheCallsItHasRefused) {
    memory.HoldForCalls("E:\\a", 3);
    EXPECT_EQ(files.Move("E:\\b", "E:\\a", moveflag::replace), error::accessDenied);
    EXPECT_EQ(Open("E:\\a", OpenMode::append), error::sharingViolation);
    DirectoryEntry entry;
    EXPECT_EQ(files.GetEntry("E:\\a", entry), error::success) << "nobody is kept from looking";
    EXPECT_EQ(files.Delete("E:\\a"), error::sharingViolation);
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
}

TEST_F(InMemorySharingTest, AHoldRefusesWhatItDoesNotShare) {
    memory.HoldFor("E:\\a", 1000, {access::read, access::read});
    EXPECT_EQ(Open("E:\\a", OpenMode::read), error::success);
    EXPECT_EQ(Open("E:\\a", OpenMode::append), error::sharingViolation);
    EXPECT_EQ(files.Delete("E:\\a"), error::sharingViolation);
    EXPECT_EQ(files.Copy("E:\\a", "E:\\c", copyflag::none, {}), error::success);
    EXPECT_EQ(files.Copy("E:\\b", "E:\\a", copyflag::none, {}), error::sharingViolation);
    memory.LetGo("E:\\a");
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
}

TEST_F(InMemorySharingTest, WhoSharesDeletingKeepsItsFileAndLosesTheName) {
    std::unique_ptr<File> reader;
    ASSERT_EQ(files.Open("E:\\a", OpenMode::read, reader), error::success);
    EXPECT_EQ(files.Move("E:\\b", "E:\\a", moveflag::replace), error::success);
    EXPECT_EQ(memory.Read("E:\\a"), "b");
    std::string bytes;
    EXPECT_EQ(reader->Read(bytes, 10), error::success);
    EXPECT_EQ(bytes, "a");
    std::unique_ptr<File> second;
    ASSERT_EQ(files.Open("E:\\a", OpenMode::read, second), error::success);
    EXPECT_EQ(files.Delete("E:\\a"), error::success);
    EXPECT_EQ(files.Delete("E:\\a"), error::fileNotFound);
    EXPECT_EQ(Open("E:\\a", OpenMode::createNew), error::success);
}

TEST_F(InMemorySharingTest, WhereNamesStayADeletedFileIsInTheWayUntilItIsClosed) {
    for (const char* fileSystem : {"FAT32", "exFAT"}) {
        memory.AddDrive('F', {.fileSystem = fileSystem});
        memory.Seed({{"F:\\D\\a", "a"}, {"F:\\D\\b", "b"}});
        std::unique_ptr<File> reader;
        ASSERT_EQ(files.Open("F:\\D\\a", OpenMode::read, reader), error::success);
        EXPECT_EQ(files.Move("F:\\D\\b", "F:\\D\\a", moveflag::replace), error::accessDenied);
        EXPECT_EQ(files.Delete("F:\\D\\a"), error::success);
        DirectoryEntry entry;
        EXPECT_EQ(files.GetEntry("F:\\D\\a", entry), error::accessDenied);
        EXPECT_EQ(Open("F:\\D\\a", OpenMode::createNew), error::accessDenied);
        EXPECT_EQ(files.Delete("F:\\D\\a"), error::accessDenied);
        EXPECT_EQ(files.Move("F:\\D\\b", "F:\\D\\a", moveflag::replace), error::accessDenied);
        EXPECT_EQ(files.Delete("F:\\D\\b"), error::success);
        EXPECT_EQ(files.RemoveFolder("F:\\D"), error::directoryNotEmpty);
        reader.reset();
        EXPECT_EQ(files.GetEntry("F:\\D\\a", entry), error::fileNotFound);
        EXPECT_EQ(files.RemoveFolder("F:\\D"), error::success);
    }
}

TEST_F(InMemorySharingTest, APendingNameGoesWithAnotherProgramsHandleToo) {
    memory.AddDrive('F', {.fileSystem = "exFAT"});
    memory.Seed({{"F:\\a", "12345"}});
    memory.HoldFor("F:\\a", 50, {access::read, access::all});
    EXPECT_EQ(files.Delete("F:\\a"), error::success);
    EXPECT_EQ(memory.Tree("F:\\"), (Tree{{"a", "12345"}}));
    EXPECT_EQ(files.Delete("F:\\a"), error::accessDenied);
    memory.machine().clock.Sleep(50);
    EXPECT_EQ(memory.Tree("F:\\"), Tree{});
    EXPECT_EQ(files.Delete("F:\\a"), error::fileNotFound);
}

TEST_F(InMemorySharingTest, AListingHoldsItsFolder) {
    memory.Seed({{"E:\\D\\Sub\\x", "x"}});
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("E:\\D\\Sub\\*", search, entry), error::success);
    EXPECT_EQ(files.Move("E:\\D", "E:\\New", moveflag::none), error::accessDenied) << "something below is open";
    EXPECT_EQ(files.Move("E:\\D\\Sub", "E:\\D\\Other", moveflag::none), error::success);
    search.reset();
    EXPECT_EQ(files.Move("E:\\D", "E:\\New", moveflag::none), error::success);
}

TEST_F(InMemorySharingTest, AFolderWithAnOpenFileDoesNotMove) {
    memory.Seed({{"E:\\D\\x", "x"}});
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open("E:\\D\\x", OpenMode::read, file), error::success);
    EXPECT_EQ(files.Move("E:\\D", "E:\\New", moveflag::none), error::accessDenied);
    file.reset();
    EXPECT_EQ(files.Move("E:\\D", "E:\\New", moveflag::none), error::success);
}

TEST_F(InMemorySharingTest, TheCurrentFolderIsNotRemoved) {
    memory.Seed({{"E:\\D\\"}});
    memory.process.SetCurrentFolder("E:\\D");
    EXPECT_EQ(files.RemoveFolder("E:\\D"), error::sharingViolation);
    memory.process.SetCurrentFolder("C:\\");
    EXPECT_EQ(files.RemoveFolder("E:\\D"), error::success);
}

TEST_F(InMemorySharingTest, MappedContentIsNotCut) {
    memory.Map("E:\\a");
    EXPECT_EQ(files.Copy("E:\\b", "E:\\a", copyflag::none, {}), error::mappedFile);
    EXPECT_EQ(Open("E:\\a", OpenMode::replace), error::mappedFile);
    EXPECT_EQ(Open("E:\\a", OpenMode::read), error::success);
    EXPECT_EQ(memory.Read("E:\\a"), "a");
    EXPECT_EQ(files.Move("E:\\b", "E:\\a", moveflag::replace), error::success) << "its name is free all the same";
}

TEST_F(InMemorySharingTest, ARunningProgramIsReplacedByNameAlone) {
    memory.RunFrom("E:\\a");
    EXPECT_EQ(files.Delete("E:\\a"), error::accessDenied);
    EXPECT_EQ(files.Copy("E:\\b", "E:\\a", copyflag::none, {}), error::sharingViolation);
    EXPECT_EQ(files.Move("E:\\b", "E:\\a", moveflag::replace), error::accessDenied);
    EXPECT_EQ(files.Replace("E:\\a", "E:\\b", "E:\\old"), error::success);
    EXPECT_EQ(memory.Read("E:\\a"), "b");
    EXPECT_EQ(memory.Read("E:\\old"), "a");
}

TEST_F(InMemorySharingTest, ACopyThatIsCalledOffStaysWithWhoForbidsDeleting) {
    const auto stop = [this](const CopyProgressInfo&) {
        memory.HoldFor("E:\\c", 1000, {access::read, access::read | access::write});
        return CopyAnswer::cancel;
    };
    EXPECT_EQ(files.Copy("E:\\a", "E:\\c", copyflag::none, stop), error::requestAborted);
    EXPECT_TRUE(memory.Exists("E:\\c"));
}

TEST_F(InMemorySharingTest, TheListingTellsAWritersFileAsItWas) {
    memory.Seed({{"E:\\log", "old", At(8, 0)}});
    std::unique_ptr<File> writer;
    ASSERT_EQ(files.Open("E:\\log", OpenMode::append, writer), error::success);
    ASSERT_EQ(writer->Write(" and new"), error::success);
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry listed;
    ASSERT_EQ(files.FindFirst("E:\\log", search, listed), error::success);
    EXPECT_EQ(listed.size, 3U);
    EXPECT_EQ(listed.lastWriteTime, At(8, 0));
    DirectoryEntry asked;
    ASSERT_EQ(files.GetEntry("E:\\log", asked), error::success);
    EXPECT_EQ(asked.size, 11U);
    EXPECT_EQ(asked.lastWriteTime, At(12, 0));
    writer.reset();
    ASSERT_EQ(files.FindFirst("E:\\log", search, listed), error::success);
    EXPECT_EQ(listed.size, 11U);
    EXPECT_EQ(listed.lastWriteTime, At(12, 0));
}

TEST_F(InMemorySharingTest, ADeathBetweenTheTwoNamesLeavesTheOldFileAside) {
    memory.faults.BeforeStep([](const Step& step) {
        if (step.operation == "Replace.Second") {
            throw ProcessDied{};
        }
    });
    EXPECT_THROW(static_cast<void>(files.Replace("E:\\a", "E:\\b", "E:\\old")), ProcessDied);
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"b", "b"}, {"old", "a"}}));
}

TEST_F(InMemorySharingTest, AReplacementTellsHowFarItCame) {
    memory.faults.FailWhen(
        [](const Step& step) { return step.operation == "Replace.Second" ? error::ioDevice : error::success; });
    EXPECT_EQ(files.Replace("E:\\a", "E:\\b", "E:\\old"), error::replacementNotMoved);
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"a", "a"}, {"b", "b"}}));
    memory.faults.FailWhen(
        [](const Step& step) { return step.operation.starts_with("Replace.") ? error::ioDevice : error::success; });
    EXPECT_EQ(files.Replace("E:\\a", "E:\\b", "E:\\old"), error::replacedMovedAway);
    EXPECT_EQ(memory.Tree("E:\\"), (Tree{{"b", "b"}, {"old", "a"}}));
    memory.faults.Revive();
    memory.Seed({{"E:\\a", "a"}, {"E:\\D\\"}, {"F:\\c", "c"}});
    EXPECT_EQ(files.Replace("E:\\a", "E:\\b", "E:\\D"), error::replacedKept);
    EXPECT_EQ(files.Replace("E:\\a", "E:\\b", "F:\\old"), error::replacedKept);
    EXPECT_EQ(files.Replace("E:\\a", "F:\\c", "E:\\old"), error::replacementNotMoved);
    EXPECT_EQ(memory.Read("E:\\a"), "a");
    EXPECT_EQ(memory.Read("E:\\b"), "b");
}

TEST_F(InMemorySharingTest, AReplacementTakesTheOldFilesAttributesAndCreationTime) {
    memory.Seed({{"E:\\old", "old", At(7, 0), attribute::hidden}, {"E:\\new", "new", At(8, 0)}});
    ASSERT_EQ(files.Replace("E:\\old", "E:\\new", "E:\\backup"), error::success);
    const DirectoryEntry entry = memory.EntryOf("E:\\old");
    EXPECT_NE(entry.attributes & attribute::hidden, 0U);
    EXPECT_EQ(entry.creationTime, At(7, 0));
    EXPECT_EQ(entry.lastWriteTime, At(8, 0));
}

}  // namespace
}  // namespace marlok::test
