#include "app/Main.h"

#include "app/Form2.h"
#include "app/frmStartUp.h"
#include "platform/RuntimeError.h"
#include "tests/machine/ForwardingFiles.h"
#include "tests/machine/ForwardingRegistry.h"
#include "tests/unit/ProgramFixture.h"
#include "tests/unit/RecordingViews.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form6.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A registry that holds a source under every number.
class EndlessRegistry : public ForwardingRegistry {
 public:
    using ForwardingRegistry::ForwardingRegistry;

    SystemError OpenKey(const std::string& path, std::uint32_t access, std::unique_ptr<RegistryKey>& key) override {
        std::unique_ptr<RegistryKey> inner;
        const SystemError code = ForwardingRegistry::OpenKey(path, access, inner);
        key = code == error::success ? std::make_unique<Key>(std::move(inner)) : nullptr;
        return code;
    }

 private:
    class Key : public RegistryKey {
     public:
        explicit Key(std::unique_ptr<RegistryKey> inner) : inner_(std::move(inner)) {}

        SystemError QueryValue(const std::string& name, RegistryValue& value) override {
            if (name.starts_with("SourcePath")) {
                value = {registrytype::string, std::string("C:\\Data\0", 8)};
                return error::success;
            }
            return inner_->QueryValue(name, value);
        }
        SystemError SetValue(const std::string& name, const RegistryValue& value) override {
            return inner_->SetValue(name, value);
        }
        SystemError DeleteValue(const std::string& name) override { return inner_->DeleteValue(name); }
        SystemError DeleteKey(const std::string& path) override { return inner_->DeleteKey(path); }
        SystemError EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) override {
            return inner_->EnumValue(index, name, value);
        }

     private:
        std::unique_ptr<RegistryKey> inner_;
    };
};

class MainTest : public ProgramTest {
 protected:
    MainTest() {
        machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}});
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    }

    /// The program after its entry procedure, with the windows that it has loaded.
    Program& Start(const std::string& arguments) {
        machine.process.arguments = arguments;
        program_ = std::make_unique<Program>(machine.machine(), nullptr);
        app::Main(program_->session, program_->windows);
        return *program_;
    }

    /// Captions of the first windows that are loaded: one of them at most.
    static std::string FirstWindow(const Program& program) {
        std::string name;
        name += program.windows.Find<app::frmStartUp>() != nullptr ? "frmStartUp" : "";
        name += program.windows.Find<ui::frmSSTab>() != nullptr ? "frmSSTab" : "";
        name += program.windows.Find<Form6>() != nullptr ? "Form6" : "";
        return name;
    }

    void TearDown() override {
        program_.reset();
        ProgramTest::TearDown();
    }

    void StoreSource(const std::string& section, int number, const std::string& path) {
        machine.registry.SetString(SettingsKey(section), "SourcePath" + std::to_string(number), path);
    }

 private:
    std::unique_ptr<Program> program_;
};

