#pragma once

#include <windows.h>

#include <string>

namespace marlok::win32 {

/// Wide text of any window.
[[nodiscard]] std::wstring WindowText(HWND window);

}  // namespace marlok::win32
