#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "win32/views/Bitmap.h"

namespace marlok::win32 {

/// A still or animated picture, decoded by the system. Every frame is complete: what earlier frames leave standing is
/// in it. Needs the thread to be in an apartment (Com.h).
class Picture {
 public:
    struct Frame {
        Bitmap bitmap;            ///< all frames are of one size
        std::uint32_t delay = 0;  ///< milliseconds until the next frame
    };

    /// What is missing, damaged, no picture at all or larger than any that the program would show gives an empty
    /// picture.
    [[nodiscard]] static Picture FromFile(const std::string& path);
    [[nodiscard]] static Picture FromBytes(std::string_view bytes);

    /// A still picture of an icon, at the icon's own size.
    [[nodiscard]] static Picture FromIcon(HICON icon);

    [[nodiscard]] bool IsEmpty() const { return frames_.empty(); }
    [[nodiscard]] bool IsAnimated() const { return frames_.size() > 1; }
    [[nodiscard]] const std::vector<Frame>& Frames() const { return frames_; }

 private:
    std::vector<Frame> frames_;
};

}  // namespace marlok::win32
