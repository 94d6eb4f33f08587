#include <algorithm>
#include <vector>

#include "engine/LocationName.h"
#include "engine/PathLookup.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"
#include "ui/Texts.h"
#include "ui/frmReplace.h"
#include "ui/frmSSTab.h"
#include "ui/run/Restart.h"

/// What "Delete Entry" does on the tab "Review Saved": saved files, or lines of the list of original paths.
namespace marlok::ui {

namespace {

constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;
constexpr std::uint32_t confirmation = messagestyle::okCancel | messagestyle::information;

/// At most so many failures are told in a box; the rest is in the error log.
constexpr std::size_t mostLinesTold = 5;

std::string AsText(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text.append(line).append("\r\n");
    }
    return text;
}

}  // namespace

void frmSSTab::Command17_Click() {
    if (Command17.Caption.Get() == "Replace Folders") {
        RestoreFolders();
        return;
    }
    if (Command17.Caption.Get() != "Delete Entry") {
        return;
    }
    Hide();
    const bool saved = !program_.gShowingOriginals;
    const char* question = saved ? "You Are About To Delete Selections From The Saved Files"
                                 : "You Are About To Delete Selections From The Original Path Log";
    if (Tell(question, confirmation) != button::ok) {
        Show();
        return;
    }
    const std::string location = ReviewedLocation();
    if (!location.empty() && saved) {
        DeleteSavedFiles(location);
        return;
    }
    if (!location.empty() && originalsKnown_) {
        DeleteLogEntries(location);
    }
    Show();
}

void frmSSTab::DeleteSavedFiles(const std::string& location) {
    Text1.Text = std::string();
    Text2.Text = std::string();
    program_.gSearchOn = true;
    const std::uint64_t start = program_.machine.clock.TickCount();
    DeleteChosenFiles(location);
    Command14.Caption = std::string("Stop Search");
    Label5.Caption = std::string("List of Saved Files");
    ListSavedFiles(location);
    QueueEmptyFolders();
    PruneSavedFromList(location);
    Text1.Text = WithThousands(searchSpec_.fileCount);
    ShowElapsed(start);
    Command13.Caption = std::string("Replace Selected Files");
    Command14.Caption = std::string("Close Program");
    RequestRestart(program_, *this);
}

/// Deletes the selected saved files; List7 then holds them, deleted or not.
void frmSSTab::DeleteChosenFiles(const std::string& location) {
    List7.Clear();
    const std::string below = AddBackslash(location);
    RunReport report;
    FileSystem& files = program_.machine.files;
    for (int line = 0; line < List6.ListCount(); ++line) {
        const std::string& path = List6.List(line);
        if (!List6.Selected(line) || !path.starts_with(below)) {
            continue;  // the line that says that there are no files is none
        }
        List7.AddItem(path);
        const int code = DeleteThisFile(files, program_.machine.shell, path);
        DirectoryEntry entry;
        if (files.GetEntry(path, entry) == error::success) {
            report.Add(path, "not deleted: " + Describe(program_.machine.system, static_cast<SystemError>(code)));
        }
        program_.machine.desktop.PaintPending();
    }
    Report(report);
}

/// Has the folders that hold no file deleted when the program starts next.
void frmSSTab::QueueEmptyFolders() {
    const std::string path = program_.BesideProgram(programfile::deleteFolder);
    const SystemError code = SaveWholeFile(program_.machine.files, path, AsText(List14.Items()));
    List13.Clear();
    List14.Clear();
    ReportUnless(code == error::success, path, code);
}

