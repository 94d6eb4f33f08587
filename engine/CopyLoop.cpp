#include "engine/CopyLoop.h"

#include <algorithm>

#include "fileops/FolderListing.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* nameReserved = "not saved: the program needs this name for a file of its own; rename the file";
constexpr const char* folderInPlace =
    "not saved: a folder of that name stands where its saved copy belongs; rename or delete that folder in the backup "
    "location";
constexpr const char* noFolder =
    "not saved: its folder is not in the backup location; take it off the list and add it again, which makes the "
    "folder";
constexpr const char* unreadableLink = "not saved: a link of Windows' own that no program can read";

/// What follows `folder` and a "\" in `path`, letter case ignored; false when `path` does not lie below it. Everything
/// lies below "".
bool TakeBelow(const std::string& path, const std::string& folder, std::string& rest) {
    if (folder.empty()) {
        rest = path;
        return true;
    }
    if (path.size() <= folder.size() || path[folder.size()] != '\\' ||
        !text::EqualIgnoringCase(std::string_view(path).substr(0, folder.size()), folder)) {
        return false;
    }
    rest = path.substr(folder.size() + 1);
    return true;
}

}  // namespace

CopyLoop::CopyLoop(const RunTools& tools, const Location& location, std::vector<ScannedSource>& sources,
                   const SourceMap& map, PlaceClaims& claims, ChosenFiles& chosen)
    : files_(tools.machine.files),
      plan_(tools.plan),
      places_(tools.places),
      sink_(tools.sink),
      report_(tools.report),
      location_(location),
      sources_(sources),
      map_(map),
      claims_(claims),
      chosen_(chosen),
      rivals_(tools.places.RivalsOf(location)) {}

void CopyLoop::BackupSource(std::size_t source) {
    if (sources_[source].isFile) {
        BackupFile(source);
        return;
    }
    for (std::size_t folder = 0; folder < sources_[source].scan.folders.size(); ++folder) {
        if (!sink_.GoOn() || !chosen_.GoesOn()) {
            return;
        }
        BackupFolder(source, folder);
    }
}

void CopyLoop::BackupFile(std::size_t source) {
    const ScannedSource& file = sources_[source];
    const std::string target = location_.SavedPathOf(file.path);
    sink_.EntryBegins(file.path, target);
    bool contested = false;
    if (!IsPartOfFolder(source, contested)) {
        BackupThisFile({file, FolderOf(file.path), FolderOf(target), contested}, file.entry);
    }
}

/// True when a folder that is a source too saves the file, or the same file stands in the list before.
bool CopyLoop::IsPartOfFolder(std::size_t source, bool& contested) {
    const std::string& path = sources_[source].path;
    const SourceMap::Place* place = map_.At(FolderOf(location_.RelativeNameOf(location_.SavedPathOf(path))));
    for (const SourceMap::FolderRef& ref : place->folders) {
        if (places_.Where().Same(sources_[ref.source].scan.folders[ref.folder].path, FolderOf(path)) == Answer::yes) {
            return true;
        }
        contested = true;
    }
    for (const std::size_t other : place->files) {
        if (other < source && text::EqualIgnoringCase(sources_[other].path, path)) {
            return true;
        }
        contested = contested || other != source;
    }
    return false;
}

/// True when the very same folder has been backed up before, as part of another source.
bool CopyLoop::IsDone(std::size_t source, std::size_t folder, const SourceMap::Place& place, bool& contested) {
    const std::string& path = sources_[source].scan.folders[folder].path;
    for (const SourceMap::FolderRef& ref : place.folders) {
        if (ref.source == source && ref.folder == folder) {
            continue;
        }
        const std::string& other = sources_[ref.source].scan.folders[ref.folder].path;
        if (text::EqualIgnoringCase(other, path) || places_.Where().Same(other, path) == Answer::yes) {
            if (ref.source < source) {
                return true;
            }
            continue;
        }
        contested = true;
    }
    contested = contested || std::ranges::any_of(place.files, [&](std::size_t file) {
                    return !text::EqualIgnoringCase(FolderOf(sources_[file].path), path);
                });
    return false;
}

void CopyLoop::BackupFolder(std::size_t source, std::size_t index) {
    ScannedFolder& folder = sources_[source].scan.folders[index];
    const std::string target = WithoutBackslash(location_.SavedPathOf(folder.path));
    bool contested = false;
    if (IsDone(source, index, *map_.At(WithoutBackslash(location_.RelativeNameOf(AddBackslash(target)))), contested)) {
        return;
    }
    sink_.EntryBegins(folder.path, target);
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFiles(folder, entries);
    if (listed != error::success) {
        report_.Add(folder.path, listed);
        // A listing that broke off is worked through as far as it came.
        if (entries.empty()) {
            return;
        }
    }
    SavedFolder saved;
    const SystemError made = chosen_.EnterFolder(target, saved);
    if (!chosen_.GoesOn()) {
        return;
    }
    if (made != error::success) {
        report_.Add(folder.path, made);
        for (const DirectoryEntry& entry : entries) {
            ++report_.failed;
            sink_.Failed(Join(folder.path, entry.name));
        }
        return;
    }
    BackupFolderFiles({sources_[source], folder.path, target, contested}, entries, saved);
}

/// The files directly in the folder.
SystemError CopyLoop::ListFiles(ScannedFolder& folder, std::vector<DirectoryEntry>& entries) {
    if (folder.files) {
        if (plan_.looksOnly) {
            entries = *folder.files;
        } else {
            entries = std::move(*folder.files);
            folder.files.reset();
        }
        return error::success;
    }
    return ListFolder(files_, folder.path, [&entries](DirectoryEntry& entry) {
        if (!entry.IsFolder()) {
            entries.push_back(std::move(entry));
        }
        return true;
    });
}

