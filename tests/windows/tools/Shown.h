#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/windows/tools/Deadline.h"

/// What is on the screen: windows and the controls in them, of any process.
namespace marlok::test {

/// The text of a window; "" when it does not answer within two seconds.
[[nodiscard]] std::wstring TextOf(HWND window);

/// The title of a top-level window; known even while its program does not answer.
[[nodiscard]] std::wstring TitleOf(HWND window);

/// Sends a message that needs nothing from the memory of either process, or one that the system translates.
/// @throws NotYet when there is no answer within five seconds.
LRESULT Ask(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0);

[[nodiscard]] std::wstring ClassOf(HWND window);

/// True when the class is that one; case does not count.
[[nodiscard]] bool IsOfClass(HWND window, const std::wstring& name);

/// The text as a person would say it: no access marks "&", blanks and line breaks in between as one blank each, none at
/// the ends.
[[nodiscard]] std::wstring Spoken(const std::wstring& text);

/// Top-level windows that can be seen, the topmost first.
[[nodiscard]] std::vector<HWND> VisibleTopWindows();

/// Controls that can be seen, those in others too.
[[nodiscard]] std::vector<HWND> VisibleChildren(HWND window);

/// The windows that `name` names, the topmost first: "Title", "Title#2" (the second of that title), "Title|text" (of
/// those with that title, the ones with a control whose text contains that text).
/// @throws NotYet when there is none.
[[nodiscard]] std::vector<HWND> WindowsNamed(const std::wstring& name);

/// The control that `name` names: "Class#2" (the second of that window class, be it in `classes` or not), "Class" (the
/// first one), "Text" (its text as it is spoken, among controls of `classes`), "Text#2" (the second of them).
/// @throws NotYet when there is none.
[[nodiscard]] HWND ControlNamed(HWND window, const std::wstring& name, const std::vector<std::wstring>& classes);

/// As above, in the topmost of the windows named `window` that has one.
/// @throws NotYet when none has.
[[nodiscard]] HWND ControlNamed(const std::wstring& window, const std::wstring& name,
                                const std::vector<std::wstring>& classes);

/// The window's place on the screen, in pixels.
[[nodiscard]] RECT PlaceOf(HWND window);

}  // namespace marlok::test
