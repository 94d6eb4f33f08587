#pragma once

#include <windows.h>

#include "win32/machine/Handles.h"

namespace marlok::win32 {

/// A picture in memory to draw on.
class Canvas {
 public:
    /// A picture of that size in pixels, of the colours of `like`. Invalid when there is no memory for one.
    Canvas(HDC like, SIZE size);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas();

    [[nodiscard]] bool IsValid() const { return chosen_ != nullptr; }
    [[nodiscard]] HDC Surface() const { return surface_.Get(); }

    /// A brush that paints with the picture. Invalid when the system can make none.
    [[nodiscard]] BrushHandle Brush();

 private:
    BitmapHandle picture_;
    MemorySurface surface_;  ///< behind the picture, which it holds: gone before it
    HGDIOBJ chosen_ = nullptr;
};

}  // namespace marlok::win32
