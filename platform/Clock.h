#pragma once

#include <cstdint>

namespace marlok {

/// A moment in the user's local time.
struct LocalTime {
    int year = 1601;
    int month = 1;    ///< 1 to 12
    int day = 1;      ///< 1 to 31
    int weekday = 0;  ///< 0 is Sunday
    int hour = 0;     ///< 0 to 23
    int minute = 0;
    int second = 0;
};

class Clock {
 public:
    virtual ~Clock() = default;

    [[nodiscard]] virtual LocalTime Now() = 0;

    /// Milliseconds since the machine started; never goes back.
    [[nodiscard]] virtual std::uint64_t TickCount() = 0;

    /// Does nothing for so many milliseconds.
    virtual void Sleep(std::uint32_t milliseconds) = 0;

    /// Local time of a file time (100-nanosecond intervals since 1601, UTC).
    [[nodiscard]] virtual LocalTime ToLocal(std::uint64_t fileTime) = 0;
};

}  // namespace marlok
