#include "tests/unit/MainWindowFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* noFiles = "               No Files Selected";

class FilesTabTest : public MainWindowFixture {
 protected:
    FilesTabTest() {
        machine.Seed({{R"(C:\Data\a.doc)", "a"},
                      {R"(C:\Data\b.doc)", "b"},
                      {R"(C:\Data\c.doc)", "c"},
                      {R"(C:\Data\Sub\)"},
                      {R"(C:\Music\)"}});
        UseSources({R"(C:\Data\b.doc)"});
    }

    void UseSources(const Lines& sources) { Configure(machine, {{R"(E:\Save)", sources}, {R"(E:\Other)", {}}}); }

    ui::frmSSTab& OpenTab() { return OpenAt(ui::tab::filesToBackup); }

    static void Mark(ui::frmSSTab& window, const std::vector<int>& lines) {
        window.List4.UserSelected(lines.back(), lines);
    }

    static constexpr std::uint32_t threeButtons = messagestyle::abortRetryIgnore | messagestyle::information;
};

TEST_F(FilesTabTest, EnteringItShowsTheFirstLocationsSources) {
    const ui::frmSSTab& window = OpenTab();
    EXPECT_THAT(window.List9.Items(), ElementsAre(R"(E:\Save)", R"(E:\Other)"));
    EXPECT_EQ(window.List9.ListIndex(), 0);
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)"));
    EXPECT_TRUE(window.List4.Visible);
    EXPECT_FALSE(window.Command4.Enabled);
    EXPECT_FALSE(window.Command18.Enabled);
}

TEST_F(FilesTabTest, EnteringItWithoutLocationsShowsThePlaceholder) {
    Configure(machine, {});
    EXPECT_THAT(OpenTab().List9.Items(), ElementsAre(noFiles));
}

TEST_F(FilesTabTest, ALocationWithoutSourcesShowsThePlaceholder) {
    ui::frmSSTab& window = OpenTab();
    window.List9.UserSelected(1, {1});
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
}

TEST_F(FilesTabTest, PickingNothingIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.List9.UserSelected(-1, {});
    ExpectMessage("You Must Select a Backup Location First", information);
    EXPECT_THAT(window.List4.Items(), IsEmpty());
}

TEST_F(FilesTabTest, ClicksSayWhatWillBeAdded) {
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(0, {0});
    EXPECT_EQ(window.Command4.Caption.Get(), "Add File To List");
    EXPECT_TRUE(window.Command4.Enabled);
    window.Dir2.UserSelected(0, {0});
    EXPECT_EQ(window.Command4.Caption.Get(), "Add Folder To List");
    window.File2.UserSelected(0, {0});
    window.Drive2.SetDrive("E:\\");
    EXPECT_EQ(window.Command4.Caption.Get(), "Add Folder To List");
    EXPECT_EQ(window.Dir2.Path(), "E:\\");
    EXPECT_EQ(window.File2.Path(), "E:\\");
}

TEST_F(FilesTabTest, TheMarkedFolderIsAddedAndStored) {
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    const int sub = window.Dir2.ListCount() - 1;
    window.Dir2.UserSelected(sub, {sub});
    window.Command4.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)", R"(C:\Data\Sub)"));
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data\b.doc)", R"(SourcePath3=C:\Data\Sub)"));
}

TEST_F(FilesTabTest, ADriveRootIsAddedAsItIsListed) {
    ui::frmSSTab& window = OpenTab();
    window.Dir2.UserSelected(0, {0});
    window.Command4.Click();
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data\b.doc)", R"(SourcePath3=C:\)"));
}

TEST_F(FilesTabTest, AFolderThatIsListedIsRefused) {
    UseSources({R"(C:\Data)"});
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.Command4.Click();
    ExpectMessage(R"(C:\Data Has Already Been Selected)", information);
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data)"));
}

TEST_F(FilesTabTest, SeveralFilesAreAddedAtOnce) {
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(2, {0, 2});
    window.Command4.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)", R"(C:\Data\a.doc)", R"(C:\Data\c.doc)"));
    EXPECT_THAT(Stored("Save"), SizeIs(3));
}

