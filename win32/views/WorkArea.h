#pragma once

#include <windows.h>

namespace marlok::win32 {

/// `place`, in pixels of the screen, moved by no more than is needed for it to lie wholly on the work area of the
/// screen that it is on or next to. The upper left part of what is larger than the work area is on it. Keeps the size.
[[nodiscard]] RECT MovedOntoWorkArea(const RECT& place);

/// Size of the area of a screen that programs may use: of the screen that `place` is on or next to.
[[nodiscard]] SIZE WorkSize(const RECT& place);

}  // namespace marlok::win32
