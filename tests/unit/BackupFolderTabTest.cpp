#include "tests/unit/MainWindowFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* noFolder = "              No Folder Selected";

class BackupFolderTabTest : public MainWindowFixture {
 protected:
    BackupFolderTabTest() {
        machine.Seed({{R"(C:\Data\)"}, {R"(C:\My Files\)"}, {R"(E:\Save\Inner\)"}, {R"(E:\Command\)"}});
        machine.Seed({{R"(E:\DeleteFolder\)"}, {R"(C:\Data\a.doc)", "a"}});
    }

    ui::frmSSTab& OpenTab() { return OpenAt(ui::tab::backupFolder); }

    /// Opens a folder as a double click does, and presses "Add Folder To List".
    static void Add(ui::frmSSTab& window, const std::string& path) {
        window.Dir1.SetPath(path);
        window.Command1.Click();
    }

    /// Clicks the line of the folder list that ends in `name`.
    static void ClickFolder(ui::frmSSTab& window, const std::string& name) {
        for (int line = 0; line < window.Dir1.ListCount(); ++line) {
            if (window.Dir1.List(line).ends_with(name)) {
                window.Dir1.UserSelected(line, {line});
                return;
            }
        }
        FAIL() << name << " is not in the list";
    }

    static void DoubleClickLocation(ui::frmSSTab& window, int line) {
        window.List3.UserSelected(line, {line});
        window.List3.UserOpened();
    }
};

TEST_F(BackupFolderTabTest, EnteringItWithoutLocationsShowsThePlaceholderAndClosesTheNextTabs) {
    ui::frmSSTab& window = Open();
    window.SSTab1.SetTabEnabled(ui::tab::filesToBackup, true);
    window.SSTab1.SetTabEnabled(ui::tab::reviewSaved, true);
    window.SSTab1.SetTab(ui::tab::backupFolder);
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::reviewSaved));
    EXPECT_FALSE(window.Command1.Enabled);
    EXPECT_FALSE(window.Command12.Enabled);
}

TEST_F(BackupFolderTabTest, EnteringItListsTheLocationsAndSelectsTheFirst) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\Other)", {}}});
    const ui::frmSSTab& window = OpenTab();
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\Save)", R"(E:\Other)"));
    EXPECT_EQ(window.List3.ListIndex(), 0);
    EXPECT_TRUE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
}

TEST_F(BackupFolderTabTest, TheReviewOpensForAFirstLocationWithoutSources) {
    Configure(machine, {{R"(E:\Save)", {}}});
    const ui::frmSSTab& window = OpenTab();
    EXPECT_TRUE(window.SSTab1.TabEnabled(ui::tab::reviewSaved)) << "what was saved there can be looked at";
}

TEST_F(BackupFolderTabTest, AClickInTheFolderListEnablesBothButtons) {
    ui::frmSSTab& window = OpenTab();
    ClickFolder(window, "Data");
    EXPECT_TRUE(window.Command1.Enabled);
    EXPECT_TRUE(window.Command12.Enabled);
    window.SSTab1.SetTab(ui::tab::options);
    window.SSTab1.SetTab(ui::tab::backupFolder);
    EXPECT_FALSE(window.Command1.Enabled) << "entering the tab takes that back";
}

TEST_F(BackupFolderTabTest, ChoosingADriveOpensItsRootAndTheFilesFollow) {
    ui::frmSSTab& window = OpenTab();
    window.Drive1.Refresh();
    window.Drive1.SetDrive("E:\\");
    EXPECT_EQ(window.Dir1.Path(), "E:\\");
    EXPECT_EQ(window.File1.Path(), "E:\\");
    window.Dir1.SetPath(R"(C:\Data)");
    EXPECT_THAT(window.File1.Items(), ElementsAre("a.doc"));
}

