#include "tests/unit/MainWindowFixture.h"
#include "ui/frmReplace.h"

namespace marlok::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr std::uint32_t confirmation = messagestyle::okCancel | messagestyle::information;

class ReviewTabTest : public MainWindowFixture {
 protected:
    ReviewTabTest() {
        machine.Seed({{R"(E:\Save\Data\a.doc)", "saved a", At(8, 0)},
                      {R"(E:\Save\Data\Sub\b.txt)", "saved b", At(8, 0)},
                      {R"(E:\Save\Music\m.mp3)", "saved m", At(8, 0)},
                      {R"(C:\Data\a.doc)", "now a", At(10, 0)}});
        WriteList("C:\\Data\\a.doc\r\nC:\\Data\\Sub\\b.txt\r\nD:\\Music\\m.mp3\r\n");
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\Other)", {R"(C:\Data)"}}});
        machine.AddDrive('D');
    }

    void WriteList(const std::string& text) { machine.Seed({{Beside("Save.txt"), text}}); }

    ui::frmSSTab& OpenTab() { return OpenAt(ui::tab::reviewSaved); }

    /// Lists the saved files, marks those lines and presses "Replace Selected Files", answering OK to the question.
    ui::frmSSTab& Replace(const std::vector<int>& lines) {
        ui::frmSSTab& window = OpenTab();
        window.Command13.Click();
        window.List6.UserSelected(lines.back(), lines);
        machine.desktop.Answer(button::ok);
        window.Command13.Click();
        return window;
    }

    ui::frmReplace* Replacement() { return program.windows.Find<ui::frmReplace>(); }

    void FinishReplacement() {
        WaitFor(machine, program, [this] { return Replacement() == nullptr || !Replacement()->Timer1.Running(); });
    }
};

TEST_F(ReviewTabTest, EnteringItListsTheLocationsAndIsReadyToList) {
    const ui::frmSSTab& window = OpenTab();
    EXPECT_THAT(window.List5.Items(), ElementsAre(R"(E:\Save)", R"(E:\Other)"));
    EXPECT_EQ(window.List5.ListIndex(), 0);
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    EXPECT_TRUE(window.Command13.Enabled);
    EXPECT_TRUE(window.Command16.Enabled);
    EXPECT_FALSE(window.Command17.Enabled);
}

TEST_F(ReviewTabTest, SavedFilesAreListedAndCounted) {
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(),
                ElementsAre(R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\Sub\b.txt)", R"(E:\Save\Music\m.mp3)"));
    EXPECT_EQ(window.Text1.Text.Get(), "3");
    EXPECT_EQ(window.Text2.Text.Get(), "0.00  Seconds");
    EXPECT_EQ(window.Command13.Caption.Get(), "Replace Selected Files");
    EXPECT_FALSE(window.Command13.Enabled);
    EXPECT_FALSE(window.Command17.Enabled);
    EXPECT_EQ(window.Label5.Caption.Get(), "List of Saved Files");
    EXPECT_EQ(window.Label5.ForeColor.Get(), forms::Rgb(0, 0, 0));
    EXPECT_FALSE(program.session.gShowingOriginals);
    window.List6.UserSelected(0, {0});
    EXPECT_TRUE(window.Command13.Enabled);
    EXPECT_TRUE(window.Command17.Enabled);
}

TEST_F(ReviewTabTest, WhileItListsItSaysSoInRed) {
    ui::frmSSTab& window = OpenTab();
    std::string heading;
    forms::Colour colour = 0;
    machine.faults.BeforeStep([&](const auto&) {
        heading = window.Label5.Caption;
        colour = window.Label5.ForeColor;
    });
    window.Command13.Click();
    machine.faults.BeforeStep({});
    EXPECT_EQ(heading, "Working Please Wait");
    EXPECT_EQ(colour, forms::Rgb(192, 0, 0));
}

TEST_F(ReviewTabTest, AnEmptyLocationShowsThePlaceholder) {
    machine.Seed({{R"(E:\Other\)"}});
    ui::frmSSTab& window = OpenTab();
    window.List5.UserSelected(1, {1});
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(std::string(30, ' ') + "No Files In Backup Folder"));
    EXPECT_EQ(window.Text1.Text.Get(), "0");
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    EXPECT_TRUE(window.Command13.Enabled);
}

