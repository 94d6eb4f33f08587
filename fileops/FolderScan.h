#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "fileops/ListedFolders.h"
#include "forms/Controls.h"
#include "forms/TreeView.h"
#include "platform/FileSystem.h"

namespace marlok {

/// How a folder scan is run, and what it tells beside tree and list.
struct FolderScan {
    FileSystem& files;

    /// Given to every node that the scan has expanded.
    bool gNodesSorted = false;
    bool gNodesExpanded = false;

    /// The backup location that is being written, with links resolved; folders at or below it are left out, or each run
    /// would nest the last one deeper. "" when nothing is left out.
    std::string locationFinalPath;

    /// Folders that the scan did not see although they are there, with links that were not descended left out.
    std::vector<std::string> missed;

    /// Receives the files of every folder that could be listed to its end; may be null.
    ListedFolders* listed = nullptr;

    /// Folders that could not be listed to their end, and why: folders below them may be missing from the scan.
    struct Unlisted {
        std::string path;
        SystemError code;
    };
    std::vector<Unlisted> unlisted = {};

    /// Called for each folder that was listed; may be empty.
    std::function<void()> meanwhile = {};
};

/// Records every folder below `node`, whose full path is a folder: as a child node (key: the folder's path and "Dir",
/// text: its name) and as a line of `list`, its full path without trailing "\". Pre-order, siblings in the order of the
/// file system. `list` may be null: then only nodes are made. A folder that cannot be listed has no children.
///
/// The first entry of every listing is taken unseen. In an ordinary folder it is "."; at a drive's root it is an entry
/// like any other, and if that is a folder it is not scanned: deliberate, and told in `scan.missed`.
///
/// A link to a folder above itself, or round and round through several links, is left out; other links are descended.
/// @throws RuntimeError 6 when a folder has more than 32,767 folders directly in it; 35602 when a node's key exists.
void AddChildFolders(FolderScan& scan, forms::TreeView& tree, forms::Node& node, forms::ListBox* list);

/// True when `path` is `folder` or lies below it; compared as text without regard to letter case.
[[nodiscard]] bool IsAtOrBelow(std::string_view path, std::string_view folder);

/// `text` up to its first zero character.
[[nodiscard]] std::string TrimAtNull(std::string_view text);

}  // namespace marlok
