#include "engine/SourceCopies.h"

#include <algorithm>

#include "engine/ListUsers.h"
#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FolderListing.h"
#include "fileops/Presence.h"
#include "fileops/SystemFolders.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// The path after the drive root; "" for what is no path of a source.
std::string RelativePath(const std::string& source) {
    const PathRoot root = RootOf(source);
    switch (root.kind) {
        case PathRoot::Kind::drive:
            return source.substr(root.length);
        case PathRoot::Kind::network:
            return source;
        default:
            return "";
    }
}

/// True for a source of which something can be saved below a location. A whole drive is one, too.
bool IsPlainSource(const std::string& source) {
    return (HasDriveRoot(source) || IsNetworkPath(source)) && IsPlainRelativePath(RelativePath(source));
}

std::string SavedPlaceOf(const Location& location, const std::string& source) {
    return WithoutBackslash(location.SavedPathOf(source));
}

/// Whether one of `places` is `path` by its name, or lies below it.
bool AnyIs(const std::vector<std::string>& places, const std::string& path) {
    return std::ranges::any_of(places, [&](const std::string& place) { return text::EqualIgnoringCase(place, path); });
}
bool AnyLiesBelow(const std::vector<std::string>& places, const std::string& path) {
    return std::ranges::any_of(places, [&](const std::string& place) { return IsAtOrBelow(place, path); });
}

}  // namespace

SourceCopies::SourceCopies(Machine& machine, BackupSettings settings, const Location& location,
                           const std::vector<std::string>& remaining)
    : machine_(machine),
      settings_(settings),
      location_(location),
      places_(machine, settings, location),
      where_(machine.files) {
    FindOthers(settings, remaining);
}

void SourceCopies::FindOthers(BackupSettings settings, const std::vector<std::string>& remaining) {
    const std::vector<Location> locations = settings.Locations();
    // A setting that cannot be read looks like the end of its list: what reads the same twice was read.
    settingsRead_ = locations == settings.Locations();
    for (const Location& location : locations) {
        const std::vector<std::string> stored = settings.Sources(location);
        settingsRead_ = settingsRead_ && stored == settings.Sources(location);
        const bool isOwnList = text::EqualIgnoringCase(location.Section(), location_.Section());
        for (const std::string& source : isOwnList ? remaining : stored) {
            if (IsPlainSource(source)) {
                others_.push_back({SavedPlaceOf(location, source), source});
            }
        }
        if (!text::EqualIgnoringCase(location.Path(), location_.Path())) {
            others_.push_back({location.Path(), "the backup location " + location.Path(), true});
        }
    }
}

bool SourceCopies::Reachable(RunReport& report) const {
    const SystemError code = WhyUnreachable(machine_.files, location_.Path());
    if (code != error::success) {
        report.Add(location_.Path(), "The backup location cannot be reached: " + Describe(machine_.system, code) +
                                         ". The list of what is to be backed up stays as it is. Connect the drive and "
                                         "try again, or choose \"Only Entry\".");
    }
    return code == error::success;
}

bool SourceCopies::MayDelete(RunReport& report) const {
    if (!settingsRead_ || !places_.Known()) {
        report.Add(location_.Path(), "What else is saved there could not be read from the registry. Try again.");
        return false;
    }
    return Reachable(report);
}

SourceCopies::Outcome SourceCopies::Delete(const std::string& source, RunReport& report) {
    const std::string relative = RelativePath(source);
    if (!IsPlainRelativePath(relative) || Components(relative).empty()) {
        // A whole drive is saved straight into the location: deleting "its folder" would delete all other sources' too.
        report.Add(source, "Has No Folder Of Its Own In The Backup Location, Nothing Was Deleted");
        return Outcome::kept;
    }
    const std::string saved = SavedPlaceOf(location_, source);
    const SystemError code = DeleteSaved(saved, HasThreeLetterExtension(source), report);
    if (!Reachable(report)) {
        return Outcome::unreachable;
    }
    if (code != error::success) {
        report.Add(saved, code);
    }
    return Outcome::deleted;
}