TEST_F(ReviewTabTest, ChoosingALocationStartsAnew) {
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List5.UserSelected(1, {1});
    EXPECT_THAT(window.List6.Items(), IsEmpty());
    EXPECT_EQ(window.Text1.Text.Get(), "");
    EXPECT_EQ(window.Text2.Text.Get(), "");
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    EXPECT_TRUE(window.Command13.Enabled);
    EXPECT_TRUE(window.Command16.Enabled);
    EXPECT_FALSE(window.Command17.Enabled);
}

TEST_F(ReviewTabTest, WithoutALocationNothingIsListedAndNothingDeleted) {
    Configure(machine, {});
    const test::Tree before = machine.Tree("C:\\");
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    ui::frmSSTab& window = OpenTab();
    window.Command13.Enabled = true;
    window.Command13.Click();
    EXPECT_EQ(LastMessage(), "You Must Select a Backup Location First");
    EXPECT_THAT(window.List6.Items(), IsEmpty()) << "not the files of the current drive";
    window.Command16.Click();
    EXPECT_THAT(window.List6.Items(), IsEmpty());
    window.List6.AddItem(R"(\Data\a.doc)");
    window.List6.UserSelected(0, {0});
    window.Command17.Click();
    EXPECT_EQ(machine.Tree("C:\\"), before);
    EXPECT_TRUE(window.IsVisible());
}

TEST(ReviewCounters, HaveThousandsAndTwoDecimals) {
    EXPECT_EQ(ui::WithThousands(0), "0");
    EXPECT_EQ(ui::WithThousands(999), "999");
    EXPECT_EQ(ui::WithThousands(1000), "1,000");
    EXPECT_EQ(ui::WithThousands(1'234'567), "1,234,567");
    EXPECT_EQ(ui::ElapsedSeconds(1000, 2500), "1.50  Seconds");
    EXPECT_EQ(ui::ElapsedSeconds(0, 0), "0.00  Seconds");
    EXPECT_EQ(ui::ElapsedSeconds(0, 61'239), "61.24  Seconds");
}

TEST_F(ReviewTabTest, OriginalPathsAreShownInTheOrderOfTheFile) {
    ui::frmSSTab& window = OpenTab();
    window.Command16.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)", R"(D:\Music\m.mp3)"));
    EXPECT_EQ(window.Text1.Text.Get(), "3");
    EXPECT_EQ(window.Label5.Caption.Get(), "List of Original Path Log");
    EXPECT_TRUE(program.session.gShowingOriginals);
    EXPECT_FALSE(window.Command16.Enabled);
    EXPECT_TRUE(window.Command13.Enabled);
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files") << "from here nothing can be replaced";
    window.List6.UserSelected(0, {0});
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    window.Command13.Click();
    EXPECT_FALSE(program.session.gShowingOriginals);
    EXPECT_TRUE(window.Command16.Enabled);
}

TEST_F(ReviewTabTest, AMissingListOfOriginalPathsShowsThePlaceholder) {
    machine.Remove(Beside("Save.txt"));
    ui::frmSSTab& window = OpenTab();
    window.Command16.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(std::string(35, ' ') + "No Files In Original List"));
    EXPECT_EQ(window.Text1.Text.Get(), "0");
}

TEST_F(ReviewTabTest, TheListOfADeeperLocationLiesInAFolder) {
    Configure(machine, {{R"(E:\Backup\Mine)", {R"(C:\Data)"}}});
    machine.Seed({{Beside(R"(Backup\Mine.txt)"), "C:\\x.doc\r\n"}});
    ui::frmSSTab& window = OpenTab();
    window.Command16.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(R"(C:\x.doc)"));
}

TEST_F(ReviewTabTest, ReplacingWithoutASelectionIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.Command13.Click();
    ExpectMessage("You Have Not Selected Any Files", information);
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(Replacement(), nullptr);
}

TEST_F(ReviewTabTest, CancelReplacesNothing) {
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List6.UserSelected(0, {0});
    machine.desktop.Answer(button::cancel);
    window.Command13.Click();
    ExpectMessage("You Are About To Replace Selected Files", confirmation);
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(Replacement(), nullptr);
}

