#include "engine/BackupRun.h"

#include <algorithm>
#include <vector>

#include "engine/LocationName.h"
#include "engine/OriginalPathList.h"
#include "engine/RunJournal.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderScan.h"
#include "fileops/WorkingFiles.h"
#include "platform/RuntimeError.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* insideLocation = "not backed up: it lies in the backup location itself";
constexpr const char* notScanned = "not backed up: the first entry of a drive is passed over when folders are sought";
constexpr const char* notPlain = "not backed up: a source must be a full, plain path";

std::string AsReason(const RuntimeError& error) {
    return std::string(error.what()) + " (run-time error " + std::to_string(error.Number()) + ")";
}

/// A source whose target lies below the location for certain.
bool IsPlainSource(const std::string& source) {
    if (HasDriveRoot(source)) {
        return IsPlainRelativePath(source.substr(3));
    }
    return IsNetworkPath(source) && IsPlainRelativePath(source);
}

}  // namespace

BackupRun::BackupRun(Program& program, const RunControls& controls, forms::TreeView& TreeView1, RunWindow& window)
    : program_(program),
      controls_(controls),
      TreeView1_(TreeView1),
      window_(window),
      places_(program),
      breathe_(program) {
    program_.machine.system.KeepAwake(true);
}

BackupRun::~BackupRun() {
    program_.machine.system.KeepAwake(false);
}

void BackupRun::BackupLocation(const std::string& location) {
    controls_.List3.Clear();
    const std::string refused = WhyLocationRefused(location);
    if (!refused.empty()) {
        report_.Add(location, "this backup location was passed over: " + refused);
        return;
    }
    try {
        TryLocation(location);
    } catch (const RuntimeError& error) {
        report_.Add(location, AsReason(error));
    }
    controls_.List1.Clear();
    TreeView1_.Clear();
}

void BackupRun::TryLocation(const std::string& location) {
    CopyLoop loop(
        program_, controls_,
        [this](const std::string& source, const std::string& destination, std::uint32_t flags) {
            return window_.CopyFile(source, destination, flags);
        },
        report_, places_, location);
    loop.UseListing(listed_);
    ClearKilledRun(location);
    if (PrepareFolder(location)) {
        window_.ShowStatus("Copying " + LocationName(location) + " Files");
        BackupSources(loop, location);
    }
    loop.Finish(WriteOriginalPaths(location));
}

/// The run before may have been killed here: what it copied is listed now, before its journal goes.
void BackupRun::ClearKilledRun(const std::string& location) {
    FileSystem& files = program_.machine.files;
    const Leftovers leftovers = ClearLeftovers(files, location);
    for (const std::string& path : leftovers.notRemoved) {
        report_.Add(path, "left by an interrupted run, and could not be removed");
    }
    for (const std::string& original : leftovers.originals) {
        controls_.List3.AddItem(original);
    }
    const bool listed = leftovers.originals.empty() || WriteOriginalPaths(location);
    if (listed && leftovers.notRemoved.empty()) {
        const SystemError code = RemoveJournal(files, location);
        if (code != error::success) {
            report_.Add(AddBackslash(location) + std::string(workingfile::journal), code);
        }
    }
}

/// False when the location cannot be written to, which is reported.
bool BackupRun::PrepareFolder(const std::string& location) {
    FileSystem& files = program_.machine.files;
    const bool exists = !FolderCreationDate(files, program_.machine.clock, location).empty();
    if (exists && program_.gAllFiles) {
        window_.ShowStatus("Deleting " + LocationName(location) + " Files");
        EmptyLocation(location);
    }
    if (exists) {
        return true;
    }
    const std::string folder = WithoutBackslash(location);
    SystemError code = files.CreateFolder(folder);
    if (code == error::pathNotFound && CreateNestedFolders(files, program_.machine.process, folder)) {
        code = error::success;
    }
    if (code != error::success) {
        report_.Add(location, code);
    }
    return code == error::success;
}

