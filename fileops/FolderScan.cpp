#include "fileops/FolderScan.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "fileops/FolderFunctions.h"
#include "platform/RuntimeError.h"
#include "text/Text.h"

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
    forms::Node* node;
    std::string path;  ///< with "\" at its end
    std::string finalPath;
    std::vector<FoundFolder> folders;
    std::size_t next = 0;
};

std::string FinalPathOf(FileSystem& files, const std::string& path) {
    std::string finalPath;
    return files.FinalPath(path, finalPath) == error::success ? finalPath : WithoutBackslash(path);
}

/// What one listing of a folder gives.
struct Listing {
    std::vector<FoundFolder> folders;
    std::vector<DirectoryEntry> files;
};

void Sort(DirectoryEntry&& entry, Listing& listing) {
    if (!entry.IsFolder()) {
        entry.alternateName.clear();  // only saved copies are looked up by it
        listing.files.push_back(std::move(entry));
        return;
    }
    const std::string name = TrimAtNull(entry.name);
    if (name == "." || name == "..") {
        return;
    }
    if (listing.folders.size() == mostFolders) {
        throw RuntimeError(runtimeerror::overflow, "Overflow");
    }
    listing.folders.push_back({name, entry.IsLink()});
}

/// The folders directly in `path`. Gathered before any of them is entered: one open search for the whole scan.
std::vector<FoundFolder> ListFolders(FolderScan& scan, const std::string& path) {
    Listing listing;
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = scan.files.FindFirst(path + "*.*", search, entry);
    if (code != error::success) {
        // Nothing matches: the root of an empty drive.
        if (code != error::fileNotFound) {
            scan.unlisted.push_back({WithoutBackslash(path), code});
        }
        return {};
    }
    if (!entry.IsFolder()) {
        Sort(std::move(entry), listing);
    } else if (entry.name != "." && entry.name != "..") {
        scan.missed.push_back(path + entry.name);
    }
    entry = DirectoryEntry();
    while ((code = search->Next(entry)) == error::success) {
        Sort(std::move(entry), listing);
        entry = DirectoryEntry();
    }
    if (code != error::noMoreFiles) {
        scan.unlisted.push_back({WithoutBackslash(path), code});
    } else if (scan.listed != nullptr) {
        scan.listed->Keep(path, std::move(listing.files));
    }
    return std::move(listing.folders);
}

/// True when a link to `target` may be descended: its target is neither a folder of the way nor above one.
bool MayDescend(const std::vector<Level>& way, const std::string& target) {
    return std::ranges::none_of(way, [&target](const Level& level) { return IsAtOrBelow(level.finalPath, target); });
}

Level Enter(FolderScan& scan, forms::Node& node, const std::string& path, std::string finalPath) {
    Level level{&node, AddBackslash(path), std::move(finalPath), {}, 0};
    level.folders = ListFolders(scan, level.path);
    if (scan.meanwhile) {
        scan.meanwhile();
    }
    return level;
}

}  // namespace

bool IsAtOrBelow(std::string_view path, std::string_view folder) {
    const std::string inner = text::Fold(AddBackslash(path));
    return inner.starts_with(text::Fold(AddBackslash(folder)));
}

std::string TrimAtNull(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

void AddChildFolders(FolderScan& scan, forms::TreeView& tree, forms::Node& node, forms::ListBox* list) {
    const std::string root = node.FullPath();
    std::vector<Level> way;
    way.push_back(Enter(scan, node, root, FinalPathOf(scan.files, root)));
    while (!way.empty()) {
        Level& level = way.back();
        if (level.next == level.folders.size()) {
            level.node->Sorted = scan.gNodesSorted;
            level.node->Expanded = scan.gNodesExpanded;
            way.pop_back();
            continue;
        }
        const FoundFolder& folder = level.folders[level.next++];
        const std::string path = level.path + folder.name;
        std::string finalPath =
            folder.link ? FinalPathOf(scan.files, path) : AddBackslash(level.finalPath) + folder.name;
        if (folder.link && !MayDescend(way, finalPath)) {
            continue;
        }
        if (!scan.locationFinalPath.empty() && IsAtOrBelow(finalPath, scan.locationFinalPath)) {
            continue;
        }
        forms::Node& child = tree.Add(level.node, path + "Dir", folder.name);
        if (list != nullptr) {
            list->AddItem(path);
        }
        way.push_back(Enter(scan, child, path, std::move(finalPath)));
    }
}

}  // namespace marlok
