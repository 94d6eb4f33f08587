#include "win32/views/NativeTree.h"

#include <algorithm>
#include <new>

#include "win32/machine/Wide.h"
#include "win32/views/DrawingOff.h"

namespace marlok::win32 {

using forms::Aspect;

NativeControl::WindowKind NativeTree::Kind() const {
    return {WC_TREEVIEWW,
            TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP | WS_TABSTOP,
            WS_EX_CLIENTEDGE};
}

void NativeTree::MirrorContent(Aspect aspect) {
    changed_ = changed_ || aspect == Aspect::items;
}

void NativeTree::Flush() {
    if (!changed_) {
        return;
    }
    changed_ = false;
    const DrawingOff drawing(Window(), true);
    MirrorChildren(TVI_ROOT, tree_.Roots(), false, shown_);
}

/// Nodes are only ever added behind their siblings, or all cleared: what begins alike is the same, and what follows the
/// first difference is made anew.
void NativeTree::MirrorChildren(HTREEITEM parent, const std::vector<forms::Node*>& wanted, bool sorted,
                                std::vector<Shown>& shown) {
    const auto same = std::mismatch(shown.begin(), shown.end(), wanted.begin(), wanted.end(),
                                    [](const Shown& old, const forms::Node* node) { return old.text == node->Text(); });
    for (auto old = same.first; old != shown.end(); ++old) {
        Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(old->item));
    }
    shown.erase(same.first, shown.end());
    for (auto node = same.second; node != wanted.end(); ++node) {
        HTREEITEM behind = shown.empty() ? TVI_FIRST : shown.back().item;
        shown.push_back({Insert(parent, behind, (*node)->Text()), (*node)->Text(), false, {}});
    }
    if (sorted && same.second != wanted.end()) {
        Send(TVM_SORTCHILDREN, FALSE, reinterpret_cast<LPARAM>(parent));
    }
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        MirrorNode(*wanted[index], shown[index]);
    }
}

void NativeTree::MirrorNode(const forms::Node& node, Shown& shown) {
    MirrorChildren(shown.item, node.Children(), node.Sorted, shown.children);
    // Only when the program wants it otherwise than before: what the user has opened or closed since stays.
    if (node.Expanded != shown.expanded && !shown.children.empty()) {
        Send(TVM_EXPAND, node.Expanded ? TVE_EXPAND : TVE_COLLAPSE, reinterpret_cast<LPARAM>(shown.item));
        shown.expanded = node.Expanded;
    }
}

HTREEITEM NativeTree::Insert(HTREEITEM parent, HTREEITEM behind, const std::string& text) const {
    std::wstring wide = ToWide(text);  // the control asks for text that it may write to
    TVINSERTSTRUCTW line{};
    line.hParent = parent;
    line.hInsertAfter = behind;
    line.item.mask = TVIF_TEXT;
    line.item.pszText = wide.data();
    const LRESULT item = Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&line));
    if (item == 0) {
        throw std::bad_alloc();
    }
    return reinterpret_cast<HTREEITEM>(item);
}

}  // namespace marlok::win32
