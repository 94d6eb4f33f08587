#include "win32/machine/Win32Clock.h"

#include <windows.h>

namespace marlok::win32 {

namespace {

LocalTime FromSystemTime(const SYSTEMTIME& time) {
    LocalTime local;
    local.year = time.wYear;
    local.month = time.wMonth;
    local.day = time.wDay;
    local.weekday = time.wDayOfWeek;
    local.hour = time.wHour;
    local.minute = time.wMinute;
    local.second = time.wSecond;
    return local;
}

}  // namespace

LocalTime Win32Clock::Now() {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return FromSystemTime(time);
}

std::uint64_t Win32Clock::TickCount() {
    return GetTickCount64();
}

void Win32Clock::Sleep(std::uint32_t milliseconds) {
    ::Sleep(milliseconds);
}

LocalTime Win32Clock::ToLocal(std::uint64_t fileTime) {
    FILETIME split{};
    split.dwHighDateTime = static_cast<DWORD>(fileTime >> 32);
    split.dwLowDateTime = static_cast<DWORD>(fileTime);
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    // The summer-time rule of that day, not of today: the same file shows the same time all year.
    if (FileTimeToSystemTime(&split, &universal) == 0 ||
        SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) == 0) {
        LocalTime first;
        first.weekday = 1;  // 1601-01-01 was a Monday
        return first;
    }
    return FromSystemTime(local);
}

}  // namespace marlok::win32
