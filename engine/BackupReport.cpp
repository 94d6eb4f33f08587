#include "engine/BackupReport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "engine/RunLog.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/ProgramFiles.h"
#include "text/Lines.h"
#include "text/Surrogates.h"
#include "text/Text.h"

namespace marlok {

namespace {

// A line of the history: when, seconds, copied, unchanged, different, failed, bytes, then "ok" or "failed", a blank and
// the path for each location that was run; separated by tabs, which no path holds.
constexpr std::size_t fixedFields = 7;
constexpr std::string_view wellWord = "ok ";
constexpr std::string_view failedWord = "failed ";

std::string Stamp(const LocalTime& time) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day, time.hour,
                  time.minute, time.second);
    return text.data();
}

bool Take(std::string_view field, std::uint64_t& number) {
    const auto [end, code] = std::from_chars(field.data(), field.data() + field.size(), number);
    return code == std::errc() && end == field.data() + field.size();
}

HistoryLine LineOf(const RunReport& report) {
    return {Stamp(report.start),     report.milliseconds / 1000, report.copied, report.unchanged,
            report.different.size(), report.Lines().size(),      report.bytes,  report.outcomes};
}

/// When a run of the location last ended so; "never" when the history holds none.
std::string LastTime(const std::vector<HistoryLine>& history, const Location& location, bool well) {
    for (auto line = history.rbegin(); line != history.rend(); ++line) {
        const bool any = std::ranges::any_of(line->outcomes, [&](const RunReport::Outcome& outcome) {
            return outcome.well == well && text::EqualIgnoringCase(outcome.location, location.Path());
        });
        if (any) {
            return line->when;
        }
    }
    return "never";
}

void AddLines(std::vector<std::string>& lines, const std::string& heading, const std::vector<std::string>& what) {
    if (!what.empty()) {
        lines.emplace_back();
        lines.push_back(heading);
        lines.insert(lines.end(), what.begin(), what.end());
    }
}

std::vector<std::string> Reasons(SystemInfo& system, const std::vector<RunReport::Line>& from) {
    std::vector<std::string> reasons;
    reasons.reserve(from.size());
    for (const RunReport::Line& line : from) {
        reasons.push_back(line.path + ": " + ReasonOf(system, line));
    }
    return reasons;
}

}  // namespace

std::string FormatHistoryLine(const HistoryLine& line) {
    std::string text = line.when;
    for (const std::uint64_t number :
         {line.seconds, line.copied, line.unchanged, line.different, line.failed, line.bytes}) {
        text += "\t" + std::to_string(number);
    }
    for (const RunReport::Outcome& outcome : line.outcomes) {
        text += "\t" + std::string(outcome.well ? wellWord : failedWord) + outcome.location;
    }
    return text;
}

std::optional<HistoryLine> ParseHistoryLine(std::string_view text) {
    const std::vector<std::string_view> fields = text::Split(text, "\t");
    HistoryLine line;
    if (fields.size() < fixedFields || !Take(fields[1], line.seconds) || !Take(fields[2], line.copied) ||
        !Take(fields[3], line.unchanged) || !Take(fields[4], line.different) || !Take(fields[5], line.failed) ||
        !Take(fields[6], line.bytes)) {
        return std::nullopt;
    }
    line.when = fields[0];
    for (std::size_t i = fixedFields; i < fields.size(); ++i) {
        const bool well = fields[i].starts_with(wellWord);
        if (!well && !fields[i].starts_with(failedWord)) {
            return std::nullopt;
        }
        line.outcomes.push_back({std::string(fields[i].substr(well ? wellWord.size() : failedWord.size())), well});
    }
    return line;
}

SystemError ReadHistory(Machine& machine, std::vector<HistoryLine>& history) {
    const ProgramFolder folder(machine.process.ProgramFolder());
    std::string text;
    const SystemError code = ReadText(machine.files, machine.system, folder.PathOf(programfile::history), text);
    for (const std::string& line : text::SplitLines(text::UnescapeSurrogates(text))) {
        if (auto parsed = ParseHistoryLine(line)) {
            history.push_back(std::move(*parsed));
        }
    }
    return IsMissing(code) ? error::success : code;
}

std::string BackupReportText(SystemInfo& system, const std::vector<Location>& locations, const RunReport& report,
                             const std::vector<HistoryLine>& history) {
    std::vector<std::string> lines{
        "Backup of " + FormatLogDate(report.start) + " At " + FormatLogTime(report.start),
        "",
        "Copied:    " + std::to_string(report.copied) + " (" + std::to_string(report.bytes) + " bytes)",
        "Unchanged: " + std::to_string(report.unchanged),
        "Different: " + std::to_string(report.different.size()),
        "Failed:    " + std::to_string(report.failed),
        "Seconds:   " + std::to_string(report.milliseconds / 1000),
    };
    std::vector<std::string> run;
    run.reserve(report.outcomes.size());
    for (const RunReport::Outcome& outcome : report.outcomes) {
        run.push_back(outcome.location + (outcome.well ? ": all is saved" : ": something is not saved"));
    }
    AddLines(lines, "Locations that were run:", run);
    AddLines(lines, "Failures:", Reasons(system, report.Lines()));
    AddLines(lines, "Notes:", Reasons(system, report.Notes()));
    AddLines(lines, "Different, but not copied (older than the saved copy, or of the same time):", report.different);
    std::vector<std::string> known;
    known.reserve(locations.size());
    for (const Location& location : locations) {
        known.push_back(location.Path() + ": last went well " + LastTime(history, location, true) + ", last failed " +
                        LastTime(history, location, false));
    }
    AddLines(lines, "All locations:", known);
    return text::JoinLines(lines);
}

void WriteBackupReport(Machine& machine, const std::vector<Location>& locations, RunReport& report) {
    const ProgramFolder folder(machine.process.ProgramFolder());
    const auto save = [&](const char* name, const std::string& text) {
        const SystemError code = SaveWholeFile(machine.files, folder.PathOf(name), text::EscapeSurrogates(text));
        if (code != error::success) {
            report.Add(folder.PathOf(name), code);
        }
    };
    std::vector<HistoryLine> history;
    const SystemError read = ReadHistory(machine, history);
    history.push_back(LineOf(report));
    if (history.size() > runsKept) {
        history.erase(history.begin(), history.end() - static_cast<std::ptrdiff_t>(runsKept));
    }
    if (read == error::success) {
        std::vector<std::string> lines;
        lines.reserve(history.size());
        for (const HistoryLine& line : history) {
            lines.push_back(FormatHistoryLine(line));
        }
        save(programfile::history, text::JoinLines(lines));
    } else {
        report.Add(folder.PathOf(programfile::history), read);  // written anew it would be lost
    }
    save(programfile::report, BackupReportText(machine.system, locations, report, history));
}

}  // namespace marlok
