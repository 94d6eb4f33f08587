#include "platform/RuntimeError.h"
#include "tests/unit/MainWindowFixture.h"
#include "ui/run/Form1.h"
#include "ui/run/Form5.h"
#include "ui/run/Form6.h"

namespace marlok::test {
namespace {

using forms::CheckBox;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* noSources = "        You Have Not Selected Any Files To Backup";
constexpr const char* sourcesHeading = "                 List Of Files To Be Backed Up";

class OptionsTabTest : public MainWindowFixture {
 protected:
    OptionsTabTest() {
        machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}, {R"(C:\Music\m.mp3)", "music", At(10, 0)}});
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\Second)", {R"(C:\Music)"}}, {R"(E:\Empty)", {}}});
    }

    /// Presses "Select Backup" and clicks these lines of List1.
    ui::frmSSTab& Choose(ui::frmSSTab& window, const std::vector<int>& lines) {
        window.Command8.Click();
        window.List1.UserSelected(lines.back(), lines);
        return window;
    }

    void RunToTheEnd() {
        WaitFor(machine, program, [&] {
            const auto* run = program.windows.Find<Form1>();
            return run != nullptr && !run->Timer1.Running();
        });
    }

    std::string CommandFile() { return machine.Read(Beside("Command.txt")); }
};

TEST_F(OptionsTabTest, ClickingALocationShowsItsSourcesAndUnlocksTheOptions) {
    ui::frmSSTab& window = Open();
    window.Command8.Enabled = false;
    window.List1.UserSelected(3, {3});
    EXPECT_THAT(window.List2.Items(), ElementsAre(sourcesHeading, "", R"(C:\Music)"));
    EXPECT_TRUE(window.Check1.Enabled && window.Check2.Enabled && window.Check3.Enabled);
    EXPECT_TRUE(window.Command8.Enabled);
}

TEST_F(OptionsTabTest, ClickingALocationWithoutSourcesSaysSoAndUnlocksNothing) {
    ui::frmSSTab& window = Open();
    window.Command8.Click();
    window.Check1.Enabled = false;
    window.List1.UserSelected(4, {4});
    EXPECT_THAT(window.List2.Items(), ElementsAre("", "", "", noSources));
    EXPECT_FALSE(window.Check1.Enabled);
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(OptionsTabTest, ClickingTheEmptyLineIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = Open();
    window.List1.UserSelected(1, {1});
    ExpectMessage("You Must Select a Backup Location First", information);
    EXPECT_THAT(window.List2.Items(), IsEmpty());
}

TEST_F(OptionsTabTest, ClickingTheHeadingIsNotRefused) {
    ui::frmSSTab& window = Open();
    window.List1.UserSelected(0, {0});
    EXPECT_THAT(window.List2.Items(), ElementsAre("", "", "", noSources));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(OptionsTabTest, HeadingAndEmptyLineAreNoLocations) {
    Choose(Open(), {0, 1, 2}).Command8.Click();
    RunToTheEnd();
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)")) << "neither ends the list";
    EXPECT_THAT(ErrorLog(machine), IsEmpty());
    EXPECT_EQ(RunLog(machine).size(), 3U);
}

TEST_F(OptionsTabTest, WithNoLocationSelectedBothWaysToRunAreRefused) {
    for (const bool background : {false, true}) {
        machine.desktop.Answer(button::ok);
        ui::frmSSTab& window = Choose(Open(), {2});
        window.List1.UserSelected(2, {0});  // Ctrl and a click have taken the location away again
        if (background) {
            window.Check1.UserPressed();
        }
        window.Command8.Click();
        EXPECT_EQ(LastMessage(), "You Must Select a Backup Location");
        EXPECT_FALSE(window.Timer3.Running());
        EXPECT_EQ(program.windows.Find<Form6>(), nullptr) << "it would have run every location";
        EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
        window.Command8.Caption = "Select Backup";
    }
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
}

TEST_F(OptionsTabTest, TheFirstPressWaitsForALocation) {
    ui::frmSSTab& window = Open();
    window.Command8.Click();
    EXPECT_EQ(window.Command8.Caption.Get(), "Run Backup");
    EXPECT_FALSE(window.Command8.Enabled);
    EXPECT_FALSE(window.Frame1.Visible);
    EXPECT_THAT(window.Label10.Caption.Get(), HasSubstr("Click the locations"));
    window.List1.UserSelected(2, {2});
    EXPECT_TRUE(window.Command8.Enabled);
    EXPECT_EQ(window.Command8.Caption.Get(), "Run Backup");
    EXPECT_THAT(window.Label10.Caption.Get(), HasSubstr("Run Backup"));
}

TEST_F(OptionsTabTest, AnyOtherCaptionDoesNothing) {
    ui::frmSSTab& window = Open();
    window.Command8.Caption = std::string("Something");
    window.Command8.Click();
    EXPECT_EQ(window.Command8.Caption.Get(), "Something");
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
}

TEST_F(OptionsTabTest, RunningFromTheHeadingIsRefused) {
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = Choose(Open(), {2});
    window.List1.UserSelected(0, {0});
    window.Command8.Click();
    ExpectMessage("You Must Select a Backup Location", information);
    EXPECT_EQ(window.Command8.Caption.Get(), "Run Backup");
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
    EXPECT_FALSE(window.Timer3.Running());
}

TEST_F(OptionsTabTest, RunningFromTheEmptyLineIsRefusedTwice) {
    machine.desktop.Answer(button::ok);
    machine.desktop.Answer(button::ok);
    ui::frmSSTab& window = Choose(Open(), {2});
    window.List1.UserSelected(1, {1});
    window.Command8.Click();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(2));
    EXPECT_EQ(LastMessage(), "You Must Select a Backup Location");
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
}

