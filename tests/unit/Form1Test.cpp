#include "ui/run/Form1.h"

#include <algorithm>

#include "app/Form2.h"
#include "platform/RuntimeError.h"
#include "tests/unit/ProgramFixture.h"
#include "tests/unit/RecordingViews.h"
#include "ui/run/Form5.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* errorLogHint = R"(, See "Backup Error Log.txt" In The Program's Folder)";

class Form1Test : public ProgramTest {
 protected:
    Form1Test() {
        machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}, {R"(C:\Data\Sub\b.txt)", "two", At(10, 0)}});
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
        views.onControlChanged = [this](const forms::Control& control, forms::Aspect aspect) { Note(control, aspect); };
    }

    /// Starts a run of these locations as the main window does, up to where its timer is about to fire.
    Form1& Load(const Lines& locations = {R"(E:\Save)"}) {
        program.windows.Load<Form5>(program.session.machine, program.session.gAllFiles);
        return program.windows.Load<Form1>(program.session, LocationsAt(locations), [this] { ++quietRuns; });
    }

    /// Lets the timer of a run fire.
    Form1& Finish(Form1& window) {
        WaitFor(machine, program, [&] { return !window.Timer1.Running(); });
        return window;
    }

    Form1& Run(const Lines& locations = {R"(E:\Save)"}) { return Finish(Load(locations)); }

    Form5& Progress() { return *program.windows.Find<Form5>(); }

    /// A run that is under way has an hourglass.
    void TearDown() override {
        auto* window = program.windows.Find<Form1>();
        if (window != nullptr && window->Timer1.Running()) {
            Finish(*window);
        }
        ProgramTest::TearDown();
    }

    RecordingViews views;
    Program program{machine.machine(), &views};
    Lines statuses;      ///< texts of the progress window's status line, in order
    Lines folderCounts;  ///< texts of the run window's upper label
    Lines barValues;     ///< what the bar showed: "4/10" for 4 out of 10
    int quietRuns = 0;

 private:
    void Note(const forms::Control& control, forms::Aspect aspect) {
        const std::string name = control.Owner().Name() + "." + control.Name();
        if (name == "Form5.Label3" && aspect == forms::Aspect::text) {
            statuses.push_back(dynamic_cast<const forms::Label&>(control).Caption);
        } else if (name == "Form1.Label1" && aspect == forms::Aspect::text) {
            folderCounts.push_back(dynamic_cast<const forms::Label&>(control).Caption);
        } else if (name == "Form5.ProgressBar1" && aspect == forms::Aspect::value) {
            const auto& bar = dynamic_cast<const forms::ProgressBar&>(control);
            barValues.push_back(std::to_string(static_cast<int>(bar.Value.Get())) + "/" +
                                std::to_string(static_cast<int>(bar.Max.Get())));
        }
    }
};

TEST_F(Form1Test, ARunSavesListsAndLogs) {
    const Form1& window = Run();
    EXPECT_EQ(machine.Tree(R"(E:\Save)"),
              (Tree{{"Data\\", ""}, {"Data\\Sub\\", ""}, {"Data\\Sub\\b.txt", "two"}, {"Data\\a.doc", "one"}}));
    EXPECT_THAT(window.List2.Items(), ElementsAre(R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)"));
    EXPECT_EQ(program.session.exitCode, exitcode::allDone);
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form1Test, TheLogSaysWasBeforeTheCount) {
    Run();
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")),
              "Total files copied Monday, Nov 15 2004 12:00 PM was 2\r\n"
              "\r\n"
              "E:\\Save\\Data\\a.doc\r\n"
              "E:\\Save\\Data\\Sub\\b.txt\r\n");
}

TEST_F(Form1Test, WhenNothingIsCopiedTheLogIsItsFirstLine) {
    Form1& window = Run();
    window.RunAgain({Location(R"(E:\Save)")});
    Finish(window);
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")), "Total files copied Monday, Nov 15 2004 12:00 PM was 0\r\n");
    EXPECT_EQ(window.Label1.Caption.Get(), "Total files copied was 0");
}

