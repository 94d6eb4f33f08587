#include "engine/RunLog.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

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
    std::string TextOf(const Lines& items) {
        list.Clear();
        for (const std::string& item : items) {
            list.AddItem(item);
        }
        return LogText("header", list);
    }

    Program program{machine.machine(), nullptr};
    forms::Form form{program.windows, "Form", ""};
    forms::ListBox list{form, "List"};
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
    machine.Seed({{Beside("x.txt"), "old", {}, attribute::readOnly}});
    EXPECT_EQ(WriteLog(program, Beside("x.txt"), "new"), error::success);
    EXPECT_EQ(machine.Read(Beside("x.txt")), "new");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(RunLogTest, ALogThatCannotBeWrittenKeepsItsOldText) {
    machine.Seed({{Beside("x.txt"), "old"}});
    machine.Lock(Beside("x.txt"));
    EXPECT_EQ(WriteLog(program, Beside("x.txt"), "new"), error::accessDenied);
    EXPECT_EQ(machine.Read(Beside("x.txt")), "old");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(RunLogTest, TheShortcutLiesOnTheDesktop) {
    program.gAppFolder = "C:\\App\\";
    EXPECT_EQ(MakeDesktopShortcut(program, "C:\\App\\x.txt", "Name", "Text"), error::success);
    ASSERT_EQ(machine.shell.Shortcuts().size(), 1U);
    const Shortcut& made = machine.shell.Shortcuts().front();
    EXPECT_EQ(made.path, R"(C:\Users\User\Desktop\Name.lnk)");
    EXPECT_EQ(made.targetPath, "C:\\App\\x.txt");
    EXPECT_EQ(made.windowStyle, 1);
    EXPECT_EQ(made.iconLocation, "C:\\App\\Marlok Backup.exe, 0");
    EXPECT_EQ(made.description, "Text");
    EXPECT_EQ(made.workingDirectory, "C:\\App\\");
}

TEST_F(RunLogTest, WithoutADesktopThereIsNoShortcut) {
    machine.shell.desktopFolder = "";
    EXPECT_EQ(MakeDesktopShortcut(program, "C:\\x.txt", "Name", "Text"), error::pathNotFound);
    machine.shell.desktopFolder = R"(C:\Gone)";
    EXPECT_EQ(MakeDesktopShortcut(program, "C:\\x.txt", "Name", "Text"), error::pathNotFound);
}

}  // namespace
}  // namespace marlok::test
