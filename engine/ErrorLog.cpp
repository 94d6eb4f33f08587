#include "engine/ErrorLog.h"

#include <memory>

#include "engine/LogDate.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/ProgramFiles.h"
#include "text/Lines.h"
#include "text/Surrogates.h"

namespace marlok {

namespace {

/// What a note begins with, and no line of a report: those begin with a path.
constexpr std::string_view noteStart = "Marlok Backup Utility: ";

/// While a run that goes on replaces the file, adding to it fails for a moment.
constexpr int noteTries = 20;
constexpr std::uint32_t noteWait = 50;  // milliseconds

SystemError Append(FileSystem& files, const std::string& path, const std::string& line) {
    std::unique_ptr<File> file;
    SystemError code = files.Open(path, OpenMode::append, file);
    if (code != error::success) {
        return code;
    }
    code = file->Write(line);
    const SystemError closed = file->Close();
    return code != error::success ? code : closed;
}

bool IsInUse(SystemError code) {
    return code == error::sharingViolation || code == error::lockViolation || code == error::accessDenied;
}

}  // namespace

std::vector<std::string> ErrorLogLines(Machine& machine, const RunReport& report, const std::string& again) {
    AbsentDrives drives(machine.files, again);
    return ErrorLogLines(machine.system, drives, report);
}

std::vector<std::string> ErrorLogLines(SystemInfo& system, AbsentDrives& drives, const RunReport& report) {
    std::vector<std::string> lines;
    lines.reserve(report.Lines().size());
    for (const RunReport::Line& line : report.Lines()) {
        std::string reason = line.reason.empty() ? drives.Sentence(line.path, line.code) : "";
        if (reason.empty()) {
            reason = ReasonOf(system, line);
        }
        lines.push_back(line.path + ": " + reason);
    }
    return lines;
}

ErrorLog::ErrorLog(Machine& machine)
    : machine_(machine), path_(ProgramFolder(machine.process.ProgramFolder()).PathOf(programfile::errorLog)) {}

SystemError ErrorLog::Write(const std::vector<std::string>& lines) const {
    if (lines.empty()) {
        // Usually there is none; one that cannot be removed is an old report and harms nobody.
        static_cast<void>(ForceDelete(machine_.files, path_));
        return error::success;
    }
    const std::string text = text::EscapeSurrogates(text::JoinLines(lines));
    const SystemError code = SaveWholeFile(machine_.files, path_, text);
    if (code != error::success) {
        machine_.process.WriteError(path_ + ": " + Describe(machine_.system, code));
        machine_.process.WriteError(text);
    }
    return code;
}

SystemError ErrorLog::Note(const std::string& what) const {
    const LocalTime now = machine_.clock.Now();
    const std::string line = std::string(noteStart) + FormatLogDate(now) + " " + FormatLogTime(now) + ": " + what;
    SystemError code = Append(machine_.files, path_, line + "\r\n");
    for (int tries = 1; IsInUse(code) && tries < noteTries; ++tries) {
        machine_.clock.Sleep(noteWait);
        code = Append(machine_.files, path_, line + "\r\n");
    }
    if (code != error::success) {
        machine_.process.WriteError(path_ + ": " + Describe(machine_.system, code));
        machine_.process.WriteError(line);
    }
    return code;
}

std::vector<std::string> ErrorLog::Notes() const {
    std::string text;
    // A log that is missing holds none; one that cannot be read is not carried over either.
    static_cast<void>(ReadText(machine_.files, machine_.system, path_, text));
    std::vector<std::string> notes;
    for (std::string& line : text::SplitLines(text)) {
        if (line.starts_with(noteStart)) {
            notes.push_back(std::move(line));
        }
    }
    return notes;
}

}  // namespace marlok
