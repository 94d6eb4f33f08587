#include "win32/views/TextSurface.h"

namespace marlok::win32 {

TextSurface::TextSurface(HWND window)
    : window_(window),
      surface_(GetDC(window)),
      oldFont_(SelectObject(surface_, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)))) {}

TextSurface::~TextSurface() {
    SelectObject(surface_, oldFont_);
    ReleaseDC(window_, surface_);
}

TEXTMETRICW TextSurface::Metrics() const {
    TEXTMETRICW metrics{};
    GetTextMetricsW(surface_, &metrics);
    return metrics;
}

}  // namespace marlok::win32
