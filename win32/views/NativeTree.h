#pragma once

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <string>
#include <vector>

#include "forms/TreeView.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// A tree view control. Changes of the model are gathered and mirrored in one go; what is there already stays, with
/// what the user has opened in it.
class NativeTree : public NativeControl {
 public:
    NativeTree(forms::TreeView& tree, Post post) : NativeControl(tree, std::move(post)), tree_(tree) {}
    void Flush() override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    /// A node as the window holds it.
    struct Shown {
        HTREEITEM item = nullptr;
        std::string text;
        bool expanded = false;  ///< as the model last wanted it
        std::vector<Shown> children;
    };

    void MirrorChildren(HTREEITEM parent, const std::vector<forms::Node*>& wanted, bool sorted,
                        std::vector<Shown>& shown);
    void MirrorNode(const forms::Node& node, Shown& shown);
    [[nodiscard]] HTREEITEM Insert(HTREEITEM parent, HTREEITEM behind, const std::string& text) const;

    forms::TreeView& tree_;
    std::vector<Shown> shown_;
    bool changed_ = false;
};

}  // namespace marlok::win32
