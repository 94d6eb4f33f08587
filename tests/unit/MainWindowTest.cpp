#include "platform/RuntimeError.h"
#include "tests/unit/MainWindowFixture.h"
#include "ui/frmReplace.h"
#include "ui/run/Form5.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* locationsHeading = "                        List Of Backup Paths";
constexpr const char* noLocation = "         You Have Not Selected A Backup Location";
constexpr const char* sourcesHeading = "                 List Of Files To Be Backed Up";
constexpr const char* noSources = "        You Have Not Selected Any Files To Backup";

class MainWindowTest : public MainWindowFixture {
 protected:
    static Lines EnabledTabs(const ui::frmSSTab& window) {
        Lines enabled;
        for (int tab = 0; tab < window.SSTab1.TabCount(); ++tab) {
            if (window.SSTab1.TabEnabled(tab)) {
                enabled.push_back(window.SSTab1.TabCaption(tab));
            }
        }
        return enabled;
    }
};

TEST_F(MainWindowTest, HasFourTabsAndItsTitle) {
    const ui::frmSSTab& window = Open();
    EXPECT_EQ(window.Caption(), "Marlok Backup Utility");
    ASSERT_EQ(window.SSTab1.TabCount(), 4);
    EXPECT_EQ(window.SSTab1.TabCaption(0), "Options");
    EXPECT_EQ(window.SSTab1.TabCaption(1), "Backup Folder");
    EXPECT_EQ(window.SSTab1.TabCaption(2), "Files To Backup");
    EXPECT_EQ(window.SSTab1.TabCaption(3), "Review Saved");
}

TEST_F(MainWindowTest, CaptionsAreTheOnesThatPeopleKnow) {
    const ui::frmSSTab& window = Open();
    EXPECT_EQ(window.Check1.Caption.Get(), "    Run In Background");
    EXPECT_EQ(window.Check2.Caption.Get(), "    Backup         All Files");
    EXPECT_EQ(window.Check3.Caption.Get(), "   Output       Message   To Screen");
    EXPECT_EQ(window.Frame1.Caption.Get(), "Marlok BackUp Utility Program");
    EXPECT_EQ(window.Label9.Caption.Get(), "Connecting      Please Wait");
    EXPECT_EQ(window.Label2.Caption.Get(), "Double Click On File To Remove From List");
    EXPECT_EQ(window.Label8.Caption.Get(), "Click on Backup Location To Show Files");
    EXPECT_EQ(window.Label3.Caption.Get(), "Select Files For Each Backup Path");
}

TEST_F(MainWindowTest, WithoutAnyConfigurationOnlyTheFirstStepIsOpen) {
    const ui::frmSSTab& window = Open();
    EXPECT_EQ(window.SSTab1.Tab(), ui::tab::options);
    EXPECT_THAT(window.List1.Items(), ElementsAre("", "", "", noLocation));
    EXPECT_THAT(window.List2.Items(), ElementsAre("", "", "", noSources));
    EXPECT_EQ(window.List1.TextFont.Get().size, 9);
    EXPECT_EQ(window.List2.TextFont.Get().size, 9);
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_FALSE(window.Command9.Enabled);
    EXPECT_FALSE(window.Frame1.Visible);
    EXPECT_THAT(EnabledTabs(window), ElementsAre("Options", "Backup Folder"));
    EXPECT_THAT(window.Label10.Caption.Get(), HasSubstr("Backup Folder"));
}

TEST_F(MainWindowTest, WithALocationWithoutSourcesTheNextStepIsOpen) {
    Configure(machine, {{R"(E:\Save)", {}}});
    const ui::frmSSTab& window = Open();
    EXPECT_THAT(window.List1.Items(), ElementsAre(locationsHeading, "", R"(E:\Save)"));
    EXPECT_THAT(window.List2.Items(), ElementsAre("", "", "", noSources));
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_FALSE(window.Command9.Enabled);
    EXPECT_FALSE(window.Frame1.Visible);
    EXPECT_THAT(EnabledTabs(window), ElementsAre("Options", "Backup Folder", "Files To Backup"));
    EXPECT_THAT(window.Label10.Caption.Get(), HasSubstr("Files To Backup"));
}

