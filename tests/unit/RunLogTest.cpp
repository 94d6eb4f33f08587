#include "engine/RunLog.h"

#include "engine/BackupReport.h"
#include "engine/LogDate.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FormatLogDateTest, NamesAreEnglishAndTheDayHasNoLeadingZero) {
    EXPECT_EQ(FormatLogDate({2026, 11, 15, 0, 0, 0, 0}), "Sunday, Nov 15 2026");
    EXPECT_EQ(FormatLogDate({2004, 5, 3, 1, 0, 0, 0}), "Monday, May 3 2004");
}

TEST(FormatLogDateTest, EveryDayAndEveryMonth) {
    const char* const days[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    for (int day = 0; day < 7; ++day) {
        EXPECT_EQ(FormatLogDate({2024, 1, 1, day, 0, 0, 0}), std::string(days[day]) + ", Jan 1 2024");
    }
    const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int month = 1; month <= 12; ++month) {
        EXPECT_EQ(FormatLogDate({2024, month, 31, 6, 0, 0, 0}),
                  "Saturday, " + std::string(months[month - 1]) + " 31 2024");
    }
}

TEST(FormatLogTimeTest, TheClockHasTwelveHours) {
    struct {
        int hour;
        int minute;
        const char* text;
    } const cases[] = {
        {0, 0, "12:00 AM"},  {0, 59, "12:59 AM"},  {1, 5, "01:05 AM"},   {11, 59, "11:59 AM"}, {12, 0, "12:00 PM"},
        {12, 1, "12:01 PM"}, {13, 30, "01:30 PM"}, {17, 12, "05:12 PM"}, {22, 0, "10:00 PM"},  {23, 59, "11:59 PM"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(FormatLogTime({2024, 1, 1, 1, one.hour, one.minute, 59}), one.text);
    }
}

class RunLogTest : public ProgramTest {
 protected:
    static std::string TextOf(const Lines& items) { return LogText("header", items); }

    /// Ends a run with this report.
    int Finish() { return FinishRun(machine.machine(), unattendedLog, report); }

    RunReport report;
};

TEST_F(RunLogTest, AnEmptyListGivesTheHeaderAlone) {
    EXPECT_EQ(TextOf({}), "header\r\n");
}

TEST_F(RunLogTest, AnEmptyLineStandsBetweenHeaderAndLines) {
    EXPECT_EQ(TextOf({"E:\\a", "E:\\b"}), "header\r\n\r\nE:\\a\r\nE:\\b\r\n");
}

TEST_F(RunLogTest, TheFirstEmptyOrZeroLineEndsTheList) {
    EXPECT_EQ(TextOf({"E:\\a", "0", "E:\\b"}), "header\r\n\r\nE:\\a\r\n");
    EXPECT_EQ(TextOf({"E:\\a", "", "E:\\b"}), "header\r\n\r\nE:\\a\r\n");
    EXPECT_EQ(TextOf({"0", "E:\\b"}), "header\r\n\r\n");
    EXPECT_EQ(TextOf({"00", "E:\\0"}), "header\r\n\r\n00\r\nE:\\0\r\n");
}

TEST_F(RunLogTest, AReadOnlyLogIsReplaced) {
    machine.Seed({{Beside("Backup Log File.txt"), "old", {}, attribute::readOnly}});
    report.written = {"E:\\a"};
    EXPECT_EQ(Finish(), exitcode::allDone);
    EXPECT_THAT(RunLog(machine), ElementsAre(_, "", "E:\\a"));
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(RunLogTest, ALogThatCannotBeWrittenKeepsItsOldTextAndIsReported) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    report.Add("C:\\x", error::fileNotFound);
    EXPECT_EQ(Finish(), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(Beside("Backup Log File.txt")), "old");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("C:\\x", error::fileNotFound),
                                               Failed(Beside("Backup Log File.txt"), error::sharingViolation)));
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(RunLogTest, AnErrorLogThatCannotBeWrittenIsALineOfTheReport) {
    machine.Seed({{Beside("Backup Error Log.txt"), "old"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    report.Add("C:\\x", error::fileNotFound);
    EXPECT_EQ(Finish(), exitcode::somethingFailed);
    ASSERT_EQ(report.Lines().size(), 2U);
    EXPECT_EQ(report.Lines()[1].path, "Backup Error Log.txt");
    EXPECT_EQ(report.Lines()[1].code, error::sharingViolation);
}

TEST_F(RunLogTest, TheShortcutLiesOnTheDesktop) {
    EXPECT_EQ(MakeDesktopShortcut(machine.machine(), replacementLog), error::success);
    ASSERT_EQ(machine.shell.Shortcuts().size(), 1U);
    const Shortcut& made = machine.shell.Shortcuts().front();
    EXPECT_EQ(made.path, R"(C:\Users\User\Desktop\Replaced File Log.lnk)");
    EXPECT_EQ(made.targetPath, Beside("Replaced File Log.txt"));
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, Beside("Marlok Backup.exe, 0"));
    EXPECT_EQ(made.description, "Replaced Log File");
    EXPECT_EQ(made.workingDirectory, Beside(""));
}

TEST_F(RunLogTest, WithoutADesktopThereIsNoShortcutWhichIsReported) {
    for (const char* desktop : {"", R"(C:\Gone)"}) {
        machine.shell.desktopFolder = desktop;
        EXPECT_EQ(MakeDesktopShortcut(machine.machine(), unattendedLog), error::pathNotFound);
    }
    EXPECT_EQ(Finish(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("Backup Log File.lnk", error::pathNotFound)));
}

TEST_F(RunLogTest, TheReportOfABackupNamesALogAndAShortcutThatCouldNotBeWritten) {
    machine.Seed({{Beside("Backup Log File.txt"), "old"}});
    machine.Lock(Beside("Backup Log File.txt"));
    machine.shell.desktopFolder = "";
    report.outcomes = {{R"(E:\Save)", true}};
    EXPECT_EQ(Finish(), exitcode::somethingFailed);
    const Lines lines = LinesBeside(machine, "Backup Report.txt");
    EXPECT_THAT(lines, Contains(R"(E:\Save: all is saved)")) << "which is true";
    EXPECT_THAT(lines, Contains(Failed(Beside("Backup Log File.txt"), error::sharingViolation)));
    EXPECT_THAT(lines, Contains(Failed("Backup Log File.lnk", error::pathNotFound)));
    std::vector<HistoryLine> history;
    EXPECT_EQ(ReadHistory(machine.machine(), history), error::success);
    ASSERT_EQ(history.size(), 1U);
    EXPECT_EQ(history.front().failed, 2U);
}

TEST_F(RunLogTest, AReportThatCannotBeWrittenIsInTheErrorLog) {
    machine.Seed({{Beside("Backup Report.txt"), "old"}});
    machine.Lock(Beside("Backup Report.txt"));
    EXPECT_EQ(Finish(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(Beside("Backup Report.txt"), error::sharingViolation)));
}

TEST_F(RunLogTest, AReplacementHasNoReport) {
    EXPECT_EQ(FinishRun(machine.machine(), replacementLog, report), exitcode::allDone);
    EXPECT_FALSE(machine.Exists(Beside("Backup Report.txt")));
    EXPECT_FALSE(machine.Exists(Beside("Backup History.txt")));
}

TEST_F(RunLogTest, AReplacementWithoutFailuresLeavesTheErrorLogOfTheBackupAlone) {
    machine.Seed({{Beside("Backup Error Log.txt"), "what is not saved\r\n"}});
    EXPECT_EQ(FinishRun(machine.machine(), replacementLog, report), exitcode::allDone);
    EXPECT_THAT(ErrorLog(machine), ElementsAre("what is not saved"));
}

}  // namespace
}  // namespace marlok::test
