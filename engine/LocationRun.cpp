#include "engine/LocationRun.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "engine/OriginalPathList.h"
#include "engine/Pruning.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "platform/RuntimeError.h"
#include "platform/Volume.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* notPlain =
    "not backed up: this is no full, plain path; take it off the list and add the folder or file again";
constexpr const char* noSources =
    "nothing is to be backed up into this location; choose folders or files on \"Files To Backup\"";
constexpr const char* damagedJournal =
    "this record of an interrupted run is damaged; copy all files once (\"Backup All Files\") to be sure of every file";
constexpr const char* anotherComputer =
    "nothing was deleted before copying: the backup of another computer into this location was cut short; run it there "
    "first";
constexpr const char* incompleteScan =
    "nothing was deleted before copying: a source is missing or could not be read, and what is saved of it may be the "
    "only copy; see the lines above, then copy all files again";
constexpr const char* incompleteCopy =
    "possibly incomplete: its copying was interrupted, and there is no original of it any more; delete it if you do "
    "not "
    "need it";

/// A source whose target lies below the location for certain.
bool IsPlainSource(const std::string& source) {
    const PathRoot root = RootOf(source);
    switch (root.kind) {
        case PathRoot::Kind::drive:
            return IsPlainRelativePath(source.substr(root.length));
        case PathRoot::Kind::network:
            return IsPlainRelativePath(source);
        default:
            return false;
    }
}

}  // namespace

LocationRun::LocationRun(const RunTools& tools, const Location& location)
    : tools_(tools),
      files_(tools.machine.files),
      report_(tools.report),
      location_(location),
      journal_(tools.machine, location) {}

void LocationRun::Run(const std::vector<std::string>& sources) {
    tools_.places.EnterLocation(location_);
    if (!Open()) {
        return;
    }
    ListKilledRun();
    if (!PrepareFolder()) {
        static_cast<void>(ListOriginals({}));  // every location that is run has a list; what hinders that is reported
        return;
    }
    if (sources.empty()) {
        report_.Add(location_.Path(), noSources);
    }
    if (!tools_.plan.allFiles) {
        tools_.sink.Status("Copying " + location_.Name() + " Files");
    }
    ScanSources(sources);
    const SourceMap map(location_, sources_);
    if (tools_.plan.allFiles) {
        if (existed_) {
            tools_.sink.Status("Deleting " + location_.Name() + " Files");
            Prune(map);
        }
        tools_.sink.Status("Copying " + location_.Name() + " Files");
    }
    CopySources(map);
}

/// False when another run is at work in the location.
bool LocationRun::Open() {
    switch (journal_.Load()) {
        case RunJournal::State::inUse:
            report_.Add(location_.Path(), anotherRunAtWork);
            return false;
        case RunJournal::State::unreadable:
            if (journal_.Code() == error::success) {
                report_.Add(journal_.Path(), damagedJournal);
            } else {
                report_.Add(journal_.Path(), journal_.Code());
            }
            break;
        case RunJournal::State::ready:
            break;
    }
    return true;
}

/// The run before may have been killed here: what it copied is listed now, before its journal goes.
void LocationRun::ListKilledRun() {
    OriginalPathList list(tools_.machine, location_);
    listLost_ = list.Load() == OriginalPathList::State::missing;
    if (!journal_.Originals().empty() && !ListOriginals(journal_.Originals())) {
        journal_.KeepAsItIs();
    }
}

/// False when the location cannot be written to, which is reported.
bool LocationRun::PrepareFolder() {
    existed_ = !FolderCreationDate(files_, tools_.machine.clock, location_.Path()).empty();
    if (existed_) {
        return true;
    }
    SystemError code = files_.CreateFolder(location_.Path());
    if (code == error::pathNotFound && CreateNestedFolders(files_, tools_.machine.process, location_.Path())) {
        code = error::success;
    }
    if (code != error::success) {
        report_.Add(location_.Path(), code);
    }
    return code == error::success;
}

void LocationRun::ScanSources(const std::vector<std::string>& sources) {
    for (const std::string& source : sources) {
        if (!tools_.sink.GoOn()) {
            complete_ = false;
            return;
        }
        const std::size_t before = report_.Lines().size();
        ScanSource(source);
        complete_ = complete_ && report_.Lines().size() == before;
        tools_.sink.Breathe();
    }
}

void LocationRun::ScanSource(const std::string& source) {
    if (!IsPlainSource(source)) {
        report_.Add(source, notPlain);
        return;
    }
    const std::string refused = tools_.places.WhyNotSaved(location_, source);
    if (!refused.empty()) {
        report_.Add(source, refused);
        return;
    }
    ScannedSource scanned;
    scanned.path = WithoutBackslash(source);
    const SystemError looked = files_.GetEntry(scanned.path, scanned.entry);
    if (looked != error::success) {
        report_.Add(source, looked);
        return;
    }
    scanned.times = TimesOf(scanned.path);
    scanned.isFile = !scanned.entry.IsFolder();
    sources_.push_back(std::move(scanned));
    if (!sources_.back().isFile) {
        ScanFolder(sources_.back().path);
    }
}

