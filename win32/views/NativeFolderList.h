#pragma once

#include <windows.h>

#include <string>

#include "forms/FolderControls.h"
#include "win32/machine/Handles.h"
#include "win32/views/NativeList.h"

namespace marlok::win32 {

/// The folders with the system's pictures of drives and folders before their names. The lines are real strings all the
/// same. Enter opens the highlighted folder.
class NativeFolderList : public NativeList {
 public:
    NativeFolderList(forms::DirListBox& folders, Post post) : NativeList(folders, std::move(post)), folders_(folders) {}
    bool TakesEnter() override { return true; }
    void EnterPressed() override { PostOpen(); }
    bool DrawLine(const DRAWITEMSTRUCT& line) override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    int MarginOfLines() const override;

 private:
    void Prepare();
    [[nodiscard]] HICON IconOf(int line);
    [[nodiscard]] int IconSize() const;
    [[nodiscard]] int Gap() const;
    void FillLine(const DRAWITEMSTRUCT& line) const;

    forms::DirListBox& folders_;
    IconHandle folder_;
    IconHandle openFolder_;
    IconHandle drive_;
    std::string drivePath_;  ///< what `drive_` shows
};

}  // namespace marlok::win32
