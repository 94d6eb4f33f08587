#include "engine/RunLog.h"

#include "engine/AbsentDrives.h"
#include "engine/BackupReport.h"
#include "engine/ErrorLog.h"
#include "engine/LogDate.h"
#include "fileops/WholeFiles.h"
#include "paths/Path.h"
#include "paths/ProgramFiles.h"
#include "settings/BackupSettings.h"
#include "text/Surrogates.h"

namespace marlok {

const LogForm interactiveLog{
    "Total files copied ",  " ", " was ", programfile::runLog, "Backup Log File", "Backup Log File",
    "run the backup again", true};
const LogForm unattendedLog{
    "Total files copied ",  " At ", " Was ", programfile::runLog, "Backup Log File", "Backup Log File",
    "run the backup again", true};
const LogForm replacementLog{
    "Total files replaced ",   " At ", " was ", programfile::replacedLog, "Replaced File Log", "Replaced Log File",
    "replace the files again", false};

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
    return ErrorLog(machine).Write(ErrorLogLines(machine, report, "try again"));
}

int FinishRun(Machine& machine, const LogForm& form, RunReport& report, const std::vector<std::string>& notes) {
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
    AbsentDrives drives(machine.files, form.again);
    if (form.isBackup) {
        WriteBackupReport(machine, drives, report);
    }
    if (form.isBackup || !report.Lines().empty()) {
        std::vector<std::string> lines = ErrorLogLines(machine.system, drives, report);
        lines.insert(lines.end(), notes.begin(), notes.end());
        const SystemError told = ErrorLog(machine).Write(lines);
        if (told != error::success) {
            report.Add(programfile::errorLog, told);
        }
    }
    return report.Lines().empty() ? exitcode::allDone : exitcode::somethingFailed;
}

std::string WhyNoErrorLog(SystemInfo& system, const RunReport& report) {
    if (report.Lines().empty() || report.Lines().back().path != programfile::errorLog) {
        return "";
    }
    return ReasonOf(system, report.Lines().back());
}

}  // namespace marlok
