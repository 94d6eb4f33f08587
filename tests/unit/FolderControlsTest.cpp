#include "forms/FolderControls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/Windows.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class FolderControlsTest : public testing::Test {
 protected:
    FolderControlsTest() {
        drive.Change = [this] { ++driveChanges; };
        folders.Change = [this] { ++folderChanges; };
        folders.Click = [this] { ++folderClicks; };
        folders.DblClick = [this] { ++folderDoubleClicks; };
    }

    void TearDown() override { EXPECT_EQ(machine.Leaks(), ""); }

    /// The drives of the machine: C: without a name, D: an optical drive, E: a removable disk with a name.
    static InMemoryMachine& WithDrives(InMemoryMachine& machine) {
        machine.AddDrive('D', {.kind = Drive::Kind::optical});
        machine.AddDrive('E', {.kind = Drive::Kind::removable, .volumeName = "Safe"});
        return machine;
    }

    /// Highlights a line of the folder list as the user does.
    void ClickFolder(int line) { folders.UserSelected(line, {line}); }

    InMemoryMachine machine;
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
    forms::Form form{windows, "Form", ""};
    forms::DriveListBox drive{form, "Drive1", WithDrives(machine).drives};
    forms::DirListBox folders{form, "Dir1", machine.files};
    forms::FileListBox listed{form, "File1", machine.files};
    int driveChanges = 0;
    int folderChanges = 0;
    int folderClicks = 0;
    int folderDoubleClicks = 0;
};

TEST_F(FolderControlsTest, EveryDriveHasALineInTheOrderOfTheLetters) {
    EXPECT_THAT(drive.Items(), ElementsAre(StartsWith("C:"), StartsWith("D:"), StartsWith("E:")));
}

TEST_F(FolderControlsTest, ADrivesLineTellsItsName) {
    ASSERT_THAT(drive.Items(), SizeIs(3));
    EXPECT_THAT(drive.Items()[2], HasSubstr("[Safe]"));
}

TEST_F(FolderControlsTest, TheLineOfADriveWithoutANameTellsItsKind) {
    machine.AddDrive('A', {.kind = Drive::Kind::removable});
    machine.AddDrive('N', {.kind = Drive::Kind::network});
    machine.AddDrive('R', {.kind = Drive::Kind::memory});
    machine.AddDrive('U', {.kind = Drive::Kind::unknown});
    machine.AddDrive('E', {.kind = Drive::Kind::fixed});
    drive.Refresh();
    EXPECT_THAT(drive.Items(), ElementsAre("A: (removable disk)", "C: (local disk)", "D: (optical drive)",
                                           "E: (local disk)", "N: (network drive)", "R: (memory disk)", "U: (drive)"));
}

TEST_F(FolderControlsTest, NoDriveIsChosenAtFirst) {
    EXPECT_EQ(drive.Drive(), "");
    EXPECT_EQ(drive.ListIndex(), -1);
}

TEST_F(FolderControlsTest, ANewDriveAppearsWhenTheListIsRefreshed) {
    machine.AddDrive('F');
    EXPECT_THAT(drive.Items(), SizeIs(3));
    drive.Refresh();
    EXPECT_THAT(drive.Items(), SizeIs(4));
}

TEST_F(FolderControlsTest, ADriveThatIsGoneDisappearsWhenTheListIsRefreshed) {
    drive.SetDrive("E:\\");
    machine.RemoveDrive('E');
    drive.Refresh();
    EXPECT_THAT(drive.Items(), SizeIs(2));
    EXPECT_EQ(drive.ListIndex(), -1);
    EXPECT_EQ(drive.Drive(), "E:\\") << "it stays chosen until another one is";
}

TEST_F(FolderControlsTest, RefreshingFiresNoChange) {
    drive.SetDrive("E:\\");
    driveChanges = 0;
    machine.AddDrive('A');
    drive.Refresh();
    EXPECT_EQ(driveChanges, 0);
    EXPECT_EQ(drive.ListIndex(), 3) << "the line moves, the drive does not";
}

TEST_F(FolderControlsTest, ChoosingADriveFiresChangeOnce) {
    drive.SetDrive("E:\\");
    drive.SetDrive("e:\\");
    EXPECT_EQ(driveChanges, 1);
    EXPECT_EQ(drive.Drive(), "E:\\");
    EXPECT_EQ(drive.ListIndex(), 2);
}

TEST_F(FolderControlsTest, ADriveCanBeChosenQuietly) {
    drive.SetDriveQuietly("E:\\");
    EXPECT_EQ(driveChanges, 0);
    EXPECT_EQ(drive.Drive(), "E:\\");
}

