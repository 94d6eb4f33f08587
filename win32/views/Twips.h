#pragma once

#include <windows.h>

namespace marlok::win32 {

/// Twips (1440 to the logical inch) in the pixels of a screen, and back.
[[nodiscard]] int ToPixels(int twips, UINT dpi);
[[nodiscard]] int ToTwips(int pixels, UINT dpi);

}  // namespace marlok::win32
