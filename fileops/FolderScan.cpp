#include "fileops/FolderScan.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "fileops/FolderListing.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "platform/RuntimeError.h"

namespace marlok {

namespace {

constexpr std::size_t mostFolders = std::numeric_limits<std::int16_t>::max();

struct FoundFolder {
    std::string name;
    bool link = false;
};

/// One folder on the way from the root to where the scan is. `finalPath` is its path with links resolved, so that a
/// link back to any folder of the way is known for what it is.
struct Level {
    std::size_t folder;  ///< index among the folders found
    std::string finalPath;
    std::vector<FoundFolder> below;
    std::size_t next = 0;
};

class Scanner {
 public:
    Scanner(FileSystem& files, const ScanOptions& options) : files_(files), options_(options) {}

    FolderScan Run(const std::string& root) {
        Enter({root, ScannedFolder::noParent, root.size(), {}}, FinalPathOf(root));
        while (!way_.empty()) {
            Level& level = way_.back();
            if (level.next == level.below.size()) {
                way_.pop_back();
            } else {
                Descend(level, level.below[level.next++]);
            }
        }
        return std::move(scan_);
    }

 private:
    /// By value: entering a folder moves the levels.
    void Descend(const Level& level, const FoundFolder folder) {
        const std::string path = Join(scan_.folders[level.folder].path, folder.name);
        std::string finalPath = folder.link ? FinalPathOf(path) : Join(level.finalPath, folder.name);
        if (folder.link && !MayDescend(finalPath)) {
            return;
        }
        if (!options_.locationFinalPath.empty() && IsAtOrBelow(finalPath, options_.locationFinalPath)) {
            return;
        }
        Enter({path, level.folder, folder.name.size(), {}}, std::move(finalPath));
    }

    void Enter(ScannedFolder folder, std::string finalPath) {
        const std::size_t index = scan_.folders.size();
        scan_.folders.push_back(std::move(folder));
        std::vector<FoundFolder> below = ListInto(scan_.folders.back());
        way_.push_back({index, std::move(finalPath), std::move(below)});
        if (options_.meanwhile) {
            options_.meanwhile();
        }
    }

    /// Keeps the files of `folder` and returns its folders. Gathered before any of them is entered: one open search for
    /// the whole scan.
    std::vector<FoundFolder> ListInto(ScannedFolder& folder) {
        std::vector<FoundFolder> below;
        std::vector<DirectoryEntry> found;
        bool first = HasDriveRoot(folder.path) && IsRoot(folder.path);
        const SystemError code = ListFolder(files_, folder.path, [&](DirectoryEntry& entry) {
            if (!entry.IsFolder()) {
                entry.alternateName.clear();  // only saved copies are looked up by it
                found.push_back(std::move(entry));
            } else if (first) {
                scan_.missed.push_back(Join(folder.path, entry.name));
            } else if (below.size() == mostFolders) {
                throw RuntimeError(runtimeerror::overflow, "Overflow");
            } else {
                below.push_back({TrimAtNull(entry.name), entry.IsLink()});
            }
            first = false;
            return true;
        });
        if (code != error::success) {
            scan_.unlisted.push_back({WithoutBackslash(folder.path), code});
        } else if (kept_ + found.size() <= options_.entriesKept) {
            kept_ += found.size();
            folder.files = std::move(found);
        }
        return below;
    }

    /// True when a link to `target` may be descended: its target is neither a folder of the way nor above one.
    [[nodiscard]] bool MayDescend(const std::string& target) const {
        return std::ranges::none_of(way_, [&](const Level& level) { return IsAtOrBelow(level.finalPath, target); });
    }

    [[nodiscard]] std::string FinalPathOf(const std::string& path) {
        std::string finalPath;
        return files_.FinalPath(path, finalPath) == error::success ? finalPath : WithoutBackslash(path);
    }

    FileSystem& files_;
    const ScanOptions& options_;
    FolderScan scan_;
    std::vector<Level> way_;
    std::size_t kept_ = 0;
};

}  // namespace

FolderScan ScanFolders(FileSystem& files, const std::string& root, const ScanOptions& options) {
    return Scanner(files, options).Run(WithoutBackslash(root));
}

std::string TrimAtNull(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

}  // namespace marlok
