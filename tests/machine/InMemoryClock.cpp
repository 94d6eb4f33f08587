#include "tests/machine/InMemoryClock.h"

namespace marlok::test {
namespace {

constexpr std::uint64_t unitsPerSecond = 10'000'000;
constexpr std::uint64_t unitsPerMillisecond = 10'000;
constexpr std::uint64_t secondsPerDay = 86'400;

bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

std::uint64_t DaysInYear(int year) {
    return IsLeapYear(year) ? 366U : 365U;
}

std::uint64_t DaysInMonth(int year, int month) {
    constexpr std::uint64_t days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29U : days[month - 1];
}

}  // namespace

FileTime ToFileTime(const LocalTime& time) {
    std::uint64_t days = static_cast<std::uint64_t>(time.day) - 1;
    for (int year = 1601; year < time.year; ++year) {
        days += DaysInYear(year);
    }
    for (int month = 1; month < time.month; ++month) {
        days += DaysInMonth(time.year, month);
    }
    const auto seconds = static_cast<std::uint64_t>(time.hour) * 3600 + static_cast<std::uint64_t>(time.minute) * 60 +
                         static_cast<std::uint64_t>(time.second);
    return (days * secondsPerDay + seconds) * unitsPerSecond;
}

LocalTime FromFileTime(FileTime time) {
    const std::uint64_t seconds = time / unitsPerSecond;
    std::uint64_t days = seconds / secondsPerDay;
    const auto inDay = static_cast<int>(seconds % secondsPerDay);
    LocalTime local;
    local.weekday = static_cast<int>((days + 1) % 7);  // 1601-01-01 was a Monday
    while (days >= DaysInYear(local.year)) {
        days -= DaysInYear(local.year++);
    }
    while (days >= DaysInMonth(local.year, local.month)) {
        days -= DaysInMonth(local.year, local.month++);
    }
    local.day = static_cast<int>(days) + 1;
    local.hour = inDay / 3600;
    local.minute = inDay / 60 % 60;
    local.second = inDay % 60;
    return local;
}

FileTime At(int hour, int minute, int second) {
    return ToFileTime({2004, 11, 15, 1, hour, minute, second});
}

InMemoryClock::InMemoryClock(FaultPlan& faults) : faults_(faults), now_(At(12, 0)) {}

LocalTime InMemoryClock::Now() {
    static_cast<void>(faults_.Alive());  // asked for the throw alone: a reading has no effect to hold back
    return FromFileTime(now_ + utcOffset_);
}

std::uint64_t InMemoryClock::TickCount() {
    static_cast<void>(faults_.Alive());
    return ticks_;
}

LocalTime InMemoryClock::ToLocal(std::uint64_t fileTime) {
    return FromFileTime(fileTime + utcOffset_);
}

void InMemoryClock::SetUtcOffset(int minutes) {
    constexpr std::int64_t unitsPerMinute = 600'000'000;
    utcOffset_ = static_cast<FileTime>(minutes * unitsPerMinute);
}

void InMemoryClock::Advance(std::uint64_t milliseconds) {
    now_ += milliseconds * unitsPerMillisecond;
    ticks_ += milliseconds;
}

}  // namespace marlok::test