TEST_F(ReviewTabTest, SelectedFilesGoBackToWhereTheyCameFrom) {
    ui::frmSSTab& window = Replace({0, 2});
    ASSERT_NE(Replacement(), nullptr);
    EXPECT_FALSE(window.IsVisible());
    EXPECT_TRUE(Replacement()->Label3.Visible);
    EXPECT_FALSE(Replacement()->List2.Visible);
    EXPECT_THAT(Replacement()->List2.Items(), ElementsAre(R"(C:\Data\a.doc)", R"(D:\Music\m.mp3)"));
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "saved a");
    EXPECT_EQ(machine.Read(R"(D:\Music\m.mp3)"), "saved m");
    EXPECT_FALSE(machine.Exists(R"(C:\Data\Sub\b.txt)"));
    FinishReplacement();
    EXPECT_THAT(machine.desktop.Messages(), SizeIs(1));
}

TEST_F(ReviewTabTest, ANameInsideALongerLineMatchesThere) {
    WriteList("F:\\Data\\a.doc.bak\r\nG:\\Data\\a.doc.old\r\n");
    machine.AddDrive('F');
    Replace({0});
    EXPECT_THAT(Replacement()->List2.Items(), ElementsAre(R"(F:\Data\a.doc)")) << "the first place in the list counts";
    FinishReplacement();
}

TEST_F(ReviewTabTest, TheLineOfTheFileItselfWinsOverALongerOne) {
    WriteList("F:\\Data\\a.doc.bak\r\nC:\\Data\\a.doc\r\n");
    machine.AddDrive('F');
    Replace({0});
    EXPECT_THAT(Replacement()->List2.Items(), ElementsAre(R"(C:\Data\a.doc)"));
    FinishReplacement();
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "saved a");
}

TEST_F(ReviewTabTest, NeitherOfTwoOriginalsIsReplaced) {
    WriteList("C:\\Data\\a.doc\r\nD:\\Data\\a.doc\r\n");
    machine.Seed({{R"(D:\Data\a.doc)", "the other a"}});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    Replace({0});
    FinishReplacement();
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
    EXPECT_EQ(machine.Read(R"(D:\Data\a.doc)"), "the other a");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(AllOf(StartsWith(R"(E:\Save\Data\a.doc: not replaced)"),
                                                     HasSubstr(R"(C:\Data\a.doc, D:\Data)"))));
}

TEST_F(ReviewTabTest, ALocationThatCannotBeReachedIsNotShownAsEmpty) {
    ui::frmSSTab& window = OpenTab();
    machine.Remove(R"(E:\Other)");
    window.List5.UserSelected(1, {1});
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(AllOf(StartsWith("     "), HasSubstr("Cannot Be Reached"),
                                                        HasSubstr(R"(E:\Other)"), HasSubstr("(error 3)"))));
    EXPECT_EQ(window.Text1.Text.Get(), "0");
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    EXPECT_TRUE(window.Command13.Enabled);
    machine.SetDriveFailure("E:", error::notReady);
    window.List5.UserSelected(0, {0});
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(HasSubstr("Cannot Be Reached")));
    machine.SetDriveFailure("E:", error::success);
    window.Command13.Click();
    EXPECT_EQ(window.List6.ListCount(), 3);
}

TEST_F(ReviewTabTest, AFolderThatCannotBeReadIsNamedAboveTheFiles) {
    machine.Deny(R"(E:\Save\Data\Sub)");
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(),
                ElementsAre(AllOf(StartsWith("     "), HasSubstr(R"(E:\Save\Data\Sub, access was denied)")),
                            R"(E:\Save\Data\a.doc)", R"(E:\Save\Music\m.mp3)"));
    EXPECT_EQ(window.Text1.Text.Get(), "2");
    // The line is no file: it is neither replaced nor deleted.
    window.List6.UserSelected(0, {0});
    window.Command13.Click();
    EXPECT_EQ(LastMessage(), "You Have Not Selected Any Files");
    machine.Deny(R"(E:\Save\Data\Sub)", false);
}

TEST_F(ReviewTabTest, OnlyWhatCannotBeReadLeavesNothingToReplace) {
    machine.Seed({{R"(E:\Other\Shut\x.txt)", "x"}});
    machine.Deny(R"(E:\Other\Shut)");
    ui::frmSSTab& window = OpenTab();
    window.List5.UserSelected(1, {1});
    window.Command13.Click();
    EXPECT_THAT(window.List6.Items(), ElementsAre(HasSubstr(R"(E:\Other\Shut)")));
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    machine.Deny(R"(E:\Other\Shut)", false);
}

