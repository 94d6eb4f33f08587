#pragma once

#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "platform/Machine.h"

/// The log that every run ends with, and the desktop shortcut to it.
namespace marlok {

/// What an ended program tells whoever started it.
namespace exitcode {
inline constexpr int allDone = 0;
inline constexpr int somethingFailed = 1;  ///< something could not be copied; "Backup Error Log.txt" names it
inline constexpr int nothingRan = 2;       ///< configuration incomplete, another instance running, run-time error
}  // namespace exitcode

/// What the logs of the kinds of runs differ in.
struct LogForm {
    const char* beforeDate;
    const char* beforeTime;
    const char* beforeCount;
    const char* file;         ///< of the log, beside the program
    const char* shortcut;     ///< file name of the shortcut, without its extension
    const char* description;  ///< of the shortcut
    const char* again;        ///< what to do once a drive that was missing is there: see AbsentDrives
    bool isBackup;            ///< it has a report and a history, and without failures it removes the error log
};
extern const LogForm interactiveLog;  ///< a run that a person watches
extern const LogForm unattendedLog;
extern const LogForm replacementLog;  ///< saved files copied back over their originals

/// The text of a log: `header`, and when `lines` holds any, an empty line and its items up to the first that is "" or
/// "0". Every line ends in a carriage return and a line feed.
[[nodiscard]] std::string LogText(const std::string& header, const std::vector<std::string>& lines);

/// Puts a shortcut to the log on the desktop, replacing an older one.
[[nodiscard]] SystemError MakeDesktopShortcut(Machine& machine, const LogForm& form);

/// Makes the lines of the report the error log: see ErrorLog.
SystemError WriteErrorLog(Machine& machine, const RunReport& report);

/// Ends a run: writes its log with the paths in `report.written`, the shortcut to the log, for a backup its report and
/// the line of the history, and last the error log, which keeps `notes` behind the lines of the report. What could not
/// be written becomes a line of the report; so each of these files knows what failed before it, and the error log all.
/// Returns the exit code, which notes do not change.
int FinishRun(Machine& machine, const LogForm& form, RunReport& report, const std::vector<std::string>& notes = {});

/// Why the error log of a run that FinishRun has ended could not be written, as a sentence for the user; "" when it
/// could, or needed not.
[[nodiscard]] std::string WhyNoErrorLog(SystemInfo& system, const RunReport& report);

}  // namespace marlok
