#pragma once

#include <string>

#include "engine/RunSink.h"
#include "forms/Controls.h"
#include "forms/TreeView.h"

namespace marlok {

/// Adds the folders of a scan below `node`, whose full path is the folder scanned: each as a child node (key: the
/// folder's path and "Dir", text: its name) and as a line of `list`, its full path without trailing "\\". Pre-order,
/// siblings in the order of the file system. All nodes that have been expanded get `sorted` and `expanded`.
void AddChildFolders(const FolderScan& scan, forms::TreeView& tree, forms::Node& node, forms::ListBox& list,
                     bool sorted, bool expanded);

/// The hidden controls of a run window, which show what the run works on.
struct RunStorage {
    forms::ListBox& List1;       ///< folders below the current source
    forms::ListBox& List3;       ///< source files written for the current location
    forms::TextBox& Text1;       ///< source of the entry being worked on
    forms::TextBox& Text2;       ///< its target
    forms::TreeView& TreeView1;  ///< the current source with its folders

    void LocationBegins();

    /// Shows a source that was scanned. Two sources may overlap: each has the tree to itself, so that no folder meets
    /// its own key.
    void FoldersFound(const FolderScan& scan, bool sorted, bool expanded);

    void EntryBegins(const std::string& source, const std::string& target);
    void Copied(const std::string& source);

    /// Empties what belongs to a single location.
    void Clear();
};

}  // namespace marlok
