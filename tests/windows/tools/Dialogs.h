#pragma once

#include <windows.h>

#include <string>

/// What a person does with a message box or an input box.
namespace marlok::test {

/// The topmost window named `name` that shows `text` (part of a control's text, as it is spoken; "" for any) and has
/// the button `button`.
/// @throws NotYet when there is none.
[[nodiscard]] HWND DialogShowing(const std::wstring& name, const std::wstring& text, const std::wstring& button);

/// What the dialog says: a line "text TEXT" for each text in it, then "button CAPTION" for each button.
void TellDialog(HWND dialog);

/// Presses the button with that caption.
/// @throws NotYet when it cannot be pressed.
void PressButton(HWND window, const std::wstring& caption);

/// Replaces the text of the edit field that has the keyboard or is the only one.
/// @throws NotYet when there is none; nothing was typed then.
void TypeInto(HWND window, const std::wstring& text);

}  // namespace marlok::test
