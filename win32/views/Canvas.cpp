#include "win32/views/Canvas.h"

#include <algorithm>
#include <utility>

namespace marlok::win32 {

Canvas::Canvas(HDC like, SIZE size)
    : picture_(CreateCompatibleBitmap(like, std::max(1L, size.cx), std::max(1L, size.cy))),
      surface_(CreateCompatibleDC(like)) {
    if (picture_.IsValid() && surface_.IsValid()) {
        chosen_ = SelectObject(surface_.Get(), picture_.Get());
    }
}

Canvas::~Canvas() {
    if (IsValid()) {
        SelectObject(surface_.Get(), chosen_);
    }
}

BrushHandle Canvas::Brush() {
    if (!IsValid()) {
        return {};
    }
    SelectObject(surface_.Get(), std::exchange(chosen_, nullptr));  // a picture that is drawn on makes no brush
    return BrushHandle(CreatePatternBrush(picture_.Get()));
}

}  // namespace marlok::win32