TEST_F(BackupFolderTabTest, ADriveThatIsNotReadyIsToldAndNotLeftChosen) {
    machine.AddDrive('F', {.kind = Drive::Kind::removable});
    machine.SetDriveFailure("F:", error::notReady);
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(C:\Data)");
    window.Drive1.SetDrive("F:\\");
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_THAT(LastMessage(), HasSubstr(R"(Drive F:\ Is Not Ready)"));
    EXPECT_EQ(window.Drive1.Drive(), "C:\\");
    EXPECT_EQ(window.Dir1.Path(), R"(C:\Data)");
}

TEST_F(BackupFolderTabTest, AddingTheFirstLocationStoresItAndOpensTheNextTab) {
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(E:\Save)");
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\Save)"));
    EXPECT_EQ(window.List3.ListIndex(), 0);
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\Save)"));
    EXPECT_TRUE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::reviewSaved));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(BackupFolderTabTest, AddingALocationWhoseSourcesAreKnownOpensTheReview) {
    machine.registry.SetString(SettingsKey("Save"), "SourcePath2", R"(C:\Data)");
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(E:\Save)");
    EXPECT_TRUE(window.SSTab1.TabEnabled(ui::tab::reviewSaved));
}

TEST_F(BackupFolderTabTest, FurtherLocationsGoToTheEnd) {
    Configure(machine, {{R"(E:\Save)", {}}});
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(C:\Data)");
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\Save)", R"(TargetPath3=C:\Data)"));
    EXPECT_EQ(window.List3.ListIndex(), 0);
}

TEST_F(BackupFolderTabTest, APathWithABlankIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(C:\My Files)");
    ExpectMessage("You Cannot Have A Space in The Backup Location Name", information, "Marlok Info");
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
    EXPECT_THAT(Stored("Target"), IsEmpty());
}

TEST_F(BackupFolderTabTest, TheSameFolderIsRefusedTheSecondTime) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(C:\Data)");
    window.Command1.Click();
    ExpectMessage("This Folder Has Already Been Selected!", information);
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(C:\Data)"));
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=C:\Data)"));
}

TEST_F(BackupFolderTabTest, LetterCaseTellsFoldersApart) {
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(C:\Data)");
    Add(window, R"(c:\data)");
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(C:\Data)", R"(c:\data)"));
}

TEST_F(BackupFolderTabTest, NamesOfTheProgramsOwnFilesAreRefused) {
    for (const char* path : {R"(E:\DeleteFolder)", R"(E:\Command)"}) {
        machine.desktop.Answer(button::ok);
        ui::frmSSTab& window = OpenTab();
        Add(window, path);
        EXPECT_THAT(LastMessage(), HasSubstr("needed for a file of the program")) << path;
        EXPECT_EQ(machine.desktop.Messages().back().title, "Marlok Info");
        EXPECT_EQ(machine.desktop.Messages().back().style, information);
        EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
        EXPECT_THAT(Stored("Target"), IsEmpty());
    }
}

TEST_F(BackupFolderTabTest, AtADrivesRootTheMarkedFolderIsAdded) {
    ui::frmSSTab& window = OpenTab();
    ClickFolder(window, "Data");
    ASSERT_EQ(window.Dir1.Path(), "C:\\");
    window.Command1.Click();
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(C:\Data)"));
}

TEST_F(BackupFolderTabTest, BelowTheRootTheOpenFolderIsAdded) {
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(E:\Save)");
    ClickFolder(window, "Inner");
    window.Command1.Click();
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\Save)"));
}

TEST_F(BackupFolderTabTest, AtARootWithoutAMarkTheRootIsAdded) {
    ui::frmSSTab& window = OpenTab();
    window.Drive1.SetDrive("E:\\");
    window.Command1.Click();
    EXPECT_THAT(window.List3.Items(), ElementsAre("E:\\"));
}

