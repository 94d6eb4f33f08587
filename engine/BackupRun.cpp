#include "engine/BackupRun.h"

#include <algorithm>
#include <utility>

#include "engine/OriginalPathList.h"
#include "engine/RunJournal.h"
#include "fileops/Deleting.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderListing.h"
#include "fileops/Whereabouts.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "platform/RuntimeError.h"

namespace marlok {

namespace {

constexpr const char* insideLocation = "not backed up: it lies in the backup location itself";
constexpr const char* notScanned =
    "not backed up: the first folder in the root of a drive is skipped: add it as a source of its own";
constexpr const char* notPlain = "not backed up: a source must be a full, plain path";

std::string AsReason(const RuntimeError& error) {
    return std::string(error.what()) + " (run-time error " + std::to_string(error.Number()) + ")";
}

/// A source whose target lies below the location for certain.
bool IsPlainSource(const std::string& source) {
    switch (RootOf(source).kind) {
        case PathRoot::Kind::drive:
            return IsPlainRelativePath(source.substr(RootOf(source).length));
        case PathRoot::Kind::network:
            return IsPlainRelativePath(source);
        default:
            return false;
    }
}

}  // namespace

BackupRun::BackupRun(Machine& machine, BackupSettings settings, const RunPlan& plan, RunSink& sink)
    : machine_(machine), settings_(settings), plan_(plan), sink_(sink), places_(machine, settings) {
    machine_.system.KeepAwake(true);
}

BackupRun::~BackupRun() {
    machine_.system.KeepAwake(false);
}

RunReport BackupRun::Run() {
    for (const Location& location : plan_.locations) {
        if (!sink_.GoOn()) {
            break;
        }
        BackupLocation(location);
    }
    return std::move(report_);
}

void BackupRun::BackupLocation(const Location& location) {
    sink_.LocationBegins(location);
    const std::string refused = location.WhyRefused();
    if (!refused.empty()) {
        report_.Add(location.Path(), "this backup location was passed over: " + refused);
        return;
    }
    try {
        TryLocation(location);
    } catch (const RuntimeError& error) {
        report_.Add(location.Path(), AsReason(error));
    }
}

void BackupRun::TryLocation(const Location& location) {
    places_.EnterLocation(location);
    CopyLoop loop({machine_, plan_, places_, sink_, report_}, location);
    ClearKilledRun(location);
    if (PrepareFolder(location)) {
        sink_.Status("Copying " + location.Name() + " Files");
        BackupSources(loop, location);
    }
    loop.Finish(ListOriginals(location, loop.TakeOriginals()));
}

/// The run before may have been killed here: what it copied is listed now, before its journal goes.
void BackupRun::ClearKilledRun(const Location& location) {
    FileSystem& files = machine_.files;
    const Leftovers leftovers = ClearLeftovers(files, location);
    for (const std::string& path : leftovers.notRemoved) {
        report_.Add(path, "left by an interrupted run, and could not be removed");
    }
    const bool listed = leftovers.originals.empty() || ListOriginals(location, leftovers.originals);
    if (listed && leftovers.notRemoved.empty()) {
        const SystemError code = RemoveJournal(files, location);
        if (code != error::success) {
            report_.Add(location.Journal(), code);
        }
    }
}

/// False when the location cannot be written to, which is reported.
bool BackupRun::PrepareFolder(const Location& location) {
    FileSystem& files = machine_.files;
    const bool exists = !FolderCreationDate(files, machine_.clock, location.Path()).empty();
    if (exists && plan_.allFiles) {
        sink_.Status("Deleting " + location.Name() + " Files");
        EmptyLocation(location);
    }
    if (exists) {
        return true;
    }
    SystemError code = files.CreateFolder(location.Path());
    if (code == error::pathNotFound && CreateNestedFolders(files, machine_.process, location.Path())) {
        code = error::success;
    }
    if (code != error::success) {
        report_.Add(location.Path(), code);
    }
    return code == error::success;
}

/// Deletes everything in the location but the folders whose names begin with ".".
void BackupRun::EmptyLocation(const Location& location) {
    const std::string reason = places_.WhyNotEmptied(location);
    if (!reason.empty()) {
        report_.Add(location.Path(), reason);
        return;
    }
    std::vector<std::string> names;
    const SystemError listed = ListFolder(machine_.files, location.Path(), [&names](DirectoryEntry& entry) {
        if (!entry.IsFolder() || !entry.name.starts_with('.')) {
            names.push_back(std::move(entry.name));
        }
        return true;
    });
    if (listed != error::success) {
        report_.Add(location.Path(), listed);
    }
    for (const std::string& name : names) {
        const std::string path = location.Below(name);
        const SystemError code = DeleteWhole(machine_.files, path);
        if (code != error::success && !IsAbsent(code)) {
            report_.Add(path, "could not be deleted before copying (error " + std::to_string(code) + ")");
        }
        sink_.Breathe();
    }
}

void BackupRun::BackupSources(CopyLoop& loop, const Location& location) {
    for (const std::string& source : settings_.Sources(location)) {
        if (!sink_.GoOn()) {
            return;
        }
        TrySource(loop, location, source);
    }
}

/// A source that ends in a run-time error does not keep the next ones from being saved.
void BackupRun::TrySource(CopyLoop& loop, const Location& location, const std::string& source) {
    try {
        BackupSource(loop, location, source);
    } catch (const RuntimeError& error) {
        report_.Add(source, AsReason(error));
    }
}

void BackupRun::BackupSource(CopyLoop& loop, const Location& location, const std::string& source) {
    if (!IsPlainSource(source)) {
        report_.Add(source, notPlain);
        return;
    }
    if (IsInside(machine_.files, source, location.Path())) {
        report_.Add(source, insideLocation);
        return;
    }
    sink_.Breathe();
    FolderScan scan = ScanSource(location, source);
    sink_.FoldersFound(scan);
    loop.BackupSource(source, scan);
    ReportUnlisted(scan.unlisted);
}

/// Folders that the scan could not list; the copy loop has reported those that it could not list either. What is left
/// was out of reach for a moment, and the folders below it are not saved.
void BackupRun::ReportUnlisted(const std::vector<FolderScan::Unlisted>& folders) {
    for (const FolderScan::Unlisted& folder : folders) {
        const bool reported = std::ranges::any_of(
            report_.Lines(), [&](const RunReport::Line& line) { return WithoutBackslash(line.path) == folder.path; });
        if (!reported && IsDirectoryPath(machine_.files, folder.path)) {
            report_.Add(folder.path, folder.code);
        }
    }
}

FolderScan BackupRun::ScanSource(const Location& location, const std::string& source) {
    ScanOptions options;
    options.locationFinalPath = ResolvedPath(machine_.files, location.Path());
    options.meanwhile = [this] { sink_.Breathe(); };
    FolderScan scan = ScanFolders(machine_.files, source, options);
    for (const std::string& folder : scan.missed) {
        report_.Add(folder, notScanned);
    }
    return scan;
}

/// False when the list could not be written, which is reported.
bool BackupRun::ListOriginals(const Location& location, const std::vector<std::string>& originals) {
    OriginalPathList list(machine_, location);
    const SystemError code = list.Add(originals);
    if (code != error::success) {
        report_.Add(list.Path(), code);
    }
    return code == error::success;
}

}  // namespace marlok
