#include "engine/ChangeRule.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

constexpr FileTime oneSecond = 10'000'000;
constexpr FileTime oneHour = 3600 * oneSecond;
constexpr FileTime noon = 132'000'000'000'000'000;  // a multiple of two seconds

const TimeKeeping exact{};
const TimeKeeping fat{2 * oneSecond, true};
const TimeKeeping exfat{100'000, false};
/// The source lies on FAT, the saved copy does not.
const TimeKeeping fromFat{1, true};

struct Judged {
    const char* what;
    TimeKeeping times;
    FileTime source;
    FileTime saved;
    bool sameSize;
    Verdict verdict;
};

class JudgeTest : public testing::TestWithParam<Judged> {};

TEST_P(JudgeTest, ComesToItsVerdict) {
    const Judged& one = GetParam();
    DirectoryEntry source;
    DirectoryEntry saved;
    source.lastWriteTime = one.source;
    saved.lastWriteTime = one.saved;
    source.size = 10;
    saved.size = one.sameSize ? 10 : 11;
    EXPECT_EQ(Judge(source, saved, one.times), one.verdict);
}

INSTANTIATE_TEST_SUITE_P(
    Volumes, JudgeTest,
    testing::Values(Judged{"Later", exact, noon + 1, noon, true, Verdict::copy},
                    Judged{"TheSame", exact, noon, noon, true, Verdict::unchanged},
                    Judged{"SameTimeOtherSize", exact, noon, noon, false, Verdict::different},
                    Judged{"Earlier", exact, noon - 1, noon, true, Verdict::different},
                    Judged{"AnHourEarlier", exact, noon - oneHour, noon, true, Verdict::different},
                    Judged{"RoundedUp", fat, noon - oneSecond, noon, true, Verdict::unchanged},
                    Judged{"RoundedDown", fat, noon + oneSecond, noon, true, Verdict::unchanged},
                    Judged{"RoundedWithAnotherSize", fat, noon - oneSecond, noon, false, Verdict::copy},
                    Judged{"SameTimeOtherSizeOnFat", fat, noon, noon, false, Verdict::copy},
                    Judged{"TwoSecondsLater", fat, noon + 2 * oneSecond, noon, true, Verdict::copy},
                    Judged{"ThreeSecondsEarlier", fat, noon - 3 * oneSecond, noon, true, Verdict::copy},
                    Judged{"HalfAnHourEarlier", fat, noon - oneHour / 2, noon, true, Verdict::copy},
                    Judged{"OffByTheHour", fat, noon - oneHour, noon, true, Verdict::unchanged},
                    Judged{"OffByTheHourRounded", fat, noon - oneHour - oneSecond, noon, true, Verdict::unchanged},
                    Judged{"OffByTheHourWithAnotherSize", fat, noon - oneHour, noon, false, Verdict::copy},
                    Judged{"TwoHoursEarlier", fat, noon - 2 * oneHour, noon, true, Verdict::different},
                    Judged{"AnHourLater", fat, noon + oneHour, noon, true, Verdict::copy},
                    Judged{"TenMilliseconds", exfat, noon + 99'999, noon, true, Verdict::unchanged},
                    Judged{"MoreThanTenMilliseconds", exfat, noon + 100'000, noon, true, Verdict::copy},
                    Judged{"AnHourEarlierOnExfat", exfat, noon - oneHour, noon, true, Verdict::different},
                    Judged{"SourceOnFatOffByTheHour", fromFat, noon - oneHour, noon, true, Verdict::unchanged},
                    Judged{"SourceOnFatEarlier", fromFat, noon - oneHour / 2, noon, true, Verdict::copy}),
    [](const auto& one) { return one.param.what; });

/// A location on a FAT disk, and clocks that are set.
class ClockChangeTest : public ProgramTest {
 protected:
    ClockChangeTest() {
        DriveOptions stick;
        stick.fileSystem = "FAT32";
        machine.AddDrive('F', stick);
        Configure(machine, {{R"(F:\Save)", {R"(C:\Data)"}}});
        machine.Seed({{R"(C:\Data\a.doc)", "as it was", At(9, 0, 1)}});
        EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    }

    std::size_t Copied() {
        EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
        const Lines log = RunLog(machine);
        return log.size() < 2 ? 0 : log.size() - 2;
    }
};

TEST_F(ClockChangeTest, NothingIsCopiedAgainForIt) {
    machine.clock.SetUtcOffset(-60);
    EXPECT_EQ(Copied(), 0U);
    machine.clock.SetUtcOffset(0);
    EXPECT_EQ(Copied(), 0U);
}

TEST_F(ClockChangeTest, NoEditIsPassedOver) {
    // The saved copy seems an hour younger than it is.
    machine.clock.SetUtcOffset(-60);
    for (const int minute : {1, 30, 59}) {
        machine.Seed({{R"(C:\Data\a.doc)", "edited  " + std::to_string(minute), At(9, minute)}});
        EXPECT_EQ(Copied(), 1U) << minute;
        machine.clock.SetUtcOffset(0);
        machine.Seed(
            {{R"(C:\Data\a.doc)", "as it was", At(9, 0, 1)}, {R"(F:\Save\Data\a.doc)", "as it was", At(9, 0, 1)}});
        machine.clock.SetUtcOffset(-60);
    }
}

}  // namespace
}  // namespace marlok::test
