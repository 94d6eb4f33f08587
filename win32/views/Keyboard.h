#pragma once

#include <windows.h>

#include <utility>
#include <vector>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "win32/views/Focus.h"
#include "win32/views/FormControls.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// The keys that mean the same wherever the keyboard is in a window.
///
/// F1 asks the window for help, Escape the cancel button, Enter the button that has the keyboard or else the default
/// button. Ctrl+Tab and Ctrl+Page Down bring up the next tab, with Shift or Page Up the one before. Alt with a letter
/// presses the one button or check box whose caption starts with it, or goes round among several.
class Keyboard {
 public:
    /// `form`, `controls` and `focus` outlive this object. Actions of the user go to `post`.
    Keyboard(forms::Form& form, HWND window, const FormControls& controls, const Focus& focus, NativeControl::Post post)
        : form_(form), window_(window), controls_(controls), focus_(focus), post_(std::move(post)) {}

    /// Acts on a message before its window gets it. False when it is no key of the above and goes its usual way.
    [[nodiscard]] bool Handle(const MSG& message) const;

    /// Has the button that Enter presses now drawn as such, and no other one.
    void ShowEnterButton();

    /// Answers the system's question for that button (DM_GETDEFID).
    [[nodiscard]] LRESULT EnterButtonId() const;

    /// `gone` is about to be destroyed.
    void Forget(const NativeControl& gone);

 private:
    [[nodiscard]] bool KeyDown(const MSG& message) const;
    [[nodiscard]] bool Enter(const MSG& message) const;
    [[nodiscard]] bool PressButton(const forms::CommandButton* button) const;
    [[nodiscard]] bool MoveOn(const MSG& message) const;
    [[nodiscard]] bool TurnTabs(int step) const;
    [[nodiscard]] bool Letter(const MSG& message) const;
    [[nodiscard]] std::vector<NativeControl*> WithLetter(wchar_t letter) const;
    [[nodiscard]] NativeControl* EnterButton(HWND focus) const;

    forms::Form& form_;
    HWND window_;
    const FormControls& controls_;
    const Focus& focus_;
    NativeControl::Post post_;
    HWND enterButton_ = nullptr;  ///< drawn as the one that Enter presses
};

}  // namespace marlok::win32