TEST_F(ReviewTabTest, TheOnlyFileBeingUnlistedLeavesNoLog) {
    WriteList("C:\\Other.doc\r\n");
    machine.desktop.Answer(button::ok);
    machine.desktop.Answer(button::ok);
    const ui::frmSSTab& window = Replace({0});
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(2));
    EXPECT_EQ(LastMessage(), "E:\\Save\\Data\\a.doc\r\n\r\n Not Listed In Log File");
    EXPECT_EQ(Replacement(), nullptr);
    EXPECT_TRUE(window.IsVisible());
    EXPECT_FALSE(machine.Exists(Beside("Replaced File Log.txt")));
}

TEST_F(ReviewTabTest, TheOnlyFileBeingGoneLeavesNoLog) {
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List6.UserSelected(0, {0});
    machine.Remove(R"(E:\Save\Data\a.doc)");
    machine.desktop.Answer(button::ok);
    machine.desktop.Answer(button::ok);
    window.Command13.Click();
    EXPECT_EQ(LastMessage(), "E:\\Save\\Data\\a.doc\r\n\r\n Not Located In Backup File");
    EXPECT_EQ(Replacement(), nullptr);
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
}

TEST_F(ReviewTabTest, ARunThatEndsUnlistedTellsOfTheUnlistedAlone) {
    WriteList("C:\\Data\\a.doc\r\n");
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List6.UserSelected(1, {0, 1});
    machine.Remove(R"(E:\Save\Data\a.doc)");
    for (int i = 0; i < 4; ++i) {
        machine.desktop.Answer(button::ok);
    }
    window.Command13.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(4));
    EXPECT_THAT(machine.desktop.Messages()[1].text, HasSubstr("Not Located In Backup File"));
    EXPECT_THAT(machine.desktop.Messages()[2].text, HasSubstr("Not Listed In Log File"));
    EXPECT_EQ(LastMessage(), "All Selected Files, With The Exception of 1 Files, Copied");
    FinishReplacement();
    EXPECT_EQ(Replacement()->Label1.Caption.Get(), "0 Files Were Replaced");
}

TEST_F(ReviewTabTest, ARunThatEndsWithAMissingFileTellsOfTheMissingAlone) {
    WriteList("C:\\Data\\Sub\\b.txt\r\n");
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List6.UserSelected(1, {0, 1, 2});
    window.List6.SetSelected(2, false);
    machine.Remove(R"(E:\Save\Data\Sub\b.txt)");
    for (int i = 0; i < 4; ++i) {
        machine.desktop.Answer(button::ok);
    }
    window.Command13.Click();
    EXPECT_EQ(LastMessage(), "All Selected Files, With The Exception of 1 Files, Copied");
    EXPECT_THAT(machine.desktop.Messages()[1].text, HasSubstr("Not Listed In Log File"));
    EXPECT_THAT(machine.desktop.Messages()[2].text, HasSubstr("Not Located In Backup File"));
    FinishReplacement();
}

TEST_F(ReviewTabTest, AFileThatCannotBeReplacedIsReportedInWindowAndLog) {
    machine.Lock(R"(C:\Data\a.doc)");
    Replace({0, 1});
    FinishReplacement();
    EXPECT_EQ(Replacement()->Label1.Caption.Get(), "2 Files Were Replaced") << "it is listed, and told";
    EXPECT_TRUE(Replacement()->Label4.Visible);
    EXPECT_EQ(Replacement()->Label4.Caption.Get(), "1 File Not Replaced, See \"Backup Error Log.txt\"");
    ASSERT_THAT(ErrorLog(machine), SizeIs(1));
    EXPECT_THAT(ErrorLog(machine).front(), HasSubstr(R"(C:\Data\a.doc)"));
    EXPECT_THAT(ErrorLog(machine).front(), HasSubstr("(error 5)"));
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
    EXPECT_EQ(machine.Read(R"(C:\Data\Sub\b.txt)"), "saved b");
}