TEST_F(Form1Test, LocationsRunInTheirOrder) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data\Sub)"}}});
    const Form1& window = Run({R"(E:\More)", R"(E:\Save)"});
    EXPECT_THAT(window.List2.Items(),
                ElementsAre(R"(E:\More\Data\Sub\b.txt)", R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_THAT(OriginalList(machine, "More"), ElementsAre(R"(C:\Data\Sub\b.txt)"));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)"));
}

TEST_F(Form1Test, LocationsThatWereNotChosenDoNotRun) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data\Sub)"}}});
    Run({R"(E:\More)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save)"));
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
}

TEST_F(Form1Test, WithoutALocationTheRunGoesStraightToItsLog) {
    {
        Form1& window = Load({});
        EXPECT_TRUE(window.Timer1.Running());
        EXPECT_EQ(machine.Tree("E:\\"), Tree{});
        Finish(window);
        EXPECT_THAT(RunLog(machine), ElementsAre(EndsWith(" was 0")));
        EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
        window.Unload();
        machine.Remove(Beside("Backup Log File.txt"));
    }
}

TEST_F(Form1Test, StatusTextsOfARunOfChangedFiles) {
    program.session.gShowMessage = true;
    Run();
    EXPECT_THAT(statuses,
                ElementsAre("Copying Save Files", "Now Writing Log File, Please Wait!", "Backup Is Finished !",
                            "ShortCut to Backup Log Being Created !", "Backup Completed"));
}

TEST_F(Form1Test, StatusTextsOfARunOfAllFiles) {
    machine.Seed({{R"(E:\Save\stale.txt)", "s"}});
    program.session.gAllFiles = true;
    Run();
    EXPECT_THAT(statuses, ElementsAre("Deleting Save Files", "Copying Save Files", "Now Writing Log File, Please Wait!",
                                      "Backup Is Finished !"));
}

TEST_F(Form1Test, AStatusTextNamesEachLocationByItsPathWithoutTheDrive) {
    Configure(machine, {{R"(E:\Backups\Daily)", {R"(C:\Data)"}}, {R"(E:\Save)", {R"(C:\Data\Sub)"}}});
    program.session.gAllFiles = true;
    Run({R"(E:\Backups\Daily)", R"(E:\Save)"});
    EXPECT_THAT(statuses, ElementsAre(R"(Copying Backups\Daily Files)", "Copying Save Files",
                                      "Now Writing Log File, Please Wait!", "Backup Is Finished !"))
        << "a location that does not exist yet has nothing to delete";
}

TEST_F(Form1Test, EveryStatusTextIsPaintedAtOnce) {
    Run();
    int texts = 0;
    for (std::size_t i = 1; i < views.records.size(); ++i) {
        // Nothing at all happens between the text and its painting.
        if (views.records[i - 1] == "Form5.Label3 changed" && views.records[i] != "Form5.Label3 changed") {
            EXPECT_EQ(views.records[i], "Form5 refreshed") << i;
            ++texts;
        }
    }
    EXPECT_GE(texts, 3);
}

TEST_F(Form1Test, TheLogIsWrittenUnderItsStatusTextAndTheHourglass) {
    std::string status;
    bool hourglass = false;
    Form1& window = Load();
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.mutates && step.path == Beside("~Marlok Backup.new")) {
            status = Progress().Label3.Caption;
            hourglass = machine.desktop.Hourglass();
        }
    });
    Finish(window);
    EXPECT_EQ(status, "Now Writing Log File, Please Wait!");
    EXPECT_TRUE(hourglass);
    EXPECT_FALSE(machine.desktop.Hourglass());
}

TEST_F(Form1Test, FoldersAreCountedFromSourceToSource) {
    machine.Seed({{R"(C:\More\m.txt)", "m"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\More)"}}});
    Run();
    EXPECT_THAT(folderCounts, ElementsAre("Total folders to be backed up : 2", "Total folders to be backed up : 3",
                                          "Total files copied was 3"));
}

TEST_F(Form1Test, FoldersAreCountedAnewForEachLocation) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data\Sub)"}}});
    Run({R"(E:\Save)", R"(E:\More)"});
    EXPECT_THAT(folderCounts, ElementsAre("Total folders to be backed up : 2", "Total folders to be backed up : 1",
                                          "Total files copied was 3"));
}

