#include "ui/run/Form6.h"

#include <algorithm>
#include <array>
#include <vector>

#include "engine/BackupRun.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "forms/Windows.h"
#include "text/Lines.h"
#include "text/Text.h"
#include "ui/run/Restart.h"
#include "ui/run/ResultLayout.h"

namespace marlok {

namespace {

/// Lines of the command file that are never location lines.
constexpr std::array<std::string_view, 10> passedOver{"S", "s", "A", "a", " ", "", "\r", "/", ",", "."};

// Twips.
constexpr int leastHeight = 3600;

bool IsPassedOver(std::string_view line) {
    return line == "\\" || std::ranges::find(passedOver, line) != passedOver.end();
}

}  // namespace

Form6::Form6(forms::Windows& windows, Session& session)
    : Form(windows, "Form6", "Marlok Backup Utility"), session_(session), breathe_(session.machine) {
    List2.Visible = false;
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
    ReadCommandFile();
    session_.gNodesSorted = true;
    session_.gNodesExpanded = true;
    BackupLocations();
    // Gone or locked, it makes no difference here: the next run writes its own, and unloading tries again.
    static_cast<void>(DeleteThisFile(session_.machine.files, session_.gCommandFile));
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
    LayOutResult(*this, {Label2, Label1, List2, nullptr, Command1});
}

void Form6::ReadCommandFile() {
    Machine& machine = session_.machine;
    session_.gCommandFile = session_.gAppFolder.PathOf(programfile::command);
    if (!FileExists(machine.files, session_.gCommandFile)) {
        return;
    }
    std::string text;
    const SystemError code = ReadText(machine.files, machine.system, session_.gCommandFile, text);
    if (code != error::success) {
        Raise(code);
    }
    const std::vector<std::string> pieces = text::SplitLines(text);
    // The first line holds the copy mode; what follows the last line break is no line.
    for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
        if (!IsPassedOver(pieces[i])) {
            List4.AddItem(pieces[i]);
        }
    }
}

void Form6::BackupLocations() {
    RunPlan plan;
    plan.allFiles = session_.gAllFiles;
    plan.atStart = session_.atStart;
    for (const Location& location : session_.Configuration().Locations()) {
        if (IsChosen(location)) {
            plan.locations.push_back(location);
        }
    }
    report_ = BackupRun(session_.machine, session_.Configuration(), plan, *this).Run();
    storage_.Clear();
}

bool Form6::IsChosen(const Location& location) const {
    const auto occurs = [&](const std::string& line) { return text::ContainsIgnoringCase(location.Path(), line); };
    return List4.ListCount() == 0 || std::ranges::any_of(List4.Items(), occurs);
}

void Form6::LocationBegins(const Location& /*location*/) {
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
    session_.exitCode = FinishRun(session_.machine, unattendedLog, report_);
    Label1.Caption = std::to_string(List2.ListCount()) + " Files Copied";
    Label2.Caption = "Backup Program Is Finished";
    List2.Visible = true;
    session_.machine.desktop.ShowHourglass(false);
    if (!session_.gShowMessage) {
        Unload();
        return;
    }
    Show();
    List2.SetListIndex(0);
}

void Form6::Command1_Click() {
    RequestRestart(session_.machine, *this);
}

void Form6::Form_Unload() {
    session_.gNodesSorted = false;
    session_.gNodesExpanded = false;
    static_cast<void>(DeleteThisFile(session_.machine.files, session_.gCommandFile));
    Collection().UnloadAll();
}

}  // namespace marlok