TEST_F(FilesTabTest, AFileThatIsListedStopsTheAddingAndNothingIsStored) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(2, {0, 1, 2});
    window.Command4.Enabled = false;
    window.Command4.Click();
    ExpectMessage(R"(C:\Data\b.doc Has Already Been Selected)", information);
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)", R"(C:\Data\a.doc)"));
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data\b.doc)"));
    EXPECT_TRUE(window.Command4.Enabled);
}

TEST_F(FilesTabTest, WhatWasLeftUnstoredIsStoredWithTheNextOne) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(1, {0, 1});
    window.Command4.Click();
    window.File2.UserSelected(2, {2});
    window.Command4.Click();
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data\b.doc)", R"(SourcePath3=C:\Data\a.doc)",
                                            R"(SourcePath4=C:\Data\c.doc)"));
}

TEST_F(FilesTabTest, AddingASingleFileMakesTheFolderThatItsCopyWillLieIn) {
    machine.Seed({{R"(E:\Save\)"}});
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(0, {0});
    window.Command4.Click();
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_EQ(RunUnattended(machine, "C Save"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "a");
}

TEST_F(FilesTabTest, AFolderThatCannotBeMadeForASingleFileIsSaid) {
    machine.Seed({{R"(E:\Save\Data)", "a file in its place"}});
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(0, {0});
    window.Command4.Click();
    EXPECT_THAT(LastMessage(), testing::StartsWith("E:\\Save\\Data\r\n\r\n Could Not Be Created"));
    EXPECT_THAT(Stored("Save"), SizeIs(2));
}

TEST_F(FilesTabTest, WhereTheLocationCannotBeReachedNoFolderIsMadeForASingleFile) {
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data)");
    window.File2.UserSelected(0, {0});
    window.Command4.Click();
    EXPECT_FALSE(machine.Exists(R"(E:\Save)")) << "another disk may have the letter";
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(FilesTabTest, ASecondOriginalOfOneSavedPathIsAddedAndThatIsSaid) {
    machine.Seed({{R"(D:\Data\a.doc)", "another a"}});
    UseSources({R"(C:\Data)", R"(C:\Music)"});
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(D:\Data)");
    window.Command4.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_THAT(LastMessage(),
                testing::StartsWith("D:\\Data\r\nAnd C:\\Data\r\nAre Saved In The Same Place: E:\\Save\\Data"));
    EXPECT_THAT(Stored("Save"), SizeIs(3)) << "it is added all the same";
}

TEST_F(FilesTabTest, AFolderInsideASourceIsSavedInItsOwnPlace) {
    UseSources({R"(C:\Data)"});
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Data\Sub)");
    window.Command4.Click();
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
    EXPECT_THAT(Stored("Save"), SizeIs(2));
}

TEST_F(FilesTabTest, AFileOfADriveRootHasOneBackslash) {
    machine.Seed({{R"(C:\root.txt)", "r"}});
    ui::frmSSTab& window = OpenTab();
    window.File2.Refresh();
    window.File2.UserSelected(0, {0});
    window.Command4.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)", R"(C:\root.txt)"));
}

TEST_F(FilesTabTest, AddingToAnEmptyListTakesThePlaceholderAway) {
    ui::frmSSTab& window = OpenTab();
    window.List9.UserSelected(1, {1});
    window.Dir2.SetPath(R"(C:\Music)");
    window.Command4.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Music)"));
    EXPECT_THAT(Stored("Other"), ElementsAre(R"(SourcePath2=C:\Music)"));
}

TEST_F(FilesTabTest, AddingWithoutALocationIsRefused) {
    machine.desktop.Answer(button::ok);
    Configure(machine, {});
    ui::frmSSTab& window = OpenTab();
    window.Command4.Click();
    ExpectMessage("You Must Select A Target Path First", messagestyle::ok);
}

TEST_F(FilesTabTest, AnyOtherCaptionStoresTheListAsItIs) {
    ui::frmSSTab& window = OpenTab();
    window.List4.AddItem(R"(C:\Music)");
    window.Command4.Caption = std::string("Something");
    window.Command4.Click();
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data\b.doc)", R"(SourcePath3=C:\Music)"));
}