TEST_F(Form1Test, TheBarShowsTheBytesOfEachFile) {
    machine.Write(R"(C:\Data\a.doc)", "ten bytes!");
    machine.files.SetCopyChunk(4);
    Run();
    EXPECT_THAT(barValues, ElementsAre("0/10", "4/10", "8/10", "10/10", "0/10", "0/3", "3/3"));
}

TEST_F(Form1Test, OnWindows98TheBarCountsFiles) {
    machine.system.version = {4, 10, 1998, 1, ""};
    Run();
    EXPECT_THAT(barValues, ElementsAre("1/100", "2/100"));
}

TEST_F(Form1Test, OnWindows95AndMETheBarCountsFilesToo) {
    for (const std::uint32_t minor : {0U, 90U}) {
        machine.system.version = {4, minor, 950, 1, ""};
        machine.Remove(R"(E:\Save)");
        barValues.clear();
        Form1& window = Run();
        EXPECT_THAT(barValues, ElementsAre("1/100", "2/100"));
        window.Unload();
    }
}

TEST_F(Form1Test, ABarThatCountsStartsAgainAfterNinetyNine) {
    machine.system.version = {4, 10, 1998, 1, ""};
    for (int i = 0; i < 99; ++i) {
        machine.Seed({R"(C:\Data\f)" + std::to_string(i), "x"});
    }
    Run();
    ASSERT_THAT(barValues, SizeIs(101));
    EXPECT_EQ(barValues[98], "99/100");
    EXPECT_EQ(barValues[99], "1/100");
    EXPECT_EQ(barValues[100], "2/100");
}

TEST_F(Form1Test, WhileItRunsTheWindowShowsNeitherListNorFailures) {
    const Form1& window = Load();
    EXPECT_TRUE(window.IsVisible());
    EXPECT_FALSE(window.List2.Visible);
    EXPECT_FALSE(window.Label3.Visible);
    EXPECT_FALSE(window.Command1.Enabled);
    EXPECT_EQ(window.Command1.Caption.Get(), "Close");
    EXPECT_EQ(window.Label2.Caption.Get(), "Backup In Progress Please Wait !");
}

TEST_F(Form1Test, TheTimerWritesTheLogTwentyFiveMillisecondsAfterTheCopying) {
    Form1& window = Load();
    EXPECT_TRUE(window.Timer1.Running());
    EXPECT_EQ(window.Timer1.Interval(), 25U);
    EXPECT_FALSE(machine.Exists(Beside("Backup Log File.txt")));
    EXPECT_EQ(WaitFor(machine, program, [&] { return !RunLog(machine).empty(); }), 25U);
    EXPECT_FALSE(window.Timer1.Running());
}

TEST_F(Form1Test, TheResultIsShownAtTheTick) {
    program.session.gShowMessage = true;
    const Form1& window = Run();
    EXPECT_EQ(window.Label1.Caption.Get(), "Total files copied was 2");
    EXPECT_EQ(window.Label2.Caption.Get(), "Backup Has Been Completed");
    EXPECT_TRUE(window.List2.Visible);
    EXPECT_FALSE(window.Label3.Visible);
    EXPECT_TRUE(window.Command1.Enabled);
    EXPECT_TRUE(window.IsVisible());
}

TEST_F(Form1Test, TheWorkingStorageIsNeverShown) {
    const Form1& window = Run();
    for (const forms::Control* hidden :
         std::initializer_list<const forms::Control*>{&window.List1, &window.List3, &window.List4, &window.List5,
                                                      &window.Text1, &window.Text2, &window.TreeView1}) {
        EXPECT_FALSE(hidden->Visible) << hidden->Name();
    }
}