TEST_F(MainWindowTest, WithSourcesEverythingIsOpenAndTheFirstLocationIsShown) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\Notes.txt)"}}, {R"(E:\Other)", {R"(C:\Music)"}}});
    const ui::frmSSTab& window = Open();
    EXPECT_THAT(window.List1.Items(), ElementsAre(locationsHeading, "", R"(E:\Save)", R"(E:\Other)"));
    EXPECT_EQ(window.List1.ListIndex(), 2);
    EXPECT_TRUE(window.List1.Selected(2));
    EXPECT_THAT(window.List2.Items(), ElementsAre(sourcesHeading, "", R"(C:\Data)", R"(C:\Notes.txt)"));
    EXPECT_TRUE(window.Command8.Enabled);
    EXPECT_TRUE(window.Command9.Enabled);
    EXPECT_TRUE(window.Frame1.Visible);
    EXPECT_EQ(EnabledTabs(window).size(), 4U);
    EXPECT_THAT(window.Label10.Caption.Get(), HasSubstr("Select Backup"));
}

TEST_F(MainWindowTest, TheRunOptionsBeginDisabledWithTheMessageChecked) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    const ui::frmSSTab& window = Open();
    EXPECT_FALSE(window.Check1.Enabled);
    EXPECT_FALSE(window.Check2.Enabled);
    EXPECT_FALSE(window.Check3.Enabled);
    EXPECT_EQ(window.Check1.Value.Get(), forms::CheckBox::State::unchecked);
    EXPECT_EQ(window.Check2.Value.Get(), forms::CheckBox::State::unchecked);
    EXPECT_EQ(window.Check3.Value.Get(), forms::CheckBox::State::checked);
}

TEST_F(MainWindowTest, TheBrowsersBeginOnDriveC) {
    const ui::frmSSTab& window = Open();
    EXPECT_EQ(window.Drive1.Drive(), "C:\\");
    EXPECT_EQ(window.Dir1.Path(), "C:\\");
    EXPECT_EQ(window.File1.Path(), "C:\\");
    EXPECT_EQ(window.Drive2.Drive(), "C:\\");
    EXPECT_EQ(window.Dir2.Path(), "C:\\");
    EXPECT_EQ(window.File2.Path(), "C:\\");
}

TEST_F(MainWindowTest, LocationsThatDifferOnlyInTheirDriveShowOneListOfSources) {
    Configure(machine,
              {{R"(C:\Data)", {R"(C:\Before)"}}, {R"(D:\Data)", {R"(C:\Shared)"}}, {R"(E:\Other)", {R"(C:\Own)"}}});
    ui::frmSSTab& window = Open();
    for (const int line : {4, 3, 4, 2}) {
        window.List1.UserSelected(line, {line});
        EXPECT_THAT(window.List2.Items(), ElementsAre(sourcesHeading, "", line == 4 ? R"(C:\Own)" : R"(C:\Shared)"))
            << line;
    }
}

TEST_F(MainWindowTest, ALocationListEndsAtAZero) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.registry.SetString(SettingsKey("Target"), "TargetPath3", "0");
    machine.registry.SetString(SettingsKey("Target"), "TargetPath4", R"(E:\Behind)");
    EXPECT_THAT(Open().List1.Items(), ElementsAre(locationsHeading, "", R"(E:\Save)"));
}

TEST_F(MainWindowTest, SetRegTargetStoresTheLinesUpToTheFirstEmptyOne) {
    Configure(machine, {{R"(E:\Old)", {}}, {R"(E:\Older)", {}}});
    ui::frmSSTab& window = Open();
    window.List1.Clear();
    for (const char* line : {R"(E:\A)", R"(E:\B)", "", R"(E:\C)"}) {
        window.List1.AddItem(line);
    }
    window.SetRegTarget();
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\A)", R"(TargetPath3=E:\B)"));
}

