#pragma once

#include <string>

#include "engine/Program.h"
#include "forms/Controls.h"
#include "platform/Clock.h"

/// The run log and the desktop shortcut to it.
namespace marlok {

/// "Sunday, Nov 15 2026": English names whatever the user's language.
[[nodiscard]] std::string FormatLogDate(const LocalTime& time);

/// "05:12 PM".
[[nodiscard]] std::string FormatLogTime(const LocalTime& time);

/// The text of a log: `header`, and when `lines` holds any, an empty line and its items up to the first that is "" or
/// "0". Every line ends in a carriage return and a line feed.
[[nodiscard]] std::string LogText(const std::string& header, const forms::ListBox& lines);

/// Writes a text file of the program as a whole; `error::success` or why it could not be written.
[[nodiscard]] SystemError WriteLog(Program& program, const std::string& path, const std::string& text);

/// Puts a shortcut to `logPath` on the desktop, replacing an older one: its file is called `name` and ".lnk".
[[nodiscard]] SystemError MakeDesktopShortcut(Program& program, const std::string& logPath, const std::string& name,
                                              const std::string& description);

}  // namespace marlok