TEST_F(Form1Test, TheShortcutOpensTheLog) {
    machine.Seed({{R"(C:\Users\User\Desktop\Backup Log File.lnk)", "old"}});
    Run();
    ASSERT_THAT(machine.shell.Shortcuts(), SizeIs(1));
    const Shortcut& made = machine.shell.Shortcuts().front();
    EXPECT_EQ(made.path, R"(C:\Users\User\Desktop\Backup Log File.lnk)");
    EXPECT_EQ(made.targetPath, Beside("Backup Log File.txt"));
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, Beside("Marlok Backup.exe, 0"));
    EXPECT_EQ(made.description, "Backup Log File");
    EXPECT_EQ(made.workingDirectory, std::string(programFolder) + "\\");
}

TEST_F(Form1Test, WithAClosingMessageTheProgressWindowSaysThatTheBackupIsCompleted) {
    program.session.gShowMessage = true;
    Run();
    EXPECT_EQ(Progress().Label3.Caption.Get(), "Backup Completed");
    EXPECT_FALSE(Progress().picBox->Visible);
    EXPECT_FALSE(Progress().Label2.Visible);
    EXPECT_EQ(quietRuns, 0);
    EXPECT_EQ(machine.desktop.HourglassesShown(), 2) << "for the log, and for the closing message";
}

TEST_F(Form1Test, WithoutAClosingMessageTheWindowIsHiddenAndTheMainWindowTold) {
    program.session.gShowMessage = false;
    const Form1& window = Run();
    EXPECT_FALSE(window.IsVisible());
    EXPECT_EQ(quietRuns, 1);
    EXPECT_EQ(Progress().Label3.Caption.Get(), "Backup Is Finished !");
    EXPECT_EQ(machine.desktop.HourglassesShown(), 1);
}

TEST_F(Form1Test, AfterAQuietRunTheProgressWindowStaysUntilItIsTold) {
    Run();
    EXPECT_TRUE(Progress().IsVisible());
    machine.clock.Advance(60'000);
    program.windows.Turn();
    EXPECT_NE(program.windows.Find<Form5>(), nullptr);
    EXPECT_NE(program.windows.Find<Form1>(), nullptr);
}

TEST_F(Form1Test, AQuietRunNeedsNobodyToBeTold) {
    program.windows.Load<Form1>(program.session, LocationsAt({R"(E:\Save)"}), std::function<void()>());
    EXPECT_FALSE(Finish(*program.windows.Find<Form1>()).IsVisible());
}

TEST_F(Form1Test, AFailureIsToldInTheWindow) {
    machine.Lock(R"(C:\Data\a.doc)");
    program.session.gShowMessage = true;
    const Form1& window = Run();
    EXPECT_TRUE(window.Label3.Visible);
    EXPECT_EQ(window.Label3.Caption.Get(), std::string("1 Failure") + errorLogHint);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation)));
    EXPECT_EQ(program.session.exitCode, exitcode::somethingFailed);
}

TEST_F(Form1Test, TheWindowCannotBeClosedBeforeItsLogIsWritten) {
    program.session.gShowMessage = true;
    Form1& window = Load();
    EXPECT_FALSE(window.MayClose());
    Finish(window);
    EXPECT_TRUE(window.MayClose());
}

TEST_F(Form1Test, ALogOutstandingIsWrittenWhenTheMainWindowIsClosed) {
    Load();
    EXPECT_THAT(RunLog(machine), IsEmpty());
    program.windows.UnloadAll();
    EXPECT_THAT(RunLog(machine), SizeIs(4));
    EXPECT_EQ(program.session.exitCode, exitcode::allDone);
}

TEST_F(Form1Test, TheEndOfTheSessionIsHeldUpUntilTheLogIsWritten) {
    Form1& window = Load();
    EXPECT_EQ(machine.desktop.ShutdownReason(), "A backup is running.");
    Finish(window);
    EXPECT_EQ(machine.desktop.ShutdownReason(), "");
}