TEST_F(MainWindowTest, SetRegTargetEndsAtAZero) {
    ui::frmSSTab& window = Open();
    window.List1.Clear();
    window.List1.AddItem(R"(E:\A)");
    window.List1.AddItem("0");
    window.List1.AddItem(R"(E:\B)");
    window.SetRegTarget();
    EXPECT_THAT(Stored("Target"), ElementsAre(R"(TargetPath2=E:\A)"));
}

TEST_F(MainWindowTest, SetRegTargetTakesAHeadingForALocation) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = Open();
    window.SetRegTarget();
    EXPECT_THAT(Stored("Target"), ElementsAre("TargetPath2=" + std::string(locationsHeading)))
        << "its callers fill the list with nothing but paths";
}

TEST_F(MainWindowTest, EnteringOptionsWithoutALocationClosesTheNextSteps) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = OpenAt(ui::tab::backupFolder);
    Configure(machine, {});
    window.SSTab1.UserChose(ui::tab::options);
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_FALSE(window.Command9.Enabled);
    EXPECT_FALSE(window.Frame1.Visible);
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
    EXPECT_THAT(window.List1.Items(), ElementsAre("", "", "", noLocation));
}

TEST_F(MainWindowTest, EnteringOptionsWithoutSourcesClosesTheReview) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = OpenAt(ui::tab::filesToBackup);
    Configure(machine, {{R"(E:\Save)", {}}});
    window.SSTab1.UserChose(ui::tab::options);
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_FALSE(window.Command9.Enabled);
    EXPECT_FALSE(window.Frame1.Visible);
    EXPECT_FALSE(window.SSTab1.TabEnabled(ui::tab::reviewSaved));
    EXPECT_TRUE(window.SSTab1.TabEnabled(ui::tab::filesToBackup));
}

TEST_F(MainWindowTest, EnteringOptionsWithSourcesOpensEverything) {
    ui::frmSSTab& window = OpenAt(ui::tab::backupFolder);
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    window.Command8.Caption = std::string("Run Backup");
    window.SSTab1.UserChose(ui::tab::options);
    EXPECT_EQ(window.Command8.Caption.Get(), "Select Backup");
    EXPECT_TRUE(window.Command8.Enabled);
    EXPECT_TRUE(window.Command9.Enabled);
    EXPECT_TRUE(window.Frame1.Visible);
    EXPECT_EQ(EnabledTabs(window).size(), 4U);
    EXPECT_THAT(window.List2.Items(), ElementsAre(sourcesHeading, "", R"(C:\Data)"));
}

TEST_F(MainWindowTest, EveryTabSwitchTakesTheRunButtonBack) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = Open();
    for (const int tab : {ui::tab::backupFolder, ui::tab::filesToBackup, ui::tab::reviewSaved, ui::tab::options}) {
        window.Command8.Caption = std::string("Run Backup");
        window.SSTab1.SetTab(tab);
        EXPECT_EQ(window.Command8.Caption.Get(), "Select Backup") << tab;
    }
}

TEST_F(MainWindowTest, TheValuesOfTheOptionsSurviveATabSwitch) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = Open();
    window.List1.UserSelected(2, {2});
    window.Check1.UserPressed();
    window.Check2.UserPressed();
    window.Check3.UserPressed();
    window.SSTab1.SetTab(ui::tab::backupFolder);
    window.SSTab1.SetTab(ui::tab::options);
    EXPECT_EQ(window.Check1.Value.Get(), forms::CheckBox::State::checked);
    EXPECT_EQ(window.Check2.Value.Get(), forms::CheckBox::State::checked);
    EXPECT_EQ(window.Check3.Value.Get(), forms::CheckBox::State::checked) << "this one is always checked anew";
}

