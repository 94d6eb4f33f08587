#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"

namespace marlok::test {

/// The file time of a moment, and back.
[[nodiscard]] FileTime ToFileTime(const LocalTime& time);
[[nodiscard]] LocalTime FromFileTime(FileTime time);

/// A moment of the one day that tests live in: Monday, November 15th, 2004.
[[nodiscard]] FileTime At(int hour, int minute, int second = 0);

/// A clock that stands still until somebody moves it. Local time is UTC unless a test says otherwise. It starts at noon
/// of the tests' day.
class InMemoryClock : public Clock {
 public:
    explicit InMemoryClock(FaultPlan& faults);

    [[nodiscard]] LocalTime Now() override;
    [[nodiscard]] std::uint64_t TickCount() override;
    void Sleep(std::uint32_t milliseconds) override { Advance(milliseconds); }
    [[nodiscard]] LocalTime ToLocal(std::uint64_t fileTime) override;

    [[nodiscard]] FileTime NowAsFileTime() const { return now_; }
    void SetNow(FileTime now) { now_ = now; }

    [[nodiscard]] std::uint64_t Ticks() const { return ticks_; }

    /// By how much the clock on the wall is ahead of UTC from now on; negative: behind.
    void SetUtcOffset(int minutes);

    /// The same in 100-nanosecond intervals, to be added to a time of UTC; wraps around where it is negative.
    [[nodiscard]] FileTime UtcOffset() const { return utcOffset_; }

    /// Moves both the time of day and the tick count.
    void Advance(std::uint64_t milliseconds);

 private:
    FaultPlan& faults_;
    FileTime now_;
    std::uint64_t ticks_ = 100'000;
    FileTime utcOffset_ = 0;
};

}  // namespace marlok::test