TEST_F(Form1Test, ARunStopsWithinTheFileBeingCopiedWhenTheSessionEnds) {
    machine.faults.BeforeStep([this](const Step& step) {
        if (step.operation == "Copy" && machine.Exists(R"(E:\Save\Data\a.doc)")) {
            static_cast<void>(machine.desktop.EndSession());
            machine.clock.Advance(1000);
        }
    });
    const Form1& window = Load();
    machine.faults.BeforeStep({});
    EXPECT_THAT(RunLog(machine), SizeIs(3)) << "at once";
    EXPECT_THAT(ErrorLog(machine), ElementsAre(testing::HasSubstr("stopped here because Windows")));
    WaitFor(machine, program, [&] { return !window.Timer1.Running(); });
    EXPECT_TRUE(window.Label3.Visible);
    EXPECT_EQ(program.session.exitCode, exitcode::somethingFailed);
}

/// A whole drive as location, with a file that nobody backs up.
class WholeDriveTest : public Form1Test {
 protected:
    WholeDriveTest() {
        Configure(machine, {{"E:\\", {R"(C:\Data)"}}});
        machine.Seed({{R"(E:\Photos\a.jpg)", "a picture"}});
        program.session.gAllFiles = true;
    }
};

TEST_F(WholeDriveTest, IsAskedAbout) {
    machine.desktop.Answer(button::yes);
    Run({"E:\\"});
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    const ShownMessage& question = machine.desktop.Messages().front();
    EXPECT_THAT(question.text, HasSubstr("drive E:\\ is"));
    EXPECT_THAT(question.text, HasSubstr(": 1 (9 bytes)"));
    ASSERT_EQ(question.captions.size(), 2U);
    EXPECT_EQ(question.captions.front().caption, "Keep") << "which Enter presses";
    EXPECT_EQ(question.captions.front().button, DefaultButton(question.style));
    EXPECT_EQ(machine.Read(R"(E:\Photos\a.jpg)"), "a picture");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(HasSubstr("kept: 1 files that no source has")));
}

TEST_F(WholeDriveTest, IsEmptiedWhenThePersonSaysSo) {
    machine.desktop.Answer(button::no);
    Run({"E:\\"});
    EXPECT_FALSE(machine.Exists(R"(E:\Photos\a.jpg)"));
    EXPECT_EQ(machine.Read(R"(E:\Data\a.doc)"), "one");
    EXPECT_EQ(program.session.exitCode, exitcode::allDone);
}

TEST_F(WholeDriveTest, WhatWasClickedBeforeDoesNotAnswer) {
    bool clicked = false;
    machine.desktop.HasDone([&] { clicked = true; });
    machine.desktop.Answer(button::yes);
    Load({"E:\\"});
    EXPECT_EQ(machine.desktop.PendingActions(), 0U);
    EXPECT_FALSE(clicked);
}

TEST_F(Form1Test, AnErrorLogThatCannotBeWrittenIsSaidInTheWindow) {
    machine.Lock(R"(C:\Data\a.doc)");
    machine.Seed({{Beside("Backup Error Log.txt"), "old"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    const Form1& window = Run();
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(window.Label3.Caption.Get(),
              "1 Failure. \"Backup Error Log.txt\" Could Not Be Written: the file is in use by another program (error "
              "32)\r\nC:\\Data\\a.doc: the file is in use by another program (error 32)");
}

TEST_F(Form1Test, SeveralFailuresAreCounted) {
    machine.Lock(R"(C:\Data\a.doc)");
    machine.Lock(R"(C:\Data\Sub\b.txt)");
    EXPECT_EQ(Run().Label3.Caption.Get(), std::string("2 Failures") + errorLogHint);
}

TEST_F(Form1Test, AFailureShowsTheWindowEvenWithoutAClosingMessage) {
    machine.Lock(R"(C:\Data\a.doc)");
    program.session.gShowMessage = false;
    const Form1& window = Run();
    EXPECT_TRUE(window.IsVisible());
    EXPECT_TRUE(window.Label3.Visible);
    EXPECT_EQ(quietRuns, 0);
}

TEST_F(Form1Test, ALogThatCannotBeWrittenIsAFailureLikeAnyOther) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    const Form1& window = Run();
    EXPECT_TRUE(window.IsVisible());
    EXPECT_TRUE(window.Label3.Visible);
    EXPECT_EQ(window.Label3.Caption.Get(), R"(1 Failure, See "Backup Error Log.txt" In The Program's Folder)");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(Beside("Backup Log File.txt"), error::sharingViolation)));
    EXPECT_EQ(program.session.exitCode, exitcode::somethingFailed);
    EXPECT_EQ(window.Label2.Caption.Get(), "Backup Has Been Completed");
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(Form1Test, AShortcutThatCannotBeMadeIsReported) {
    machine.shell.desktopFolder = R"(C:\Gone)";
    const Form1& window = Run();
    EXPECT_TRUE(window.IsVisible());
    EXPECT_TRUE(window.Label3.Visible);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("Backup Log File.lnk", error::pathNotFound)));
    EXPECT_THAT(RunLog(machine), SizeIs(4));
}

