#pragma once

#include <windows.h>

namespace marlok::win32 {

/// The drawing surface of a window with the window's font chosen, to measure text on.
class TextSurface {
 public:
    explicit TextSurface(HWND window);
    TextSurface(const TextSurface&) = delete;
    TextSurface& operator=(const TextSurface&) = delete;
    ~TextSurface();

    [[nodiscard]] HDC Get() const { return surface_; }

    /// All 0 when the system cannot say.
    [[nodiscard]] TEXTMETRICW Metrics() const;

 private:
    HWND window_;
    HDC surface_;
    HGDIOBJ oldFont_;
};

}  // namespace marlok::win32
