#pragma once

#include <windows.h>

namespace marlok::win32 {

/// Switches the drawing of a window off while many of its lines change, and on again at the end of its life.
class DrawingOff {
 public:
    /// Nothing happens unless `wanted`. A hidden window is left alone: switching drawing on again would show it.
    DrawingOff(HWND window, bool wanted);
    DrawingOff(const DrawingOff&) = delete;
    DrawingOff& operator=(const DrawingOff&) = delete;
    ~DrawingOff();

 private:
    HWND window_;
};

}  // namespace marlok::win32
