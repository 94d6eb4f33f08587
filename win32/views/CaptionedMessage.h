#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Desktop.h"

namespace marlok::win32 {

/// A message box whose buttons have the captions of `captions`; those it does not name keep the system's. All buttons
/// become equally wide, and the box with them, when a caption needs more room than the system has given.
/// The number of the pressed button; not positive when the system cannot show a box.
/// @throws std::system_error when the captions cannot be set: nobody is asked with the wrong ones.
/// @throws std::logic_error when another one is just being shown on this thread.
[[nodiscard]] int ShowCaptionedMessage(HWND owner, const std::string& text, std::uint32_t style,
                                       const std::string& title, const std::vector<Desktop::ButtonCaption>& captions);

}  // namespace marlok::win32
