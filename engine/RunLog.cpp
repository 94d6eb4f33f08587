#include "engine/RunLog.h"

#include <array>
#include <cstdio>

#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/WholeFiles.h"
#include "paths/Path.h"
#include "paths/ProgramFiles.h"
#include "settings/BackupSettings.h"
#include "text/Surrogates.h"

namespace marlok {

namespace {

constexpr std::array<const char*, 7> dayNames{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                              "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 12> monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

const LogForm interactiveLog{"Total files copied ", " ", " was ", programfile::runLog, "Backup Log File",
                             "Backup Log File",     true};
const LogForm unattendedLog{"Total files copied ", " At ", " Was ", programfile::runLog, "Backup Log File",
                            "Backup Log File",     true};
const LogForm replacementLog{"Total files replaced ", " At ", " was ", programfile::replacedLog, "Replaced File Log",
                             "Replaced Log File",     false};

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

std::string LogText(const std::string& header, const std::vector<std::string>& lines) {
    std::string text = header + "\r\n";
    if (lines.empty()) {
        return text;
    }
    text += "\r\n";
    for (const std::string& line : lines) {
        if (IsEndMark(line)) {
            break;
        }
        text += line + "\r\n";
    }
    return text;
}

SystemError MakeDesktopShortcut(Machine& machine, const LogForm& form) {
    const std::string desktop = machine.shell.DesktopFolder();
    if (desktop.empty()) {
        return error::pathNotFound;
    }
    const ProgramFolder folder(machine.process.ProgramFolder());
    Shortcut shortcut;
    shortcut.path = Join(desktop, std::string(form.shortcut) + ".lnk");
    shortcut.targetPath = folder.PathOf(form.file);
    shortcut.iconLocation = folder.PathOf(programfile::program) + ", 0";
    shortcut.description = form.description;
    shortcut.workingDirectory = folder.WithBackslash();
    return machine.shell.SaveShortcut(shortcut);
}

SystemError WriteErrorLog(Machine& machine, const RunReport& report) {
    const std::string path = ProgramFolder(machine.process.ProgramFolder()).PathOf(programfile::errorLog);
    if (report.Lines().empty()) {
        // Usually there is none; one that cannot be removed is an old report and harms nobody.
        static_cast<void>(ForceDelete(machine.files, path));
        return error::success;
    }
    const std::string text = text::EscapeSurrogates(ErrorLogText(machine.system, report));
    const SystemError code = SaveWholeFile(machine.files, path, text);
    if (code != error::success) {
        machine.process.WriteError(path + ": " + Describe(machine.system, code));
        machine.process.WriteError(text);
    }
    return code;
}

int FinishRun(Machine& machine, const LogForm& form, RunReport& report) {
    const LocalTime now = machine.clock.Now();
    const std::string header = form.beforeDate + FormatLogDate(now) + form.beforeTime + FormatLogTime(now) +
                               form.beforeCount + std::to_string(report.written.size());
    const std::string log = ProgramFolder(machine.process.ProgramFolder()).PathOf(form.file);
    const SystemError written =
        SaveWholeFile(machine.files, log, text::EscapeSurrogates(LogText(header, report.written)));
    if (written != error::success) {
        report.Add(log, written);
    }
    const SystemError linked = MakeDesktopShortcut(machine, form);
    if (linked != error::success) {
        report.Add(std::string(form.shortcut) + ".lnk", linked);
    }
    const int exitCode = report.Lines().empty() ? exitcode::allDone : exitcode::somethingFailed;
    if (form.clearsErrorLog || !report.Lines().empty()) {
        const SystemError told = WriteErrorLog(machine, report);
        if (told != error::success) {
            report.Add(programfile::errorLog, told);
        }
    }
    return exitCode;
}

}  // namespace marlok
