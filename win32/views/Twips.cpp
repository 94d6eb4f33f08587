#include "win32/views/Twips.h"

namespace marlok::win32 {

int ToPixels(int twips, UINT dpi) {
    return MulDiv(twips, static_cast<int>(dpi), 1440);
}

int ToTwips(int pixels, UINT dpi) {
    return MulDiv(pixels, 1440, static_cast<int>(dpi));
}

}  // namespace marlok::win32
