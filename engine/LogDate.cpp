#include "engine/LogDate.h"

#include <array>
#include <cstdio>

namespace marlok {

namespace {

constexpr std::array<const char*, 7> dayNames{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                              "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 12> monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

std::string FormatLogDate(const LocalTime& time) {
    return std::string(dayNames.at(static_cast<std::size_t>(time.weekday))) + ", " +
           monthNames.at(static_cast<std::size_t>(time.month - 1)) + " " + std::to_string(time.day) + " " +
           std::to_string(time.year);
}

std::string FormatLogTime(const LocalTime& time) {
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d %s", hour, time.minute, time.hour < 12 ? "AM" : "PM");
    return text.data();
}

}  // namespace marlok
