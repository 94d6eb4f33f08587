#include "fileops/FolderScan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paths/Path.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderScanTest : public testing::Test {
 protected:
    FolderScanTest() { machine.AddDrive('D'); }

    void TearDown() override { machine.ExpectNoLeaks(); }

    /// Scans `root` and returns the folders below it.
    std::vector<std::string> Scan(const std::string& root) {
        scan = ScanFolders(machine.files, root, options);
        std::vector<std::string> below;
        for (const ScannedFolder& folder : scan.folders) {
            if (folder.parent != ScannedFolder::noParent) {
                below.push_back(folder.path);
            }
        }
        return below;
    }

    InMemoryMachine machine;
    ScanOptions options;
    FolderScan scan;
};

TEST_F(FolderScanTest, BelowADrivesRootNoPathHoldsTwoBackslashes) {
    machine.Seed({{R"(D:\a\x\y\)"}, {R"(D:\b\)"}});
    EXPECT_THAT(Scan(R"(D:\)"), ElementsAre(R"(D:\a)", R"(D:\a\x)", R"(D:\a\x\y)", R"(D:\b)"));
}

TEST_F(FolderScanTest, FoldersComeInPreOrderWithoutTrailingBackslash) {
    machine.Seed({{R"(C:\Data\a\x\)"}, {R"(C:\Data\a\y\)"}, {R"(C:\Data\b\)"}, {R"(C:\Data\file.txt)", "f"}});
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\a)", R"(C:\Data\a\x)", R"(C:\Data\a\y)", R"(C:\Data\b)"));
}

TEST_F(FolderScanTest, TheFolderScannedComesFirstAndEachOneKnowsWhereItLies) {
    machine.Seed({{R"(C:\Data\Projects\Deep\)"}, {R"(C:\Data\z\)"}});
    Scan(R"(C:\Data\)");
    ASSERT_EQ(scan.folders.size(), 4U);
    EXPECT_EQ(scan.folders[0].path, R"(C:\Data)");
    EXPECT_EQ(scan.folders[0].Name(), R"(C:\Data)");
    EXPECT_EQ(scan.folders[1].Name(), "Projects");
    EXPECT_EQ(scan.folders[1].parent, 0U);
    EXPECT_EQ(scan.folders[2].Name(), "Deep");
    EXPECT_EQ(scan.folders[2].parent, 1U);
    EXPECT_EQ(scan.folders[3].parent, 0U);
}

TEST_F(FolderScanTest, HiddenAndSystemFoldersAreIncluded) {
    machine.Seed({{R"(C:\Data\h\)", "", {}, attribute::hidden}, {R"(C:\Data\s\)", "", {}, attribute::system}});
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\h)", R"(C:\Data\s)"));
}

TEST_F(FolderScanTest, EveryFolderOfADriveIsSeenButThoseOfTheSystem) {
    machine.Seed({{R"(D:\first\)"}, {R"(D:\second\)"}});
    machine.Seed({{R"(D:\$RECYCLE.BIN\S-1\$R1.doc)", "deleted"}, {R"(D:\System Volume Information\x\)"}});
    machine.Seed({R"(D:\Recovery\)", "", {}, attribute::hidden | attribute::system});
    EXPECT_THAT(Scan("D:\\"), ElementsAre(R"(D:\first)", R"(D:\second)"));
    machine.Seed({{R"(D:\second\$RECYCLE.BIN\)"}});
    EXPECT_THAT(Scan(R"(D:\second)"), ElementsAre(R"(D:\second\$RECYCLE.BIN)")) << "anywhere else it is a folder";
}

TEST_F(FolderScanTest, AJunctionThatWindowsHidesAndNobodyMayListIsNoFailure) {
    machine.Seed({{R"(C:\Data\Music\)"}, {R"(C:\Data\plain\)"}});
    machine.MakeLink(R"(C:\Data\My Music)", R"(C:\Data\Music)");
    machine.SetAttributes(R"(C:\Data\My Music)", attribute::hidden | attribute::system);
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "FindFirst" && step.path.starts_with(R"(C:\Data\My Music\)") ? error::accessDenied
                                                                                              : error::success;
    });
    Scan(R"(C:\Data)");
    EXPECT_THAT(scan.unlisted, IsEmpty());
    machine.SetAttributes(R"(C:\Data\My Music)", attribute::hidden);
    Scan(R"(C:\Data)");
    EXPECT_THAT(scan.unlisted, testing::SizeIs(1)) << "a link of the user's own is";
}

TEST_F(FolderScanTest, WhatCannotBeListedHasNoChildren) {
    EXPECT_THAT(Scan(R"(C:\Missing)"), IsEmpty());
    machine.Seed({{R"(C:\Data\Closed\Inner\)"}, {R"(C:\Data\Open\)"}});
    machine.Deny(R"(C:\Data\Closed)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Closed)", R"(C:\Data\Open)"));
}

TEST_F(FolderScanTest, ALinkToAFolderAboveItIsLeftOut) {
    machine.Seed({{R"(C:\Data\Sub\Deep\)"}});
    machine.MakeLink(R"(C:\Data\Sub\Deep\up)", R"(C:\Data)");
    machine.MakeLink(R"(C:\Data\Sub\self)", R"(C:\Data\Sub)");
    machine.MakeLink(R"(C:\Data\root)", "C:\\");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Sub)", R"(C:\Data\Sub\Deep)"));
}