TEST_F(FilesTabTest, AClickOnASourceEnablesItsRemoval) {
    ui::frmSSTab& window = OpenTab();
    Mark(window, {0});
    EXPECT_TRUE(window.Command18.Enabled);
    window.List9.UserSelected(1, {1});
    EXPECT_FALSE(window.Command18.Enabled);
}

TEST_F(FilesTabTest, RemovingAsksTwice) {
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::ignore);
    ui::frmSSTab& window = OpenTab();
    Mark(window, {0});
    window.Command18.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(2));
    const ShownMessage& first = machine.desktop.Messages().front();
    EXPECT_EQ(first.text, "This Will Remove Selected File From Lower List, Continue?");
    EXPECT_EQ(first.style, question);
    EXPECT_EQ(first.title, "Marlok Info.....");
    const ShownMessage& second = machine.desktop.Messages().back();
    EXPECT_EQ(second.text, "Do You Want To Delete The Saved File, or Only The List Entry?");
    EXPECT_EQ(second.style, threeButtons);
    EXPECT_EQ(second.title, "Marlok Backup Utility");
    ASSERT_THAT(second.captions, SizeIs(3));
    EXPECT_EQ(second.captions[1].caption, "File Also");
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data\b.doc)")) << "cancelled";
    EXPECT_FALSE(window.Command18.Enabled);
}

TEST_F(FilesTabTest, NoEndsTheRemoval) {
    machine.desktop.Answer(button::no);
    ui::frmSSTab& window = OpenTab();
    Mark(window, {0});
    window.Command18.Click();
    EXPECT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_FALSE(window.Command18.Enabled);
    EXPECT_THAT(Stored("Save"), SizeIs(1));
}

TEST_F(FilesTabTest, RemovingWithoutALocationIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.List9.Clear();
    window.Command18.Click();
    ExpectMessage("You Must Select a Backup Path First", information);
    EXPECT_FALSE(window.Command18.Enabled);
}

TEST_F(FilesTabTest, OnlyEntryTakesTheMarkedOnesOffTheList) {
    UseSources({R"(C:\Data)", R"(C:\Music)", R"(C:\Data\c.doc)"});
    machine.Seed({{R"(E:\Save\Music\m.mp3)", "saved"}});
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::abort);
    ui::frmSSTab& window = OpenTab();
    Mark(window, {1, 2});
    window.Command18.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data)"));
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Music\m.mp3)")) << "the saved copies stay";
}

TEST_F(FilesTabTest, OnlyEntryOfAllLeavesThePlaceholderAndAnEmptySection) {
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::abort);
    ui::frmSSTab& window = OpenTab();
    Mark(window, {0});
    window.Command18.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
    EXPECT_THAT(Stored("Save"), IsEmpty());
}

TEST_F(FilesTabTest, RemovingThePlaceholderStoresNothing) {
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::abort);
    ui::frmSSTab& window = OpenTab();
    window.List9.UserSelected(1, {1});
    Mark(window, {0});
    window.Command18.Click();
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
    EXPECT_THAT(Stored("Other"), IsEmpty());
}

TEST_F(FilesTabTest, FileAlsoTakesTheSavedCopyToo) {
    machine.Seed({{R"(E:\Save\Data\b.doc)", "saved"}, {R"(E:\Save\Data\a.doc)", "saved too"}});
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::retry);
    ui::frmSSTab& window = OpenTab();
    Mark(window, {0});
    window.Command18.Click();
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\b.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(C:\Data\b.doc)"));
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
}

TEST_F(FilesTabTest, LocationsThatDifferOnlyInTheirDriveEditOneList) {
    Configure(machine, {{R"(C:\Bak)", {}}, {R"(E:\Bak)", {}}});
    ui::frmSSTab& window = OpenTab();
    window.Dir2.SetPath(R"(C:\Music)");
    window.Command4.Click();
    window.List9.UserSelected(1, {1});
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Music)"));
}

}  // namespace
}  // namespace marlok::test