TEST_F(FolderControlsTest, ADriveThatDoesNotExistCanBeChosenAndHasNoLine) {
    drive.SetDrive("Z:\\");
    EXPECT_EQ(driveChanges, 1);
    EXPECT_EQ(drive.Drive(), "Z:\\");
    EXPECT_EQ(drive.ListIndex(), -1);
}

TEST_F(FolderControlsTest, TheUserChoosesADriveByItsLine) {
    drive.UserChose(1);
    EXPECT_EQ(drive.Drive(), "D:\\");
    EXPECT_EQ(driveChanges, 1);
    drive.UserChose(1);
    EXPECT_EQ(driveChanges, 1) << "it was the chosen one already";
}

TEST_F(FolderControlsTest, ALineWithoutADriveChoosesNothing) {
    drive.UserChose(-1);
    drive.UserChose(3);
    EXPECT_EQ(drive.Drive(), "");
    EXPECT_EQ(driveChanges, 0);
}

TEST_F(FolderControlsTest, ADrivesRootShowsItsFoldersIndented) {
    machine.Seed({{R"(E:\Data\)"}, {R"(E:\Art\)"}, {R"(E:\a file.txt)", "x"}});
    folders.SetPath("E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Art", "   Data"));
    EXPECT_EQ(folders.Path(), "E:\\");
}

