#pragma once

#include <windows.h>

#include "forms/Control.h"
#include "win32/machine/Handles.h"

namespace marlok::win32 {

/// `font` in the pixels of a screen: what it leaves open is as in the message font of the system. Invalid when the
/// system can make none: a control then draws in the system's old fixed font, which is still readable.
[[nodiscard]] FontHandle MakeFont(const forms::Font& font, UINT dpi);

}  // namespace marlok::win32