TEST_F(MainTest, ASecondInstanceShowsItsMessageAndChangesNothing) {
    machine.Seed({{Beside("DeleteFolder.txt"), "C:\\Old\r\n"}, {R"(C:\Old\x.txt)", "x"}, {Beside("Restart.exe"), "r"}});
    const Tree before = machine.Tree("C:\\");
    machine.process.SetOtherInstanceRuns(true);
    EXPECT_EQ(RunProgram(machine, "A Save S"), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    const ShownMessage& shown = machine.desktop.Messages().front();
    EXPECT_EQ(shown.text, "This Program Is Already Running");
    EXPECT_EQ(shown.title, "Marlok Info.....");
    EXPECT_EQ(shown.style, messagestyle::ok | messagestyle::information);
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
    Tree after = machine.Tree("C:\\");
    EXPECT_EQ(after.erase(R"(Program Files\Marlok\Backup Error Log.txt)"), 1U);
    EXPECT_EQ(after, before);
}

TEST_F(MainTest, ASecondInstanceOfAPersonLeavesNoTraceAtAll) {
    machine.process.SetOtherInstanceRuns(true);
    EXPECT_EQ(RunProgram(machine, ""), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_EQ(machine.desktop.Messages().front().timeLimit, 0U) << "it waits for the person";
    EXPECT_EQ(machine.faults.Mutations(), 0U);
}

TEST_F(MainTest, ASecondInstanceWithoutAPersonEndsByItselfAndIsNoted) {
    machine.Seed({{Beside("Backup Error Log.txt"), "C:\\x: of the run that goes on\r\n"}});
    machine.process.SetOtherInstanceRuns(true);
    machine.desktop.AnswerNothing();
    EXPECT_EQ(RunProgram(machine, "A Save S"), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_TRUE(machine.desktop.Messages().front().ranOut);
    EXPECT_LE(machine.desktop.Messages().front().timeLimit, 30'000U);
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre("C:\\x: of the run that goes on",
                            "Marlok Backup Utility: Monday, Nov 15 2004 12:00 PM: not run, because the program was "
                            "running already; its arguments were A Save S"));
}

TEST_F(MainTest, AnErrorLogThatIsBeingReplacedIsWaitedFor) {
    machine.Seed({{Beside("Backup Error Log.txt"), "old\r\n"}});
    machine.process.SetOtherInstanceRuns(true);
    machine.desktop.AnswerNothing();
    int refused = 0;
    machine.faults.FailWhen([&](const Step& step) {
        return step.operation == "Open" && ++refused < 4 ? error::sharingViolation : error::success;
    });
    EXPECT_EQ(RunProgram(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(ErrorLog(machine).size(), 2U);
    machine.faults.Reset();
    machine.Lock(Beside("Backup Error Log.txt"));
    machine.desktop.AnswerNothing();
    EXPECT_EQ(RunProgram(machine, "A"), exitcode::nothingRan) << "but not for ever";
    EXPECT_THAT(machine.process.ErrorLines(), testing::Contains(HasSubstr("not run, because")));
}

/// Files that end every copy by an exception.
template <class Exception>
class ThrowingFiles : public ForwardingFiles {
 public:
    ThrowingFiles(FileSystem& inner, Exception exception) : ForwardingFiles(inner), exception_(exception) {}

    SystemError Copy(const std::string&, const std::string&, std::uint32_t, const CopyProgressRoutine&) override {
        throw exception_;
    }

 private:
    Exception exception_;
};

TEST_F(MainTest, WhateverEndsAnUnattendedRunIsReportedAndNobodyIsWaitedFor) {
    ThrowingFiles noMemory(machine.files, std::bad_alloc());
    EXPECT_EQ(RunUnattended(machine, noMemory, "C"), exitcode::nothingRan);
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre("Run-time error '7':\r\n\r\nOut of memory"));
    EXPECT_THAT(
        ErrorLog(machine),
        ElementsAre("Marlok Backup Utility: Monday, Nov 15 2004 12:00 PM: Out of memory (run-time error 7); the "
                    "program has ended"));
    ThrowingFiles logic(machine.files, std::logic_error("odd"));
    EXPECT_EQ(RunUnattended(machine, logic, "C"), exitcode::nothingRan);
    EXPECT_THAT(machine.process.ErrorLines().back(), HasSubstr("Internal error: odd"));
    ThrowingFiles unknown(machine.files, 4711);
    EXPECT_EQ(RunUnattended(machine, unknown, "C"), exitcode::nothingRan);
    EXPECT_THAT(machine.process.ErrorLines().back(), HasSubstr("'51'"));
    EXPECT_EQ(ErrorLog(machine).size(), 3U) << "none takes away the one before";
}

/// Finds the main window of a program that runs from start to end.
class MainWindowFinder : public RecordingViews {
 public:
    std::unique_ptr<forms::View> Attach(forms::Form& form) override {
        if (auto* main = dynamic_cast<ui::frmSSTab*>(&form)) {
            window = main;
        }
        return RecordingViews::Attach(form);
    }

    ui::frmSSTab* window = nullptr;
};

TEST_F(MainTest, AnErrorWhileTheMainWindowIsOpenShowsItsBoxAndEndsTheProgram) {
    machine.desktop.Answer(button::ok);
    std::string log;
    machine.desktop.OnMessage([&](const ShownMessage&) {
        log = machine.Exists(Beside("Backup Log File.txt")) ? machine.Read(Beside("Backup Log File.txt")) : "none";
        return 0;
    });
    MainWindowFinder views;
    // A run has copied, and its log is still to be written, when the error comes.
    machine.desktop.Do([&views] {
        views.window->Command8.Click();
        views.window->List1.UserSelected(2, {2});
        views.window->Check1.Value = forms::CheckBox::State::checked;
        views.window->Command8.Click();
    });
    machine.desktop.Do([] { throw RuntimeError(runtimeerror::diskFull, "Disk full"); });
    EXPECT_EQ(app::RunProgram(machine.machine(), &views), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_EQ(machine.desktop.Messages().front().text, "Run-time error '61':\r\n\r\nDisk full");
    EXPECT_EQ(machine.desktop.Messages().front().style, messagestyle::stop);
    EXPECT_THAT(log, HasSubstr(R"(E:\Save\Data\a.doc)")) << "written before the box waits";
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt")));
}

TEST_F(MainTest, AProgramFolderThatCannotBeWrittenIsSaidAndNothingStarts) {
    machine.Seed({{Beside("DeleteFolder.txt"), "C:\\Old\r\n"}, {R"(C:\Old\x.txt)", "x"}});
    machine.Deny(programFolder);
    machine.desktop.Answer(button::ok);
    EXPECT_EQ(RunProgram(machine, ""), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr(programFolder));
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr("access was denied (error 5)"));
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr("move the folder"));
    EXPECT_TRUE(machine.Exists(R"(C:\Old)"));
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre(HasSubstr("move the folder")));
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
}

TEST_F(MainTest, WhatPassesDoesNotKeepTheProgramFromStarting) {
    machine.faults.FailWhen([](const Step& step) {
        return step.path == Beside("~Marlok Backup.new") ? error::sharingViolation : error::success;
    });
    EXPECT_EQ(FirstWindow(Start("")), "frmSSTab");
    machine.faults.Reset();
    machine.Seed({{Beside("~Marlok Backup.new"), "left", {}, attribute::readOnly}});
    EXPECT_EQ(FirstWindow(Start("")), "frmSSTab");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(MainTest, WhatAKilledRestoreHasLeftGoes) {
    machine.Seed({{Beside("~Marlok Backup.put"), "C:\\Data\\a.doc\t~Marlok Backup.old\r\n"},
                  {R"(C:\Data\~Marlok Backup.part)", "half"}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone) << "neither reported";
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
    EXPECT_THAT(RunLog(machine), testing::Not(testing::Contains(HasSubstr("~")))) << "nor saved";
}

TEST_F(MainTest, ASecondInstanceLoadsNoWindow) {
    machine.process.SetOtherInstanceRuns(true);
    EXPECT_FALSE(Start("").windows.AnyLoaded());
}

TEST_F(MainTest, HelpIsThereForEveryWindow) {
    machine.Remove(Beside("Backup.hlp"));
    machine.Seed({{Beside("Help.html"), "page"}});
    Configure(machine, {});
    auto* welcome = Start("").windows.Find<app::frmStartUp>();
    ASSERT_NE(welcome, nullptr);
    welcome->AskForHelp();
    ASSERT_EQ(machine.shell.Opened().size(), 1U);
    EXPECT_EQ(machine.shell.Opened().front().path, Beside("Help.html"));
}

TEST_F(MainTest, PendingDeletionsAreCarriedOutOnce) {
    machine.Seed({{R"(C:\Old\Sub\)"},
                  {R"(C:\Older\)"},
                  {R"(C:\Kept\y.txt)", "y"},
                  {Beside("DeleteFolder.txt"), "C:\\Old\r\n\r\nC:\\Older\r\n"}});
    Start("");
    EXPECT_FALSE(machine.Exists(R"(C:\Old)"));
    EXPECT_FALSE(machine.Exists(R"(C:\Older)"));
    EXPECT_TRUE(machine.Exists(R"(C:\Kept\y.txt)"));
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_TRUE(machine.Exists(Beside("Marlok Backup.exe")));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainTest, ThePendingLineWithoutALineBreakCounts) {
    machine.Seed({{R"(C:\Old\)"}, {Beside("DeleteFolder.txt"), "C:\\Missing\r\nC:\\Old"}});
    Start("");
    EXPECT_FALSE(machine.Exists(R"(C:\Old)"));
}

TEST_F(MainTest, PendingPathsAreNotTrimmed) {
    machine.Seed({{R"(C:\Old\)"}, {Beside("DeleteFolder.txt"), ";C:\\Old\r\n#C:\\Old\r\n C:\\Old\r\n"}});
    Start("");
    EXPECT_TRUE(machine.Exists(R"(C:\Old)"));
}

TEST_F(MainTest, AnEmptyListOfPendingDeletionsIsDeleted) {
    machine.Seed({{Beside("DeleteFolder.txt"), ""}});
    Start("");
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainTest, APendingFolderThatIsKeptIsShownInOneBoxAndInTheErrorLog) {
    machine.Seed({{R"(C:\Held\x.txt)", "x"},
                  {R"(C:\Old\)"},
                  {Beside("DeleteFolder.txt"), "C:\\Held\r\nC:\\Held\\x.txt\r\nC:\\Old\r\n"}});
    machine.desktop.Answer(button::ok);
    EXPECT_EQ(FirstWindow(Start("")), "frmSSTab");
    EXPECT_TRUE(machine.Exists(R"(C:\Held\x.txt)"));
    EXPECT_FALSE(machine.Exists(R"(C:\Old)"));
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr("C:\\Held\r\n    not deleted"));
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr("C:\\Held\\x.txt\r\n    not deleted"));
    EXPECT_EQ(machine.desktop.Messages().front().title, "Marlok Info.....");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(C:\Held)"), Reported(R"(C:\Held\x.txt)")));
}

TEST_F(MainTest, AnUnattendedStartShowsNoBoxForAPendingFolderThatIsKept) {
    machine.Seed({{R"(C:\Held\x.txt)", "x"}, {Beside("DeleteFolder.txt"), "C:\\Held\r\n"}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre(HasSubstr("C:\\Held: not deleted")));
    // The run has failed nothing, so its error log is none.
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt")));
    EXPECT_THAT(machine.Read(Beside("Backup Report.txt")), HasSubstr("Notes:\r\nC:\\Held: not deleted"));
}

TEST_F(MainTest, AHiddenListOfPendingDeletionsIsNotSeen) {
    machine.Seed({{R"(C:\Old\)"}, {Beside("DeleteFolder.txt"), "C:\\Old\r\n", {}, attribute::hidden}});
    Start("");
    EXPECT_TRUE(machine.Exists(R"(C:\Old)"));
    EXPECT_TRUE(machine.Exists(Beside("DeleteFolder.txt")));
}

TEST_F(MainTest, AnUnreadableListOfPendingDeletionsEndsTheProgramWithAMessage) {
    machine.Seed({{Beside("DeleteFolder.txt"), "C:\\Old\r\n"}});
    machine.Lock(Beside("DeleteFolder.txt"));
    EXPECT_EQ(RunProgram(machine, ""), exitcode::nothingRan);
    ASSERT_EQ(machine.desktop.Messages().size(), 1U);
    EXPECT_THAT(machine.desktop.Messages().front().text, HasSubstr("'70'"));
    EXPECT_EQ(machine.desktop.Messages().front().style, messagestyle::stop);
    EXPECT_EQ(machine.desktop.Messages().front().title, "Marlok Backup Utility");
}

TEST_F(MainTest, ARunTimeErrorOfAnUnattendedStartIsWrittenDown) {
    machine.Seed({{Beside("DeleteFolder.txt"), "C:\\Old\r\n"}});
    machine.Lock(Beside("DeleteFolder.txt"));
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre(HasSubstr("'70'")));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(HasSubstr("(run-time error 70)")));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(MainTest, TheFlagsStartCleared) {
    const Program& program = Start("");
    EXPECT_FALSE(program.session.gAllFiles);
    EXPECT_FALSE(program.session.gShowMessage);
    EXPECT_FALSE(program.session.gShowMessageBackground);
    EXPECT_FALSE(program.session.gShowingOriginals);
    EXPECT_TRUE(program.session.gFirstRun);
    EXPECT_EQ(program.session.gAppFolder.WithBackslash(), std::string(programFolder) + "\\");
    EXPECT_EQ(program.session.gCommandFile, Beside("Command.txt"));
    EXPECT_EQ(program.session.gSettings->Company(), "Marlok Software");
    EXPECT_EQ(program.session.gSettings->AppName(), "Fenwold");
}

TEST_F(MainTest, WithoutArgumentsTheMainWindowIsShown) {
    Program& program = Start("");
    EXPECT_EQ(FirstWindow(program), "frmSSTab");
    EXPECT_TRUE(program.windows.Find<ui::frmSSTab>()->IsVisible());
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
}

TEST_F(MainTest, TheRestartWatcherIsLoadedHiddenWithItsTimerRunning) {
    for (const char* arguments : {"", "C"}) {
        const auto* watcher = Start(arguments).windows.Find<app::Form2>();
        ASSERT_NE(watcher, nullptr);
        EXPECT_FALSE(watcher->IsVisible());
        EXPECT_TRUE(watcher->Timer1.Running());
        EXPECT_EQ(watcher->Timer1.Interval(), 3000U);
    }
}

TEST_F(MainTest, WithoutALocationTheStartUpWindowAsksForOneEvenWhenSourcesExist) {
    Configure(machine, {});
    StoreSource("Save", 2, R"(C:\Data)");
    Program& program = Start("");
    EXPECT_EQ(FirstWindow(program), "frmStartUp");
    EXPECT_EQ(program.windows.Find<app::frmStartUp>()->Label3.Caption.Get(), "Backup Locations");
    EXPECT_TRUE(program.windows.Find<app::frmStartUp>()->IsVisible());
}

TEST_F(MainTest, ALocationThatIsZeroEndsTheList) {
    machine.registry.SetString(SettingsKey("Target"), "TargetPath2", "0");
    machine.registry.SetString(SettingsKey("Target"), "TargetPath3", R"(E:\Save)");
    Program& program = Start("");
    EXPECT_EQ(program.windows.Find<app::frmStartUp>()->Label3.Caption.Get(), "Backup Locations");
}

TEST_F(MainTest, WithoutASourceTheStartUpWindowAsksForFiles) {
    Configure(machine, {{R"(E:\Save)", {}}, {R"(E:\More)", {}}});
    Program& program = Start("");
    EXPECT_EQ(FirstWindow(program), "frmStartUp");
    EXPECT_EQ(program.windows.Find<app::frmStartUp>()->Label3.Caption.Get(), "Files To Backup");
}

TEST_F(MainTest, TheUnattendedStartWithoutASourceLoadsTheStartUpWindowToo) {
    Configure(machine, {{R"(E:\Save)", {}}});
    EXPECT_EQ(FirstWindow(Start("A S")), "frmStartUp");
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
}

TEST_F(MainTest, ASourceOfTheSecondLocationCounts) {
    Configure(machine, {{R"(E:\Save)", {}}, {R"(E:\More)", {R"(C:\Data)"}}});
    EXPECT_EQ(FirstWindow(Start("")), "frmSSTab");
}

TEST_F(MainTest, ASourceNumberIsNotSetBackForTheNextLocation) {
    // The first location holds SourcePath2 and 3 and stops at 4; a second one is looked up from 4 on. Both find enough.
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\Two)"}}, {R"(E:\More)", {}}});
    StoreSource("More", 4, R"(C:\Four)");
    machine.faults.Reset();
    EXPECT_EQ(FirstWindow(Start("")), "frmSSTab");
    Lines read;
    for (const Step& step : machine.faults.Journal()) {
        if (step.operation == "QueryValue" && step.path.find("More") != std::string::npos) {
            read.push_back(step.path);
        }
    }
    ASSERT_GE(read.size(), 2U);
    EXPECT_THAT(read[0], HasSubstr("SourcePath4"));
    EXPECT_THAT(read[1], HasSubstr("SourcePath5"));
}

TEST_F(MainTest, TheFirstValueOfAListIsNumberedTwo) {
    Configure(machine, {{R"(E:\Save)", {}}});
    StoreSource("Save", 1, R"(C:\Data)");
    EXPECT_EQ(FirstWindow(Start("")), "frmStartUp");
}

TEST_F(MainTest, TooManySourcesAreAnOverflow) {
    EndlessRegistry registry(machine.registry);
    Machine endless{registry,      machine.files,   machine.drives, machine.shell,  machine.desktop,
                    machine.clock, machine.process, machine.system, machine.browser};
    Program program(endless, nullptr);
    try {
        app::Main(program.session, program.windows);
        FAIL() << "no overflow";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::overflow);
    }
}