TEST_F(Form1Test, AMissingDesktopFolderIsReportedLikewise) {
    machine.shell.desktopFolder = "";
    EXPECT_TRUE(Run().Label3.Visible);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("Backup Log File.lnk", error::pathNotFound)));
}

TEST_F(Form1Test, ALogThatCannotBeWrittenIsReportedBesideWhatElseFailed) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    machine.Lock(R"(C:\Data\a.doc)");
    machine.shell.desktopFolder = "";
    EXPECT_EQ(Run().Label3.Caption.Get(), R"(3 Failures, See "Backup Error Log.txt" In The Program's Folder)");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation),
                                               Failed(Beside("Backup Log File.txt"), error::sharingViolation),
                                               Failed("Backup Log File.lnk", error::pathNotFound)));
}

TEST_F(Form1Test, CloseHasTheProgramStartedAgainAndEndsIt) {
    machine.Seed({{Beside("Restart.exe"), "an old one"}});
    program.windows.Load<app::Form2>(program.session.machine);
    program.session.gShowMessage = true;
    Run().Command1.Click();
    EXPECT_THAT(machine.process.Started(), ElementsAre(Beside("Restart.exe")));
    EXPECT_EQ(machine.Read(Beside("Restart.exe")), "restarter");
    EXPECT_EQ(machine.Read(Beside("Restart.sec")), "restarter");
    EXPECT_FALSE(program.windows.AnyLoaded());
}

TEST_F(Form1Test, CloseUnloadsTheProgressWindowBeforeAnythingElse) {
    program.session.gShowMessage = true;
    Form1& window = Run();
    bool gone = false;
    machine.faults.BeforeStep([&](const Step& step) {
        gone = gone || (step.operation == "Copy" && program.windows.Find<Form5>() == nullptr);
    });
    window.Command1.Click();
    EXPECT_TRUE(gone);
}

TEST_F(Form1Test, TheScanFlagsAreSetWhileTheWindowIsLoaded) {
    Form1& window = Run();
    EXPECT_TRUE(program.session.gNodesSorted);
    EXPECT_TRUE(program.session.gNodesExpanded);
    window.Unload();
    EXPECT_FALSE(program.session.gNodesSorted);
    EXPECT_FALSE(program.session.gNodesExpanded);
}

TEST_F(Form1Test, UnloadingTheWindowUnloadsEveryWindow) {
    program.windows.Load<app::Form2>(program.session.machine);
    Run().Unload();
    EXPECT_FALSE(program.windows.AnyLoaded());
    EXPECT_THAT(machine.process.Started(), IsEmpty()) << "only Close has the program started again";
}

TEST_F(Form1Test, WithoutTheRestartProgramCloseIsARunTimeErrorAndNothingEnds) {
    Form1& window = Run();
    machine.Remove(Beside("Restart.sec"));
    try {
        window.Command1_Click();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::fileNotFound);
    }
    EXPECT_THAT(machine.process.Started(), IsEmpty());
    EXPECT_FALSE(machine.Exists(Beside("Restart.exe")));
    EXPECT_EQ(program.windows.Find<Form1>(), &window);
    EXPECT_TRUE(program.session.gNodesSorted);
}