TEST_F(BackupFolderTabTest, ANewFolderIsMadeAndListed) {
    machine.desktop.Answer(button::yes);
    machine.desktop.AnswerText("New Folder");
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(E:\Save)");
    window.Command12.Click();
    ExpectMessage("The Path You Have Selected Is\r\n\r\n                 E:\\Save\r\n\r\n        Is This Correct?",
                  question);
    ASSERT_THAT(machine.desktop.AskedTexts(), SizeIs(1));
    EXPECT_EQ(machine.desktop.AskedTexts().front().prompt, "Enter Name Of Folder");
    EXPECT_EQ(machine.desktop.AskedTexts().front().title, "Marlok Info.....");
    EXPECT_TRUE(machine.Exists(R"(E:\Save\New Folder)"));
    EXPECT_THAT(window.Dir1.Items(), testing::Contains(testing::EndsWith("New Folder")));
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder)) << "it is not a location yet";
    EXPECT_TRUE(window.IsVisible());
}

TEST_F(BackupFolderTabTest, TheNameIsAskedInTheMiddleOfTheScreen) {
    machine.desktop.Answer(button::yes);
    OpenTab().Command12.Click();
    const AskedText& asked = machine.desktop.AskedTexts().front();
    EXPECT_EQ(asked.left, machine.desktop.ScreenWidth() / 2 - 2650);
    EXPECT_EQ(asked.top, machine.desktop.ScreenHeight() / 2 - 1000);
}

TEST_F(BackupFolderTabTest, NoToTheQuestionMakesNothing) {
    machine.desktop.Answer(button::no);
    machine.desktop.AnswerText("New");
    OpenTab().Command12.Click();
    EXPECT_THAT(machine.desktop.AskedTexts(), IsEmpty());
    EXPECT_FALSE(machine.Exists(R"(C:\New)"));
}

TEST_F(BackupFolderTabTest, AnEmptyNameMakesNothing) {
    machine.desktop.Answer(button::yes);
    const test::Tree before = machine.Tree("C:\\");
    OpenTab().Command12.Click();
    EXPECT_EQ(machine.Tree("C:\\"), before);
}

TEST_F(BackupFolderTabTest, AFolderThatExistsIsTold) {
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::ok);
    machine.desktop.AnswerText("Data");
    OpenTab().Command12.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(2));
    EXPECT_EQ(LastMessage(), "This Folder Already Exists");
    EXPECT_EQ(machine.desktop.Messages().back().style, information);
    EXPECT_EQ(machine.desktop.Messages().back().title, "Marlok Info.....");
}

TEST_F(BackupFolderTabTest, ANameThatNoFolderCanHaveIsRefusedWithTheReason) {
    machine.Seed({{R"(E:\Save\Inner\Deep\)"}});
    const test::Tree before = machine.Tree("E:\\");
    struct {
        const char* name;
        const char* reason;
    } const cases[] = {
        {R"(..\..\Up)", "without any of these characters"},
        {R"(..\Up)", "without any of these characters"},
        {R"(Sub\Name)", "without any of these characters"},
        {R"(C:\Name)", "without any of these characters"},
        {"a/b", "without any of these characters"},
        {"no?name", "without any of these characters"},
        {"a:b", "without any of these characters"},
        {"CON", "for a device"},
        {"nul.txt", "for a device"},
        {"trail. ", "dot or a blank at the end"},
        {"trail.", "dot or a blank at the end"},
        {"trail ", "dot or a blank at the end"},
        {"..", "more than dots and blanks"},
        {" ", "more than dots and blanks"},
        {"tab\tname", "without any of these characters"},
    };
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(E:\Save\Inner\Deep)");
    ClickFolder(window, "Deep");
    for (const auto& one : cases) {
        machine.desktop.Answer(button::yes);
        machine.desktop.Answer(button::ok);
        machine.desktop.AnswerText(one.name);
        window.Command12.Click();
        EXPECT_THAT(LastMessage(),
                    testing::AllOf(testing::StartsWith(std::string(one.name) + "\r\n\r\n Could Not Be Created"),
                                   HasSubstr(one.reason)));
        EXPECT_EQ(machine.Tree("E:\\"), before) << one.name;
        EXPECT_TRUE(window.IsVisible());
    }
    EXPECT_TRUE(window.Command12.Enabled);
}

