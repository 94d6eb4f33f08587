#pragma once

#include <windows.h>

#include <vector>

#include "forms/Form.h"
#include "win32/machine/Handles.h"
#include "win32/views/FormControls.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// What lies behind the controls of one window: the form's rows of colour, a page of its tabs or a picture. Labels and
/// their like paint with a brush that shows exactly that.
class Backdrop {
 public:
    /// `form` and `controls` outlive this object.
    Backdrop(const forms::Form& form, HWND window, const FormControls& controls)
        : form_(form), window_(window), controls_(controls), shownRows_(form.Backdrop()) {}

    /// Shows the form's rows of colour, when they are others than before.
    void MirrorRows();

    /// What others lie on has changed: all controls that show what lies behind them are painted anew.
    void Changed();

    /// The same, and the window itself is painted anew.
    void ChangedWhole();

    /// The window has another size.
    void Resized();

    /// Paints the window itself, from its upper left corner on.
    void Paint(HDC surface) const;

    /// Paints the window and the pages in front of it, for a control that wants to show what lies behind it.
    void Print(HDC surface);

    /// Answers a message of the WM_CTLCOLOR family that `control` has sent; null for the system's own answer.
    [[nodiscard]] HBRUSH Colours(NativeControl& control, HDC surface);

    /// Something that others lie on is about to be destroyed.
    void Forget() { kept_.clear(); }

    /// True when controls may lie on this one.
    [[nodiscard]] static bool IsGround(const NativeControl& control);

 private:
    struct Kept {
        HWND window;
        SIZE size;
        BrushHandle brush;
    };
    [[nodiscard]] HBRUSH Behind(const NativeControl& control, HDC surface);
    [[nodiscard]] const NativeControl* GroundOf(const NativeControl& control) const;
    [[nodiscard]] HBRUSH BrushOf(const NativeControl* ground);
    [[nodiscard]] BrushHandle MakeBrush(const NativeControl* ground, HWND window, SIZE size) const;

    const forms::Form& form_;
    HWND window_;
    const FormControls& controls_;
    std::vector<forms::Colour> shownRows_;  ///< the rows that the window was last painted with
    std::vector<Kept> kept_;                ///< one brush for each window that others lie on
    bool printing_ = false;
};

/// Paints `size` pixels in rows of equal height, from the top; in the colour of the system's windows when there are
/// none.
void PaintRows(HDC surface, SIZE size, const std::vector<forms::Colour>& rows);

}  // namespace marlok::win32