TEST_F(Form1Test, ARestartProgramThatIsInUseIsARunTimeErrorToo) {
    Form1& window = Run();
    machine.Seed({{Beside("Restart.exe"), "still running"}});
    machine.Lock(Beside("Restart.exe"));
    EXPECT_THROW(window.Command1_Click(), RuntimeError);
    EXPECT_THAT(machine.process.Started(), IsEmpty());
    EXPECT_EQ(program.windows.Find<Form1>(), &window);
}

TEST_F(Form1Test, ASecondRunInTheSameWindowStartsWithEmptyLists) {
    machine.Seed({{R"(C:\Data\c.txt)", "three", At(10, 0)}});
    Form1& window = Run();
    machine.Seed({{R"(C:\Data\a.doc)", "later", At(11, 0)}});
    window.RunAgain({Location(R"(E:\Save)")});
    Finish(window);
    EXPECT_THAT(window.List2.Items(), ElementsAre(R"(E:\Save\Data\a.doc)"));
    EXPECT_EQ(window.List1.ListCount(), 0);
    EXPECT_EQ(window.List3.ListCount(), 0);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "later");
}

TEST_F(Form1Test, OfTwoRunsTheLogHoldsTheSecondAndTheListOfOriginalPathsBoth) {
    Form1& window = Run();
    machine.Seed({{R"(C:\Data\a.doc)", "later", At(11, 0)}, {R"(C:\Data\z.txt)", "new", At(11, 0)}});
    window.RunAgain({Location(R"(E:\Save)")});
    Finish(window);
    EXPECT_THAT(RunLog(machine), ElementsAre(EndsWith(" was 2"), "", R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\z.txt)"));
    EXPECT_THAT(OriginalList(machine, "Save"),
                ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)", R"(C:\Data\z.txt)"));
}

TEST_F(Form1Test, ASecondRunShowsTheHiddenWindowWithoutTheFirstOnesResult) {
    machine.Lock(R"(C:\Data\a.doc)");
    Form1& window = Run();
    machine.Lock(R"(C:\Data\a.doc)", false);
    window.Hide();
    window.RunAgain({Location(R"(E:\Save)")});
    EXPECT_TRUE(window.IsVisible());
    EXPECT_FALSE(window.Label3.Visible);
    EXPECT_FALSE(window.List2.Visible);
    EXPECT_FALSE(window.Command1.Enabled);
    Finish(window);
    EXPECT_FALSE(window.Label3.Visible) << "nothing has failed this time";
    EXPECT_EQ(quietRuns, 1);
}

TEST_F(Form1Test, WhatIsClickedDuringARunIsThrownAwayOnceARun) {
    Form1& window = Load();
    EXPECT_EQ(machine.desktop.Discards(), 1);
    Finish(window);
    EXPECT_EQ(machine.desktop.Discards(), 1);
    window.RunAgain({Location(R"(E:\Save)")});
    EXPECT_EQ(machine.desktop.Discards(), 2);
}

TEST_F(Form1Test, ALocationWithoutASecondSourcePathStillGetsAnEmptyList) {
    Configure(machine, {{R"(E:\Empty)", {}}});
    machine.registry.SetString(SettingsKey("Empty"), "SourcePath1", R"(C:\Data)");
    machine.registry.SetString(SettingsKey("Empty"), "SourcePath3", R"(C:\Data)");
    Run({R"(E:\Empty)"});
    EXPECT_EQ(machine.Read(Beside("Empty.txt")), "");
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Empty\\", ""}}));
}

TEST_F(Form1Test, CopyAllEmptiesTheLocationForGood) {
    machine.Seed({{R"(E:\Save\stale.txt)", "s", {}, attribute::readOnly | attribute::hidden},
                  {R"(E:\Save\Old\Deep\x.txt)", "x"},
                  {R"(E:\Save\Data\a.doc)", "newer than its source", At(11, 0)}});
    program.session.gAllFiles = true;
    Run();
    EXPECT_EQ(machine.Tree(R"(E:\Save)"),
              (Tree{{"Data\\", ""}, {"Data\\Sub\\", ""}, {"Data\\Sub\\b.txt", "two"}, {"Data\\a.doc", "one"}}));
    Lines undoable;
    for (const ShellFileOperation& operation : machine.shell.Operations()) {
        if (operation.flags != (shellflag::silent | shellflag::noConfirmation)) {
            undoable.push_back(operation.from);
        }
    }
    EXPECT_THAT(undoable, IsEmpty()) << "nothing goes to the recycle bin, nothing is asked";
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form1Test, ChangedFilesOnlyDeletesNothing) {
    machine.Seed({{R"(E:\Save\stale.txt)", "s"}});
    Run();
    EXPECT_EQ(machine.Read(R"(E:\Save\stale.txt)"), "s");
}

TEST_F(Form1Test, ErrorsInALocationDoNotEndTheRun) {
    Configure(machine, {{R"(X:\Away)", {R"(C:\Data)"}}, {R"(E:\Save)", {R"(C:\Gone)", R"(C:\Data)"}}});
    const Form1& window = Run({R"(X:\Away)", R"(E:\Save)"});
    EXPECT_THAT(window.List2.Items(), SizeIs(2));
    EXPECT_EQ(window.Label3.Caption.Get(), std::string("2 Failures") + errorLogHint);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(X:\Away)"), Failed(R"(C:\Gone)", error::fileNotFound)));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form1Test, ARunTimeErrorInALocationDoesNotEndTheRun) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data\Sub)"}}});
    machine.faults.BeforeStep([](const Step& step) {
        if (step.operation == "CreateFolder" && step.path == R"(E:\Save)") {
            throw RuntimeError(runtimeerror::overflow, "Overflow");
        }
    });
    const Form1& window = Run({R"(E:\Save)", R"(E:\More)"});
    EXPECT_THAT(window.List2.Items(), ElementsAre(R"(E:\More\Data\Sub\b.txt)"));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(StartsWith(R"(E:\Save: )")));
}

