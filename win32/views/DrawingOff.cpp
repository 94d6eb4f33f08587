#include "win32/views/DrawingOff.h"

namespace marlok::win32 {

DrawingOff::DrawingOff(HWND window, bool wanted)
    : window_(wanted && (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0 ? window : nullptr) {
    if (window_ != nullptr) {
        SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    }
}

DrawingOff::~DrawingOff() {
    if (window_ != nullptr) {
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE);
    }
}

}  // namespace marlok::win32
