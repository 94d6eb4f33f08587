#pragma once

#include <windows.h>

#include "win32/views/FormControls.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// Which control of a window has the keyboard, and which one gets it when that one goes. The order is that of the
/// form's controls, whatever lies in front of what.
class Focus {
 public:
    /// `controls` outlives this object.
    Focus(HWND window, const FormControls& controls) : window_(window), controls_(controls) {}

    /// The first control that can take the keyboard; null when there is none.
    [[nodiscard]] NativeControl* First() const { return Next(nullptr, 1); }

    /// The control after `from` (null: before the first), or before it with a step of -1, round the end, that can take
    /// the keyboard; `from` itself when it is the only one, null when there is none.
    [[nodiscard]] NativeControl* Next(const NativeControl* from, int step) const;

    /// Gives a control the keyboard and shows where it is.
    void Give(const NativeControl& control) const;

    /// Takes the keyboard away from a control that is about to go. Nothing happens when it is elsewhere.
    void Leave(const NativeControl& going) const;

    /// The tab has changed in the model, the controls have not yet been shown and hidden: keeps a keyboard that goes
    /// with its page on the strip until Settle.
    void LeavePage(const NativeControl& tabs);

    /// Brings a keyboard that lost its page to the first control of the new one.
    void Settle();

    /// The window is about to lose the keyboard to another one: remembers which control had it.
    void Keep();

    /// The window has got the keyboard: brings it to the control that had it last, else to the first one.
    void Restore() const;

    /// `gone` is about to be destroyed.
    void Forget(const NativeControl& gone);

 private:
    HWND window_;
    const FormControls& controls_;
    HWND last_ = nullptr;                      ///< what Keep remembered
    const NativeControl* pageLost_ = nullptr;  ///< the strip that got the keyboard in LeavePage
};

}  // namespace marlok::win32
