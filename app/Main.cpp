#include "app/Main.h"

#include <exception>
#include <string>

#include "app/CommandLine.h"
#include "app/Form2.h"
#include "app/ProgramEnd.h"
#include "app/frmStartUp.h"
#include "engine/ErrorLog.h"
#include "engine/PendingDeletions.h"
#include "engine/ReportBox.h"
#include "engine/RestoreJournal.h"
#include "engine/RunLog.h"
#include "engine/RunReport.h"
#include "fileops/PatientFiles.h"
#include "platform/RuntimeError.h"
#include "ui/Help.h"
#include "ui/Texts.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form6.h"

namespace marlok::app {

namespace {

/// What the counting of the configuration found: the first location number that holds nothing, and whether a source
/// exists.
struct Configured {
    int nextLocation = firstEntryNumber;
    int sources = 0;
};

/// What could not be deleted is in the error log, and shown; where nobody watches, the run's report has it too.
void DeletePending(Session& session) {
    Machine& machine = session.machine;
    const RunReport report = CarryOutPendingDeletions(machine);
    if (report.Lines().empty()) {
        return;
    }
    const bool logged = WriteErrorLog(machine, report) == error::success;
    if (!IsUnattended(machine)) {
        const std::string text = ReportBoxText(machine.system, report, logged);
        machine.desktop.ShowMessage(text, messagestyle::ok | messagestyle::information, ui::texts::infoTitle);
        return;
    }
    for (const RunReport::Line& line : report.Lines()) {
        machine.process.WriteError(line.path + ": " + ReasonOf(machine.system, line));
    }
    session.atStart = report;
}

/// Counts locations and sources. The number of a source is deliberately not set back to the first for the next
/// location: the count only tells whether there is any.
Configured CountConfiguration(Session& session) {
    BackupSettings settings = session.Configuration();
    Configured found;
    int source = firstEntryNumber;
    while (true) {
        const std::string location = settings.LocationAt(found.nextLocation);
        if (IsEndMark(location)) {
            return found;
        }
        while (!IsEndMark(settings.SourceAt(Location(location), source))) {
            found.sources = CheckedCounter(found.sources + 1);
            source = CheckedCounter(source + 1);
        }
        found.nextLocation = CheckedCounter(found.nextLocation + 1);
    }
}

void ClearFlags(Session& session) {
    session.gShowMessage = false;
    session.gFirstRun = true;
    session.gAllFiles = false;
    session.gShowMessageBackground = false;
    session.gShowingOriginals = false;
}

void LoadFirstWindow(Session& session, forms::Windows& windows, const Configured& configured) {
    const bool noLocation = configured.nextLocation == firstEntryNumber;
    if (noLocation || configured.sources == 0) {
        auto& startUp = windows.Load<frmStartUp>(session);
        startUp.Label3.Caption = noLocation ? "Backup Locations" : "Files To Backup";
        startUp.Show();
        return;
    }
    session.gAppFolder = ProgramFolder(session.machine.process.ProgramFolder());
    session.gCommandFile = session.gAppFolder.PathOf(programfile::command);
    if (!GetCommandLine(session)) {
        windows.Load<ui::frmSSTab>(session).Show();
        return;
    }
    TakeRunFlags(session);
    windows.Load<Form6>(session);
}

/// What a window has still to write it writes when it is unloaded. What fails then is less than what ended the program.
void UnloadAfterFailure(forms::Windows& windows) {
    try {
        windows.UnloadAll();
    } catch (const std::exception&) {
        return;
    }
}

/// The program from start to end, its windows included.
int RunWindows(Machine& machine, forms::ViewFactory* views) {
    Session session(machine);
    forms::Windows windows(machine.desktop, machine.clock, views);
    try {
        Main(session, windows);
        windows.Run();
    } catch (...) {
        UnloadAfterFailure(windows);
        throw;
    }
    return session.exitCode;
}

}  // namespace

void Main(Session& session, forms::Windows& windows) {
    Machine& machine = session.machine;
    if (!machine.process.ClaimSingleInstance()) {
        session.exitCode = EndAsSecondInstance(machine);
        return;
    }
    if (!CanWriteBeside(machine)) {
        session.exitCode = exitcode::nothingRan;
        return;
    }
    windows.OpenHelp = [&machine](const std::string& section) { ui::OpenHelp(machine, section); };
    RestoreJournal(machine).ClearKilled();
    DeletePending(session);
    ClearFlags(session);
    session.gSettings = std::make_unique<CRegSettings>(machine.registry, machine.system);
    const Configured configured = CountConfiguration(session);
    windows.Load<Form2>(machine).Timer1.Start();
    LoadFirstWindow(session, windows, configured);
}

int RunProgram(Machine& machine, forms::ViewFactory* views) {
    PatientFiles files(machine.files, machine.clock);
    Machine patient{machine.registry, files,           machine.drives, machine.shell,  machine.desktop,
                    machine.clock,    machine.process, machine.system, machine.browser};
    try {
        return RunWindows(patient, views);
    } catch (...) {
        return EndByException(machine);
    }
}

}  // namespace marlok::app
