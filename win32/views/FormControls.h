#pragma once

#include <windows.h>

#include <memory>
#include <utility>
#include <vector>

#include "forms/Form.h"
#include "win32/machine/Handles.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// The controls of one form on the screen: each is made when it is first shown, in its place among the others, and is
/// found again by what it shows or by its window.
class FormControls {
 public:
    /// `form` outlives this object. Actions of the user go to `post`.
    FormControls(const forms::Form& form, NativeControl::Post post) : form_(form), post_(std::move(post)) {}

    /// Has the controls lie in the form's window, on a screen of that resolution: those that are there, and those to
    /// come. Called before the first one is created, and with every other resolution.
    void Adapt(HWND window, UINT dpi);

    /// Shows a control that has no window yet. Null for kinds that have no native side and for controls of other forms.
    /// @throws std::system_error when the system cannot make a window; the control is then as if never shown.
    [[nodiscard]] NativeControl* Create(const forms::Control& control);

    /// Moves a control into the window in which it lies now, when it is in another one.
    void Rehome(NativeControl& native) const;

    /// Destroys the window of a control, if it has one; those that lie in it stay, in the form's own.
    void Remove(const forms::Control& control);

    /// All that have a window, in the order in which they were first shown. While one is being created it is among them
    /// and has none yet.
    [[nodiscard]] const std::vector<std::unique_ptr<NativeControl>>& All() const { return controls_; }

    /// The controls that have a window, in the order of the form.
    [[nodiscard]] std::vector<NativeControl*> InOrder() const;

    /// The native side of a control; null when it was never shown.
    [[nodiscard]] NativeControl* Find(const forms::Control& control) const;

    /// The control whose window `window` is; null when there is none.
    [[nodiscard]] NativeControl* FindByWindow(HWND window) const;

    /// The control whose window `window` is or lies in, the innermost one; null when there is none.
    [[nodiscard]] NativeControl* FindAround(HWND window) const;

 private:
    /// Identifiers of controls start beyond those that Windows gives a meaning (1: Enter, 2: Escape).
    static constexpr int firstId = 1000;

    [[nodiscard]] HWND Above(const NativeControl& control, HWND parent) const;
    [[nodiscard]] Site SiteOf(const forms::Control& control) const;

    const forms::Form& form_;
    NativeControl::Post post_;
    FontHandle font_;  ///< of controls that have none of their own
    Site ground_;      ///< of controls that lie in no other one
    std::vector<std::unique_ptr<NativeControl>> controls_;
    int nextId_ = firstId;
};

}  // namespace marlok::win32