/// For each deleted file, in their order, takes the first line that contains it (letter case ignored) out of the
/// location's list of original paths: one line at most for each.
void frmSSTab::PruneSavedFromList(const std::string& location) {
    FileSystem& files = program_.machine.files;
    const std::string path = OriginalListPath(program_, location);
    std::string bytes;
    SystemError code = ReadWholeFile(files, path, bytes);
    if (code != error::success) {
        // A list that cannot be read keeps its lines: taken for empty, it would be deleted.
        ReportUnless(code == error::fileNotFound || code == error::pathNotFound, path, code);
        return;
    }
    const std::string whole = DecodeText(program_.machine.system, std::move(bytes));
    std::vector<std::string> names;
    for (const std::string& deleted : List7.Items()) {
        names.push_back(text::Fold(text::AfterFirst(deleted, text::CharacterCount(location) + 1)));
    }
    List8.Clear();
    for (const std::string_view line : text::Split(whole, "\r\n")) {
        if (!line.empty()) {
            List8.AddItem(std::string(line));
        }
    }
    std::vector<bool> removed(static_cast<std::size_t>(List8.ListCount()), false);
    for (const std::vector<std::size_t>& lines : LinesContaining(text::Fold(AsText(List8.Items())), names)) {
        const auto first = std::ranges::find_if(lines, [&](std::size_t line) { return !removed[line]; });
        if (first != lines.end()) {
            removed[*first] = true;
        }
    }
    std::vector<std::string> kept;
    for (std::size_t line = 0; line < removed.size(); ++line) {
        if (!removed[line]) {
            kept.push_back(List8.Items()[line]);
        }
    }
    List8.Clear();
    code = kept.empty() ? ForceDelete(files, path) : SaveWholeFile(files, path, AsText(kept));
    ReportUnless(code == error::success, path, code);
}

void frmSSTab::DeleteLogEntries(const std::string& location) {
    const std::uint64_t start = program_.machine.clock.TickCount();
    listMode_ = ListMode::original;
    Command17.Enabled = false;
    Text1.Text = std::string();
    Text2.Text = std::string();
    List7.Clear();
    FileSystem& files = program_.machine.files;
    originalLogPath_ = OriginalListPath(program_, location);
    Command13.Caption = std::string("Show Saved Files");
    for (int line = 0; line < List6.ListCount(); ++line) {
        if (!List6.Selected(line)) {
            List7.AddItem(List6.List(line));
        }
    }
    const SystemError code = SaveWholeFile(files, originalLogPath_, AsText(List7.Items()));
    List6.Clear();
    ReportUnless(code == error::success, originalLogPath_, code);
    originalsKnown_ = ShowOriginalPaths() == error::success;
    // What was written is empty; a list that could not be written or read back is not.
    if (code == error::success && originalsKnown_ && List6.ListCount() == 0) {
        static_cast<void>(DeleteThisFile(files, program_.machine.shell, originalLogPath_));
    }
    List7.Clear();
    ShowElapsed(start);
}

void frmSSTab::RestoreFolders() {
    if (IsEndMark(List5.List(List5.ListIndex()))) {
        Tell("You Have Not Selected a Backup Up Folder", plainInformation);
    } else if (IsEndMark(List6.List(List6.ListIndex()))) {
        Tell("You Have Not Selected a Folder To Restore", plainInformation);
    } else {
        Collection().Load<frmReplace>(program_).Show();
    }
}

void frmSSTab::ReportUnless(bool well, const std::string& path, SystemError code) {
    if (!well) {
        RunReport report;
        report.Add(path, code);
        Report(report);
    }
}

/// Tells what could not be done, in a box and in the error log.
void frmSSTab::Report(const RunReport& report) {
    if (report.Lines().empty()) {
        return;
    }
    WriteErrorLog(program_, report);
    std::string told;
    for (std::size_t i = 0; i < std::min(mostLinesTold, report.Lines().size()); ++i) {
        const RunReport::Line& line = report.Lines()[i];
        told += line.path + "\r\n    " +
                (line.reason.empty() ? Describe(program_.machine.system, line.code) : line.reason) + "\r\n";
    }
    if (report.Lines().size() > mostLinesTold) {
        told +=
            "\r\nAll " + std::to_string(report.Lines().size()) + " are listed in \"" + programfile::errorLog + "\".";
    }
    Tell(told, plainInformation);
}

}  // namespace marlok::ui