TEST_F(MainWindowTest, ADisabledTabCannotBeChosen) {
    ui::frmSSTab& window = Open();
    window.SSTab1.UserChose(ui::tab::reviewSaved);
    EXPECT_EQ(window.SSTab1.Tab(), ui::tab::options);
}

TEST_F(MainWindowTest, EveryHelpButtonOpensTheHelpFileAsItAlwaysDid) {
    machine.Seed({{Beside("Backup.hlp"), "help"}});
    ui::frmSSTab& window = Open();
    for (forms::CommandButton* button : {&window.Command2, &window.Command5, &window.Command9, &window.Command15}) {
        EXPECT_EQ(button->Caption.Get(), "Help");
        button->Click();
        const Shell::OpenRequest& request = machine.shell.Opened().back();
        EXPECT_EQ(request.path, Beside("Backup.hlp"));
        EXPECT_EQ(request.parameters, "0");
        EXPECT_EQ(request.folder, "0");
        EXPECT_EQ(request.showMode, 0);
    }
    EXPECT_EQ(machine.shell.Opened().size(), 4U);
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainWindowTest, WithoutAHelpFileTheHelpPageIsOpenedAtTheSectionOfTheTab) {
    machine.Remove(Beside("Backup.hlp"));
    machine.Seed({{Beside("Help.html"), "page"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = Open();
    const std::vector<std::pair<int, forms::CommandButton*>> buttons{{ui::tab::options, &window.Command9},
                                                                     {ui::tab::backupFolder, &window.Command2},
                                                                     {ui::tab::filesToBackup, &window.Command5},
                                                                     {ui::tab::reviewSaved, &window.Command15}};
    for (const auto& [tab, button] : buttons) {
        window.SSTab1.SetTab(tab);
        button->Click();
    }
    const std::string page = "file:///C:/Program%20Files/Marlok/Help.html";
    EXPECT_THAT(machine.shell.Addresses(), ElementsAre(page + "#options", page + "#backup-folder",
                                                       page + "#files-to-backup", page + "#review-saved"));
    EXPECT_THAT(machine.shell.Opened(), IsEmpty());
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainWindowTest, WithoutABrowserThatCanBeFoundTheHelpPageIsOpenedLikeAnyFile) {
    machine.Remove(Beside("Backup.hlp"));
    machine.Seed({{Beside("Help.html"), "page"}});
    machine.shell.hasBrowser = false;
    Open().Command2.Click();
    ASSERT_THAT(machine.shell.Opened(), SizeIs(1));
    EXPECT_EQ(machine.shell.Opened().front().path, Beside("Help.html"));
    EXPECT_EQ(machine.shell.Opened().front().showMode, 1) << "a browser that is started hidden shows nothing";
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainWindowTest, AHelpFileThatCannotBeOpenedGivesWayToTheHelpPage) {
    machine.Seed({{Beside("Backup.hlp"), "help"}, {Beside("Help.html"), "page"}});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "Shell.Open" && step.path.ends_with(".hlp") ? error::ioDevice : error::success;
    });
    Open().Command2.Click();
    EXPECT_THAT(machine.shell.Addresses(), SizeIs(1));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainWindowTest, HelpThatCannotBeOpenedAtAllIsReported) {
    machine.Remove(Beside("Backup.hlp"));
    machine.desktop.Answer(button::ok);
    Open().Command2.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_THAT(LastMessage(), HasSubstr("The Help File Could Not Be Opened"));
    EXPECT_THAT(LastMessage(), HasSubstr(Beside("Help.html")));
    EXPECT_THAT(LastMessage(), HasSubstr("(error 2)"));
    EXPECT_THAT(machine.shell.Addresses(), IsEmpty()) << "the browser would show an error of its own";
    EXPECT_EQ(machine.desktop.Messages().front().style, information);
}

TEST_F(MainWindowTest, HelpIsAskedForAtTheTabEvenWhileItsButtonIsDisabled) {
    std::vector<std::string> asked;
    ui::frmSSTab& window = Open();
    EXPECT_FALSE(window.Command9.Enabled.Get()) << "nothing is configured";
    window.Collection().OpenHelp = [&asked](const std::string& section) { asked.push_back(section); };
    window.AskForHelp();
    window.SSTab1.SetTab(ui::tab::backupFolder);
    window.AskForHelp();
    EXPECT_THAT(asked, ElementsAre("options", "backup-folder"));
}

TEST_F(MainWindowTest, EnterPressesTheRunButtonOnItsOwnTabAlone) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    ui::frmSSTab& window = Open();
    EXPECT_EQ(window.DefaultButton(), &window.Command8);
    window.SSTab1.SetTab(ui::tab::backupFolder);
    EXPECT_EQ(window.DefaultButton(), nullptr);
}

