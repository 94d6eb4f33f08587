#include "win32/views/NativeViews.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include "win32/views/NativeForm.h"

namespace marlok::win32 {

NativeViews::NativeViews(NativeLoop& loop) : loop_(loop) {
    INITCOMMONCONTROLSEX wanted{};
    wanted.dwSize = sizeof wanted;
    wanted.dwICC = ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES;
    // A class that is missing shows when a control of it is made, with that control's name.
    static_cast<void>(InitCommonControlsEx(&wanted));
}

std::unique_ptr<forms::View> NativeViews::Attach(forms::Form& form) {
    return std::make_unique<NativeForm>(form, loop_);
}

}  // namespace marlok::win32
