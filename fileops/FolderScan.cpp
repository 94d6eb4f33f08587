#include "fileops/FolderScan.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "fileops/FolderListing.h"
#include "fileops/SystemFolders.h"
#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

struct FoundFolder {
    std::string name;
    bool link = false;
    bool hiddenByWindows = false;
};

bool IsHiddenByWindows(const DirectoryEntry& entry) {
    constexpr std::uint32_t both = attribute::hidden | attribute::system;
    return (entry.attributes & both) == both;
}

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
    Scanner(FileSystem& files, const ScanOptions& options) : files_(files), options_(options) {
        for (const std::string& path : options.leftOut) {
            leftOut_.insert(text::Fold(WithoutBackslash(path)));
        }
    }

    FolderScan Run(const std::string& root) {
        Enter({root, ScannedFolder::noParent, root.size(), {}}, FinalPathOf(root), false);
        while (!way_.empty()) {
            Level& level = way_.back();
            if (level.next == level.below.size()) {
                way_.pop_back();
            } else {
                const FoundFolder folder = std::move(level.below[level.next++]);  // entering it moves the levels
                Descend(level, folder);
            }
        }
        return std::move(scan_);
    }

 private:
    void Descend(const Level& level, const FoundFolder& folder) {
        const std::string path = Join(scan_.folders[level.folder].path, folder.name);
        std::string finalPath = folder.link ? FinalPathOf(path) : Join(level.finalPath, folder.name);
        if (folder.link && !MayDescend(finalPath)) {
            return;
        }
        if (IsLeftOut(finalPath, folder.link)) {
            return;
        }
        Enter({path, level.folder, folder.name.size(), {}}, std::move(finalPath),
              folder.link && folder.hiddenByWindows);
    }

    /// Below a folder that is entered step by step, what is left out is met at its top; a link may lead into its midst.
    [[nodiscard]] bool IsLeftOut(const std::string& finalPath, bool link) const {
        if (link) {
            return std::ranges::any_of(options_.leftOut,
                                       [&](const std::string& path) { return IsAtOrBelow(finalPath, path); });
        }
        return !leftOut_.empty() && leftOut_.contains(text::Fold(finalPath));
    }

    void Enter(ScannedFolder folder, std::string finalPath, bool mayBeClosed) {
        const std::size_t index = scan_.folders.size();
        scan_.folders.push_back(std::move(folder));
        std::vector<FoundFolder> below = ListInto(scan_.folders.back(), mayBeClosed);
        way_.push_back({index, std::move(finalPath), std::move(below)});
        if (options_.meanwhile) {
            options_.meanwhile();
        }
    }

    /// Keeps the files of `folder` and returns its folders. Gathered before any of them is entered: one open search for
    /// the whole scan.
    std::vector<FoundFolder> ListInto(ScannedFolder& folder, bool mayBeClosed) {
        std::vector<FoundFolder> below;
        std::vector<DirectoryEntry> found;
        const SystemError code = ListFolder(files_, folder.path, [&](DirectoryEntry& entry) {
            if (!entry.IsFolder()) {
                entry.alternateName.clear();  // only saved copies are looked up by it
                found.push_back(std::move(entry));
            } else if (!IsSystemFolderOfRoot(entry, folder.path)) {
                below.push_back({TrimAtNull(entry.name), entry.IsLink(), IsHiddenByWindows(entry)});
            }
            return true;
        });
        if (code == error::accessDenied && mayBeClosed) {
            folder.files.emplace();
            return {};
        }
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
    std::unordered_set<std::string> leftOut_;  ///< folded
};

}  // namespace

FolderScan ScanFolders(FileSystem& files, const std::string& root, const ScanOptions& options) {
    return Scanner(files, options).Run(WithoutBackslash(root));
}

std::string TrimAtNull(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

}  // namespace marlok