TEST_F(FolderControlsTest, EveryFolderOnTheWayHasALineOfItsOwn) {
    machine.Seed({{R"(E:\Data\Letters\2004\)"}, {R"(E:\Data\Letters\2003\)"}, {R"(E:\Data\Other\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data", "      Letters", "         2003", "         2004"));
}

TEST_F(FolderControlsTest, TheOpenFolderIsHighlighted) {
    machine.Seed({{R"(E:\Data\Letters\2004\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    EXPECT_EQ(folders.ListIndex(), 2);
    EXPECT_EQ(folders.Highlighted(), R"(E:\Data\Letters)");
    EXPECT_EQ(folderClicks, 0) << "nobody has clicked";
}

TEST_F(FolderControlsTest, AFolderWithAShortNameIsOnTheWayToo) {
    machine.Seed({{R"(E:\a\b\)"}});
    folders.SetPath(R"(E:\a\b)");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   a", "      b"));
}

TEST_F(FolderControlsTest, AnyLineOnTheWayStandsForItsFolder) {
    machine.Seed({{R"(E:\Data\Letters\2004\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    const std::vector<std::string> paths{"E:\\", R"(E:\Data)", R"(E:\Data\Letters)", R"(E:\Data\Letters\2004)"};
    for (int line = 0; line < 4; ++line) {
        ClickFolder(line);
        EXPECT_EQ(folders.Highlighted(), paths[static_cast<std::size_t>(line)]);
    }
    EXPECT_EQ(folders.Path(), R"(E:\Data\Letters)") << "a click highlights and opens nothing";
    EXPECT_EQ(folderChanges, 1);
    EXPECT_EQ(folderClicks, 4);
}

TEST_F(FolderControlsTest, WithoutAHighlightedLineTheOpenFolderCounts) {
    machine.Seed({{R"(E:\Data\)"}});
    folders.SetPath(R"(E:\Data)");
    folders.SetListIndex(-1);
    EXPECT_EQ(folders.Highlighted(), R"(E:\Data)");
}

TEST_F(FolderControlsTest, TheSharesFolderIsTheRootOfANetworkPath) {
    machine.Seed({{R"(\\server\share\Data\Inner\)"}});
    folders.SetPath(R"(\\server\share\Data)");
    ASSERT_EQ(folders.ListCount(), 3);
    EXPECT_THAT(folders.List(0), HasSubstr("share"));
    EXPECT_EQ(folders.List(1), "   Data");
    EXPECT_EQ(folders.List(2), "      Inner");
    ClickFolder(0);
    EXPECT_EQ(folders.Highlighted(), R"(\\server\share)");
    ClickFolder(2);
    EXPECT_EQ(folders.Highlighted(), R"(\\server\share\Data\Inner)");
}

TEST_F(FolderControlsTest, ADeepPathShowsEveryLevel) {
    constexpr std::size_t levels = 60;
    std::string path = "E:";
    for (std::size_t level = 0; level < levels; ++level) {
        path += R"(\a folder of this level)";
    }
    machine.Seed({{path + "\\"}});
    folders.SetPath(path);
    ASSERT_THAT(folders.Items(), SizeIs(levels + 1));
    EXPECT_EQ(folders.Items().back(), std::string(3 * levels, ' ') + "a folder of this level");
    EXPECT_EQ(folders.Highlighted(), path);
}

TEST_F(FolderControlsTest, AFolderThatCannotBeListedShowsNothingBelowIt) {
    machine.Seed({{R"(E:\Private\Inner\)"}});
    machine.Deny(R"(E:\Private)");
    folders.SetPath(R"(E:\Private)");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Private"));
    EXPECT_EQ(folderChanges, 1);
}

TEST_F(FolderControlsTest, ADriveThatIsNotReadyShowsItsRootAlone) {
    machine.Seed({{R"(E:\Data\)"}});
    machine.SetDriveFailure("E:", error::notReady);
    folders.SetPath("E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\"));
}

TEST_F(FolderControlsTest, WhatTheSystemProtectsIsLeftOut) {
    machine.Seed({{R"(E:\Data\)"},
                  {R"(E:\System Volume Information\)", "", {}, attribute::hidden | attribute::system},
                  {R"(E:\pagefile.sys)", "p", {}, attribute::hidden | attribute::system}});
    folders.SetPath("E:\\");
    listed.SetPath("E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data"));
    EXPECT_THAT(listed.Items(), IsEmpty());
}

TEST_F(FolderControlsTest, WhatIsOnlyHiddenOrOnlyOfTheSystemIsShown) {
    machine.Seed({{R"(E:\Hidden\)", "", {}, attribute::hidden},
                  {R"(E:\System\)", "", {}, attribute::system},
                  {R"(E:\hidden.txt)", "h", {}, attribute::hidden},
                  {R"(E:\system.txt)", "s", {}, attribute::system}});
    folders.SetPath("E:\\");
    listed.SetPath("E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Hidden", "   System"));
    EXPECT_THAT(listed.Items(), ElementsAre("hidden.txt", "system.txt"));
}

TEST_F(FolderControlsTest, FoldersAreSortedWithoutRegardToLetterCase) {
    machine.AddDrive('E', {.listsInCreationOrder = true});
    machine.Seed({{R"(E:\beta\)"}, {R"(E:\Gamma\)"}, {R"(E:\Alpha\)"}, {"E:\\\u00E4pfel\\"}, {"E:\\\u00C4rger\\"}});
    folders.SetPath("E:\\");
    EXPECT_THAT(folders.Items(),
                ElementsAre("E:\\", "   Alpha", "   beta", "   Gamma", "   \u00E4pfel", "   \u00C4rger"));
}

TEST_F(FolderControlsTest, OpeningAnotherFolderFiresChangeOnce) {
    machine.Seed({{R"(E:\Data\)"}});
    folders.SetPath(R"(E:\Data)");
    folders.SetPath(R"(E:\Data)");
    EXPECT_EQ(folderChanges, 1);
}

TEST_F(FolderControlsTest, OpeningTheSameFolderAgainListsItAnew) {
    machine.Seed({{R"(E:\Data\)"}});
    folders.SetPath(R"(E:\Data)");
    machine.Seed({{R"(E:\Data\Later\)"}});
    folders.SetPath(R"(E:\Data)");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data", "      Later"));
}

TEST_F(FolderControlsTest, RefreshShowsWhatHasBeenCreatedAndDeleted) {
    machine.Seed({{R"(E:\Data\Old\)"}});
    folders.SetPath(R"(E:\Data)");
    machine.Remove(R"(E:\Data\Old)");
    machine.Seed({{R"(E:\Data\New\)"}});
    folders.Refresh();
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data", "      New"));
    EXPECT_EQ(folderChanges, 1);
}

TEST_F(FolderControlsTest, RefreshClimbsToTheNearestFolderThatIsStillThere) {
    machine.Seed({{R"(E:\Data\Letters\2004\May\)"}});
    folders.SetPath(R"(E:\Data\Letters\2004\May)");
    machine.Remove(R"(E:\Data\Letters)");
    folders.Refresh();
    EXPECT_EQ(folders.Path(), R"(E:\Data)");
    EXPECT_EQ(folders.Highlighted(), R"(E:\Data)");
    EXPECT_EQ(folderChanges, 2);
}

TEST_F(FolderControlsTest, RefreshDoesNotTakeAFileForTheFolderThatIsGone) {
    machine.Seed({{R"(E:\Data\Letters\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    machine.Remove(R"(E:\Data\Letters)");
    machine.Seed({{R"(E:\Data\Letters)", "a file now"}});
    folders.Refresh();
    EXPECT_EQ(folders.Path(), R"(E:\Data)");
}

TEST_F(FolderControlsTest, WhenTheDriveIsGoneRefreshEndsAtItsRoot) {
    machine.Seed({{R"(E:\Data\Letters\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    machine.RemoveDrive('E');
    folders.Refresh();
    EXPECT_EQ(folders.Path(), "E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\"));
}

TEST_F(FolderControlsTest, WithoutAnOpenFolderRefreshDoesNothing) {
    folders.Refresh();
    EXPECT_THAT(folders.Items(), IsEmpty());
    EXPECT_EQ(folders.Highlighted(), "");
    EXPECT_EQ(folderChanges, 0);
}

TEST_F(FolderControlsTest, ADoubleClickOpensTheHighlightedFolder) {
    machine.Seed({{R"(E:\Data\Letters\2004\)"}});
    folders.SetPath(R"(E:\Data)");
    ClickFolder(2);
    folders.UserOpened();
    EXPECT_EQ(folders.Path(), R"(E:\Data\Letters)");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data", "      Letters", "         2004"));
    EXPECT_EQ(folderChanges, 2);
    EXPECT_EQ(folderDoubleClicks, 1);
}

TEST_F(FolderControlsTest, ADoubleClickOnAFolderOnTheWayGoesBackToIt) {
    machine.Seed({{R"(E:\Data\Letters\)"}, {R"(E:\Other\)"}});
    folders.SetPath(R"(E:\Data\Letters)");
    ClickFolder(0);
    folders.UserOpened();
    EXPECT_EQ(folders.Path(), "E:\\");
    EXPECT_THAT(folders.Items(), ElementsAre("E:\\", "   Data", "   Other"));
}

TEST_F(FolderControlsTest, TheFilesOfAFolderAreSortedByNameAndItsFoldersLeftOut) {
    machine.AddDrive('E', {.listsInCreationOrder = true});
    machine.Seed(
        {{R"(E:\Data\b.txt)", "b"}, {R"(E:\Data\C.txt)", "c"}, {R"(E:\Data\A.txt)", "a"}, {R"(E:\Data\Sub\)"}});
    listed.SetPath(R"(E:\Data)");
    EXPECT_THAT(listed.Items(), ElementsAre("A.txt", "b.txt", "C.txt"));
}

TEST_F(FolderControlsTest, AFolderWithoutFilesShowsNone) {
    machine.Seed({{R"(E:\Data\)"}});
    listed.SetPath(R"(E:\Data)");
    EXPECT_THAT(listed.Items(), IsEmpty());
    listed.SetPath(R"(E:\Gone)");
    EXPECT_THAT(listed.Items(), IsEmpty());
}

TEST_F(FolderControlsTest, SeveralFilesCanBeSelected) {
    machine.Seed({{R"(E:\a.txt)", "a"}, {R"(E:\b.txt)", "b"}, {R"(E:\c.txt)", "c"}});
    listed.SetPath("E:\\");
    listed.UserSelected(2, {0, 2});
    EXPECT_TRUE(listed.Selected(0));
    EXPECT_FALSE(listed.Selected(1));
    EXPECT_TRUE(listed.Selected(2));
}

TEST_F(FolderControlsTest, RefreshingTheFilesLosesTheSelection) {
    machine.Seed({{R"(E:\a.txt)", "a"}, {R"(E:\b.txt)", "b"}});
    listed.SetPath("E:\\");
    listed.UserSelected(1, {1});
    machine.Seed({{R"(E:\aa.txt)", "aa"}});
    listed.Refresh();
    EXPECT_THAT(listed.Items(), ElementsAre("a.txt", "aa.txt", "b.txt"));
    for (int line = 0; line < listed.ListCount(); ++line) {
        EXPECT_FALSE(listed.Selected(line)) << line;
    }
    EXPECT_EQ(listed.ListIndex(), -1);
}

TEST_F(FolderControlsTest, ShowingTheSameFolderAgainKeepsTheSelection) {
    machine.Seed({{R"(E:\a.txt)", "a"}});
    listed.SetPath("E:\\");
    listed.UserSelected(0, {0});
    listed.SetPath("E:\\");
    EXPECT_TRUE(listed.Selected(0));
}

TEST_F(FolderControlsTest, WithoutAFolderThereAreNoFiles) {
    listed.Refresh();
    EXPECT_THAT(listed.Items(), IsEmpty());
}

}  // namespace
}  // namespace marlok::test
