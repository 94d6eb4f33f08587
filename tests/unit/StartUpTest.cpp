#include "app/Form2.h"
#include "app/Main.h"
#include "app/frmStartUp.h"
#include "tests/unit/ProgramFixture.h"
#include "ui/frmSSTab.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StartUpTest : public ProgramTest {
 protected:
    Program& Start(const std::string& arguments) {
        machine.process.arguments = arguments;
        app::Main(program.session, program.windows);
        return program;
    }

    /// Starts without arguments and lets the greeting pass.
    ui::frmSSTab& StartIntoTheMainWindow() {
        Start("");
        WaitFor(machine, program, [&] { return program.windows.Find<ui::frmSSTab>() != nullptr; });
        return *program.windows.Find<ui::frmSSTab>();
    }

    Program program{machine.machine(), nullptr};
};

TEST_F(StartUpTest, TheUnattendedStartLeavesTheShortLogAndEnds) {
    const std::uint64_t begin = machine.clock.TickCount();
    EXPECT_EQ(RunUnattended(machine, "A Save"), exitcode::nothingRan);
    EXPECT_EQ(machine.clock.TickCount() - begin, 3000U);
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")),
              "Monday, Nov 15 2004\r\n"
              "\r\n"
              "Program Was Unable To Locate Paths\r\n"
              "\r\n"
              "Please Check Both Backup Locations\r\n"
              "\r\n"
              "             And                  \r\n"
              "\r\n"
              "      Files To Be Backed Up       \r\n"
              "\r\n");
    ASSERT_EQ(machine.shell.Shortcuts().size(), 1U);
    EXPECT_EQ(machine.shell.Shortcuts().front().path, R"(C:\Users\User\Desktop\Backup Log File.lnk)");
}

TEST_F(StartUpTest, TheShortLogsShortcutOpensIt) {
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    const Shortcut& made = machine.shell.Shortcuts().front();
    EXPECT_EQ(made.targetPath, Beside("Backup Log File.txt"));
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, Beside("Marlok Backup.exe, 0"));
    EXPECT_EQ(made.description, "Backup Log File");
    EXPECT_EQ(made.workingDirectory, std::string(programFolder) + "\\");
}

TEST_F(StartUpTest, TheShortLogReplacesAnOldLog) {
    machine.Seed({{Beside("Backup Log File.txt"), "old\r\n"}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(RunLog(machine).size(), 10U);
    EXPECT_EQ(RunLog(machine).front(), "Monday, Nov 15 2004");
}

TEST_F(StartUpTest, TheUnattendedStartWritesItsCommandFile) {
    EXPECT_EQ(RunUnattended(machine, "A Save"), exitcode::nothingRan);
    EXPECT_THAT(LinesBeside(machine, "Command.txt"), ElementsAre("A", "Save"));
}

TEST_F(StartUpTest, ALogAndAShortcutThatCannotBeMadeDoNotKeepTheProgramFromEnding) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    machine.shell.desktopFolder = "";
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")), "old");
    EXPECT_THAT(machine.shell.Shortcuts(), IsEmpty());
}

TEST_F(StartUpTest, AShortcutIsMadeEvenWhenTheLogCannotBeWritten) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(machine.shell.Shortcuts().size(), 1U);
}

TEST_F(StartUpTest, TheHourglassIsShownWhileTheShortcutIsMade) {
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::nothingRan);
    EXPECT_EQ(machine.desktop.HourglassesShown(), 1);
    EXPECT_FALSE(machine.desktop.Hourglass());
}

TEST_F(StartUpTest, WithoutArgumentsTheMainWindowFollowsAfterTwoAndAHalfSeconds) {
    Start("");
    EXPECT_EQ(program.windows.Find<ui::frmSSTab>(), nullptr);
    EXPECT_EQ(WaitFor(machine, program, [&] { return program.windows.Find<ui::frmSSTab>() != nullptr; }), 2500U);
    EXPECT_EQ(program.windows.Find<app::frmStartUp>(), nullptr);
    ASSERT_NE(program.windows.Find<ui::frmSSTab>(), nullptr);
    EXPECT_TRUE(program.windows.Find<ui::frmSSTab>()->IsVisible());
    EXPECT_EQ(program.session.gAppFolder.WithBackslash(), std::string(programFolder) + "\\");
    EXPECT_FALSE(program.session.gAllFiles);
    EXPECT_THAT(machine.shell.Shortcuts(), IsEmpty());
    EXPECT_THAT(RunLog(machine), IsEmpty());
}

TEST_F(StartUpTest, ItsLabelsGreetAndAsk) {
    const auto* window = Start("").windows.Find<app::frmStartUp>();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->Label1.Caption.Get(), "Welcome");
    EXPECT_EQ(window->Label2.Caption.Get(), "Please Select");
    EXPECT_EQ(window->Timer1.Interval(), 2500U);
    EXPECT_EQ(window->Timer2.Interval(), 500U);
    EXPECT_FALSE(window->Timer2.Running());
}

TEST_F(StartUpTest, WithoutALocationTheTabForBackupFoldersComesToTheFront) {
    EXPECT_EQ(StartIntoTheMainWindow().SSTab1.Tab(), 1);
}

TEST_F(StartUpTest, WithALocationButNoSourcesTheTabForFilesComesToTheFront) {
    Configure(machine, {{R"(E:\Save)", {}}});
    const ui::frmSSTab& window = StartIntoTheMainWindow();
    EXPECT_EQ(window.SSTab1.Tab(), 2);
    EXPECT_THAT(window.List9.Items(), ElementsAre(R"(E:\Save)"));
}

TEST_F(StartUpTest, TheGreetingSaysThatLocationsAreMissing) {
    EXPECT_EQ(Start("").windows.Find<app::frmStartUp>()->Label3.Caption.Get(), "Backup Locations");
}

TEST_F(StartUpTest, TheGreetingSaysThatFilesAreMissing) {
    Configure(machine, {{R"(E:\Save)", {}}});
    EXPECT_EQ(Start("").windows.Find<app::frmStartUp>()->Label3.Caption.Get(), "Files To Backup");
}

TEST_F(StartUpTest, NoBackupCanBeStartedFromAnIncompleteConfiguration) {
    for (const std::vector<LocationSetup>& incomplete :
         {std::vector<LocationSetup>(), std::vector<LocationSetup>{{R"(E:\Save)", {}}}}) {
        Configure(machine, incomplete);
        Program other(machine.machine(), nullptr);
        app::Main(other.session, other.windows);
        WaitFor(machine, other, [&] { return other.windows.Find<ui::frmSSTab>() != nullptr; });
        const auto& window = *other.windows.Find<ui::frmSSTab>();
        EXPECT_FALSE(window.Frame1.Visible);
        EXPECT_FALSE(window.Command8.Enabled);
        EXPECT_FALSE(window.Command9.Enabled);
    }
}

TEST_F(StartUpTest, TheMainWindowIsOnTheScreenWhenTheGreetingGoes) {
    EXPECT_TRUE(StartIntoTheMainWindow().IsVisible());
    EXPECT_EQ(program.windows.Find<app::frmStartUp>(), nullptr);
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

}  // namespace
}  // namespace marlok::test