TEST_F(MainWindowTest, EveryCloseButtonEndsTheProgram) {
    for (int number = 0; number < 4; ++number) {
        ui::frmSSTab& window = Open();
        forms::CommandButton* const buttons[] = {&window.Command3, &window.Command6, &window.Command11,
                                                 &window.Command14};
        buttons[number]->Click();
        EXPECT_FALSE(program.windows.AnyLoaded()) << number;
        program.windows.Run();
    }
}

/// A window whose unloading fails.
class Stubborn : public forms::Form {
 public:
    explicit Stubborn(forms::Windows& windows) : Form(windows, "Stubborn", "") {}

 protected:
    void Form_Unload() override { throw RuntimeError(runtimeerror::permissionDenied, "Permission denied"); }
};

TEST_F(MainWindowTest, ClosingItUnloadsEveryWindowWhateverTheySay) {
    program.windows.Load<Stubborn>();
    ui::frmSSTab& window = Open();
    program.windows.Load<Form5>(program.session.machine, program.session.gAllFiles);
    program.windows.Load<ui::frmReplace>(program.session.machine, [] {});
    EXPECT_NO_THROW(window.Unload());
    EXPECT_FALSE(program.windows.AnyLoaded());
    EXPECT_EQ(program.windows.Find<ui::frmSSTab>(), nullptr);
}

TEST_F(MainWindowTest, ItsFirstTimerClearsUpAfterARunAndStopsItself) {
    ui::frmSSTab& window = Open();
    program.windows.Load<Form5>(program.session.machine, program.session.gAllFiles);
    program.windows.Load<ui::frmReplace>(program.session.machine, [] {});
    window.Timer1.Start();
    EXPECT_EQ(WaitFor(machine, program, [&] { return !window.Timer1.Running(); }), 1000U);
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
    EXPECT_EQ(program.windows.Find<ui::frmReplace>(), nullptr);
    EXPECT_NE(program.windows.Find<ui::frmSSTab>(), nullptr);
}

TEST_F(MainWindowTest, ItsTimersHaveTheirIntervalsAndBeginStopped) {
    const ui::frmSSTab& window = Open();
    EXPECT_EQ(window.Timer1.Interval(), 1000U);
    EXPECT_EQ(window.Timer2.Interval(), 500U);
    EXPECT_EQ(window.Timer3.Interval(), 500U);
    EXPECT_FALSE(window.Timer1.Running() || window.Timer2.Running() || window.Timer3.Running());
}

TEST_F(MainWindowTest, EveryVisibleListHasANameForScreenReaders) {
    const ui::frmSSTab& window = Open();
    for (const forms::Control* control : window.Controls()) {
        if (dynamic_cast<const forms::ListBox*>(control) != nullptr && control->Visible) {
            EXPECT_NE(control->AccessibleName.Get(), "") << control->Name();
        }
    }
}

TEST_F(MainWindowTest, TheSettingsAreReadAgainWheneverATabIsEntered) {
    ui::frmSSTab& window = Open();
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    window.SSTab1.SetTab(ui::tab::backupFolder);
    EXPECT_THAT(window.List3.Items(), ElementsAre(R"(E:\Save)"));
}

}  // namespace
}  // namespace marlok::test