TEST_F(MainTest, LettersSetTheFlags) {
    struct {
        const char* arguments;
        bool allFiles;
        bool showMessage;
    } const cases[] = {
        {"A Nothing", true, false},    {"a Nothing", true, false},   {"c s Nothing", false, true},
        {"A C Nothing", false, false}, {"C A Nothing", true, false}, {"x", false, false},
        {"All -A _A", false, false},   {"S Nothing A", true, true},  {"/A/Nothing,S", true, true},
    };
    for (const auto& one : cases) {
        const Program& program = Start(one.arguments);
        EXPECT_EQ(FirstWindow(program), "Form6") << one.arguments;
        EXPECT_EQ(program.session.gAllFiles, one.allFiles) << one.arguments;
        EXPECT_EQ(program.session.gShowMessage, one.showMessage) << one.arguments;
    }
}

TEST_F(MainTest, AnArgumentThatIsNoLetterStillRuns) {
    const Program& program = Start("x");
    EXPECT_EQ(FirstWindow(program), "Form6");
    EXPECT_FALSE(program.windows.Find<Form6>()->IsVisible());
}

TEST_F(MainTest, ACommandFileThatCannotBeWrittenEndsTheProgram) {
    machine.Seed({{Beside("Command.txt\\"), ""}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(machine.Tree("E:\\"), Tree{});
    EXPECT_THAT(machine.process.ErrorLines(), ElementsAre(HasSubstr("Run-time error")));
}

TEST_F(MainTest, AProgramInTheRootOfADriveFindsItsFiles) {
    machine.process.programFolder = "E:\\";
    machine.Seed({{R"(C:\Old\)"}, {R"(E:\DeleteFolder.txt)", "C:\\Old"}});
    const Program& program = Start("");
    EXPECT_FALSE(machine.Exists(R"(C:\Old)"));
    EXPECT_EQ(program.session.gAppFolder.WithBackslash(), "E:\\");
    EXPECT_EQ(program.session.gCommandFile, R"(E:\Command.txt)");
}

TEST_F(MainTest, WhatAnotherProgramHoldsForAMomentIsWaitedFor) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    int held = 3;
    machine.faults.FailWhen([&](const Step& step) {
        return step.operation == "Copy" && held-- > 0 ? error::sharingViolation : error::success;
    });
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "one");
}

TEST_F(MainTest, SeparatorsAloneAreNoArguments) {
    Program& program = Start(" ,/ \t, / ");
    EXPECT_EQ(FirstWindow(program), "frmSSTab");
    EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
}

}  // namespace
}  // namespace marlok::test
