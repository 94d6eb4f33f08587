#include "ui/run/Form1.h"

#include <algorithm>
#include <utility>

#include "engine/BackupRun.h"
#include "fileops/VersionInfo.h"
#include "forms/Windows.h"
#include "ui/run/Callback.h"
#include "ui/run/Form5.h"
#include "ui/run/Restart.h"
#include "ui/run/ResultLayout.h"

namespace marlok {

namespace {

// Twips.
constexpr int leastHeight = 3600;

// Of the question for a whole drive. The first button is the one that Enter presses.
constexpr int keepButton = button::yes;
constexpr int deleteButton = button::no;

}  // namespace

Form1::Form1(forms::Windows& windows, Session& session, std::vector<Location> locations,
             std::function<void()> afterQuietRun)
    : Form(windows, "Form1", "Marlok Backup Utility"),
      session_(session),
      locations_(std::move(locations)),
      afterQuietRun_(std::move(afterQuietRun)),
      breathe_(session.machine) {
    for (forms::Control* storage : std::initializer_list<forms::Control*>{&List1, &List3, &List4, &List5, &Text1,
                                                                          &Text2, &TreeView1, &List2, &Label3}) {
        storage->Visible = false;
    }
    List2.AccessibleName = "Files Copied";
    Command1.Click = [this] { Command1_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form1::Form_Load() {
    PlaceWindow();
    Run();
}

void Form1::RunAgain(std::vector<Location> locations) {
    locations_ = std::move(locations);
    Run();
}

void Form1::PlaceWindow() {
    const int screenWidth = session_.machine.desktop.ScreenWidth();
    const int screenHeight = session_.machine.desktop.ScreenHeight();
    // The upper half of the screen is the progress window's.
    Place(screenWidth / 4, screenHeight / 2, screenWidth / 2, std::max(leastHeight, screenHeight * 2 / 5));
}

void Form1::Form_Resize() {
    LayOutResult(*this, {Label2, Label1, List2, Label3, Command1});
}

void Form1::Run() {
    List1.Clear();
    List2.Clear();
    List2.Visible = false;
    Label3.Visible = false;
    Label1.Caption = "";
    Label2.Caption = "Backup In Progress Please Wait !";
    Command1.Enabled = false;
    SystemInfo& system = session_.machine.system;
    countsFiles_ = IsWindowsME(system) || IsWindows98(system) || IsWindows95(system);
    session_.gNodesSorted = true;
    session_.gNodesExpanded = true;
    run_.Begin();
    Show();
    Progress().Show();
    Progress().Refresh();
    const RunPlan plan{locations_, session_.gAllFiles,
                       countsFiles_ ? CopyMethod::copyCountingFiles : CopyMethod::copyWithProgress};
    run_.Copied(BackupRun(session_.machine, session_.Configuration(), plan, *this).Run());
    storage_.Clear();
    Status("Now Writing Log File, Please Wait!");
    session_.machine.desktop.ShowHourglass(true);
    Timer1.Start();
    // A click on a button of the window behind, made while nothing could answer it, is not meant for what it shows now.
    session_.machine.desktop.DiscardInput();
}

Form5& Form1::Progress() {
    return Collection().Load<Form5>(session_.machine, session_.gAllFiles);
}

void Form1::Status(const std::string& text) {
    Progress().ShowStatus(text);
}

void Form1::LocationBegins(const Location& location) {
    run_.Enter(location);
    storage_.LocationBegins();
    folderCount_ = 0;
}

void Form1::FoldersFound(const FolderScan& scan) {
    storage_.FoldersFound(scan, session_.gNodesSorted, session_.gNodesExpanded);
    folderCount_ += TreeView1.NodeCount();
    Label1.Caption = "Total folders to be backed up : " + std::to_string(folderCount_);
    Refresh();
    session_.machine.desktop.PaintPending();
}

void Form1::EntryBegins(const std::string& source, const std::string& target) {
    storage_.EntryBegins(source, target);
}

void Form1::CopyBegins(const std::string& /*source*/, const std::string& /*target*/) {
    if (countsFiles_) {
        CountCopiedFile(Progress().ProgressBar1);
    }
}

void Form1::BytesCopied(const CopyProgressInfo& info) {
    CopyProgress(Progress().ProgressBar1, info);
    breathe_();
}

void Form1::Copied(const std::string& source, const std::string& target) {
    storage_.Copied(source);
    List2.AddItem(target);
}

void Form1::Breathe() {
    breathe_();
}

bool Form1::MayDeleteAll(const WholeDrive& found) {
    Desktop& desktop = session_.machine.desktop;
    // What was clicked and typed before the question was there does not answer it.
    desktop.DiscardInput();
    const int pressed = desktop.ShowMessageWithCaptions(
        "The whole drive " + found.location +
            " is a backup location. Files on it that you do not back up (any more): " + std::to_string(found.files) +
            " (" + std::to_string(found.bytes) +
            " bytes).\r\n\r\nDelete all of them for good, or keep those that no earlier backup has saved there?",
        messagestyle::yesNo | messagestyle::question, Caption(), {{keepButton, "Keep"}, {deleteButton, "Delete"}});
    return pressed == deleteButton;
}

void Form1::Timer1_Timer() {
    Timer1.Stop();
    session_.gAppFolder = ProgramFolder(session_.machine.process.ProgramFolder());
    session_.exitCode = run_.Finish();
    Label1.Caption = "Total files copied was " + std::to_string(List2.ListCount());
    Label2.Caption = "Backup Has Been Completed";
    List2.Visible = true;
    Progress().Label2.Visible = false;
    Status("Backup Is Finished !");
    session_.machine.desktop.ShowHourglass(false);
    ShowResult();
}

void Form1::ShowResult() {
    Command1.Enabled = true;
    ShowFailures(Label3, session_.machine, run_.Report(), backupFailures);
    Form_Resize();  // the failures may need more room
    if (session_.gShowMessage) {
        session_.machine.desktop.ShowHourglass(true);
        Status("ShortCut to Backup Log Being Created !");
        if (Progress().picBox) {
            Progress().picBox->Visible = false;
        }
        Status("Backup Completed");
        session_.machine.desktop.ShowHourglass(false);
    }
    // Whoever does not want the closing message still has to learn of files that were not saved.
    if (session_.gShowMessage || Label3.Visible) {
        Show();
        return;
    }
    Hide();
    if (afterQuietRun_) {
        afterQuietRun_();
    }
}

void Form1::Command1_Click() {
    RequestRestart(session_.machine, *this);
}

void Form1::Form_Unload() {
    session_.gNodesSorted = false;
    session_.gNodesExpanded = false;
    // The main window may be closed while the log is still to be written.
    if (run_.IsToBeRecorded()) {
        session_.exitCode = run_.Finish();
        session_.machine.desktop.ShowHourglass(false);
    }
    Collection().UnloadAll();
}

}  // namespace marlok