void CopyLoop::BackupThisFile(const FolderWork& work, const DirectoryEntry& entry) {
    DirectoryEntry file = entry;
    file.name = FileNameOf(work.source.path);
    const SavedFolder::Found saved = FindOnVolume(files_, Join(work.target, file.name));
    if (saved.code == error::pathNotFound) {
        Refuse(work.source.path, noFolder);
        return;
    }
    std::vector<ChosenFile> chosen;
    Choose(work, file, saved, chosen);
    chosen_.Take(work, chosen);
}

void CopyLoop::BackupFolderFiles(const FolderWork& work, std::vector<DirectoryEntry>& entries,
                                 const SavedFolder& saved) {
    std::vector<ChosenFile> chosen;
    for (DirectoryEntry& entry : entries) {
        Choose(work, entry, saved.Find(files_, entry.name), chosen);
    }
    chosen_.Take(work, chosen);
}

/// A link to a file is what it leads to. False when that cannot be looked at, which is dealt with.
bool CopyLoop::ResolveLink(const std::string& source, DirectoryEntry& entry) {
    std::string finalPath;
    DirectoryEntry target;
    SystemError code = files_.FinalPath(source, finalPath);
    if (code == error::success) {
        code = files_.GetEntry(finalPath, target);
    }
    if (code == error::cannotAccessFile) {
        report_.Note(source, unreadableLink);
        return false;
    }
    if (code != error::success) {
        Fail(source, code);
        return false;
    }
    entry.size = target.size;
    entry.lastWriteTime = target.lastWriteTime;
    return true;
}

void CopyLoop::Choose(const FolderWork& work, DirectoryEntry& entry, const SavedFolder::Found& saved,
                      std::vector<ChosenFile>& chosen) {
    const std::string source = Join(work.from, entry.name);
    if (entry.IsLink() && !ResolveLink(source, entry)) {
        return;
    }
    const bool replaces = saved.code == error::success;
    const ChosenFile file{entry.size, entry.lastWriteTime,
                          source,     Join(work.target, entry.name),
                          replaces,   replaces ? saved.entry.size : 0};
    if (const std::string claimed = claims_.WhyClaimed(work, source, file.target); !claimed.empty()) {
        Refuse(source, claimed);
        return;
    }
    if (!places_.MaySave(file.target)) {
        Refuse(source, nameReserved);
        return;
    }
    if (!file.replaces && !IsMissing(saved.code)) {
        claims_.Claim(work, source, file.target);
        Fail(source, saved.code);
        return;
    }
    if (file.replaces && saved.entry.IsFolder()) {
        Refuse(source, folderInPlace);
        return;
    }
    std::string taken = file.replaces ? claims_.WhyTaken(work, source, saved) : "";
    if (taken.empty() && !rivals_.empty()) {
        const std::string other = OtherOriginal(source, file.target);
        taken = other.empty() ? "" : SamePlace(other);
    }
    if (!taken.empty()) {
        Refuse(source, taken);
        return;
    }
    claims_.Claim(work, source, file.target);
    if (file.replaces) {
        Decide(work, entry, file, saved.entry, chosen);
    } else {
        chosen.push_back(file);
    }
}

/// A file that has a saved copy.
void CopyLoop::Decide(const FolderWork& work, const DirectoryEntry& entry, const ChosenFile& file,
                      const DirectoryEntry& saved, std::vector<ChosenFile>& chosen) {
    const bool anyway = plan_.allFiles || chosen_.MayBeTorn(location_.RelativeNameOf(file.target));
    const Verdict verdict = anyway ? Verdict::copy : Judge(entry, saved, work.source.times);
    switch (verdict) {
        case Verdict::copy:
            chosen.push_back(file);
            return;
        case Verdict::different:
            report_.different.push_back(file.source);
            break;
        case Verdict::unchanged:
            ++report_.unchanged;
            break;
    }
    sink_.Unchanged(file.source);
    chosen_.IsSaved(file.source);
}

/// An original that another location, which comes first in the settings, saves in the same place; "" for none.
std::string CopyLoop::OtherOriginal(const std::string& source, const std::string& target) {
    const std::string relative = location_.RelativeNameOf(target);
    for (const SavePlaces::Rival& rival : rivals_) {
        std::string there;
        if (!rival.earlier || !TakeBelow(relative, rival.folder, there)) {
            continue;
        }
        if (!rival.above.empty()) {
            there = Join(rival.above, there);
        }
        std::string rest;
        std::string other = WithoutBackslash(rival.source);
        if (!text::EqualIgnoringCase(there, rival.relative)) {
            if (!TakeBelow(there, rival.relative, rest)) {
                continue;
            }
            other = Join(other, rest);
        }
        DirectoryEntry entry;
        if (!text::EqualIgnoringCase(other, source) && files_.GetEntry(other, entry) == error::success &&
            !entry.IsFolder() && places_.Where().Same(other, source) != Answer::yes) {
            return other;
        }
    }
    return "";
}

void CopyLoop::Refuse(const std::string& source, const std::string& reason) {
    report_.AddFailed(source, reason);
    sink_.Failed(source);
}

void CopyLoop::Fail(const std::string& source, SystemError code) {
    report_.AddFailed(source, code);
    sink_.Failed(source);
}

}  // namespace marlok
