#pragma once

#include "forms/Controls.h"
#include "win32/views/NativeArea.h"

namespace marlok::win32 {

/// A picture that the program carries, or a plain area. "program" is the program's icon, taken at the size that the
/// area needs; any other name is that of a data resource with an image file in it.
class NativePicture : public NativeArea {
 public:
    NativePicture(forms::PictureBox& box, Post post) : NativeArea(box, std::move(post)), box_(box) {}

 protected:
    void MirrorContent(forms::Aspect aspect) override;
    [[nodiscard]] const Bitmap* PictureFor(PixelSize area) override;

 private:
    forms::PictureBox& box_;
    Bitmap picture_;
    int iconSize_ = 0;  ///< pixels of the icon in `picture_`; 0 when it is none
};

}  // namespace marlok::win32
