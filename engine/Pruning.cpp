#include "engine/Pruning.h"

#include <algorithm>
#include <utility>

#include "engine/SavedFolder.h"
#include "fileops/Deleting.h"
#include "fileops/FolderListing.h"
#include "fileops/SystemFolders.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

std::string Below(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : Join(folder, name);
}

void Insert(const std::string& name, std::unordered_multimap<std::string, std::string>& names) {
    names.emplace(LooseKey(name), name);
}

}  // namespace

Pruning::Pruning(FileSystem& files, const Location& location, std::vector<ScannedSource>& sources, const SourceMap& map,
                 const std::vector<std::string>& keptBelow, RunReport& report)
    : files_(files), location_(location), sources_(sources), map_(map), report_(report) {
    for (const std::string& path : keptBelow) {
        keptBelow_.insert(text::Fold(path));
    }
}

Doomed Pruning::Find(const std::function<void()>& breathe) {
    breathe_ = breathe;
    Doomed doomed;
    Visit("", doomed);
    return doomed;
}

bool Pruning::IsKept(const std::string& relative) const {
    return !keptBelow_.empty() && keptBelow_.contains(text::Fold(relative));
}

/// Looks through a folder that a source is saved in, or that holds one that is.
void Pruning::Visit(const std::string& relative, Doomed& doomed) {
    breathe_();
    const std::string folder = WithoutBackslash(location_.Below(relative));
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFolder(files_, folder, [&entries](DirectoryEntry& entry) {
        entries.push_back(std::move(entry));
        return true;
    });
    if (listed != error::success) {
        report_.Add(folder, listed);
    }
    Names names;
    const bool known = NamesOf(relative, names);
    for (const DirectoryEntry& entry : entries) {
        const std::string below = Below(relative, entry.name);
        const std::string path = location_.Below(below);
        const bool dotted = relative.empty() && entry.name.starts_with('.');
        if (!entry.IsFolder()) {
            if (known && !workingfile::IsWorkingFile(entry.name) && !IsWanted(relative, entry.name, names)) {
                doomed.items.push_back({path, entry.IsLink() ? Doomed::Item::Kind::link : Doomed::Item::Kind::file});
                ++doomed.files;
                doomed.bytes += entry.size;
            }
        } else if (dotted || IsSystemFolderOfRoot(entry, folder) || IsKept(below)) {
            continue;
        } else if (entry.IsLink()) {
            if (!MayBeOnTheWay(below)) {
                doomed.items.push_back({path, Doomed::Item::Kind::link});
            }
        } else {
            TakeFolder(below, doomed);
        }
    }
}

void Pruning::TakeFolder(const std::string& relative, Doomed& doomed) {
    if (MayBeOnTheWay(relative)) {
        Visit(relative, doomed);
    } else {
        static_cast<void>(TakeTree(relative, doomed));  // where something stays, so do the folders around it
    }
}

/// Everything in a folder that no source is saved in. False when something in it stays.
bool Pruning::TakeTree(const std::string& relative, Doomed& doomed) {
    breathe_();
    const std::string folder = location_.Below(relative);
    std::vector<DirectoryEntry> entries;
    const SystemError listed = ListFolder(files_, folder, [&entries](DirectoryEntry& entry) {
        entries.push_back(std::move(entry));
        return true;
    });
    if (listed != error::success) {
        report_.Add(folder, listed);
        return false;
    }
    bool whole = true;
    for (const DirectoryEntry& entry : entries) {
        const std::string below = Join(relative, entry.name);
        const std::string path = location_.Below(below);
        if (IsKept(below)) {
            whole = false;
        } else if (entry.IsLink()) {
            doomed.items.push_back({path, Doomed::Item::Kind::link});
        } else if (entry.IsFolder()) {
            whole = TakeTree(below, doomed) && whole;
        } else {
            doomed.items.push_back({path, Doomed::Item::Kind::file});
            ++doomed.files;
            doomed.bytes += entry.size;
        }
    }
    if (whole) {
        doomed.items.push_back({folder, Doomed::Item::Kind::folder});
    }
    return whole;
}

/// Whether a source is saved in the folder, or in one below it. Where two spellings may or may not be the same on this
/// volume, the volume is asked; what it does not tell counts as the same.
bool Pruning::MayBeOnTheWay(const std::string& relative) {
    const std::vector<std::string> spellings = map_.SpellingsAt(relative);
    return std::ranges::any_of(spellings, [&](const std::string& spelling) {
        if (text::EqualIgnoringCase(spelling, relative)) {
            return true;
        }
        FileIdentity wanted;
        const SystemError code = files_.Identify(location_.Below(spelling), wanted);
        FileIdentity here;
        if (IsMissing(code)) {
            return false;
        }
        return code != error::success || files_.Identify(location_.Below(relative), here) != error::success ||
               wanted.NumbersNothing() || wanted == here;
    });
}

/// The names of all files that the sources have for a folder of the location. False when they cannot be known: nothing
/// in it is deleted then.
bool Pruning::NamesOf(const std::string& relative, Names& names) {
    const SourceMap::Place* place = map_.At(relative);
    if (place == nullptr) {
        return true;
    }
    for (const std::size_t file : place->files) {
        Insert(std::string(PathFindFileName(sources_[file].path)), names);
    }
    for (const SourceMap::FolderRef& ref : place->folders) {
        const ScannedFolder& folder = sources_[ref.source].scan.folders[ref.folder];
        if (folder.files) {
            for (const DirectoryEntry& entry : *folder.files) {
                Insert(entry.name, names);
            }
            continue;
        }
        const SystemError code = ListFolder(files_, folder.path, [&names](DirectoryEntry& entry) {
            if (!entry.IsFolder()) {
                Insert(entry.name, names);
            }
            return true;
        });
        if (code != error::success) {
            report_.Add(folder.path, code);
            return false;
        }
    }
    return true;
}

bool Pruning::IsWanted(const std::string& relative, const std::string& name, const Names& names) {
    const auto [first, last] = names.equal_range(LooseKey(name));
    if (std::any_of(first, last, [&name](const auto& wanted) { return wanted.second == name; })) {
        return true;
    }
    return std::any_of(first, last, [&](const auto& wanted) {
        const SavedFolder::Found found = FindOnVolume(files_, location_.Below(Below(relative, wanted.second)));
        return found.code == error::success ? found.entry.name == name : !IsMissing(found.code);
    });
}

void DeleteDoomed(FileSystem& files, const Doomed& doomed, RunReport& report, const std::function<bool()>& goOn) {
    for (const Doomed::Item& item : doomed.items) {
        if (!goOn()) {
            return;
        }
        SystemError code = error::success;
        switch (item.kind) {
            case Doomed::Item::Kind::file:
                code = ForceDelete(files, item.path);
                break;
            case Doomed::Item::Kind::link:
                code = files.RemoveLink(item.path);
                break;
            case Doomed::Item::Kind::folder:
                code = RemoveEmptyFolder(files, item.path);
                break;
        }
        // A folder that is not empty holds what was reported, or what has come since.
        if (code != error::success && !IsMissing(code) && code != error::directoryNotEmpty) {
            report.Add(item.path,
                       "not deleted before copying, though no source has it any more: error " + std::to_string(code));
        }
    }
}

}  // namespace marlok
