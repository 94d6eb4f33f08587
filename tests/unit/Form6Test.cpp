#include "ui/run/Form6.h"

#include "app/Main.h"
#include "platform/RuntimeError.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Form6Test : public ProgramTest {
 protected:
    Form6Test() {
        machine.AddDrive('F');
        machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}, {R"(C:\Data\Sub\b.txt)", "two", At(10, 0)}});
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    }

    /// Loads the window with a command file of this text, as if it had been started by the main window.
    Form6& Load(const std::string& commandFile) {
        machine.Write(Beside("Command.txt"), commandFile);
        return Load();
    }

    Form6& Load() {
        program_ = std::make_unique<Program>(machine.machine(), nullptr);
        return program_->windows.Load<Form6>(program_->session);
    }

    /// Starts the whole program and lets it run until the window is shown.
    Form6& Show(const std::string& arguments) {
        machine.process.arguments = arguments;
        program_ = std::make_unique<Program>(machine.machine(), nullptr);
        app::Main(program_->session, program_->windows);
        auto& window = *program_->windows.Find<Form6>();
        WaitFor(machine, *program_, [&] { return window.IsVisible(); });
        return window;
    }

    Program& program() { return *program_; }

    void TearDown() override {
        program_.reset();
        ProgramTest::TearDown();
    }

 private:
    std::unique_ptr<Program> program_;
};

TEST_F(Form6Test, LinesOfTheCommandFileThatAreNeverLocations) {
    const Form6& window =
        Load("C\r\nS\r\ns\r\nA\r\na\r\n\r\n \r\n\r\r\n/\r\n,\r\n.\r\n\\\r\nC\r\nc\r\nNone\r\nSS\r\n  \r\n..\r\nlast");
    EXPECT_THAT(window.List4.Items(), ElementsAre("C", "c", "None", "SS", "  ", ".."));
}

TEST_F(Form6Test, TheFirstLineIsPassedOverWhateverItHolds) {
    EXPECT_THAT(Load("Save\r\nMore\r\n").List4.Items(), ElementsAre("More"));
}

TEST_F(Form6Test, ALastLineWithoutLineBreakIsPassedOver) {
    EXPECT_THAT(Load("A\r\nSave").List4.Items(), IsEmpty());
    EXPECT_THAT(Load("Save").List4.Items(), IsEmpty());
    EXPECT_THAT(Load("").List4.Items(), IsEmpty());
}

TEST_F(Form6Test, ALineBreakIsBothCharacters) {
    EXPECT_THAT(Load("C\nSave\r\nx\ny\r\n").List4.Items(), ElementsAre("x\ny"));
}

TEST_F(Form6Test, ACommandFileInTheCodePageIsUnderstood) {
    EXPECT_THAT(Load("C\r\nS\xE4\r\n").List4.Items(), ElementsAre("S\u00E4"));
}

TEST_F(Form6Test, WithoutACommandFileEveryLocationRuns) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data\Sub)"}}});
    Load();
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\More\Data\Sub\b.txt)"));
}

TEST_F(Form6Test, AHiddenCommandFileIsNotSeen) {
    machine.Seed({{Beside("Command.txt"), "C\r\nNone\r\n", {}, attribute::hidden}});
    EXPECT_THAT(Load().List4.Items(), IsEmpty());
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(Form6Test, AnUnreadableCommandFileIsARunTimeErrorAndNothingIsSaved) {
    machine.Seed({{Beside("Command.txt"), "C\r\n"}});
    machine.Lock(Beside("Command.txt"));
    try {
        Load();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::permissionDenied);
    }
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
    EXPECT_EQ(machine.Read(Beside("Command.txt")), "C\r\n");
}

TEST_F(Form6Test, ACommandFileInUseIsNamedAndStaysAsItIs) {
    machine.Seed({{Beside("Command.txt"), "A\r\nOld\r\n"}});
    machine.Lock(Beside("Command.txt"));
    EXPECT_EQ(RunUnattended(machine, "C Save"), exitcode::nothingRan);
    const std::string reason = Beside("Command.txt") + ": the file is in use by another program (error 32)";
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre(HasSubstr(reason)));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(HasSubstr(reason)));
    EXPECT_EQ(machine.Read(Beside("Command.txt")), "A\r\nOld\r\n");
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
}