TEST_F(BackupFolderTabTest, AnyOtherFailureIsSaidWithItsReason) {
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::ok);
    machine.desktop.AnswerText("New");
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(E:\Save)");
    ClickFolder(window, "Save");
    machine.Deny(R"(E:\Save)");
    window.Command12.Click();
    EXPECT_THAT(LastMessage(), testing::AllOf(testing::StartsWith("E:\\Save\\New\r\n\r\n Could Not Be Created"),
                                              HasSubstr("(error 5)")));
    EXPECT_TRUE(window.Command1.Enabled) << "the folder is still the one that was chosen";
    machine.Deny(R"(E:\Save)", false);
}

TEST_F(BackupFolderTabTest, AFolderThatVanishesWhileItIsShownNeverBecomesItsDrive) {
    machine.Seed({{R"(E:\Sub\Deep\)"}});
    ui::frmSSTab& window = OpenTab();
    window.Dir1.SetPath(R"(E:\Sub\Deep)");
    ClickFolder(window, "Deep");
    ASSERT_TRUE(window.Command1.Enabled);
    machine.Remove(R"(E:\Sub)");
    machine.desktop.Answer(button::yes);
    machine.desktop.Answer(button::ok);
    machine.desktop.AnswerText("New");
    window.Command12.Click();
    EXPECT_THAT(LastMessage(), testing::AllOf(HasSubstr("E:\\Sub\\Deep\\New"), HasSubstr("Could Not Be Created"),
                                              HasSubstr("(error 3)")));
    EXPECT_FALSE(window.Command1.Enabled);
    EXPECT_FALSE(window.Command12.Enabled);
    ClickFolder(window, "Save");
    EXPECT_TRUE(window.Command1.Enabled) << "a new click chooses again";
}

TEST_F(BackupFolderTabTest, APathWithACommaIsRefused) {
    machine.Seed({{R"(E:\One,Two\)"}});
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(E:\One,Two)");
    ExpectMessage("You Cannot Have A Comma in The Backup Location Name", information, "Marlok Info");
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
    EXPECT_THAT(Stored("Target"), IsEmpty());
}

TEST_F(BackupFolderTabTest, ALocationWhoseSourcesMeetAnothersIsAddedAndThatIsSaid) {
    machine.Seed({{R"(E:\B\Daily\)"}});
    Configure(machine, {{R"(E:\B)", {R"(C:\Daily)"}}});
    machine.registry.SetString(SettingsKey(R"(B\Daily)"), "SourcePath2", R"(C:\Docs)");
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(E:\B\Daily)");
    EXPECT_THAT(LastMessage(), testing::AllOf(HasSubstr(R"(C:\Docs)"), HasSubstr(R"(C:\Daily)"),
                                              HasSubstr("Are Saved In The Same Place: E:\\B\\Daily\\Docs")));
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\B)", R"(TargetPath3=E:\B\Daily)"));
}

