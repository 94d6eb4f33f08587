#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(InMemoryClockTest, DatesGoBothWays) {
    for (const LocalTime& time : {LocalTime{1601, 1, 1, 1, 0, 0, 0}, LocalTime{2000, 2, 29, 2, 23, 59, 59},
                                  LocalTime{2004, 11, 15, 1, 17, 17, 0}, LocalTime{2100, 3, 1, 1, 0, 0, 1},
                                  LocalTime{2024, 12, 31, 2, 12, 30, 0}}) {
        const LocalTime back = FromFileTime(ToFileTime(time));
        EXPECT_EQ(back.year, time.year);
        EXPECT_EQ(back.month, time.month);
        EXPECT_EQ(back.day, time.day);
        EXPECT_EQ(back.weekday, time.weekday) << time.year;
        EXPECT_EQ(back.hour, time.hour);
        EXPECT_EQ(back.minute, time.minute);
        EXPECT_EQ(back.second, time.second);
    }
    EXPECT_EQ(ToFileTime({1970, 1, 1, 4, 0, 0, 0}), 116444736000000000U);
}

TEST(InMemoryClockTest, NowCanBeSet) {
    InMemoryMachine memory;
    EXPECT_EQ(memory.machine().clock.Now().hour, 12);
    memory.clock.SetNow(At(17, 17));
    EXPECT_EQ(memory.machine().clock.Now().minute, 17);
    EXPECT_EQ(memory.machine().clock.Now().weekday, 1);
}

}  // namespace
}  // namespace marlok::test