TEST_F(Form6Test, FailuresAreShownWithTheResult) {
    machine.Lock(R"(C:\Data\a.doc)");
    const Form6& window = Show("C S");
    EXPECT_TRUE(window.Label4.Visible);
    EXPECT_EQ(window.Label4.Caption.Get(), R"(1 Failure, See "Backup Error Log.txt" In The Program's Folder)");
    EXPECT_EQ(window.Label4.ForeColor.Get(), forms::Rgb(192, 0, 0));
    EXPECT_EQ(window.Label1.Caption.Get(), "1 Files Copied");
}

TEST_F(Form6Test, AnUnattendedRunEndsByItselfWhateverHasFailed) {
    machine.Lock(R"(C:\Data\a.doc)");
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
}

TEST_F(Form6Test, AnErrorLogThatCannotBeWrittenIsSaidInTheWindowWithItsFirstLines) {
    for (int i = 0; i < 7; ++i) {
        const std::string held = R"(C:\Data\held)" + std::to_string(i) + ".doc";
        machine.Seed({held, "held"});
        machine.Lock(held);
    }
    machine.Seed({{Beside("Backup Error Log.txt"), "old"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    const Form6& window = Show("C S");
    const Lines lines = LinesOf(window.Label4.Caption.Get());
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0],
              "7 Failures. \"Backup Error Log.txt\" Could Not Be Written: the file is in use by another "
              "program (error 32)");
    EXPECT_THAT(lines[1], Failed(R"(C:\Data\held0.doc)", error::sharingViolation));
    EXPECT_THAT(lines[5], Reported(R"(C:\Data\held4.doc)"));
    EXPECT_EQ(lines[6], "and 2 more");
    EXPECT_GE(window.Label4.Height, 7 * 200) << "there is room for all of them";
    EXPECT_LE(window.List2.Top + window.List2.Height, window.Label4.Top);
}

TEST_F(Form6Test, AnErrorLogThatCannotBeWrittenIsSaidOnStandardErrorWhenNothingIsShown) {
    machine.Lock(R"(C:\Data\a.doc)");
    machine.Seed({{Beside("Backup Error Log.txt"), "old"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(machine.process.ErrorLines(),
                ElementsAre(Failed(Beside("Backup Error Log.txt"), error::sharingViolation),
                            HasSubstr(R"(C:\Data\a.doc: the file is in use)")));
}

TEST_F(Form6Test, ALogOutstandingIsWrittenWhenTheProgramIsEnded) {
    Load("C\r\n");
    EXPECT_THAT(RunLog(machine), IsEmpty());
    program().windows.UnloadAll();
    EXPECT_EQ(RunLog(machine).size(), 4U);
    EXPECT_EQ(program().session.exitCode, exitcode::allDone);
}

TEST_F(Form6Test, AnAbsentDriveIsNamedWithWhatToDo) {
    Configure(machine, {{R"(N:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), testing::Contains(R"(N:\Save: Drive N: is not connected. Connect it, then run the )"
                                                     "backup again (error 3)"));
}

class SessionEndTest : public Form6Test {
 protected:
    SessionEndTest() {
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(F:\More)", {R"(C:\Data)"}}});
        // Windows asks whether the session may end once the first file is being copied.
        machine.faults.BeforeStep([this](const Step& step) {
            if (step.operation == "Copy" && reason.empty()) {
                reason = machine.desktop.ShutdownReason();
                mayEnd = machine.desktop.EndSession();
                machine.clock.Advance(1000);
            }
        });
    }

    std::string reason;
    bool mayEnd = true;
};

TEST_F(SessionEndTest, TheRunStopsAfterTheFileThatIsBeingCopied) {
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_EQ(reason, "A backup is running.");
    EXPECT_FALSE(mayEnd);
    EXPECT_EQ(machine.desktop.ShutdownReason(), "") << "it is over: the session may end";
    EXPECT_THAT(RunLog(machine), ElementsAre(HasSubstr(" Was 1"), "", R"(E:\Save\Data\a.doc)"));
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre("E:\\Save: the backup was stopped here because Windows was about to shut "
                            "down or to log off: run it again"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_FALSE(machine.Exists(R"(F:\More\Data)"));
}

TEST_F(SessionEndTest, ItsRecordsAreWrittenAtOnce) {
    Load("C\r\n");
    EXPECT_EQ(RunLog(machine).size(), 3U) << "without waiting for the timer";
    machine.faults.BeforeStep({});
    program().windows.Run();
    EXPECT_EQ(RunLog(machine).size(), 3U);
    EXPECT_EQ(program().session.exitCode, exitcode::somethingFailed);
}

TEST_F(Form6Test, ARunThatIsCompleteWhenTheSessionEndsIsNotCalledStopped) {
    machine.faults.BeforeStep([this](const Step& step) {
        const bool allCopied = machine.Exists(R"(E:\Save\Data\Sub\b.txt)");
        if (allCopied && step.operation == "Move" && step.path == Beside("~Marlok Backup.new")) {
            static_cast<void>(machine.desktop.EndSession());
            machine.clock.Advance(1000);
        }
    });
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(RunLog(machine).size(), 4U);
}

TEST_F(Form6Test, AStartRefusedWhileTheRunGoesOnStaysInTheErrorLog) {
    machine.Seed(
        {{Beside("Backup Error Log.txt"), "C:\\x: of a run before\r\nMarlok Backup Utility: an older note\r\n"}});
    bool refused = false;
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy" && !refused) {
            refused = true;
            machine.Write(Beside("Backup Error Log.txt"),
                          machine.Read(Beside("Backup Error Log.txt")) + "Marlok Backup Utility: not run\r\n");
        }
    });
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone) << "this run has done all";
    EXPECT_THAT(ErrorLog(machine), ElementsAre("Marlok Backup Utility: not run"));
    machine.faults.BeforeStep({});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(ErrorLog(machine), IsEmpty());
}

TEST_F(Form6Test, ALineSelectsEveryLocationWhosePathHoldsItInAnyLetterCase) {
    Configure(machine,
              {{R"(E:\Backup)", {R"(C:\Data)"}}, {R"(F:\Old Backup)", {R"(C:\Data)"}}, {R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C backup"), exitcode::allDone);
    EXPECT_TRUE(machine.Exists(R"(E:\Backup\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(F:\Old Backup\Data\a.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save)"));
}

TEST_F(Form6Test, LetterCaseBeyondEnglishDoesNotMatterEither) {
    Configure(machine, {{"E:\\\u00C4ltere", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C \u00E4LTERE"), exitcode::allDone);
    EXPECT_TRUE(machine.Exists("E:\\\u00C4ltere\\Data\\a.doc"));
}

TEST_F(Form6Test, ALongerLineSelectsNoShorterPath) {
    Configure(machine, {{R"(E:\Backup)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, R"(C E:\Backup\Old)"), exitcode::nothingRan);
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
}

TEST_F(Form6Test, AnyOfSeveralLinesSelects) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\More)", {R"(C:\Data)"}}, {R"(E:\Third)", {}}});
    EXPECT_EQ(RunUnattended(machine, "C None More Third"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), Contains(Reported(R"(E:\Third)"))) << "nothing is to be backed up into it";
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"More\\", ""},
                                          {"More\\Data\\", ""},
                                          {"More\\Data\\Sub\\", ""},
                                          {"More\\Data\\Sub\\b.txt", "two"},
                                          {"More\\Data\\a.doc", "one"},
                                          {"Third\\", ""}}));
}

TEST_F(Form6Test, LinesThatNameNoLocationLeaveALogOfOneLine) {
    EXPECT_EQ(RunUnattended(machine, "C Nothing"), exitcode::nothingRan);
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")),
              "Total files copied Monday, Nov 15 2004 At 12:00 PM Was 0\r\n");
    EXPECT_EQ(machine.shell.Shortcuts().size(), 1U);
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
}

TEST_F(Form6Test, ASecondCIsALocationLine) {
    EXPECT_EQ(RunUnattended(machine, "A C"), exitcode::nothingRan);
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
    EXPECT_EQ(RunLog(machine).size(), 1U);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported("C")));
}

TEST_F(Form6Test, EveryArgumentThatChoosesNoLocationIsReported) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C Dayly Save Weekly"), exitcode::somethingFailed);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_THAT(ErrorLog(machine), ElementsAre("Dayly: no backup location holds this in its path, so that nothing was "
                                               "backed up for it",
                                               Reported("Weekly")));
}