TEST_F(BackupFolderTabTest, ALocationCalledLikeTheListOfLocationsHarmsNothing) {
    machine.Seed({{R"(E:\TARGET\)"}, {R"(F:\Target\Sub\)"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = OpenTab();
    Add(window, R"(E:\TARGET)");
    Add(window, R"(F:\Target\Sub)");
    const Lines locations{R"(E:\Save)", R"(E:\TARGET)", R"(F:\Target\Sub)"};
    BackupSettings settings = program.session.Configuration();
    const auto paths = [&] {
        Lines found;
        for (const Location& location : settings.Locations()) {
            found.push_back(location.Path());
        }
        return found;
    };
    EXPECT_TRUE(settings.SaveSources(Location(R"(E:\TARGET)"), {R"(C:\One)", R"(C:\Two)"}));
    EXPECT_TRUE(settings.SaveSources(Location(R"(F:\Target\Sub)"), {R"(C:\Three)"}));
    EXPECT_EQ(paths(), locations);
    EXPECT_THAT(settings.Sources(Location(R"(e:\target)")), ElementsAre(R"(C:\One)", R"(C:\Two)"));
    EXPECT_THAT(settings.Sources(Location(R"(F:\Target\Sub)")), ElementsAre(R"(C:\Three)"));
    // Shorter lists of either kind leave the other alone, and nothing of their own behind.
    EXPECT_TRUE(settings.SaveSources(Location(R"(E:\TARGET)"), {R"(C:\Two)"}));
    EXPECT_TRUE(settings.SaveLocations({R"(E:\TARGET)", R"(E:\Save)"}));
    EXPECT_THAT(Stored("Target"), testing::UnorderedElementsAre(R"(TargetPath2=E:\TARGET)", R"(TargetPath3=E:\Save)",
                                                                R"(SourcePath2=C:\Two)"));
    EXPECT_TRUE(settings.SaveLocations({}));
    EXPECT_THAT(settings.Sources(Location(R"(E:\TARGET)")), ElementsAre(R"(C:\Two)")) << "they come back with it";
    EXPECT_TRUE(settings.SaveSources(Location(R"(E:\TARGET)"), {}));
    EXPECT_THAT(Stored("Target"), IsEmpty());
    EXPECT_THAT(settings.Sources(Location(R"(F:\Target\Sub)")), ElementsAre(R"(C:\Three)"));
}

TEST_F(BackupFolderTabTest, AnEmptyListOfLocationsLeavesNoKeyBehind) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_TRUE(program.session.Configuration().SaveLocations({}));
    EXPECT_FALSE(machine.registry.KeyExists(SettingsKey("Target")));
    EXPECT_TRUE(machine.registry.KeyExists(SettingsKey("Save")));
}

TEST_F(BackupFolderTabTest, RemovingAsksFirst) {
    Configure(machine, {{R"(E:\Save)", {}}});
    machine.desktop.Answer(button::no);
    ui::frmSSTab& window = OpenTab();
    DoubleClickLocation(window, 0);
    ExpectMessage("This Will Remove Selected Backup Path, Continue?", question);
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\Save)"));
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\Save)"));
}

TEST_F(BackupFolderTabTest, RemovingTheOnlyLocationLeavesThePlaceholder) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.desktop.Answer(button::yes);
    ui::frmSSTab& window = OpenTab();
    DoubleClickLocation(window, 0);
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::reviewSaved));
    EXPECT_THAT(Stored("Target"), IsEmpty());
    EXPECT_THAT(Stored("Save"), ElementsAre(R"(SourcePath2=C:\Data)")) << "its sources come back with it";
}

TEST_F(BackupFolderTabTest, RemovingTheMiddleOneClosesTheGap) {
    Configure(machine, {{R"(E:\A)", {}}, {R"(E:\B)", {}}, {R"(E:\C)", {}}});
    machine.desktop.Answer(button::yes);
    ui::frmSSTab& window = OpenTab();
    DoubleClickLocation(window, 1);
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\A)", R"(TargetPath3=E:\C)"));
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\A)", R"(E:\C)"));
}

TEST_F(BackupFolderTabTest, RemovingThePlaceholderPutsItBack) {
    machine.desktop.Answer(button::yes);
    ui::frmSSTab& window = OpenTab();
    DoubleClickLocation(window, 0);
    EXPECT_THAT(window.List3.Items(), ElementsAre(noFolder));
    EXPECT_THAT(Stored("Target"), IsEmpty());
}

TEST_F(BackupFolderTabTest, RemovingDeletesNoFile) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", "saved"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.desktop.Answer(button::yes);
    DoubleClickLocation(OpenTab(), 0);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "saved");
}

TEST_F(BackupFolderTabTest, ALocationThatComesBackHasItsSourcesAgain) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.desktop.Answer(button::yes);
    ui::frmSSTab& window = OpenTab();
    DoubleClickLocation(window, 0);
    Add(window, R"(E:\Save)");
    window.SSTab1.SetTab(ui::tab::filesToBackup);
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data)"));
}

}  // namespace
}  // namespace marlok::test
