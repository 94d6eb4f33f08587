#include "ui/run/Form6.h"

#include <algorithm>
#include <array>
#include <vector>

#include "engine/RunLog.h"
#include "engine/RunReport.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
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

Form6::Form6(forms::Windows& windows, Program& program)
    : Form(windows, "Form6", "Marlok Backup Utility"), program_(program) {
    List2.Visible = false;
    for (forms::Control* storage :
         std::initializer_list<forms::Control*>{&List1, &List3, &List4, &Text1, &Text2, &TreeView1}) {
        storage->Visible = false;
    }
    List2.AccessibleName = std::string("Files Copied");
    Command1.Click = [this] { Command1_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form6::Form_Load() {
    PlaceWindow();
    ReadCommandFile();
    program_.gNodesSorted = true;
    program_.gNodesExpanded = true;
    BackupLocations();
    // Gone or locked, it makes no difference here: the next run writes its own, and unloading tries again.
    static_cast<void>(DeleteThisFile(program_.machine.files, program_.machine.shell, program_.gCommandFile));
    Timer1.Start();
    // A click on the main window, made while nothing could answer it, is not meant for what it shows now.
    program_.machine.desktop.DiscardInput();
}

void Form6::PlaceWindow() {
    const int screenWidth = program_.machine.desktop.ScreenWidth();
    const int screenHeight = program_.machine.desktop.ScreenHeight();
    Place(screenWidth / 4, screenHeight / 4, screenWidth / 2, std::max(leastHeight, screenHeight / 2));
}

void Form6::Form_Resize() {
    LayOutResult(*this, {Label2, Label1, List2, nullptr, Command1});
}

void Form6::ReadCommandFile() {
    FileSystem& files = program_.machine.files;
    program_.gCommandFile = program_.BesideProgram(programfile::command);
    if (!FileExists(files, program_.gCommandFile)) {
        return;
    }
    std::string bytes;
    const SystemError code = ReadWholeFile(files, program_.gCommandFile, bytes);
    if (code != error::success) {
        Raise(code);
    }
    const std::string text = DecodeText(program_.machine.system, std::move(bytes));
    const std::vector<std::string_view> pieces = text::Split(text, "\r\n");
    // The first line holds the copy mode; what follows the last line break is no line.
    for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
        if (!IsPassedOver(pieces[i])) {
            List4.AddItem(std::string(pieces[i]));
        }
    }
}

void Form6::BackupLocations() {
    BackupRun run(program_, {List1, List2, List3, Text1, Text2}, TreeView1, *this);
    BackupSettings settings = program_.Configuration();
    for (int number = firstEntryNumber;; number = CheckedCounter(number + 1)) {
        const std::string location = settings.Location(number);
        if (IsEndMark(location)) {
            break;
        }
        if (IsChosen(location)) {
            run.BackupLocation(location);
        }
    }
    run.Finish();
}

bool Form6::IsChosen(const std::string& location) const {
    const auto occurs = [&](const std::string& line) { return text::ContainsIgnoringCase(location, line); };
    return List4.ListCount() == 0 || std::ranges::any_of(List4.Items(), occurs);
}

SystemError Form6::CopyFile(const std::string& source, const std::string& destination, std::uint32_t flags) {
    return CopyPlain(program_.machine.files, source, destination, flags);
}

void Form6::ShowStatus(const std::string& /*text*/) {
    // Nobody watches an unattended run.
}

void Form6::ShowFolderCount(int /*count*/) {}

void Form6::Timer1_Timer() {
    Timer1.Stop();
    program_.gAppFolder = AddBackslash(program_.machine.process.ProgramFolder());
    WriteRunLog();
    Label1.Caption = std::to_string(List2.ListCount()) + " Files Copied";
    Label2.Caption = std::string("Backup Program Is Finished");
    List2.Visible = true;
    program_.machine.desktop.ShowHourglass(false);
    const SystemError code =
        MakeDesktopShortcut(program_, program_.gAppFolder + programfile::runLog, "Backup Log File", "Backup Log File");
    if (code != error::success) {
        program_.machine.process.WriteError("Backup Log File.lnk: " + Describe(program_.machine.system, code));
    }
    if (!program_.gShowMessage) {
        Unload();
        return;
    }
    Show();
    List2.SetListIndex(0);
}

void Form6::WriteRunLog() {
    const LocalTime now = program_.machine.clock.Now();
    const std::string header = "Total files copied " + FormatLogDate(now) + " At " + FormatLogTime(now) + " Was " +
                               std::to_string(List2.ListCount());
    const std::string path = program_.gAppFolder + programfile::runLog;
    const SystemError code = WriteLog(program_, path, LogText(header, List2));
    if (code != error::success) {
        program_.machine.process.WriteError(path + ": " + Describe(program_.machine.system, code));
        program_.exitCode = exitcode::somethingFailed;
    }
}

void Form6::Command1_Click() {
    RequestRestart(program_, *this);
}

void Form6::Form_Unload() {
    program_.gNodesSorted = false;
    program_.gNodesExpanded = false;
    static_cast<void>(DeleteThisFile(program_.machine.files, program_.machine.shell, program_.gCommandFile));
    Collection().UnloadAll();
}

}  // namespace marlok
