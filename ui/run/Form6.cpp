#include "ui/run/Form6.h"

#include <algorithm>
#include <utility>

#include "engine/BackupRun.h"
#include "forms/Windows.h"
#include "ui/run/Restart.h"
#include "ui/run/ResultLayout.h"

namespace marlok {

namespace {

constexpr const char* choosesNothing =
    "no backup location holds this in its path, so that nothing was backed up for it";
constexpr const char* saysNothing =
    "passed over: the first argument says what is to be copied, A for all files or C for changed files only";

// Twips.
constexpr int leastHeight = 3600;

}  // namespace

Form6::Form6(forms::Windows& windows, Session& session, std::optional<std::vector<Location>> chosen)
    : Form(windows, "Form6", "Marlok Backup Utility"),
      session_(session),
      chosen_(std::move(chosen)),
      breathe_(session.machine) {
    List2.Visible = false;
    Label4.Visible = false;
    for (forms::Control* storage :
         std::initializer_list<forms::Control*>{&List1, &List3, &List4, &Text1, &Text2, &TreeView1}) {
        storage->Visible = false;
    }
    List2.AccessibleName = "Files Copied";
    Command1.Click = [this] { Command1_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form6::Form_Load() {
    PlaceWindow();
    Run();
}

void Form6::RunAgain(std::vector<Location> chosen) {
    chosen_ = std::move(chosen);
    Hide();
    List2.Clear();
    List2.Visible = false;
    Label4.Visible = false;
    Run();
}

void Form6::Run() {
    ReadCommandFile();
    session_.gNodesSorted = true;
    session_.gNodesExpanded = true;
    run_.Begin();
    RunPlan plan;
    plan.allFiles = session_.gAllFiles;
    plan.atStart = session_.atStart;
    const LocationChoice choice = ChooseLocations(List4.Items(), session_.Configuration().Locations());
    plan.locations = chosen_ ? *chosen_ : choice.chosen;
    RunReport report = BackupRun(session_.machine, session_.Configuration(), plan, *this).Run();
    if (!chosen_) {
        ReportArguments(report, choice);
        nothingRan_ = choice.chosen.empty() && !choice.withoutEffect.empty();
    }
    run_.Copied(std::move(report));
    storage_.Clear();
    commandFile_.Remove();
    Timer1.Start();
    // A click on the main window, made while nothing could answer it, is not meant for what it shows now.
    session_.machine.desktop.DiscardInput();
}

void Form6::PlaceWindow() {
    const int screenWidth = session_.machine.desktop.ScreenWidth();
    const int screenHeight = session_.machine.desktop.ScreenHeight();
    Place(screenWidth / 4, screenHeight / 4, screenWidth / 2, std::max(leastHeight, screenHeight / 2));
}

void Form6::Form_Resize() {
    LayOutResult(*this, {Label2, Label1, List2, Label4, Command1});
}

void Form6::ReadCommandFile() {
    session_.gCommandFile = commandFile_.Path();
    List4.Clear();
    passedOver_.clear();
    if (!commandFile_.Exists()) {
        return;
    }
    const std::string text = commandFile_.Read();
    ownCommandFile_ = true;
    passedOver_ = PassedOverFirstLine(text);
    for (std::string& line : LocationLinesOf(text)) {
        List4.AddItem(std::move(line));
    }
}

/// An argument without effect is one that was meant to have another.
void Form6::ReportArguments(RunReport& report, const LocationChoice& choice) const {
    if (!passedOver_.empty()) {
        report.Add(passedOver_, saysNothing);
    }
    for (const std::string& line : choice.withoutEffect) {
        report.Add(line, choosesNothing);
    }
}

void Form6::LocationBegins(const Location& location) {
    run_.Enter(location);
    storage_.LocationBegins();
}

void Form6::FoldersFound(const FolderScan& scan) {
    storage_.FoldersFound(scan, session_.gNodesSorted, session_.gNodesExpanded);
    session_.machine.desktop.PaintPending();
}

void Form6::EntryBegins(const std::string& source, const std::string& target) {
    storage_.EntryBegins(source, target);
}

void Form6::Copied(const std::string& source, const std::string& target) {
    storage_.Copied(source);
    List2.AddItem(target);
}

void Form6::Breathe() {
    breathe_();
}

void Form6::Timer1_Timer() {
    Timer1.Stop();
    session_.gAppFolder = ProgramFolder(session_.machine.process.ProgramFolder());
    Finish();
    Label1.Caption = std::to_string(List2.ListCount()) + " Files Copied";
    Label2.Caption = "Backup Program Is Finished";
    List2.Visible = true;
    session_.machine.desktop.ShowHourglass(false);
    ShowFailures(Label4, session_.machine, run_.Report(), backupFailures);
    Form_Resize();  // the failures may need more room
    // Without a person nobody would close the window; with one, failures do not go by unseen.
    if (!session_.gShowMessage && !(chosen_ && Label4.Visible)) {
        Unload();
        return;
    }
    Show();
    List2.SetListIndex(0);
}

void Form6::Finish() {
    const int code = run_.Finish();
    session_.exitCode = nothingRan_ ? exitcode::nothingRan : code;
}

void Form6::Command1_Click() {
    RequestRestart(session_.machine, *this);
}

void Form6::Form_Unload() {
    session_.gNodesSorted = false;
    session_.gNodesExpanded = false;
    // The main window may be closed while the log is still to be written.
    if (run_.IsToBeRecorded()) {
        Finish();
    }
    if (ownCommandFile_) {
        commandFile_.Remove();
    }
    Collection().UnloadAll();
}

}  // namespace marlok
