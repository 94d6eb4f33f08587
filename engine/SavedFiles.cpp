#include "engine/SavedFiles.h"

#include <unordered_set>

#include "engine/ListUsers.h"
#include "engine/OriginalPathList.h"
#include "engine/PendingDeletions.h"
#include "engine/ProtectedPlaces.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/Presence.h"
#include "fileops/Whereabouts.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Deletes saved files of one location, one by one.
class SavedFileDeleter {
 public:
    SavedFileDeleter(Machine& machine, BackupSettings settings, const Location& location)
        : machine_(machine), location_(location), lookup_(machine.files), places_(machine, settings, location) {}

    [[nodiscard]] SystemError Unreachable() const { return WhyUnreachable(machine_.files, location_.Path()); }

    /// Why the file stays; "" when it is gone.
    [[nodiscard]] std::string Delete(const std::string& path) {
        DirectoryEntry entry;
        SystemError code = machine_.files.GetEntry(path, entry);
        if (code == error::success) {
            if (entry.IsFolder() && !entry.IsLink()) {
                return "a folder of that name is in its place";
            }
            LookAtFolder(FolderOf(path));
            if (!liesInLocation_) {
                return "a link leads out of the backup location";
            }
            const std::string met = folderMet_.empty() ? "" : places_.MetBy(path);
            if (!met.empty()) {
                return "it is no saved copy, it belongs to " + met;
            }
            code = entry.IsLink() ? machine_.files.RemoveLink(path) : ForceDelete(machine_.files, path);
        }
        if (code == error::success || (IsMissing(code) && IsGone(path))) {
            return "";
        }
        return Describe(machine_.system, code);
    }

 private:
    [[nodiscard]] bool IsGone(const std::string& path) {
        return lookup_.Of(path) == Presence::gone && Unreachable() == error::success;
    }

    /// Files come folder by folder: the last answers are kept.
    void LookAtFolder(const std::string& folder) {
        if (folder != folder_) {
            folder_ = folder;
            liesInLocation_ = IsSurelyInside(machine_.files, folder, location_.Path());
            folderMet_ = places_.MetBy(folder);
        }
    }

    Machine& machine_;
    const Location& location_;
    PresenceLookup lookup_;
    ProtectedPlaces places_;
    std::string folder_;  ///< looked at last
    bool liesInLocation_ = false;
    std::string folderMet_;
};

}  // namespace

FoundFolders SavedFiles::List(SearchSpec& spec, const SearchSink& sink) const {
    spec = {true, 0, 0, "*.*", location_.Below("")};
    return SearchFiles(machine_.files, spec, sink);
}

SavedFiles::Deletion SavedFiles::Delete(const std::vector<std::string>& paths, RunReport& report,
                                        const std::function<void()>& meanwhile) const {
    SavedFileDeleter deleter(machine_, settings_, location_);
    Deletion deletion;
    SystemError unreachable = deleter.Unreachable();
    for (std::size_t next = 0; next < paths.size() && unreachable == error::success; ++next) {
        if (location_.RelativeNameOf(paths[next]).empty()) {
            continue;  // a line that says something about the listing is no file
        }
        const std::string why = deleter.Delete(paths[next]);
        if (why.empty()) {
            deletion.paths.push_back(paths[next]);
        } else {
            unreachable = deleter.Unreachable();
            if (unreachable == error::success) {
                report.Add(paths[next], "not deleted: " + why);
            }
        }
        meanwhile();
    }
    if (unreachable != error::success) {
        deletion.reached = false;
        report.Add(location_.Path(),
                   "the backup location cannot be reached: " + Describe(machine_.system, unreachable) +
                       ". What was not deleted yet stays, and so does the list of original paths.");
    }
    return deletion;
}

void SavedFiles::TakeOffList(const std::vector<std::string>& deleted, RunReport& report) const {
    OriginalPathList list(machine_, location_);
    switch (list.Load()) {
        case OriginalPathList::State::missing:
            return;
        case OriginalPathList::State::unreadable:
            report.Add(list.Path(), list.Code());
            return;
        case OriginalPathList::State::read:
            break;
    }
    std::vector<std::string> names;
    names.reserve(deleted.size());
    for (const std::string& path : deleted) {
        names.push_back(location_.RelativeNameOf(path));
    }
    ListUsers users(machine_.files, settings_, location_);
    list.RemoveFirst(names, [&users](const std::string& line) { return users.HaveLost(line); });
    const SystemError code = list.Save(OriginalPathList::NothingLeft::removesTheFile);
    if (code != error::success) {
        report.Add(list.Path(), code);
    }
}

std::vector<std::string> SavedFiles::EmptiedFolders(const FoundFolders& found,
                                                    const std::vector<std::string>& deleted) const {
    ProtectedPlaces places(machine_, settings_, location_);
    if (places.Any()) {
        return {};
    }
    std::unordered_set<std::string> emptied;  // folded; at first what may be
    for (const std::string& path : deleted) {
        std::string folder = FolderOf(path);
        while (!location_.RelativeNameOf(folder).empty() && emptied.insert(text::Fold(folder)).second) {
            folder = FolderOf(folder);
        }
    }
    std::vector<std::string> folders;
    for (std::size_t i = 0; i < found.paths.size(); ++i) {
        const std::string& path = found.paths[i];
        if (found.holdsFiles[i]) {
            emptied.erase(text::Fold(path));
        } else if (emptied.contains(text::Fold(path)) || emptied.contains(text::Fold(FolderOf(path)))) {
            emptied.insert(text::Fold(path));
            if (MayBeQueued(path) && places.HeldBy(path).empty()) {
                folders.push_back(path);
            }
        }
    }
    return folders;
}

}  // namespace marlok