/// Why nothing may be deleted at `saved`; "" when it may, but for what lies in `keptInside`.
std::string SourceCopies::WhyKept(const std::string& saved, std::vector<std::string>& keptInside) {
    if (LiesInSystemFolderOfRoot(machine_.files, saved)) {
        return "It belongs to the system, nothing was deleted.";
    }
    const std::string held = places_.MetBy(saved);
    if (!held.empty()) {
        return "It is, holds or belongs to " + held + ". Nothing was deleted.";
    }
    for (const Other& other : others_) {
        if (text::EqualIgnoringCase(saved, other.place) ||
            (!other.isLocation && where_.MayBeInside(saved, other.place))) {
            return "It is where " + other.what + " is saved too. Nothing was deleted.";
        }
        if (IsAtOrBelow(other.place, saved)) {
            keptInside.push_back(other.place);
        } else if (where_.MayBeInside(other.place, saved)) {
            return "It may hold what is saved of " + other.what + ". Nothing was deleted.";
        }
    }
    return "";
}

/// What could not be done with a system error is returned, everything else is in the report.
SystemError SourceCopies::DeleteSaved(const std::string& saved, bool calledLikeFile, RunReport& report) {
    FileSystem& files = machine_.files;
    DirectoryEntry entry;
    const SystemError looked = files.GetEntry(saved, entry);
    if (IsMissing(looked) && PresenceLookup(files).Of(saved) == Presence::gone) {
        return error::success;
    }
    if (looked != error::success) {
        return looked;
    }
    if (!calledLikeFile && !entry.IsFolder()) {
        return error::success;  // such a source is a folder; the file of that name is none of its copies
    }
    // The folder it lies in may be a link out of the location; the saved copy itself, being one, goes without its
    // target.
    if (!IsSurelyInside(files, FolderOf(saved), location_.Path())) {
        report.Add(saved, "A link leads out of the backup location.");
        return error::success;
    }
    std::vector<std::string> keptInside;
    const std::string why = WhyKept(saved, keptInside);
    if (!why.empty()) {
        report.Add(saved, why);
        return error::success;
    }
    if (keptInside.empty() || !entry.IsFolder() || entry.IsLink()) {
        return DeleteWhole(files, saved);
    }
    DeleteAround(saved, keptInside, report);
    return error::success;
}

/// Deletes what is in `folder`, but for what one of `kept` is called or lies in.
void SourceCopies::DeleteAround(const std::string& folder, const std::vector<std::string>& kept,
                                RunReport& report) const {
    FileSystem& files = machine_.files;
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFolder(files, folder, [&entries](DirectoryEntry& entry) {
        entries.push_back(std::move(entry));
        return true;
    });
    if (listed != error::success) {
        report.Add(folder, listed);
    }
    for (const DirectoryEntry& entry : entries) {
        const std::string path = Join(folder, entry.name);
        const std::string alias = entry.alternateName.empty() ? path : Join(folder, entry.alternateName);
        if (AnyIs(kept, path) || AnyIs(kept, alias)) {
            continue;
        }
        if (AnyLiesBelow(kept, path) || AnyLiesBelow(kept, alias)) {
            if (entry.IsFolder() && !entry.IsLink()) {
                DeleteAround(path, kept, report);
            }
        } else if (const SystemError code = DeleteWhole(files, path); code != error::success && !IsMissing(code)) {
            report.Add(path, code);
        }
    }
    // Goes when nothing of what is kept was there; a folder that holds something does not go.
    static_cast<void>(files.RemoveFolder(folder));
}

std::vector<std::string> SourceCopies::TakeOffList(const std::vector<std::string>& sources, RunReport& report) const {
    OriginalPathList list(machine_, location_);
    switch (list.Load()) {
        case OriginalPathList::State::missing:
            return {};
        case OriginalPathList::State::unreadable:
            report.Add(list.Path(), list.Code());
            return {};
        case OriginalPathList::State::read:
            break;
    }
    ListUsers users(machine_.files, settings_, location_);
    list.RemoveBelow(sources, [&users](const std::string& line) { return users.HaveLost(line); });
    const SystemError code = list.Save(OriginalPathList::NothingLeft::keepsTheOldList);
    if (code != error::success) {
        report.Add(list.Path(), code);
    }
    return list.Lines();
}

}  // namespace marlok