TEST_F(OptionsTabTest, AnInteractiveRunShowsTheProgressWindowAndStartsHalfASecondLater) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Command8.Click();
    ASSERT_NE(program.windows.Find<Form5>(), nullptr);
    EXPECT_THAT(window.List2.Items(), IsEmpty());
    EXPECT_TRUE(window.Timer3.Running());
    EXPECT_EQ(program.windows.Find<Form1>(), nullptr);
    EXPECT_EQ(WaitFor(machine, program, [&] { return program.windows.Find<Form1>() != nullptr; }), 500U);
    EXPECT_FALSE(window.Timer3.Running());
    RunToTheEnd();
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(OptionsTabTest, TheSelectedLinesAreHandedOverWholeAndTheListsRebuiltAfterwards) {
    ui::frmSSTab& window = Choose(Open(), {2, 3});
    window.Command8.Click();
    Lines handedOver;
    machine.faults.BeforeStep([&](const auto&) {
        if (handedOver.empty() && program.windows.Find<Form1>() == nullptr) {
            return;
        }
        if (handedOver.empty()) {
            handedOver = window.List2.Items();
        }
    });
    RunToTheEnd();
    machine.faults.BeforeStep({});
    EXPECT_THAT(handedOver, ElementsAre(R"(E:\Save)", R"(E:\Second)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Second\Music\m.mp3)"));
    EXPECT_THAT(window.List2.Items(), ElementsAre(sourcesHeading, "", R"(C:\Data)"));
    EXPECT_TRUE(window.Frame1.Visible);
    EXPECT_EQ(window.Command8.Caption.Get(), "Select Backup");
    EXPECT_TRUE(window.Command8.Enabled);
}

TEST_F(OptionsTabTest, OnlyTheLineLastClickedIsCheckedAndAllSelectedAreTaken) {
    ui::frmSSTab& window = Choose(Open(), {0, 2});
    window.Command8.Click();
    RunToTheEnd();
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
    EXPECT_FALSE(machine.Exists(R"(E:\Second)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"))
        << "the heading is passed over as what it is, no location: " << testing::PrintToString(ErrorLog(machine));
}

TEST_F(OptionsTabTest, AllFilesCountsAsItStandsAndTheMessageIsNeverTakenBack) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check2.UserPressed();
    window.Command8.Click();
    EXPECT_TRUE(program.session.gAllFiles);
    EXPECT_TRUE(program.session.gShowMessage);
    EXPECT_FALSE(program.session.gShowMessageBackground);
    RunToTheEnd();
    Choose(window, {2});
    window.Check2.UserPressed();
    window.Check3.UserPressed();
    window.Command8.Click();
    EXPECT_FALSE(program.session.gAllFiles) << "the second run must not empty the location";
    EXPECT_TRUE(program.session.gShowMessage);
    RunToTheEnd();
}

