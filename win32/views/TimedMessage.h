#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace marlok::win32 {

/// A message box that presses its default button by itself after `milliseconds`. The number of the pressed button; not
/// positive when the system cannot show a box.
/// @throws std::logic_error when another one is just being shown on this thread.
[[nodiscard]] int ShowTimedMessage(HWND owner, const std::string& text, std::uint32_t style, const std::string& title,
                                   std::uint32_t milliseconds);

}  // namespace marlok::win32