TEST_F(ReviewTabTest, ADamagedListHarmsNothing) {
    WriteList("garbage Data\\a.doc garbage Data\\Sub\\b.txt");
    const test::Tree before = machine.Tree("C:\\Data");
    Replace({0, 1});
    FinishReplacement();
    EXPECT_EQ(machine.Tree("C:\\Data"), before);
    EXPECT_THAT(ErrorLog(machine), SizeIs(2));
}

TEST_F(ReviewTabTest, AListInUseIsToldAndNothingIsReplaced) {
    ui::frmSSTab& window = OpenTab();
    window.Command13.Click();
    window.List6.UserSelected(0, {0});
    machine.Lock(Beside("Save.txt"));
    machine.desktop.Answer(button::ok);
    machine.desktop.Answer(button::ok);
    window.Command13.Click();
    EXPECT_THAT(LastMessage(), HasSubstr("Could Not Be Read"));
    EXPECT_THAT(LastMessage(), HasSubstr("(error 32)"));
    EXPECT_EQ(Replacement(), nullptr);
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
}

TEST_F(ReviewTabTest, TheListIsReadOnceForAllFiles) {
    int opened = 0;
    machine.faults.BeforeStep(
        [&](const auto& step) { opened += step.path == Beside("Save.txt") && step.operation == "Open" ? 1 : 0; });
    Replace({0, 1, 2});
    machine.faults.BeforeStep({});
    EXPECT_EQ(opened, 1);
    FinishReplacement();
}

TEST_F(ReviewTabTest, TheReplacementWindowLogsAndLinks) {
    Replace({0, 1, 2});
    machine.clock.SetNow(At(17, 17));
    FinishReplacement();
    EXPECT_THAT(LinesBeside(machine, "Replaced File Log.txt"),
                ElementsAre("Total files replaced Monday, Nov 15 2004 At 05:17 PM was 3", "", R"(C:\Data\a.doc)",
                            R"(C:\Data\Sub\b.txt)", R"(D:\Music\m.mp3)"));
    const Shortcut& made = machine.shell.Shortcuts().back();
    EXPECT_EQ(made.path, R"(C:\Users\User\Desktop\Replaced File Log.lnk)");
    EXPECT_EQ(made.targetPath, Beside("Replaced File Log.txt"));
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, Beside("Marlok Backup.exe, 0"));
    EXPECT_EQ(made.description, "Replaced Log File");
    EXPECT_EQ(made.workingDirectory, std::string(programFolder) + "\\");
    EXPECT_FALSE(machine.desktop.Hourglass());
    EXPECT_EQ(Replacement()->Label1.Caption.Get(), "3 Files Were Replaced");
    EXPECT_EQ(Replacement()->Label2.Caption.Get(), "File Replacement Completed");
    EXPECT_TRUE(Replacement()->List2.Visible && Replacement()->Command1.Visible && Replacement()->IsVisible());
    EXPECT_FALSE(Replacement()->Label3.Visible);
}

TEST_F(ReviewTabTest, ClosingTheReplacementWindowBringsTheMainWindowBack) {
    const ui::frmSSTab& window = Replace({0});
    FinishReplacement();
    Replacement()->Command1.Click();
    EXPECT_EQ(Replacement(), nullptr);
    EXPECT_TRUE(window.IsVisible());
}

TEST_F(ReviewTabTest, ALogWithAZeroEndsThereAndCountsAll) {
    auto& window = program.windows.Load<ui::frmReplace>(program.session.machine, [] {});
    for (const char* line : {R"(C:\a)", "0", R"(C:\b)"}) {
        window.List2.AddItem(line);
    }
    window.WriteReplacedLog();
    const Lines log = LinesBeside(machine, "Replaced File Log.txt");
    ASSERT_THAT(log, SizeIs(3));
    EXPECT_THAT(log[0], testing::EndsWith("was 3"));
    EXPECT_EQ(log[2], R"(C:\a)");
}

TEST_F(ReviewTabTest, AnEmptyReplacementWritesItsHeaderAloneOverAnOlderLog) {
    machine.Seed({{Beside("Replaced File Log.txt"), "old\r\nlog\r\n"}});
    program.windows.Load<ui::frmReplace>(program.session.machine, [] {}).WriteReplacedLog();
    const Lines log = LinesBeside(machine, "Replaced File Log.txt");
    ASSERT_THAT(log, SizeIs(1));
    EXPECT_THAT(log[0], testing::EndsWith("was 0"));
}

}  // namespace
}  // namespace marlok::test
