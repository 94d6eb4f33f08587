#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/AbsentDrives.h"
#include "engine/RunReport.h"
#include "platform/Machine.h"

/// What every run leaves for its user: a report of that run, and a line in the history of all.
namespace marlok {

/// One line of "Backup History.txt": a run.
struct HistoryLine {
    std::string when;  ///< local time, "2026-11-21 18:02:00"
    std::uint64_t seconds = 0;
    std::uint64_t copied = 0;
    std::uint64_t unchanged = 0;
    std::uint64_t different = 0;
    std::uint64_t failed = 0;  ///< lines of the error log
    std::uint64_t bytes = 0;
    std::vector<RunReport::Outcome> outcomes;
};

/// The history keeps so many runs.
inline constexpr std::size_t runsKept = 400;

/// A line of the history as text, and back; nothing for what is no such line.
[[nodiscard]] std::string FormatHistoryLine(const HistoryLine& line);
[[nodiscard]] std::optional<HistoryLine> ParseHistoryLine(std::string_view text);

/// The runs of the history, the oldest first; lines that are none are left out. A missing history is an empty one; else
/// returns why it could not be read.
[[nodiscard]] SystemError ReadHistory(Machine& machine, std::vector<HistoryLine>& history);

/// The text of "Backup Report.txt". For each configured location it says when a run of it last went well, and when one
/// last failed, by `history`. Failures are worded as in the error log.
[[nodiscard]] std::string BackupReportText(SystemInfo& system, AbsentDrives& drives, const RunReport& report,
                                           const std::vector<HistoryLine>& history);

/// Writes both files beside the program, when all else that may fail has been done. What cannot be written becomes a
/// line of the report.
void WriteBackupReport(Machine& machine, AbsentDrives& drives, RunReport& report);

}  // namespace marlok
