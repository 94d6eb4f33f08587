#include "ui/run/Form1.h"

#include <algorithm>
#include <utility>

#include "engine/RunLog.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/VersionInfo.h"
#include "ui/run/Form5.h"
#include "ui/run/Restart.h"
#include "ui/run/ResultLayout.h"

namespace marlok {

namespace {

constexpr forms::Colour alarm = forms::Rgb(192, 0, 0);

// Twips.
constexpr int leastHeight = 3600;

}  // namespace

Form1::Form1(forms::Windows& windows, Program& program, std::vector<std::string> locations,
             std::function<void()> afterQuietRun)
    : Form(windows, "Form1", "Marlok Backup Utility"),
      program_(program),
      locations_(std::move(locations)),
      afterQuietRun_(std::move(afterQuietRun)),
      breathe_(program) {
    for (forms::Control* storage : std::initializer_list<forms::Control*>{&List1, &List3, &List4, &List5, &Text1,
                                                                          &Text2, &TreeView1, &List2, &Label3}) {
        storage->Visible = false;
    }
    List2.AccessibleName = std::string("Files Copied");
    Label3.ForeColor = alarm;
    Command1.Click = [this] { Command1_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form1::Form_Load() {
    PlaceWindow();
    Run();
}

void Form1::RunAgain(std::vector<std::string> locations) {
    locations_ = std::move(locations);
    Run();
}

void Form1::PlaceWindow() {
    const int screenWidth = program_.machine.desktop.ScreenWidth();
    const int screenHeight = program_.machine.desktop.ScreenHeight();
    // The upper half of the screen is the progress window's.
    Place(screenWidth / 4, screenHeight / 2, screenWidth / 2, std::max(leastHeight, screenHeight * 2 / 5));
}

void Form1::Form_Resize() {
    LayOutResult(*this, {Label2, Label1, List2, &Label3, Command1});
}

void Form1::Run() {
    List1.Clear();
    List2.Clear();
    List2.Visible = false;
    Label3.Visible = false;
    Label1.Caption = std::string();
    Label2.Caption = std::string("Backup In Progress Please Wait !");
    Command1.Enabled = false;
    SystemInfo& system = program_.machine.system;
    countsFiles_ = IsWindowsME(system) || IsWindows98(system) || IsWindows95(system);
    program_.gNodesSorted = true;
    program_.gNodesExpanded = true;
    Show();
    Progress().Show();
    Progress().Refresh();
    {
        BackupRun run(program_, {List1, List2, List3, Text1, Text2}, TreeView1, *this);
        for (const std::string& location : locations_) {
            if (IsEndMark(location)) {
                break;
            }
            run.BackupLocation(location);
        }
        run.Finish();
        failures_ = run.Report().Lines().size();
    }
    ShowStatus("Now Writing Log File, Please Wait!");
    program_.machine.desktop.ShowHourglass(true);
    Timer1.Start();
    // A click on a button of the window behind, made while nothing could answer it, is not meant for what it shows now.
    program_.machine.desktop.DiscardInput();
}

Form5& Form1::Progress() {
    return Collection().Load<Form5>(program_);
}

SystemError Form1::CopyFile(const std::string& source, const std::string& destination, std::uint32_t flags) {
    FileSystem& files = program_.machine.files;
    forms::ProgressBar& bar = Progress().ProgressBar1;
    return countsFiles_ ? CopyCountingFiles(files, source, destination, bar, flags)
                        : CopyWithProgress(files, source, destination, bar, flags, [this] { breathe_(); });
}

void Form1::ShowStatus(const std::string& text) {
    Progress().ShowStatus(text);
}

void Form1::ShowFolderCount(int count) {
    Label1.Caption = "Total folders to be backed up : " + std::to_string(count);
    Refresh();
}

void Form1::Timer1_Timer() {
    Timer1.Stop();
    program_.gAppFolder = AddBackslash(program_.machine.process.ProgramFolder());
    SystemInfo& system = program_.machine.system;
    const LocalTime now = program_.machine.clock.Now();
    const std::string count = std::to_string(List2.ListCount());
    const std::string log = program_.gAppFolder + programfile::runLog;
    const SystemError written = WriteLog(
        program_, log,
        LogText("Total files copied " + FormatLogDate(now) + " " + FormatLogTime(now) + " was " + count, List2));
    logFailure_ = written == error::success ? "" : log + ": " + Describe(system, written);
    Label1.Caption = "Total files copied was " + count;
    Label2.Caption = std::string("Backup Has Been Completed");
    List2.Visible = true;
    Progress().Label2.Visible = false;
    ShowStatus("Backup Is Finished !");
    program_.machine.desktop.ShowHourglass(false);
    const SystemError linked = MakeDesktopShortcut(program_, log, "Backup Log File", "Backup Log File");
    if (linked != error::success && logFailure_.empty()) {
        logFailure_ = "Backup Log File.lnk: " + Describe(system, linked);
    }
    ShowResult();
}

void Form1::ShowResult() {
    Command1.Enabled = true;
    TellFailures();
    if (program_.gShowMessage) {
        program_.machine.desktop.ShowHourglass(true);
        ShowStatus("ShortCut to Backup Log Being Created !");
        if (Progress().picBox) {
            Progress().picBox->Visible = false;
        }
        ShowStatus("Backup Completed");
        program_.machine.desktop.ShowHourglass(false);
    }
    if (program_.gShowMessage || Label3.Visible) {
        Show();
        return;
    }
    Hide();
    if (afterQuietRun_) {
        afterQuietRun_();
    }
}

/// Whoever does not want the closing message still has to learn of files that were not saved.
void Form1::TellFailures() {
    if (failures_ > 0) {
        Label3.Caption = std::to_string(failures_) + (failures_ == 1 ? " Failure" : " Failures") + ", See \"" +
                         programfile::errorLog + "\" In The Program's Folder";
    } else {
        Label3.Caption = logFailure_;
    }
    Label3.Visible = !Label3.Caption.Get().empty();
}

void Form1::Command1_Click() {
    RequestRestart(program_, *this);
}

void Form1::Form_Unload() {
    program_.gNodesSorted = false;
    program_.gNodesExpanded = false;
    Collection().UnloadAll();
}

}  // namespace marlok
