#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class ClockContract : public ContractTest {};

TEST_F(ClockContract, TheMomentIsADateAndATime) {
    const LocalTime now = machine.clock.Now();
    EXPECT_GE(now.year, 2000);
    EXPECT_GE(now.month, 1);
    EXPECT_LE(now.month, 12);
    EXPECT_GE(now.day, 1);
    EXPECT_LE(now.day, 31);
    EXPECT_GE(now.weekday, 0);
    EXPECT_LE(now.weekday, 6);
    EXPECT_LE(now.hour, 23);
    EXPECT_LE(now.minute, 59);
    EXPECT_LE(now.second, 60);
}

TEST_F(ClockContract, WaitingMovesTheTicksForward) {
    const std::uint64_t before = machine.clock.TickCount();
    LetTimePass(50);
    EXPECT_GE(machine.clock.TickCount(), before + 50);
}

TEST_F(ClockContract, AFileWrittenNowWasWrittenToday) {
    const LocalTime before = machine.clock.Now();
    Put(In("a"), "x");
    const LocalTime written = machine.clock.ToLocal(EntryOf(In("a")).lastWriteTime);
    const LocalTime after = machine.clock.Now();
    // Midnight may pass between the three; the file's day is then that of either reading.
    const bool first = written.year == before.year && written.month == before.month && written.day == before.day;
    const bool second = written.year == after.year && written.month == after.month && written.day == after.day;
    EXPECT_TRUE(first || second) << written.year << "-" << written.month << "-" << written.day;
}

TEST_F(ClockContract, WeekdaysGoWithDates) {
    // Noon of Monday, November 15th, 2004, UTC: the same day nearly everywhere, and a Monday or Tuesday in the rest.
    constexpr FileTime noon = 127449504000000000;
    const LocalTime local = machine.clock.ToLocal(noon);
    EXPECT_EQ(local.year, 2004);
    EXPECT_EQ(local.month, 11);
    EXPECT_EQ(local.weekday, local.day == 15 ? 1 : 2);
    EXPECT_TRUE(local.day == 15 || local.day == 16);
}

TEST_F(ClockContract, FileTimesKeepTheirDistance) {
    constexpr FileTime minute = 600'000'000;
    constexpr FileTime moment = 127449504000000000;
    const LocalTime a = machine.clock.ToLocal(moment);
    const LocalTime b = machine.clock.ToLocal(moment + minute);
    EXPECT_EQ((a.minute + 1) % 60, b.minute);
    EXPECT_EQ(a.second, b.second);
}

}  // namespace
}  // namespace marlok::test