TEST_F(Form1Test, TheWindowIsHalfAsWideAsTheScreenFromItsQuarter) {
    machine.desktop.SetScreenSize(20000, 16000);
    const Form1& window = Run();
    EXPECT_EQ(window.Left(), 5000);
    EXPECT_EQ(window.Width(), 10000);
    EXPECT_EQ(window.List2.Width, 10000 - 105);
}

TEST_F(Form1Test, ControlsLieInTheWindowAndCoverNoOther) {
    for (const auto& [width, height] : {std::pair(9600, 7200), std::pair(28800, 16200), std::pair(57600, 32400)}) {
        machine.desktop.SetScreenSize(width, height);
        Form1& window = Run();
        const std::vector<const forms::Control*> seen{&window.Label1, &window.Label2, &window.Label3, &window.List2,
                                                      &window.Command1};
        for (const forms::Control* control : seen) {
            EXPECT_GE(control->Left, 0) << control->Name();
            EXPECT_LE(control->Left + control->Width, window.Width()) << control->Name();
            EXPECT_LE(control->Top + control->Height, window.Height()) << control->Name();
            EXPECT_GT(control->Height, 0) << control->Name();
            for (const forms::Control* other : seen) {
                const bool apart =
                    control->Left + control->Width <= other->Left || other->Left + other->Width <= control->Left ||
                    control->Top + control->Height <= other->Top || other->Top + other->Height <= control->Top;
                EXPECT_TRUE(control == other || apart) << control->Name() << " and " << other->Name();
            }
        }
        window.Unload();
    }
}

TEST_F(Form1Test, WindowsRepaintWhileSourceAfterSourceIsSaved) {
    machine.Seed({{R"(C:\More\m.txt)", "m"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\More)"}}});
    Run();
    EXPECT_GE(machine.desktop.Paints(), 2);
}

TEST_F(Form1Test, EnterAndEscapePressClose) {
    Form1& window = Run();
    EXPECT_EQ(window.DefaultButton(), &window.Command1);
    EXPECT_EQ(window.CancelButton(), &window.Command1);
}

}  // namespace
}  // namespace marlok::test
