#pragma once

#include <windows.h>

#include <string>

namespace marlok::win32 {

/// Tells screen readers what a window is called ("": what its text says), where its text alone does not: many kinds of
/// windows have a text that they show nowhere and that their accessible objects do not read. Needs the thread's
/// apartment; where the system has no such service, the text stays all there is.
void NameForScreenReaders(HWND window, const std::string& name);

}  // namespace marlok::win32
