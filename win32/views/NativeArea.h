#pragma once

#include <cstdint>

#include "win32/views/Bitmap.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// A window that the program paints itself: an area of the control's back colour with a picture in its middle, as large
/// as fits. It is painted in one go, so nothing flickers; other controls may lie in it.
class NativeArea : public NativeControl {
 public:
    [[nodiscard]] bool IsTransparent() const override { return Model().BackColor == forms::systemColour; }

 protected:
    using NativeControl::NativeControl;

    /// The picture for an area of that size; null for none. It stays as it is until Redraw is called.
    [[nodiscard]] virtual const Bitmap* PictureFor(PixelSize area) = 0;

    /// Another picture is to be seen: painted when painting is due.
    void Redraw();

    [[nodiscard]] WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    LRESULT Handle(UINT message, WPARAM first, LPARAM second) override;

 private:
    void Paint();
    void PaintAndForgive(HDC surface);
    void PaintOn(HDC surface);
    void Compose();

    Bitmap shown_;                  ///< what the window looks like; empty when it has to be composed anew
    std::uint32_t background_ = 0;  ///< the colour in it
};

}  // namespace marlok::win32
