#pragma once

#include <string>
#include <vector>

#include "forms/FolderControls.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// The drives in a drop-down list. A drive is taken when its line is chosen, not while the user moves past it in the
/// open list.
class NativeDriveList : public NativeControl {
 public:
    NativeDriveList(forms::DriveListBox& drives, Post post) : NativeControl(drives, std::move(post)), drives_(drives) {}
    void Flush() override;
    void Notified(WORD notification) override;

    /// A drive came or went: the list shows it at once.
    void DevicesChanged() override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    [[nodiscard]] bool HasText() const override { return true; }  // the chosen line

 private:
    void MirrorItems();
    void Refill();
    [[nodiscard]] std::string ShownChoice() const;
    void Take(const std::string& choice);
    [[nodiscard]] bool IsDropped() const { return Send(CB_GETDROPPEDSTATE) != 0; }

    forms::DriveListBox& drives_;
    std::vector<std::string> shown_;  ///< the lines that the window holds
    bool itemsChanged_ = false;
    bool selectionChanged_ = false;
    bool mirroring_ = false;  ///< the list is being closed and opened in code: what the window reports is an echo
};

}  // namespace marlok::win32