void LocationRun::ScanFolder(const std::string& path) {
    ScanOptions options;
    options.leftOut = tools_.places.ResolvedLocations();
    const std::string& resolved = tools_.places.Where().Resolved(path);
    for (const std::string& below : tools_.places.LocationsBelow(path)) {
        options.leftOut.push_back(Join(resolved, below));
    }
    options.meanwhile = [this] { tools_.sink.Breathe(); };
    FolderScan scan = ScanFolders(files_, path, options);
    for (const FolderScan::Unlisted& folder : scan.unlisted) {
        // One that has gone since is nobody's loss, unless it is the source itself.
        complete_ = false;
        if (folder.path == path || IsDirectoryPath(files_, folder.path)) {
            unlisted_.push_back(folder);
        }
    }
    sources_.back().scan = std::move(scan);
}

TimeKeeping LocationRun::TimesOf(const std::string& source) const {
    Volume here;
    Volume there;
    TimeKeeping times;
    if (files_.GetVolume(location_.Path(), here) == error::success) {
        times.step = here.TimeStep();
    }
    times.local = here.IsFat() || (files_.GetVolume(source, there) == error::success && there.IsFat());
    return times;
}

std::string LocationRun::WhyNotPruned() {
    std::string reason = tools_.places.WhyNotEmptied(location_);
    if (reason.empty() && journal_.ForeignLeft()) {
        reason = anotherComputer;
    }
    if (reason.empty() && (!complete_ || sources_.empty())) {
        reason = incompleteScan;
    }
    return reason;
}

/// Deletes what no source has any more.
void LocationRun::Prune(const SourceMap& map) {
    const std::string reason = WhyNotPruned();
    if (!reason.empty()) {
        report_.Add(location_.Path(), reason);
        return;
    }
    const std::size_t before = report_.Lines().size();
    Pruning pruning(files_, location_, sources_, map, tools_.places.LocationsBelow(location_.Path()), report_);
    Doomed doomed = pruning.Find([this] { tools_.sink.Breathe(); });
    if (doomed.items.empty() || !ChooseDoomed(doomed)) {
        return;
    }
    if (journal_.Begin() == RunJournal::Begun::inUse) {
        return;  // the copying reports it
    }
    DeleteDoomed(files_, doomed, report_, [this] {
        tools_.sink.Breathe();
        return tools_.sink.GoOn();
    });
    everything_ = report_.Lines().size() == before;
}

/// A whole drive may hold whatever its owner has put there: it is not emptied unasked.
bool LocationRun::ChooseDoomed(Doomed& doomed) {
    if (!IsRoot(location_.Path()) || tools_.sink.MayDeleteAll({location_.Path(), doomed.files, doomed.bytes})) {
        return true;
    }
    KeepUnlisted(doomed);
    return !doomed.items.empty();
}

/// Only what earlier runs have saved stays doomed.
void LocationRun::KeepUnlisted(Doomed& doomed) {
    OriginalPathList list(tools_.machine, location_);
    std::unordered_set<std::string> saved;
    if (list.Load() == OriginalPathList::State::read) {
        for (const std::string& original : list.Lines()) {
            saved.insert(text::Fold(location_.SavedPathOf(original)));
        }
    }
    std::uint64_t kept = 0;
    std::erase_if(doomed.items, [&](const Doomed::Item& item) {
        const bool keep = item.kind != Doomed::Item::Kind::folder && !saved.contains(text::Fold(item.path));
        kept += keep ? 1 : 0;
        return keep;
    });
    if (kept > 0) {
        report_.Add(location_.Path(), "kept: " + std::to_string(kept) +
                                          " files that no source has, which earlier runs did not save; delete them "
                                          "yourself if they are not needed");
    }
}

void LocationRun::CopySources(const SourceMap& map) {
    CopyLoop loop(tools_, location_, journal_, sources_, map);
    if (listLost_) {
        loop.ListUnchanged();
    }
    const std::uint64_t failed = report_.failed;
    for (std::size_t source = 0; source < sources_.size() && tools_.sink.GoOn() && !loop.Abandoned(); ++source) {
        tools_.sink.FoldersFound(sources_[source].scan);
        loop.BackupSource(source);
    }
    ReportUnlisted();
    everything_ = everything_ && report_.failed == failed && complete_ && tools_.sink.GoOn();
    Finish(ListOriginals(loop.TakeOriginals()));
}

/// Folders that the scan could not list; the copy loop has reported those that it could not list either. What is left
/// was out of reach for a moment, and the folders below it are not saved.
void LocationRun::ReportUnlisted() {
    for (const FolderScan::Unlisted& folder : unlisted_) {
        const bool reported = std::ranges::any_of(
            report_.Lines(), [&](const RunReport::Line& line) { return WithoutBackslash(line.path) == folder.path; });
        if (!reported) {
            report_.Add(folder.path, folder.code);
        }
    }
}

void LocationRun::Finish(bool listed) {
    if (!listed) {
        journal_.Leave();
        return;
    }
    std::vector<std::string> incomplete;
    const SystemError code = journal_.Finish(everything_, incomplete);
    if (code != error::success) {
        report_.Add(journal_.Path(), code);
    }
    for (const std::string& path : incomplete) {
        report_.Note(path, incompleteCopy);
    }
}

/// False when the list could not be written, which is reported.
bool LocationRun::ListOriginals(const std::vector<std::string>& originals) {
    OriginalPathList list(tools_.machine, location_);
    const SystemError code = list.Add(originals);
    // After a killed run it is written twice; what stands against the first writing most likely does against the
    // second.
    const bool reported = std::ranges::any_of(
        report_.Lines(), [&](const RunReport::Line& line) { return line.path == list.Path() && line.code == code; });
    if (code != error::success && !reported) {
        report_.Add(list.Path(), code);
    }
    return code == error::success;
}

}  // namespace marlok
