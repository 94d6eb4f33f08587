#pragma once

#include <windows.h>

#include <functional>

#include "forms/Form.h"

namespace marlok::win32 {

/// The style of a form's window.
inline constexpr DWORD formStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

/// Where a form's window is, how large, and at what resolution. The form's place is that of the window's upper left
/// corner, in the twips of the system; its size is that of the area inside the frame, in the twips of the screen that
/// the window is on.
class FormPlace {
 public:
    /// `form` outlives this object. `layOut` is called when the form has got another size, possibly inside a window
    /// procedure: it throws nothing.
    FormPlace(forms::Form& form, HWND window, std::function<void()> layOut);

    [[nodiscard]] UINT Dpi() const { return dpi_; }

    /// Makes a window that is larger than the screen as large as that; the form keeps its corner if what is left of it
    /// is on the screen then.
    void CutToScreen();

    /// Brings the window to the form's place. Does nothing while the form is taking the window's.
    void Mirror();

    /// Gives the form the place and size of its window, when they are others than it knows.
    void Take();

    /// The window came to a screen of another resolution: the same twips are other pixels there. `suggested` is where
    /// the system wants it. The form learns of it with the next Take, when its controls have been adapted.
    void ChangeResolution(UINT dpi, const RECT& suggested);

    /// Keeps the user from making the window smaller than the form can be (WM_GETMINMAXINFO).
    void LimitSize(MINMAXINFO& limits) const;

 private:
    [[nodiscard]] RECT Outer() const;
    void Set(const RECT& place);

    forms::Form& form_;
    HWND window_;
    std::function<void()> layOut_;
    UINT dpi_;
    bool mirroring_ = false;  ///< place or size is being set: what the window reports is an echo
};

}  // namespace marlok::win32