TEST_F(Form6Test, AFirstArgumentThatSaysNothingIsReportedAndTheRunGoesOn) {
    EXPECT_EQ(RunUnattended(machine, "Save"), exitcode::somethingFailed);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_THAT(ErrorLog(machine), ElementsAre("Save: passed over: the first argument says what is to be copied, A for "
                                               "all files or C for changed files only"));
}

TEST_F(Form6Test, EveryLetterMayComeFirst) {
    for (const char* letter : {"A", "a", "C", "c"}) {
        EXPECT_EQ(RunUnattended(machine, letter), exitcode::allDone) << letter;
        EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt"))) << letter;
    }
    for (const char* letter : {"S", "s"}) {
        EXPECT_FALSE(Show(letter).Label4.Visible) << letter;
    }
}

TEST_F(Form6Test, ALocationWithABlankBecomesTwoLines) {
    Configure(machine, {{R"(E:\My Files)", {R"(C:\Data)"}}, {R"(E:\Filed)", {R"(C:\Data\Sub)"}}});
    EXPECT_EQ(RunUnattended(machine, R"(C "Your Files")"), exitcode::somethingFailed);
    EXPECT_TRUE(machine.Exists(R"(E:\My Files\Data\a.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Filed)"));
}

TEST_F(Form6Test, TheLogListsTheSavedCopiesInTheOrderOfCopying) {
    machine.Seed({{R"(C:\Data\z.txt)", "z"}, {R"(C:\Data\Another\c.txt)", "c"}, {R"(C:\First\d.txt)", "d"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\First)"}}, {R"(F:\More)", {R"(C:\First)"}}});
    machine.clock.SetNow(At(17, 12));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")),
              "Total files copied Monday, Nov 15 2004 At 05:12 PM Was 6\r\n"
              "\r\n"
              "E:\\Save\\Data\\a.doc\r\n"
              "E:\\Save\\Data\\z.txt\r\n"
              "E:\\Save\\Data\\Another\\c.txt\r\n"
              "E:\\Save\\Data\\Sub\\b.txt\r\n"
              "E:\\Save\\First\\d.txt\r\n"
              "F:\\More\\First\\d.txt\r\n");
    EXPECT_EQ(machine.Read(Beside("Save.txt")),
              "C:\\Data\\a.doc\r\n"
              "C:\\Data\\z.txt\r\n"
              "C:\\Data\\Another\\c.txt\r\n"
              "C:\\Data\\Sub\\b.txt\r\n"
              "C:\\First\\d.txt\r\n");
    EXPECT_EQ(machine.Read(Beside("More.txt")), "C:\\First\\d.txt\r\n");
}

TEST_F(Form6Test, TheLogHoldsTheLastRunAndTheListOfOriginalPathsHoldsAll) {
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    machine.Seed({{R"(C:\Data\c.txt)", "three"}, {R"(C:\Data\a.doc)", "newer", At(11, 0)}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(RunLog(machine),
                ElementsAre(HasSubstr(" Was 2"), "", R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\c.txt)"));
    EXPECT_THAT(OriginalList(machine, "Save"),
                ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)", R"(C:\Data\c.txt)"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(RunLog(machine), ElementsAre(HasSubstr(" Was 0")));
    EXPECT_EQ(OriginalList(machine, "Save").size(), 3U);
}

TEST_F(Form6Test, AnOriginalPathInsideAListedOneIsNotAddedAgain) {
    machine.Seed({{R"(C:\Data\b.txt.bak)", "b"}, {Beside("Save.txt"), "C:\\Data\\a.docx\r\nc:\\data\\sub\\B.TXT\r\n"}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.docx)", R"(c:\data\sub\B.TXT)",
                                                           R"(C:\Data\b.txt.bak)", R"(C:\Data\Sub\b.txt)"));
}

TEST_F(Form6Test, ALocationWithoutSourcesIsReportedAndStillGetsAnEmptyList) {
    Configure(machine, {{R"(E:\Empty)", {}}, {R"(E:\Save)", {R"(C:\Data)"}}});
    machine.registry.SetString(SettingsKey("Empty"), "SourcePath1", R"(C:\Data)");
    EXPECT_EQ(RunUnattended(machine, "C Empty"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(E:\Empty)")));
    EXPECT_EQ(machine.Read(Beside("Empty.txt")), "");
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Empty\\", ""}}));
}

TEST_F(Form6Test, WithoutAnyLocationTheWindowGoesStraightToItsLog) {
    for (const char* first : {"", "0"}) {
        Configure(machine, {});
        machine.registry.SetString(SettingsKey("Target"), "TargetPath2", first);
        machine.registry.SetString(SettingsKey("Target"), "TargetPath3", R"(E:\Save)");
        Form6& window = Load("C\r\n");
        EXPECT_TRUE(window.Timer1.Running());
        EXPECT_EQ(machine.Tree("E:\\"), Tree{});
        program().windows.Run();
        EXPECT_THAT(RunLog(machine), ElementsAre(HasSubstr(" Was 0")));
    }
}

TEST_F(Form6Test, ANestedLocationHasItsListInAFolder) {
    Configure(machine, {{R"(E:\Backups\Daily)", {R"(C:\Data\Sub)"}}});
    EXPECT_EQ(RunUnattended(machine, R"(C Backups\Daily)"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Backups\Daily\Data\Sub\b.txt)"), "two");
    EXPECT_THAT(OriginalList(machine, R"(Backups\Daily)"), ElementsAre(R"(C:\Data\Sub\b.txt)"));
}

TEST_F(Form6Test, TheShortcutOpensTheLog) {
    machine.Seed({{R"(C:\Users\User\Desktop\Backup Log File.lnk)", "old"}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    ASSERT_EQ(machine.shell.Shortcuts().size(), 1U);
    const Shortcut& made = machine.shell.Shortcuts().front();
    EXPECT_EQ(made.path, R"(C:\Users\User\Desktop\Backup Log File.lnk)");
    EXPECT_EQ(made.targetPath, Beside("Backup Log File.txt"));
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, Beside("Marlok Backup.exe, 0"));
    EXPECT_EQ(made.description, "Backup Log File");
    EXPECT_EQ(made.workingDirectory, std::string(programFolder) + "\\");
}

TEST_F(Form6Test, AMissingDesktopIsReported) {
    machine.shell.desktopFolder = R"(C:\Gone)";
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("Backup Log File.lnk", error::pathNotFound)));
    EXPECT_TRUE(machine.Exists(Beside("Backup Log File.txt")));
}

TEST_F(Form6Test, TheCommandFileIsGoneAfterTheRun) {
    const Form6& window = Load("C\r\n");
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
    EXPECT_TRUE(window.Timer1.Running());
    EXPECT_EQ(window.Timer1.Interval(), 50U);
    machine.Write(Beside("Command.txt"), "again");
    program().windows.Run();
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
}

TEST_F(Form6Test, TheWholeRunEndsFiftyMillisecondsAfterTheCopying) {
    const std::uint64_t begin = machine.clock.TickCount();
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.clock.TickCount() - begin, 50U);
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
}

TEST_F(Form6Test, TheWindowIsNotShownUnlessAskedFor) {
    Form6& window = Load("C\r\n");
    EXPECT_FALSE(window.IsVisible());
    EXPECT_FALSE(window.List2.Visible);
    EXPECT_EQ(window.Label1.Caption.Get(), "91 Files Copied");
    EXPECT_EQ(window.Caption(), "Marlok Backup Utility");
    EXPECT_EQ(window.Command1.Caption.Get(), "Close");
    window.Timer1_Timer();
    EXPECT_FALSE(window.IsVisible());
    EXPECT_FALSE(program().windows.AnyLoaded());
}

TEST_F(Form6Test, WhenAskedForTheResultIsShown) {
    const Form6& window = Show("C S");
    EXPECT_EQ(window.Label1.Caption.Get(), "2 Files Copied");
    EXPECT_EQ(window.Label2.Caption.Get(), "Backup Program Is Finished");
    EXPECT_TRUE(window.List2.Visible);
    EXPECT_THAT(window.List2.Items(), ElementsAre(R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_EQ(window.List2.ListIndex(), 0);
    EXPECT_FALSE(window.Timer1.Running());
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
    for (const forms::Control* hidden :
         {static_cast<const forms::Control*>(&window.List1), static_cast<const forms::Control*>(&window.List3),
          static_cast<const forms::Control*>(&window.List4), static_cast<const forms::Control*>(&window.TreeView1)}) {
        EXPECT_FALSE(hidden->Visible) << hidden->Name();
    }
}

TEST_F(Form6Test, AResultWithoutCopiesSelectsNothing) {
    const Form6& window = Show("C S Nothing");
    EXPECT_EQ(window.Label1.Caption.Get(), "0 Files Copied");
    EXPECT_EQ(window.List2.ListIndex(), -1);
}

TEST_F(Form6Test, CloseStartsTheRestartProgramAndEndsTheProgram) {
    machine.Seed({{Beside("Restart.exe"), "an old one"}});
    Show("C S").Command1.Click();
    EXPECT_THAT(machine.process.Started(), ElementsAre(Beside("Restart.exe")));
    EXPECT_EQ(machine.Read(Beside("Restart.exe")), "restarter");
    EXPECT_TRUE(machine.Exists(Beside("Restart.sec")));
    EXPECT_FALSE(program().windows.AnyLoaded());
    EXPECT_FALSE(program().session.gNodesSorted);
    EXPECT_FALSE(program().session.gNodesExpanded);
}

TEST_F(Form6Test, CloseByTheUserEndsTheWholeProgram) {
    machine.process.arguments = "C S";
    Program whole(machine.machine(), nullptr);
    app::Main(whole.session, whole.windows);
    auto* window = whole.windows.Find<Form6>();
    WaitFor(machine, whole, [&] { return window->IsVisible(); });
    machine.desktop.Do([&] { window->Command1.Click(); });
    whole.windows.Run();
    EXPECT_EQ(whole.session.exitCode, exitcode::allDone);
    EXPECT_EQ(machine.process.Started().size(), 1U);
}

TEST_F(Form6Test, WithoutTheRestartProgramCloseIsARunTimeErrorAndNothingEnds) {
    Form6& window = Show("C S");
    machine.Remove(Beside("Restart.sec"));
    try {
        window.Command1_Click();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::fileNotFound);
    }
    EXPECT_THAT(machine.process.Started(), IsEmpty());
    EXPECT_TRUE(program().windows.Find<Form6>() != nullptr);
}

TEST_F(Form6Test, TheScanFlagsAreSetWhileTheWindowIsLoaded) {
    Load("C\r\n");
    EXPECT_TRUE(program().session.gNodesSorted);
    EXPECT_TRUE(program().session.gNodesExpanded);
    program().windows.Run();
    EXPECT_FALSE(program().session.gNodesSorted);
    EXPECT_FALSE(program().session.gNodesExpanded);
}

TEST_F(Form6Test, TheWindowTakesAQuarterOfTheScreenFromItsQuarter) {
    machine.desktop.SetScreenSize(20000, 16000);
    const Form6& window = Load("C\r\n");
    EXPECT_EQ(window.Left(), 5000);
    EXPECT_EQ(window.Top(), 4000);
    EXPECT_EQ(window.Width(), 10000);
    EXPECT_EQ(window.Height(), 8000);
}

TEST_F(Form6Test, ExitCodes) {
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(RunUnattended(machine, "C Nothing"), exitcode::nothingRan);
    machine.Seed({{R"(C:\Data\held.doc)", "held"}});
    machine.Lock(R"(C:\Data\held.doc)");
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    machine.Lock(R"(C:\Data\held.doc)", false);
    Configure(machine, {});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::nothingRan);
}

TEST_F(Form6Test, ALogThatCannotBeWrittenIsAFailure) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(Beside("Backup Log File.txt"), error::sharingViolation)));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(Form6Test, AListOfOriginalPathsThatCannotBeWrittenIsReported) {
    machine.Seed({{Beside("Save.txt"), "C:\\x\r\n"}});
    machine.Lock(Beside("Save.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(Beside("Save.txt"), error::sharingViolation)));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(Form6Test, WhatAListMissedIsListedByTheNextRun) {
    machine.Seed({{Beside("Save.txt"), "C:\\x\r\n"}});
    machine.Lock(Beside("Save.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    machine.Lock(Beside("Save.txt"), false);
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre("C:\\x", R"(C:\Data\a.doc)", R"(C:\Data\Sub\b.txt)"));
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(Form6Test, CopyAllEmptiesTheLocationFirst) {
    machine.Seed({{R"(E:\Save\Stale\x.txt)", "x"},
                  {R"(E:\Save\Data\a.doc)", "newer than its source", At(11, 0)},
                  {R"(E:\Save\y.txt)", "y", {}, attribute::readOnly | attribute::hidden},
                  {R"(E:\Save\.kept\z.txt)", "z"},
                  {R"(E:\Save\.gone)", "a file"},
                  {R"(E:\Other\o.txt)", "o"}});
    EXPECT_EQ(RunUnattended(machine, "A Save"), exitcode::allDone);
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Other\\", ""},
                                          {"Other\\o.txt", "o"},
                                          {"Save\\", ""},
                                          {"Save\\.kept\\", ""},
                                          {"Save\\.kept\\z.txt", "z"},
                                          {"Save\\Data\\", ""},
                                          {"Save\\Data\\Sub\\", ""},
                                          {"Save\\Data\\Sub\\b.txt", "two"},
                                          {"Save\\Data\\a.doc", "one"}}));
}

TEST_F(Form6Test, ChangedFilesOnlyDeletesNothing) {
    machine.Seed({{R"(E:\Save\Stale\x.txt)", "x"}});
    EXPECT_EQ(RunUnattended(machine, "C Save"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save\Stale\x.txt)"), "x");
}

}  // namespace
}  // namespace marlok::test
