#pragma once

#include <windows.h>

#include <vector>

#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

class NativeForm;

/// The way of the keyboard through one window: which control has it, which is next, and the keys that mean the same
/// wherever it is. The order is that of the form's controls, whatever lies in front of what.
///
/// F1 presses the help button, Escape the cancel button, Enter the button that has the keyboard or else the default
/// button. Ctrl+Tab and Ctrl+Page Down bring up the next tab, with Shift or Page Up the one before. Alt with a letter
/// presses the one button or check box whose caption starts with it, or goes round among several.
class Keyboard {
 public:
    explicit Keyboard(NativeForm& form) : form_(form) {}

    /// Acts on a message before its window gets it. False when it is no key of the above and goes its usual way.
    [[nodiscard]] bool Handle(const MSG& message);

    /// Takes the keyboard away from a control that is about to go. Nothing happens when it is elsewhere.
    void Leave(const NativeControl& going);

    /// The tab has changed in the model, the controls have not yet been shown and hidden: keeps a keyboard that goes
    /// with its page on the strip until Settle.
    void LeavePage(const NativeControl& tabs);

    /// Brings a keyboard that lost its page to the first control of the new one.
    void Settle();

    /// `gone` is about to be destroyed.
    void Forget(const NativeControl& gone);

    /// The first control that can take the keyboard; null when there is none.
    [[nodiscard]] NativeControl* First() const;

    /// The button that Enter presses now; null when there is none.
    [[nodiscard]] NativeControl* EnterButton(HWND focus) const;

 private:
    [[nodiscard]] bool KeyDown(const MSG& message);
    [[nodiscard]] bool Enter(const MSG& message);
    [[nodiscard]] bool PressButton(forms::CommandButton* button) const;
    [[nodiscard]] bool MoveOn(const MSG& message);
    [[nodiscard]] bool TurnTabs(int step) const;
    [[nodiscard]] bool Letter(const MSG& message);
    [[nodiscard]] NativeControl* Next(const NativeControl* from, int step) const;
    [[nodiscard]] std::vector<NativeControl*> WithLetter(wchar_t letter) const;
    void Give(const NativeControl& control) const;

    NativeForm& form_;
    const NativeControl* pageLost_ = nullptr;  ///< the strip that got the keyboard in LeavePage
};

}  // namespace marlok::win32