TEST_F(FolderScanTest, LinksDoNotLeadRoundAndRound) {
    machine.Seed({{R"(C:\A\)"}, {R"(C:\B\)"}});
    machine.MakeLink(R"(C:\A\toB)", R"(C:\B)");
    machine.MakeLink(R"(C:\B\toA)", R"(C:\A)");
    EXPECT_THAT(Scan(R"(C:\A)"), ElementsAre(R"(C:\A\toB)"));
}

TEST_F(FolderScanTest, ALinkElsewhereIsDescended) {
    machine.Seed({{R"(D:\Far\Inner\)"}, {R"(C:\Data\)"}});
    machine.MakeLink(R"(C:\Data\far)", R"(D:\Far)");
    machine.MakeLink(R"(C:\Data\soft)", R"(D:\Far)", reparse::symbolicLink);
    EXPECT_THAT(Scan(R"(C:\Data)"),
                ElementsAre(R"(C:\Data\far)", R"(C:\Data\far\Inner)", R"(C:\Data\soft)", R"(C:\Data\soft\Inner)"));
}

TEST_F(FolderScanTest, APlaceholderFolderIsAFolderLikeAnyOther) {
    machine.Seed({{R"(C:\Data\Cloud\Inner\)"}});
    machine.MakePlaceholder(R"(C:\Data\Cloud)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Cloud)", R"(C:\Data\Cloud\Inner)"));
}

TEST_F(FolderScanTest, TheLocationBeingWrittenIsLeftOut) {
    machine.Seed({{R"(C:\Data\Backup\Data\)"}, {R"(C:\Data\Backup2\)"}, {R"(C:\Data\x\)"}});
    options.leftOut = {R"(C:\data\BACKUP)", R"(C:\data\x\Second)"};
    machine.Seed({{R"(C:\Data\x\second\below\)"}});
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Backup2)", R"(C:\Data\x)"));
    machine.MakeLink(R"(C:\Data\x\in)", R"(C:\Data\Backup\Data)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Backup2)", R"(C:\Data\x)"));
}

TEST_F(FolderScanTest, FortyThousandFoldersInOne) {
    machine.faults.KeepJournal(false);
    for (int i = 0; i < 40'000; ++i) {
        machine.Seed({R"(C:\Data\f)" + std::to_string(i) + "\\"});
    }
    EXPECT_EQ(Scan(R"(C:\Data)").size(), 40'000U);
}

TEST_F(FolderScanTest, ATreePastFourThousandCharactersIsScannedToItsEnd) {
    std::string path = R"(C:\Data)";
    int folders = 0;
    while (path.size() < 4200) {
        path += R"(\abcdefg)";
        ++folders;
    }
    machine.Seed({path + "\\"});
    const std::vector<std::string> found = Scan(R"(C:\Data)");
    EXPECT_EQ(found.size(), static_cast<std::size_t>(folders));
    EXPECT_EQ(found.back(), path);
}

TEST_F(FolderScanTest, FilesAreHandedOnForTheCopying) {
    machine.Seed({{R"(C:\Data\a.txt)", "one"}, {R"(C:\Data\Sub\b.txt)", "two2"}});
    Scan(R"(C:\Data)");
    ASSERT_TRUE(scan.folders[0].files.has_value());
    ASSERT_EQ(scan.folders[0].files->size(), 1U);
    EXPECT_EQ(scan.folders[0].files->front().name, "a.txt");
    EXPECT_EQ(scan.folders[0].files->front().size, 3U);
    ASSERT_TRUE(scan.folders[1].files.has_value());
    EXPECT_EQ(scan.folders[1].files->front().name, "b.txt");
}

TEST_F(FolderScanTest, WhatThereIsNoRoomForIsNotKept) {
    machine.Seed({{R"(C:\Data\a.txt)", "1"}, {R"(C:\Data\b.txt)", "2"}, {R"(C:\Data\Sub\c.txt)", "3"}});
    options.entriesKept = 2;
    Scan(R"(C:\Data)");
    EXPECT_TRUE(scan.folders[0].files.has_value());
    EXPECT_FALSE(scan.folders[1].files.has_value());
}

TEST_F(FolderScanTest, AListingThatBreaksOffIsReportedAndItsFilesAreNotKept) {
    machine.Seed({{R"(C:\Data\a.txt)", "1"}, {R"(C:\Data\Sub\)"}});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "FindNext" && step.path.starts_with(R"(C:\Data\*)") ? error::ioDevice : error::success;
    });
    Scan(R"(C:\Data)");
    ASSERT_EQ(scan.unlisted.size(), 1U);
    EXPECT_EQ(scan.unlisted[0].path, R"(C:\Data)");
    EXPECT_EQ(scan.unlisted[0].code, error::ioDevice);
    EXPECT_FALSE(scan.folders[0].files.has_value());
}

TEST(TrimAtNullTest, TheTextUpToItsFirstZero) {
    EXPECT_EQ(TrimAtNull("plain"), "plain");
    EXPECT_EQ(TrimAtNull(std::string_view("ab\0cd", 5)), "ab");
    EXPECT_EQ(TrimAtNull(std::string_view("\0", 1)), "");
    EXPECT_EQ(TrimAtNull(""), "");
}

}  // namespace
}  // namespace marlok::test