TEST_F(OptionsTabTest, ASecondRunOfTheSessionCopiesAgain) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Command8.Click();
    RunToTheEnd();
    machine.Seed({{R"(C:\Data\new.doc)", "new", At(11, 0)}});
    Choose(window, {2});
    window.Command8.Click();
    WaitFor(machine, program, [&] { return machine.Exists(R"(E:\Save\Data\new.doc)"); });
    RunToTheEnd();
    EXPECT_EQ(RunLog(machine).size(), 3U) << "header, empty line, the new file";
}

TEST_F(OptionsTabTest, ARunWithoutMessageLeavesTheMainWindowAlone) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check3.UserPressed();
    window.Command8.Click();
    RunToTheEnd();
    EXPECT_TRUE(window.Timer1.Running());
    WaitFor(machine, program, [&] { return program.windows.Find<Form5>() == nullptr; });
    EXPECT_FALSE(program.windows.Find<Form1>()->IsVisible());
    EXPECT_TRUE(window.IsVisible());
    machine.clock.Advance(10'000);
    program.windows.Turn();
    EXPECT_EQ(RunLog(machine).size(), 3U) << "no second run has started";
}

class CommandFileOfTheWindowTest : public OptionsTabTest {
 protected:
    /// Runs in the background with these states of the boxes, and gives back what the command file held meanwhile.
    std::string CommandFileOf(CheckBox::State all, CheckBox::State message, const std::vector<int>& lines) {
        ui::frmSSTab& window = Open();
        window.Command8.Click();
        window.List1.UserSelected(lines.back(), lines);
        window.Check1.Value = CheckBox::State::checked;
        window.Check2.Value = all;
        window.Check3.Value = message;
        std::string written;
        machine.faults.BeforeStep([&](const auto&) {
            if (written.empty() && machine.Exists(Beside("Command.txt"))) {
                written = CommandFile();
            }
        });
        window.Command8.Click();
        machine.faults.BeforeStep({});
        return written;
    }
};

TEST_F(CommandFileOfTheWindowTest, HoldsTheModeTheLocationsAndTheLastLine) {
    EXPECT_EQ(CommandFileOf(CheckBox::State::checked, CheckBox::State::checked, {2, 3}),
              "A\r\nSave\r\nSecond\r\nS\r\n");
    EXPECT_TRUE(program.session.gAllFiles && program.session.gShowMessage && program.session.gShowMessageBackground);
}

TEST_F(CommandFileOfTheWindowTest, SaysChangedFilesOnlyAndStillEndsInItsLastLine) {
    program.session.gAllFiles = true;
    EXPECT_EQ(CommandFileOf(CheckBox::State::unchecked, CheckBox::State::unchecked, {3}), "C\r\nSecond\r\nS\r\n");
    EXPECT_FALSE(program.session.gAllFiles);
    EXPECT_FALSE(program.session.gShowMessage || program.session.gShowMessageBackground);
}

TEST_F(CommandFileOfTheWindowTest, HoldsNoModeForAGreyedBox) {
    EXPECT_EQ(CommandFileOf(CheckBox::State::greyed, CheckBox::State::unchecked, {2}), "Save\r\nS\r\n");
}

TEST_F(CommandFileOfTheWindowTest, HoldsASelectedHeadingToo) {
    const std::string written = CommandFileOf(CheckBox::State::unchecked, CheckBox::State::unchecked, {0, 1, 2});
    EXPECT_EQ(written, "C\r\n\r\nSave\r\nS\r\n") << "what follows the first component of the heading is nothing";
}

TEST_F(CommandFileOfTheWindowTest, NamesALocationWithoutItsDrive) {
    Configure(machine, {{R"(C:\B1)", {R"(C:\Data)"}}, {R"(D:\B2)", {R"(C:\Data)"}}});
    EXPECT_EQ(CommandFileOf(CheckBox::State::checked, CheckBox::State::checked, {2, 3}), "A\r\nB1\r\nB2\r\nS\r\n");
}

TEST_F(OptionsTabTest, ABackgroundRunSavesAndTakesItsCommandFileAway) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    window.Command8.Click();
    ASSERT_NE(program.windows.Find<Form6>(), nullptr);
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Second)"));
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
    EXPECT_EQ(window.Command8.Caption.Get(), "Run Backup") << "until the next tab switch";
    WaitFor(machine, program, [&] { return program.windows.Find<Form6>()->IsVisible(); });
    EXPECT_EQ(program.windows.Find<Form6>()->Label1.Caption.Get(), "1 Files Copied");
}

