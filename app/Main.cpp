#include "app/Main.h"

#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/Form2.h"
#include "app/frmStartUp.h"
#include "engine/RunReport.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "platform/RuntimeError.h"
#include "text/Text.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form6.h"

namespace marlok::app {

namespace {

constexpr const char* infoTitle = "Marlok Info.....";
constexpr const char* programTitle = "Marlok Backup Utility";

/// What the counting of the configuration found: the first location number that holds nothing, and whether a source
/// exists.
struct Configured {
    int nextLocation = firstEntryNumber;
    int sources = 0;
};

void DeletePending(Program& program) {
    FileSystem& files = program.machine.files;
    const std::string list = program.BesideProgram(programfile::deleteFolder);
    if (!FileExists(files, list)) {
        return;
    }
    std::string bytes;
    const SystemError code = ReadWholeFile(files, list, bytes);
    if (code != error::success) {
        Raise(code);
    }
    const std::string text = DecodeText(program.machine.system, std::move(bytes));
    for (const std::string_view path : text::Split(text, "\r\n")) {
        if (!path.empty()) {
            // A folder that cannot be deleted stays: an empty folder harms nobody.
            static_cast<void>(DeleteThisFile(files, program.machine.shell, std::string(path)));
        }
    }
    // The list is read once, whatever becomes of its file.
    static_cast<void>(DeleteThisFile(files, program.machine.shell, list));
}

/// Counts locations and sources. The number of a source is deliberately not set back to the first for the next
/// location: the count only tells whether there is any.
Configured CountConfiguration(Program& program) {
    BackupSettings settings = program.Configuration();
    Configured found;
    int source = firstEntryNumber;
    while (true) {
        const std::string location = settings.Location(found.nextLocation);
        if (IsEndMark(location)) {
            return found;
        }
        while (!IsEndMark(settings.Source(location, source))) {
            found.sources = CheckedCounter(found.sources + 1);
            source = CheckedCounter(source + 1);
        }
        found.nextLocation = CheckedCounter(found.nextLocation + 1);
    }
}

void ClearFlags(Program& program) {
    program.gShowMessage = false;
    program.gFirstRun = true;
    program.gAllFiles = false;
    program.gShowMessageBackground = false;
    program.gShowingOriginals = false;
}

void LoadFirstWindow(Program& program, const Configured& configured) {
    if (configured.nextLocation == firstEntryNumber || configured.sources == 0) {
        auto& startUp = program.windows.Load<frmStartUp>(program);
        const bool noLocation = configured.nextLocation == firstEntryNumber;
        startUp.Label3.Caption = std::string(noLocation ? "Backup Locations" : "Files To Backup");
        startUp.Show();
        return;
    }
    program.gAppFolder = AddBackslash(program.machine.process.ProgramFolder());
    program.gCommandFile = program.BesideProgram(programfile::command);
    if (!GetCommandLine(program)) {
        program.windows.Load<ui::frmSSTab>(program).Show();
        return;
    }
    TakeRunFlags(program);
    program.windows.Load<Form6>(program);
}

void ReportRuntimeError(Program& program, const RuntimeError& error) {
    const std::string text = "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" + error.what();
    if (SplitCommandLine(program.machine.process.Arguments()).empty()) {
        program.machine.desktop.ShowMessage(text, messagestyle::stop, programTitle);
        return;
    }
    program.machine.process.WriteError(text);
    RunReport report;
    report.Add(programTitle, std::string(error.what()) + " (run-time error " + std::to_string(error.Number()) +
                                 "); the run has ended");
    WriteErrorLog(program, report);
}

}  // namespace

void Main(Program& program) {
    if (!program.machine.process.ClaimSingleInstance()) {
        program.machine.desktop.ShowMessage("This Program Is Already Running",
                                            messagestyle::ok | messagestyle::information, infoTitle);
        program.exitCode = exitcode::nothingRan;
        return;
    }
    DeletePending(program);
    ClearFlags(program);
    program.gSettings = std::make_unique<CRegSettings>(program.machine.registry, program.machine.system);
    const Configured configured = CountConfiguration(program);
    program.windows.Load<Form2>(program).Timer1.Start();
    LoadFirstWindow(program, configured);
}

int RunProgram(Machine& machine, forms::ViewFactory* views) {
    Program program(machine, views);
    try {
        Main(program);
        program.windows.Run();
    } catch (const RuntimeError& error) {
        ReportRuntimeError(program, error);
        return exitcode::nothingRan;
    }
    return program.exitCode;
}

}  // namespace marlok::app
