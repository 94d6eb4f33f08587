#pragma once

#include <string>

#include "platform/Clock.h"

/// Date and time as the logs write them.
namespace marlok {

/// "Sunday, Nov 15 2026": English names whatever the user's language.
[[nodiscard]] std::string FormatLogDate(const LocalTime& time);

/// "05:12 PM".
[[nodiscard]] std::string FormatLogTime(const LocalTime& time);

}  // namespace marlok
