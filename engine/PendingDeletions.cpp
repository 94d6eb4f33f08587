#include "engine/PendingDeletions.h"

#include <algorithm>

#include "engine/PathLines.h"
#include "engine/ProtectedPlaces.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/FolderListing.h"
#include "fileops/Presence.h"
#include "fileops/SystemFolders.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/ProgramFiles.h"
#include "paths/Roots.h"
#include "settings/BackupSettings.h"
#include "text/Lines.h"
#include "text/Text.h"

namespace marlok {

namespace {

std::string PathOfList(Machine& machine) {
    return ProgramFolder(machine.process.ProgramFolder()).PathOf(programfile::deleteFolder);
}

/// The deletions of one list.
class Deletions {
 public:
    Deletions(Machine& machine, RunReport& report)
        : machine_(machine),
          report_(report),
          settings_(machine.registry, machine.system),
          places_(machine, BackupSettings(settings_)) {}

    void CarryOut(const std::string& path) {
        if (!MayBeQueued(path)) {
            Keep(path, "it is not the full, plain path of a folder");
            return;
        }
        if (!IsPlainFolder(path)) {
            return;
        }
        if (LiesInSystemFolderOfRoot(machine_.files, path)) {
            Keep(path, "it belongs to the system");
            return;
        }
        std::vector<std::string> folders;
        if (!ListFolders(path, folders)) {
            return;
        }
        const std::string held = places_.HeldBy(path);
        if (!held.empty()) {
            Keep(path, "it is or holds " + held);
            return;
        }
        while (!folders.empty() && Remove(folders.back())) {
            folders.pop_back();
        }
    }

 private:
    void Keep(const std::string& path, const std::string& why) { report_.Add(path, "not deleted: " + why); }
    void Keep(const std::string& path, SystemError code) { Keep(path, Describe(machine_.system, code)); }

    /// True when every folder down to `path`, which is one, is a plain one. Nothing is said of what is gone already.
    bool IsPlainFolder(const std::string& path) {
        for (const std::string& folder : FoldersOnTheWay(path)) {
            if (IsRoot(folder)) {
                continue;
            }
            DirectoryEntry entry;
            const SystemError code = machine_.files.GetEntry(folder, entry);
            if (code != error::success) {
                if (!IsMissing(code) || PresenceLookup(machine_.files).Of(folder) != Presence::gone) {
                    Keep(path, code);
                }
                return false;
            }
            if (entry.IsLink() || !entry.IsFolder()) {
                Keep(path, folder + (entry.IsLink() ? " is a link" : " is no folder"));
                return false;
            }
        }
        return true;
    }

    /// `folder` and those in it at any depth, each before what lies in it. False when they hold anything else, or that
    /// cannot be found out.
    bool ListFolders(const std::string& folder, std::vector<std::string>& folders) {
        folders = {folder};
        std::string other;
        for (std::size_t next = 0; next < folders.size(); ++next) {
            const std::string here = folders[next];
            const SystemError code = ListFolder(machine_.files, here, [&](DirectoryEntry& entry) {
                if (!entry.IsFolder() || entry.IsLink()) {
                    other = Join(here, entry.name);
                    return false;
                }
                folders.push_back(Join(here, entry.name));
                return true;
            });
            if (!other.empty()) {
                Keep(folder, "it is not empty, it holds " + other);
                return false;
            }
            if (code != error::success) {
                Keep(folder, here + " cannot be listed: " + Describe(machine_.system, code));
                return false;
            }
        }
        return true;
    }

    /// Removes an empty folder. False when it stays, which is reported.
    bool Remove(const std::string& folder) {
        const SystemError code = RemoveEmptyFolder(machine_.files, folder);
        if (code == error::success || IsMissing(code)) {
            return true;
        }
        Keep(folder, code);
        return false;
    }

    Machine& machine_;
    RunReport& report_;
    CRegSettings settings_;  ///< of its own: deletions come before anything else that a start does
    ProtectedPlaces places_;
};

}  // namespace

bool MayBeQueued(std::string_view folder) {
    constexpr std::size_t beforeServer = 2;
    const PathRoot root = RootOf(folder);
    const bool onDrive = root.kind == PathRoot::Kind::drive;
    if ((!onDrive && root.kind != PathRoot::Kind::network) || root.length >= folder.size()) {
        return false;
    }
    const std::vector<std::string_view> names = text::Split(folder.substr(onDrive ? root.length : beforeServer), "\\");
    return std::ranges::all_of(names, [](std::string_view name) { return IsPlainName(name) && !IsAlteredName(name); });
}

SystemError QueueDeletions(Machine& machine, const std::vector<std::string>& folders) {
    return SaveWholeFile(machine.files, PathOfList(machine), EncodePathLines(text::JoinLines(folders)));
}

RunReport CarryOutPendingDeletions(Machine& machine) {
    RunReport report;
    const std::string list = PathOfList(machine);
    if (!FileExists(machine.files, list)) {
        return report;
    }
    std::string text;
    const SystemError read = ReadPathLines(machine.files, machine.system, list, text);
    if (read == error::invalidData) {
        report.Add(list, read);  // it goes all the same, or it would be read at every start
    } else if (read != error::success) {
        Raise(read);
    }
    const SystemError used = ForceDelete(machine.files, list);
    if (used != error::success) {
        report.Add(list, "the folders in it were not deleted: " + Describe(machine.system, used));
        return report;
    }
    Deletions deletions(machine, report);
    for (const std::string& path : text::SplitLines(text)) {
        if (!path.empty()) {
            deletions.CarryOut(path);
        }
    }
    return report;
}

}  // namespace marlok