TEST_F(OptionsTabTest, ABackgroundRunWithoutMessageEndsTheProgram) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    window.Check3.UserPressed();
    window.Command8.Click();
    program.windows.Run();
    EXPECT_FALSE(program.windows.AnyLoaded());
    EXPECT_EQ(program.session.exitCode, exitcode::allDone);
    EXPECT_EQ(RunLog(machine).size(), 3U);
}

TEST_F(OptionsTabTest, ABackgroundRunIsOneOfTheSelectedLocationsAlone) {
    machine.AddDrive('F');
    machine.AddDrive('G');
    const Lines locations{R"(E:\Save)", R"(E:\Saved)", R"(F:\A)", "G:\\"};
    std::vector<LocationSetup> setup;
    for (const std::string& location : locations) {
        setup.push_back({location, {R"(C:\Data)"}});
    }
    Configure(machine, setup);
    ui::frmSSTab& window = Open();
    window.Command8.Click();
    window.Check1.Value = CheckBox::State::checked;
    Lines ran;
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy") {
            ran.push_back(step.path);
        }
    });
    for (std::size_t i = 0; i < locations.size(); ++i) {
        window.List1.UserSelected(static_cast<int>(i) + 2, {static_cast<int>(i) + 2});
        window.Command8.Click();
        for (std::size_t k = 0; k < locations.size(); ++k) {
            EXPECT_EQ(machine.Exists(Location(locations[k]).Below(R"(Data\a.doc)")), k <= i) << locations[k];
        }
        WaitFor(machine, program, [&] { return !program.windows.Find<Form6>()->Timer1.Running(); });
        EXPECT_EQ(program.session.exitCode, exitcode::allDone);
        EXPECT_EQ(RunLog(machine).size(), 3U);
    }
    machine.faults.BeforeStep({});
}

TEST_F(OptionsTabTest, ASecondBackgroundRunRuns) {
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    window.Command8.Click();
    auto& run = *program.windows.Find<Form6>();
    WaitFor(machine, program, [&] { return run.IsVisible(); });
    machine.Seed({{R"(C:\Data\new.doc)", "new", At(11, 0)}});
    window.Command8.Click();
    EXPECT_FALSE(run.IsVisible());
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\new.doc)"));
    WaitFor(machine, program, [&] { return run.IsVisible(); });
    EXPECT_THAT(run.List2.Items(), ElementsAre(R"(E:\Save\Data\new.doc)"));
    EXPECT_EQ(run.Label1.Caption.Get(), "1 Files Copied");
}

TEST_F(OptionsTabTest, AFailureOfABackgroundRunIsShownEvenWithoutAMessage) {
    machine.Lock(R"(C:\Data\a.doc)");
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    window.Check3.UserPressed();
    window.Command8.Click();
    auto& run = *program.windows.Find<Form6>();
    WaitFor(machine, program, [&] { return !run.Timer1.Running(); });
    EXPECT_TRUE(run.IsVisible());
    EXPECT_TRUE(run.Label4.Visible);
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(program.session.exitCode, exitcode::somethingFailed);
}

TEST_F(OptionsTabTest, AFailureOfARunBeforeIsNotShownWithTheNext) {
    machine.Lock(R"(C:\Data\a.doc)");
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    window.Command8.Click();
    auto& run = *program.windows.Find<Form6>();
    WaitFor(machine, program, [&] { return run.IsVisible(); });
    machine.Lock(R"(C:\Data\a.doc)", false);
    window.Command8.Click();
    WaitFor(machine, program, [&] { return run.IsVisible(); });
    EXPECT_FALSE(run.Label4.Visible);
}

TEST_F(OptionsTabTest, ACommandFileThatCannotBeWrittenIsARunTimeError) {
    machine.Seed({{Beside("Command.txt"), "old"}});
    machine.Lock(Beside("Command.txt"));
    ui::frmSSTab& window = Choose(Open(), {2});
    window.Check1.UserPressed();
    EXPECT_THROW(window.Command8.Click(), RuntimeError);
    EXPECT_EQ(program.windows.Find<Form6>(), nullptr);
    EXPECT_EQ(CommandFile(), "old");
}

}  // namespace
}  // namespace marlok::test