/// Deletes everything in the location but the folders whose names begin with ".".
void BackupRun::EmptyLocation(const std::string& location) {
    const std::string reason = places_.WhyNotEmptied(location);
    if (!reason.empty()) {
        report_.Add(location, reason);
        return;
    }
    FileSystem& files = program_.machine.files;
    DirectoryEntry entry;
    std::vector<std::string> names;
    auto search = OpenFolderSearch(files, location, entry);
    SystemError code = search ? error::success : error::noMoreFiles;
    while (code == error::success) {
        if (!entry.IsFolder() || !entry.name.starts_with('.')) {
            names.push_back(entry.name);
        }
        code = search->Next(entry);
    }
    search.reset();
    for (const std::string& name : names) {
        const std::string path = AddBackslash(location) + name;
        const int result = DeleteThisFile(files, program_.machine.shell, path);
        if (result != 0 && files.GetEntry(path, entry) == error::success) {
            report_.Add(path, "could not be deleted before copying (code " + std::to_string(result) + ")");
        }
        program_.machine.desktop.PaintPending();
    }
}

void BackupRun::BackupSources(CopyLoop& loop, const std::string& location) {
    folderCount_ = 0;
    BackupSettings settings = program_.Configuration();
    for (int number = firstEntryNumber;; number = CheckedCounter(number + 1)) {
        const std::string source = settings.Source(location, number);
        if (IsEndMark(source)) {
            return;
        }
        TrySource(loop, location, source);
    }
}

/// A source that ends in a run-time error does not keep the next ones from being saved.
void BackupRun::TrySource(CopyLoop& loop, const std::string& location, const std::string& source) {
    try {
        BackupSource(loop, location, source);
    } catch (const RuntimeError& error) {
        report_.Add(source, AsReason(error));
    }
    controls_.List1.Clear();
    listed_.Clear();
    // Two sources may overlap: each has the tree to itself, so that no folder meets its own key.
    TreeView1_.Clear();
}

void BackupRun::BackupSource(CopyLoop& loop, const std::string& location, const std::string& source) {
    if (!IsPlainSource(source)) {
        report_.Add(source, notPlain);
        return;
    }
    if (IsInside(program_.machine.files, source, location)) {
        report_.Add(source, insideLocation);
        return;
    }
    program_.machine.desktop.PaintPending();
    const std::vector<FolderScan::Unlisted> unlisted = ScanFolders(location, source);
    folderCount_ += TreeView1_.NodeCount();
    window_.ShowFolderCount(folderCount_);
    loop.BackupSource(source);
    ReportUnlisted(unlisted);
}

/// Folders that the scan could not list; the copy loop has reported those that it could not list either. What is left
/// was out of reach for a moment, and the folders below it are not saved.
void BackupRun::ReportUnlisted(const std::vector<FolderScan::Unlisted>& folders) {
    for (const FolderScan::Unlisted& folder : folders) {
        const bool reported = std::ranges::any_of(
            report_.Lines(), [&](const RunReport::Line& line) { return WithoutBackslash(line.path) == folder.path; });
        if (!reported && IsDirectoryPath(program_.machine.files, folder.path)) {
            report_.Add(folder.path, folder.code);
        }
    }
}

std::vector<FolderScan::Unlisted> BackupRun::ScanFolders(const std::string& location, const std::string& source) {
    forms::Node& root = TreeView1_.Add(nullptr, source + "Dir", source);
    root.Expanded = true;
    root.Sorted = true;
    FolderScan scan{program_.machine.files,
                    program_.gNodesSorted,
                    program_.gNodesExpanded,
                    ResolvedPath(program_.machine.files, location),
                    {},
                    &listed_};
    scan.meanwhile = [this] { breathe_(); };
    AddChildFolders(scan, TreeView1_, root, &controls_.List1);
    for (const std::string& folder : scan.missed) {
        report_.Add(folder, notScanned);
    }
    return std::move(scan.unlisted);
}

/// Adds List3 to the location's list and clears it. False when the list could not be written, which is reported.
bool BackupRun::WriteOriginalPaths(const std::string& location) {
    const std::string list = OriginalListPath(program_, location);
    const SystemError code = AddToOriginalList(program_, list, controls_.List3.Items());
    if (code != error::success) {
        report_.Add(list, code);
    }
    controls_.List3.Clear();
    return code == error::success;
}

void BackupRun::Finish() {
    WriteErrorLog(program_, report_);
    program_.exitCode = report_.Lines().empty() ? exitcode::allDone : exitcode::somethingFailed;
}

}  // namespace marlok
