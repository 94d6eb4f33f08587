#pragma once

#include <windows.h>

#include <string>

namespace marlok::win32 {

/// What an input box shows and where.
struct InputBoxRequest {
    std::wstring prompt;
    std::wstring title;
    POINT corner{};  ///< upper left corner of the box, in pixels of the screen
};

/// Asks the user for a line of text, in a dialog of its own over `owner` (may be null). The box is moved so that it
/// lies wholly on the work area. Returns when it is closed: the text as it was typed, cut to inputBoxLimit; "" when it
/// was left empty or cancelled.
/// @throws std::system_error when the system cannot show the box.
[[nodiscard]] std::wstring AskInputBox(HWND owner, const InputBoxRequest& request);

/// The longest text that an input box takes, in characters: no path of Windows is longer.
inline constexpr int inputBoxLimit = 32767;

/// Identifiers of the box's controls; its buttons are IDOK and IDCANCEL.
inline constexpr int inputBoxPromptId = 1000;
inline constexpr int inputBoxFieldId = 1001;

/// Where everything lies inside the box, in pixels.
struct InputBoxLayout {
    SIZE client;
    RECT prompt;
    RECT field;
    RECT ok;
    RECT cancel;
};

/// How wide the prompt's lines may become.
[[nodiscard]] int InputBoxPromptWidth(UINT dpi);

/// Layout for a prompt of that height and a font of that line height, both in pixels.
[[nodiscard]] InputBoxLayout LayOutInputBox(UINT dpi, int promptHeight, int lineHeight);

}  // namespace marlok::win32
