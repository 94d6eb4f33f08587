#include "ui/run/RunStorage.h"

#include <vector>

namespace marlok {

void AddChildFolders(const FolderScan& scan, forms::TreeView& tree, forms::Node& node, forms::ListBox& list,
                     bool sorted, bool expanded) {
    std::vector<forms::Node*> nodes{&node};
    nodes.reserve(scan.folders.size());
    for (const ScannedFolder& folder : scan.folders) {
        if (folder.parent != ScannedFolder::noParent) {
            nodes.push_back(&tree.Add(nodes[folder.parent], folder.path + "Dir", std::string(folder.Name())));
            list.AddItem(folder.path);
        }
        nodes.back()->Sorted = sorted;
        nodes.back()->Expanded = expanded;
    }
}

void RunStorage::LocationBegins() {
    Clear();
}

void RunStorage::FoldersFound(const FolderScan& scan, bool sorted, bool expanded) {
    List1.Clear();
    TreeView1.Clear();
    if (scan.folders.empty()) {
        return;
    }
    const std::string& source = scan.folders.front().path;
    AddChildFolders(scan, TreeView1, TreeView1.Add(nullptr, source + "Dir", source), List1, sorted, expanded);
}

void RunStorage::EntryBegins(const std::string& source, const std::string& target) {
    Text1.Text = source;
    Text2.Text = target;
}

void RunStorage::Copied(const std::string& source) {
    List3.AddItem(source);
}

void RunStorage::Clear() {
    List1.Clear();
    List3.Clear();
    TreeView1.Clear();
}

}  // namespace marlok
